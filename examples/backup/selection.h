// The files that a mask and dates choose, by way of classDirectory.
#ifndef ORVIX_EXAMPLES_BACKUP_SELECTION_H
#define ORVIX_EXAMPLES_BACKUP_SELECTION_H

#include <string>
#include <vector>

#include "../shared/program.h"
#include "options.h"
#include "orvix/orvix.hpp"

namespace backup {

struct File {
  Orvix::Text source;    // drive-qualified
  Orvix::Text relative;  // below the source directory, with "\" between parts
  Orvix::String row;     // a list: name, size, date
};

struct Selection {
  std::vector<File> files;
  std::vector<std::string> left_out;      // what cannot be copied, each with the reason
  std::vector<std::string> not_followed;  // links to directories
};

// Whether the file service takes the name as it is: it works in the ANSI code
// page, and "*", "?" and "\" in a name would mean something else to it.
[[nodiscard]] bool ServiceTakes(Orvix::TextView name);
// The same for a directory's whole name; an exception when it does not. `native`
// is what the user typed. The result is drive-qualified, with a separator at the
// end.
[[nodiscard]] Orvix::Text NameForService(const std::string& native);

// Chooses below options.source. The destination is left out when it lies there.
// An exception when the source cannot be listed, UsageError for a bound that is
// no date.
[[nodiscard]] Selection Select(const Options& options, const examples::Progress& progress);

// The chosen files in columns.
[[nodiscard]] std::string TableOf(const Selection& selection);

}  // namespace backup

#endif
