// Reading, sorting and laying out.
#include "listing.h"

#include <array>
#include <stdexcept>

#include "../shared/names.h"

namespace catalogue {

namespace {

using Orvix::Directory;
using Orvix::DirectoryEntry;
using Orvix::Filename;
using Orvix::Global;
using Orvix::String;
using Orvix::Text;

constexpr LONG kHidden = 2;
constexpr LONG kDirectories = 16;

void Sort(Directory& directory, const Options& options) {
  // Sorting an empty list does not return.
  if (directory.NumFiles() == 0) return;
  if (options.order == Order::kName) directory.SortFilesName(!options.descending);
  if (options.order == Order::kDate) directory.SoftFilesDateEx(!options.descending);
}

// The name in two cells. A name with a colon or a backslash in it is shown
// whole, since the component takes those for separators.
std::array<String, 2> SplitName(const DirectoryEntry& entry, bool is_directory, Filename& filename) {
  if (is_directory) return {entry.file, String()};
  try {
    filename.SetCompleteFilename(entry.complete_filename);
    if (filename.Name() == entry.file) return {filename.ExtensionlessFilename(), filename.Extension()};
  } catch (const Orvix::Error&) {
    // A name that ends in a separator is refused; its row is still of use.
  }
  return {entry.file, String()};
}

String RowOf(const DirectoryEntry& entry, bool is_directory, Filename& filename) {
  const auto& orvix = Global();
  const std::array<String, 2> name = SplitName(entry, is_directory, filename);
  const std::string size = is_directory ? std::string("<dir>") : std::to_string(static_cast<ULONG>(entry.size));
  // The first cell of a file such as ".profile" is empty, and adding to an empty
  // list would not separate: its whole name goes there.
  String row = name[0].IsEmpty() ? entry.file : name[0];
  row = orvix.AddElement(row, name[1], kCellSeparator);
  row = orvix.AddElement(row, size, kCellSeparator);
  return orvix.AddElement(row, entry.date.Iso(), kCellSeparator);
}

}  // namespace

std::vector<String> ReadRows(const Options& options, const examples::Progress& progress) {
  examples::RequireDate("--from", options.from);
  examples::RequireDate("--to", options.to);
  const Text folder = examples::WithSeparator(examples::QualifiedName(options.directory));
  if (!Global().DirExists(folder)) throw std::runtime_error("there is no directory " + options.directory);
  Directory directory;
  progress("reading " + options.directory);
  const LONG attributes = (options.directories ? kDirectories : 0) + (options.hidden ? kHidden : 0);
  const Text mask = options.directories ? folder : folder + Orvix::FromUtf8(options.mask);
  directory.Init(mask, attributes, options.from, options.to);
  const LONG count = directory.NumFiles();
  progress("sorting " + std::to_string(count) + (count == 1 ? " entry" : " entries"));
  Sort(directory, options);

  std::vector<String> rows;
  Filename filename;
  for (LONG i = 1; i <= count; ++i) {
    if (i % 1000 == 0) progress("laying out entry " + std::to_string(i) + " of " + std::to_string(count));
    rows.push_back(RowOf(directory.File(i), options.directories, filename));
  }
  return rows;
}

std::vector<std::string> TableOf(const std::vector<String>& rows) {
  constexpr std::size_t kSizeColumn = 2;
  return examples::TableLines(rows, kCellSeparator, {"Name", "Extension", "Size", "Date"}, kSizeColumn);
}

}  // namespace catalogue
