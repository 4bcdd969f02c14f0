// Reading the command line.
#include "options.h"

namespace catalogue {

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
  bool options_ended = false;
  std::vector<std::string> names;
  for (std::size_t i = 0; i < words.size(); ++i) {
    const std::string& word = words[i];
    const std::size_t equals = word.find('=');
    const bool joined = word.starts_with("--") && equals != std::string::npos;
    const std::string name = joined ? word.substr(0, equals) : word;
    const auto value = [&]() -> std::string {
      if (joined) return word.substr(equals + 1);
      if (i + 1 == words.size()) throw UsageError(name + " needs a value.");
      return words[++i];
    };
    if (options_ended || word == "-" || !word.starts_with("-")) {
      names.push_back(word);
    } else if (word == "--") {
      options_ended = true;
    } else if (word == "--help" || word == "-h") {
      options.help = true;
      return options;
    } else if (name == "--mask") {
      options.mask = value();
      masked = true;
    } else if (name == "--from") {
      options.from = value();
    } else if (name == "--to") {
      options.to = value();
    } else if (name == "--sort") {
      options.order = OrderOf(value());
    } else if (word == "--descending") {
      options.descending = true;
    } else if (word == "--directories") {
      options.directories = true;
    } else if (word == "--hidden") {
      options.hidden = true;
    } else {
      throw UsageError("\"" + word + "\" is no option.");
    }
  }
  if (names.empty()) throw UsageError("a directory is missing.");
  if (names.size() > 1) throw UsageError("\"" + names[1] + "\" is one directory too many.");
  options.directory = names.front();
  if (options.directory.empty()) throw UsageError("the directory's name is empty.");
  if (masked && options.directories) throw UsageError("--mask chooses files: leave it out with --directories.");
  if (options.mask.empty() || options.mask.find_first_of("/\\:") != std::string::npos) {
    throw UsageError("--mask takes a name with * and ?, without a directory, not \"" + options.mask + "\".");
  }
  if (options.descending && options.order == Order::kAsListed) options.order = Order::kName;
  return options;
}

}  // namespace catalogue
