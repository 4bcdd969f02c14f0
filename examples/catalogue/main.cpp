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

constexpr UINT kUtf8 = 65001;

std::string Joined(const std::vector<std::string>& lines) {
  std::string text;
  for (const std::string& line : lines) text += line;
  return text;
}

std::string Summary(std::size_t count, const catalogue::Options& options) {
  return (options.directories ? Count(count, "directory", "directories") : Count(count, "file", "files")) + "\n";
}

void Store(const std::vector<std::string>& lines, const std::string& summary, const std::string& file) {
  const Orvix::Filename name(examples::QualifiedName(file));
  Orvix::Global().StoreData(name, Joined(lines) + summary);
}

int Run(const catalogue::Options& options) {
  CoInitialize(nullptr);
  Orvix::Check(OxSetFileText(kUtf8));
  examples::Stages stages;
  const auto progress = [&](const std::string& stage) { stages.Show(stage); };
  const std::vector<Orvix::String> rows = catalogue::ReadRows(options, progress);
  const std::string summary = Summary(rows.size(), options);
  stages.Show("laying out");
  const bool store = !options.output.empty();
  std::vector<std::string> lines;
  if (!rows.empty()) {
    lines = catalogue::TableOf(rows);
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
