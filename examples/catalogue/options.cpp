// Reading the command line.
#include "options.h"

#include "../shared/command_line.h"

namespace catalogue {

using examples::CommandLine;
using examples::UsageError;

namespace {

Order OrderOf(const std::string& word) {
  if (word == "name") return Order::kName;
  if (word == "date") return Order::kDate;
  throw UsageError("--sort takes name or date, not \"" + word + "\".");
}

}  // namespace

Options ParseOptions(const std::vector<std::string>& words) {
  Options options;
  bool masked = false;
  bool stored = false;
  std::vector<std::string> names;
  for (CommandLine line(words); line.Next();) {
    if (line.IsName()) {
      names.push_back(line.Word());
    } else if (line.Is("--help") || line.Is("-h")) {
      options.help = true;
      return options;
    } else if (line.Takes("--mask")) {
      options.mask = line.Value();
      masked = true;
    } else if (line.Takes("--from")) {
      options.from = line.Value();
    } else if (line.Takes("--to")) {
      options.to = line.Value();
    } else if (line.Takes("--output")) {
      options.output = line.Value();
      stored = true;
    } else if (line.Takes("--sort")) {
      options.order = OrderOf(line.Value());
    } else if (line.Is("--descending")) {
      options.descending = true;
    } else if (line.Is("--directories")) {
      options.directories = true;
    } else if (line.Is("--hidden")) {
      options.hidden = true;
    } else {
      line.Refuse();
    }
  }
  if (names.empty()) throw UsageError("a directory is missing.");
  if (names.size() > 1) throw UsageError("\"" + names[1] + "\" is one directory too many.");
  options.directory = names.front();
  if (options.directory.empty()) throw UsageError("the directory's name is empty.");
  if (masked && options.directories) throw UsageError("--mask chooses files: leave it out with --directories.");
  examples::RequireMask(options.mask);
  if (stored && (options.output.empty() || options.output.ends_with('/'))) {
    throw UsageError("--output takes the name of a file, not \"" + options.output + "\".");
  }
  if (options.descending && options.order == Order::kAsListed) options.order = Order::kName;
  return options;
}

}  // namespace catalogue
