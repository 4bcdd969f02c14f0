// From the name lists of a request to the items to work on: names looked up,
// wildcards resolved, each source paired with the place that it goes to.
#ifndef ORVIX_PLATFORM_SHELL_PLAN_H
#define ORVIX_PLATFORM_SHELL_PLAN_H

#include <string>
#include <vector>

#include "platform/shell/request.h"

namespace Orvix::Shell {

// An entry of a directory, by absolute native names. The entry "." stands for a
// root itself.
struct Place {
  std::string directory;
  std::string name;

  [[nodiscard]] std::string Path() const { return directory == "/" ? "/" + name : directory + "/" + name; }
};

struct Item {
  Place source;
  bool qualified = true;  // named from a root, not from the current directory
  Place target;           // not of a deletion
  std::string spelling;   // how the caller spells the target's name; empty where it keeps the source's
};

struct Plan {
  std::vector<Item> items;
};

// Looks at the disk and changes nothing. Codes:
//   0x72  a renaming of not exactly one plain name to at most one
//   0x73  a renaming to no name, or into another directory
//   0x74  a source that is a root
//   123   a wildcard in a target that is used
//   2     a missing source, 0x7C when its directory is missing too
//   0x7C  a file where a target directory is needed; wildcards before the last
//         component of a source
[[nodiscard]] Plan MakePlan(const Request& request);

}  // namespace Orvix::Shell

#endif
