// Names of a request and the entries on disk that they mean.
#ifndef ORVIX_PLATFORM_SHELL_SOURCES_H
#define ORVIX_PLATFORM_SHELL_SOURCES_H

#include <string>
#include <vector>

#include "orvix/text.h"
#include "platform/shell/plan.h"

namespace Orvix::Shell {

struct Source {
  bool pattern = false;
  bool qualified = true;
  std::vector<Place> matches;  // one, unless it is a pattern
};

[[nodiscard]] bool HasWildcards(TextView text);

// A native name without "." at its end and without separators behind it, split
// into directory and entry.
[[nodiscard]] Place Split(std::string native);

// The entries that one source name means, those of a pattern in the order of
// their names. Codes as for a plan.
[[nodiscard]] Source FindSource(TextView name, bool files_only);

struct Target {
  Place place;
  std::string spelling;         // of the last component, as the caller wrote it
  bool is_directory = false;    // one is there; a link to one counts
  bool is_other = false;        // something else is there
  bool says_directory = false;  // the name ends in a separator
};

[[nodiscard]] Target FindTarget(TextView name);

// The current directory as a target.
[[nodiscard]] Target CurrentDirectory();

}  // namespace Orvix::Shell

#endif
