// A directory read into rows, by way of classDirectory, classFilename and the
// list members.
#ifndef ORVIX_EXAMPLES_CATALOGUE_LISTING_H
#define ORVIX_EXAMPLES_CATALOGUE_LISTING_H

#include <string>
#include <vector>

#include "../shared/program.h"
#include "../shared/table.h"
#include "options.h"
#include "orvix/orvix.hpp"

namespace catalogue {

// Separates the cells of a row: no name on disk can hold it.
inline constexpr char16_t kCellSeparator[] = u"/";

// One list a row, its elements being the cells name, extension, size and date.
// An exception when the directory cannot be listed, UsageError for a bound that
// is no date.
[[nodiscard]] std::vector<Orvix::String> ReadRows(const Options& options, const examples::Progress& progress);

// The lines of the table, the heading first.
[[nodiscard]] std::vector<std::string> TableOf(const std::vector<Orvix::String>& rows);

}  // namespace catalogue

#endif
