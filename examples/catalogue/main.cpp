// catalogue: a directory as a table. A small program written on orvix.hpp; read
// listing.cpp for how the classes are used.
#include <algorithm>
#include <cstdio>
#include <string>
#include <vector>

#include "../shared/names.h"
#include "../shared/program.h"
#include "listing.h"
#include "options.h"

namespace {

using examples::Count;

std::string Joined(const std::vector<std::string>& lines) {
  std::string text;
  for (const std::string& line : lines) text += line;
  return text;
}

std::string Summary(std::size_t count, const catalogue::Options& options) {
  return (options.directories ? Count(count, "directory", "directories") : Count(count, "file", "files")) + "\n";
}

// The file is written in the ANSI code page. What that cannot hold is a "?"
// there, and the person who reads the table later should know.
void Store(const std::vector<std::string>& lines, const std::string& summary, const std::string& file) {
  const Orvix::Filename name(examples::QualifiedName(file));
  Orvix::Global().StoreData(name, Joined(lines) + summary);
  const auto lossy = static_cast<std::size_t>(std::ranges::count_if(
      lines, [](const std::string& line) { return !examples::FitsCodePage(Orvix::FromUtf8(line)); }));
  if (lossy == 0) return;
  std::fprintf(stderr, "catalogue: %s characters that %s cannot hold; they are \"?\" there.\n",
               Count(lossy, "row has", "rows have").c_str(), file.c_str());
}

int Run(const catalogue::Options& options) {
  CoInitialize(nullptr);
  examples::Stages stages;
  const auto progress = [&](const std::string& stage) { stages.Show(stage); };
  const std::vector<Orvix::String> rows = catalogue::ReadRows(options, progress);
  const std::string summary = Summary(rows.size(), options);
  stages.Show("laying out");
  const bool store = !options.output.empty();
  std::vector<std::string> lines;
  if (!rows.empty()) {
    lines = catalogue::TableOf(rows, store ? examples::WidthIn::kUnits : examples::WidthIn::kCharacters);
  }
  stages.Show(store ? "writing " + options.output : "printing");
  if (!store) {
    stages.Clear();
    return examples::Print("catalogue", Joined(lines) + summary);
  }
  Store(lines, summary, options.output);
  return examples::kDone;
}

}  // namespace

int main(int argc, char** argv) {
  CLI::App app("Lists a directory as a table of names, extensions, sizes and dates.", "catalogue");
  catalogue::Options options;
  catalogue::AddOptions(app, options);
  return examples::RunMain(app, argc, argv, [&] { return Run(options); });
}
