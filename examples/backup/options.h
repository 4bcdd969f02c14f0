// What the backup is asked for.
#ifndef ORVIX_EXAMPLES_BACKUP_OPTIONS_H
#define ORVIX_EXAMPLES_BACKUP_OPTIONS_H

#include <string>
#include <string_view>
#include <vector>

namespace backup {

struct Options {
  bool help = false;
  std::string source;       // native name, UTF-8
  std::string destination;  // the same
  std::string mask = "*";
  std::string from;  // a date; empty: no bound
  std::string to;
  bool subdirectories = false;
  bool hidden = false;
  bool dry_run = false;
};

inline constexpr std::string_view kHelp =
    R"help(backup copies the files of a directory into a folder named after today's date.

Usage: backup SOURCE DESTINATION [OPTION...]

  --mask MASK        only names that match, such as *.txt; case does not matter
  --from DATE        changed at or after DATE, such as 2002-11-01 or "2002-11-01 10:00"
  --to DATE          changed at or before DATE; a date alone means its midnight
  --subdirectories   the files below SOURCE too; links to directories are not followed
  --hidden           hidden files too (names that start with a point)
  --dry-run          only show what would be copied
  --help             this text

The copies go to DESTINATION/YYYY-MM-DD. When that is there already, a second run
makes "YYYY-MM-DD (2)" and so on: nothing is ever overwritten. A file whose name
differs only in case from one that is there may get a number. Ctrl-C stops between
files or within one; what is copied by then is whole.

Exit status: 0 done, 1 something was not copied, 2 wrong command line.
)help";

// UsageError, which says what to type.
[[nodiscard]] Options ParseOptions(const std::vector<std::string>& words);

}  // namespace backup

#endif
