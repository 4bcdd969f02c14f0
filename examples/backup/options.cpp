// Reading the command line.
#include "options.h"

#include "../shared/command_line.h"

namespace backup {

using examples::CommandLine;
using examples::UsageError;

Options ParseOptions(const std::vector<std::string>& words) {
  Options options;
  std::vector<std::string> names;
  for (CommandLine line(words); line.Next();) {
    if (line.IsName()) {
      names.push_back(line.Word());
    } else if (line.Is("--help") || line.Is("-h")) {
      options.help = true;
      return options;
    } else if (line.Takes("--mask")) {
      options.mask = line.Value();
    } else if (line.Takes("--from")) {
      options.from = line.Value();
    } else if (line.Takes("--to")) {
      options.to = line.Value();
    } else if (line.Is("--subdirectories")) {
      options.subdirectories = true;
    } else if (line.Is("--hidden")) {
      options.hidden = true;
    } else if (line.Is("--dry-run")) {
      options.dry_run = true;
    } else {
      line.Refuse();
    }
  }
  if (names.empty()) throw UsageError("the source and the destination are missing.");
  if (names.size() == 1) throw UsageError("the destination is missing.");
  if (names.size() > 2) throw UsageError("\"" + names[2] + "\" is one name too many.");
  options.source = names[0];
  options.destination = names[1];
  if (options.source.empty()) throw UsageError("the source's name is empty.");
  if (options.destination.empty()) throw UsageError("the destination's name is empty.");
  examples::RequireMask(options.mask);
  return options;
}

}  // namespace backup
