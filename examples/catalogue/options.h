// What the catalogue is asked for.
#ifndef ORVIX_EXAMPLES_CATALOGUE_OPTIONS_H
#define ORVIX_EXAMPLES_CATALOGUE_OPTIONS_H

#include <string>
#include <string_view>
#include <vector>

namespace catalogue {

enum class Order { kAsListed, kName, kDate };

struct Options {
  bool help = false;
  std::string directory;  // native name, UTF-8
  std::string mask = "*";
  std::string from;  // a date; empty: no bound
  std::string to;
  std::string output;  // a file for the table, native; empty: standard output
  Order order = Order::kAsListed;
  bool descending = false;
  bool directories = false;
  bool hidden = false;
};

inline constexpr std::string_view kHelp =
    R"(catalogue lists a directory as a table of names, extensions, sizes and dates.

Usage: catalogue DIRECTORY [OPTION...]

  --mask MASK        only names that match, such as *.txt; case does not matter
  --from DATE        changed at or after DATE, such as 2002-11-01 or "2002-11-01 10:00"
  --to DATE          changed at or before DATE; a date alone means its midnight
  --sort name|date   sort by name (capitals before small letters) or by date
  --descending       the other way round; by name unless --sort says otherwise
  --directories      the subdirectories in place of the files
  --hidden           hidden entries too (names that start with a point)
  --output FILE      the table to FILE, which it replaces; missing directories are
                     made; characters outside Windows-1252 become "?"
  --help             this text

Exit status: 0 done, 1 the directory cannot be listed or the table not written,
2 wrong command line.
)";

// UsageError, which says what to type.
[[nodiscard]] Options ParseOptions(const std::vector<std::string>& words);

}  // namespace catalogue

#endif
