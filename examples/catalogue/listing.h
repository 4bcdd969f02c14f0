// A directory read into rows, by way of classDirectory, classFilename and the
// list members.
#ifndef ORVIX_EXAMPLES_CATALOGUE_LISTING_H
#define ORVIX_EXAMPLES_CATALOGUE_LISTING_H

#include <functional>
#include <string>
#include <vector>

#include "options.h"
#include "orvix/orvix.hpp"

namespace catalogue {

// Told what is going on.
using Progress = std::function<void(const std::string& stage)>;

// Separates the cells of a row: no name on disk can hold it.
inline constexpr char16_t kCellSeparator[] = u"/";
inline constexpr LONG kCells = 4;  // name, extension, size, date

// One list a row, its elements being the cells. An exception when the directory
// cannot be listed, UsageError for a bound that is no date.
[[nodiscard]] std::vector<Orvix::String> ReadRows(const Options& options, const Progress& progress);

// The rows under a heading, in columns as wide as their widest cell.
[[nodiscard]] std::string Table(const std::vector<Orvix::String>& rows);

}  // namespace catalogue

#endif
