// Walking the source, one directory after the other.
#include "selection.h"

#include <algorithm>
#include <filesystem>
#include <stdexcept>

#include "../shared/names.h"
#include "../shared/table.h"

namespace backup {

namespace {

using Orvix::Directory;
using Orvix::DirectoryEntry;
using Orvix::Text;
using Orvix::TextView;

constexpr LONG kHidden = 2;
constexpr LONG kDirectories = 16;
// Separates the cells of a row: a name with it in it is left out.
constexpr char16_t kCellSeparator[] = u"\\";
constexpr char kNotTaken[] = "the file service cannot take this name";

// "sub\a.txt" as people here write it.
Text WithSlashes(Text relative) {
  std::ranges::replace(relative, u'\\', u'/');
  return relative;
}

class Walk {
 public:
  Walk(const Options& options, const examples::Progress& progress) : options_(options), progress_(progress) {}

  // `folder` ends in a separator, and so does `relative` unless it is empty.
  void Into(const Text& folder, const Text& relative) {
    progress_("selecting: " + examples::Count(selection_.files.size(), "file", "files"));
    Directory files;
    files.Init(folder + Orvix::FromUtf8(options_.mask), options_.hidden ? kHidden : 0, options_.from, options_.to);
    const LONG count = files.NumFiles();
    for (LONG i = 1; i <= count; ++i) {
      if (i % 1000 == 0) {
        progress_("selecting: " + examples::Count(selection_.files.size(), "file", "files"));
      }
      Take(files.File(i), folder, relative);
    }
    if (options_.subdirectories) IntoSubdirectories(folder, relative);
  }
  [[nodiscard]] Selection Result() && { return std::move(selection_); }

 private:
  void Take(const DirectoryEntry& entry, const Text& folder, const Text& relative) {
    const TextView name = entry.file;
    const Text shown = WithSlashes(relative) + Text(name);
    if (!ServiceTakes(name)) {
      selection_.left_out.push_back(examples::Printable(shown) + ": " + kNotTaken);
      return;
    }
    const auto& orvix = Orvix::Global();
    Orvix::String row = orvix.AddElement(shown, std::to_string(static_cast<ULONG>(entry.size)), kCellSeparator);
    row = orvix.AddElement(row, entry.date.Iso(), kCellSeparator);
    selection_.files.push_back({folder + Text(name), relative + Text(name), std::move(row)});
  }

  void IntoSubdirectories(const Text& folder, const Text& relative) {
    Directory directories;
    directories.Init(folder, kDirectories + (options_.hidden ? kHidden : 0));
    const LONG count = directories.NumFiles();
    for (LONG i = 1; i <= count; ++i) {
      const Text name(directories.File(i).file.View());
      const std::string shown = examples::Printable(WithSlashes(relative) + name);
      if (!ServiceTakes(name)) {
        selection_.left_out.push_back(shown + "/: " + kNotTaken);
        continue;
      }
      const std::string native = examples::NativeName(folder + name);
      std::error_code ignored;
      if (std::filesystem::is_symlink(native, ignored)) {
        selection_.not_followed.push_back(shown);
        continue;
      }
      // Earlier backups are not backed up again.
      if (std::filesystem::equivalent(native, options_.destination, ignored)) continue;
      try {
        Into(folder + name + u'\\', relative + name + u'\\');
      } catch (const Orvix::Error& error) {
        selection_.left_out.push_back(shown + "/: " + error.what());
      }
    }
  }

  const Options& options_;
  const examples::Progress& progress_;
  Selection selection_;
};

}  // namespace

bool ServiceTakes(TextView name) {
  return name.find_first_of(u"*?\\") == TextView::npos;  // wildcards, and what separates directories here
}

Text NameForService(const std::string& native) {
  Text name = examples::WithSeparator(examples::QualifiedName(native));
  if (!ServiceTakes(WithSlashes(name))) throw std::runtime_error("the file service cannot take the name " + native);
  return name;
}

Selection Select(const Options& options, const examples::Progress& progress) {
  examples::RequireDate("--from", options.from);
  examples::RequireDate("--to", options.to);
  const Text folder = NameForService(options.source);
  if (!Orvix::Global().DirExists(folder)) throw std::runtime_error("there is no directory " + options.source);
  std::error_code ignored;
  if (options.subdirectories && std::filesystem::equivalent(options.source, options.destination, ignored)) {
    throw std::runtime_error("with --subdirectories the destination must be another directory than the source");
  }
  Walk walk(options, progress);
  walk.Into(folder, Text());
  return std::move(walk).Result();
}

std::string TableOf(const Selection& selection) {
  std::vector<Orvix::String> rows;
  for (const File& file : selection.files) rows.push_back(file.row);
  constexpr std::size_t kSizeColumn = 1;
  std::string table;
  for (const std::string& line : examples::TableLines(rows, kCellSeparator, {"Name", "Size", "Date"}, kSizeColumn)) {
    table += line;
  }
  return table;
}

}  // namespace backup
