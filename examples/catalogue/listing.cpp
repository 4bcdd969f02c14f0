// Reading, sorting and laying out.
#include "listing.h"

#include <algorithm>
#include <array>
#include <stdexcept>

#include "orvix/runtime.h"

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

// The name as the component knows it, with a drive and a separator at the end.
Text FolderOf(const std::string& native) {
  String name;
  Orvix::Check(OxPlatformName(native.c_str(), name.Receive()));
  Text folder(name.View());
  if (!folder.ends_with(u'\\') && !folder.ends_with(u'/')) folder += u'\\';
  return folder;
}

void RequireDate(const std::string& option, const std::string& bound) {
  if (bound.empty()) return;
  DATE unused = 0;
  const Orvix::Value text(bound);
  if (FAILED(OxDateOf(&text.get(), &unused))) {
    throw UsageError(option + " takes a date such as 2002-11-30, not \"" + bound + "\".");
  }
}

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

// Characters that would move the cursor or break the line are shown as "?".
std::string Printable(const String& cell) {
  Text text(cell.View());
  for (char16_t& unit : text) {
    if (unit < 0x20 || (unit >= 0x7F && unit < 0xA0)) unit = u'?';
  }
  return Orvix::ToUtf8(text);
}

// Characters, so that letters of several bytes line up.
std::size_t WidthOf(const std::string& utf8) {
  return static_cast<std::size_t>(
      std::ranges::count_if(utf8, [](char c) { return (static_cast<unsigned char>(c) & 0xC0) != 0x80; }));
}

}  // namespace

std::vector<String> ReadRows(const Options& options, const Progress& progress) {
  RequireDate("--from", options.from);
  RequireDate("--to", options.to);
  const Text folder = FolderOf(options.directory);
  if (!Global().DirExists(folder)) {
    throw std::runtime_error("there is no directory " + options.directory);
  }
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

std::string Table(const std::vector<String>& rows) {
  const auto& orvix = Global();
  constexpr std::array<const char*, kCells> kHeading = {"Name", "Extension", "Size", "Date"};
  constexpr std::size_t kSizeColumn = 2;
  std::vector<std::array<std::string, kCells>> cells{{kHeading[0], kHeading[1], kHeading[2], kHeading[3]}};
  for (const String& row : rows) {
    std::array<std::string, kCells> line;
    const LONG elements = std::min(orvix.LengthList(row, kCellSeparator), kCells);
    for (LONG i = 1; i <= elements; ++i) {
      line[static_cast<std::size_t>(i - 1)] = Printable(orvix.GetElement(row, i, kCellSeparator));
    }
    cells.push_back(std::move(line));
  }
  std::array<std::size_t, kCells> widths{};
  for (const auto& line : cells) {
    for (std::size_t i = 0; i < widths.size(); ++i) widths[i] = std::max(widths[i], WidthOf(line[i]));
  }
  std::string table;
  for (const auto& line : cells) {
    for (std::size_t i = 0; i < widths.size(); ++i) {
      const std::string padding(widths[i] - WidthOf(line[i]), ' ');
      table += i == kSizeColumn ? padding + line[i] : line[i] + (i + 1 < widths.size() ? padding : std::string());
      table += i + 1 < widths.size() ? "  " : "\n";
    }
  }
  return table;
}

}  // namespace catalogue
