#include "platform/dialogs/chooser_programs.h"

#include <algorithm>

namespace Orvix {
namespace {

// What a program shows must be UTF-8 and one line. Ends at the first NUL, as an
// argument does.
std::string ShownText(TextView text) {
  Text shown(text.substr(0, text.find(u'\0')));
  for (std::size_t at = 0; at < shown.size(); ++at) {
    if (text_detail::IsHigh(shown[at]) && at + 1 < shown.size() && text_detail::IsLow(shown[at + 1])) {
      ++at;
    } else if ((shown[at] & 0xF800) == 0xD800) {
      shown[at] = u'\xFFFD';
    } else if (shown[at] < 0x20 || (shown[at] >= 0x7F && shown[at] <= 0x9F)) {
      shown[at] = u' ';
    }
  }
  return ToUtf8(shown);
}

std::string_view Trimmed(std::string_view text) {
  const std::size_t first = text.find_first_not_of(' ');
  if (first == std::string_view::npos) return {};
  return text.substr(first, text.find_last_not_of(' ') - first + 1);
}

// The single patterns. Every name has an extension where "*.*" comes from, so
// it means all files. The programs part patterns at spaces: any one character
// stands for a space inside.
std::vector<std::string> PatternsOf(TextView text) {
  std::vector<std::string> patterns;
  const std::string list = ShownText(text);
  for (std::string_view rest = list; !rest.empty();) {
    const std::string_view part = rest.substr(0, rest.find(';'));
    rest.remove_prefix(std::min(rest.size(), part.size() + 1));
    std::string pattern(Trimmed(part));
    if (pattern.empty()) continue;
    if (pattern == "*.*") pattern = "*";
    std::ranges::replace(pattern, ' ', '?');
    patterns.push_back(std::move(pattern));
  }
  return patterns;
}

std::string Joined(const std::vector<std::string>& parts) {
  std::string joined;
  for (const std::string& part : parts) {
    if (!joined.empty()) joined += ' ';
    joined += part;
  }
  return joined;
}

bool IsLetter(char byte) { return (byte >= 'a' && byte <= 'z') || (byte >= 'A' && byte <= 'Z'); }

// "*.txt" as "*.[tT][xX][tT]": callers' patterns match without regard to case.
// Brackets of the caller's are characters, not sets.
std::string InEitherCase(std::string_view pattern) {
  std::string either;
  for (const char byte : pattern) {
    if (IsLetter(byte)) {
      either += {'[', static_cast<char>(byte | 0x20), static_cast<char>(byte & ~0x20), ']'};
    } else if (byte == '[') {
      either += "[[]";
    } else {
      either += byte;
    }
  }
  return either;
}

std::string DescriptionOf(const FileFilter& filter) {
  std::string description = ShownText(filter.description);
  if (Trimmed(description).empty()) description = ShownText(filter.patterns);
  // It parts a description from its patterns, or one filter from the next.
  std::ranges::replace(description, '|', ' ');
  return std::string(Trimmed(description));
}

void AddTitle(const ChooserRequest& request, std::vector<std::string>& arguments) {
  const std::string title = ShownText(request.title);
  if (!title.empty()) arguments.push_back("--title=" + title);
}

void AddOwner(const ChooserRequest& request, std::vector<std::string>& arguments) {
  if (request.owner > 0) arguments.push_back("--attach=" + std::to_string(request.owner));
}

std::vector<std::string> ZenityArguments(const ChooserRequest& request) {
  std::vector<std::string> arguments{"--file-selection"};
  AddTitle(request, arguments);
  AddOwner(request, arguments);
  if (request.owner > 0) arguments.emplace_back("--modal");
  arguments.push_back("--filename=" + request.start);
  if (request.save) {
    arguments.emplace_back("--save");
    if (request.ask_overwrite) arguments.emplace_back("--confirm-overwrite");
  } else if (request.multiple) {
    // Names are absolute and hold no empty component, so "//" is seen between
    // two of them and nowhere else. No other character is barred from names.
    arguments.emplace_back("--multiple");
    arguments.emplace_back("--separator=/");
  }
  for (const FileFilter& filter : request.filters) {
    std::vector<std::string> patterns = PatternsOf(filter.patterns);
    if (patterns.empty()) continue;
    std::ranges::transform(patterns, patterns.begin(), InEitherCase);
    arguments.push_back("--file-filter=" + DescriptionOf(filter) + " | " + Joined(patterns));
  }
  return arguments;
}

// Without the line's end, which a program need not write.
std::string_view OneLine(std::string_view output) {
  if (output.ends_with('\n')) output.remove_suffix(1);
  return output;
}

std::vector<std::string> ZenityNames(std::string_view output, bool multiple) {
  output = OneLine(output);
  std::vector<std::string> names;
  while (multiple) {
    const std::size_t between = output.find("//");
    if (between == std::string_view::npos) break;
    names.emplace_back(output.substr(0, between));
    output.remove_prefix(between + 1);
  }
  names.emplace_back(output);
  return names;
}

// "Text files (*.txt *.doc)". A description often lists the patterns itself.
std::string KdialogFilter(const FileFilter& filter) {
  const std::vector<std::string> patterns = PatternsOf(filter.patterns);
  if (patterns.empty()) return {};
  std::string description = DescriptionOf(filter);
  const std::string own = "(" + ShownText(filter.patterns) + ")";
  if (description.ends_with(own)) description = Trimmed(description.substr(0, description.size() - own.size()));
  if (!description.empty()) description += ' ';
  return description + "(" + Joined(patterns) + ")";
}

std::vector<std::string> KdialogArguments(const ChooserRequest& request) {
  std::vector<std::string> arguments{request.save ? "--getsavefilename" : "--getopenfilename"};
  AddTitle(request, arguments);
  AddOwner(request, arguments);
  if (request.multiple && !request.save) {
    arguments.emplace_back("--multiple");
    arguments.emplace_back("--separate-output");
  }
  arguments.emplace_back("--");
  arguments.push_back(request.start);
  std::string filters;
  for (const FileFilter& filter : request.filters) {
    const std::string one = KdialogFilter(filter);
    if (one.empty()) continue;
    if (!filters.empty()) filters += '|';
    filters += one;
  }
  // The program's toolkit looks for options of its own behind the "--" as well.
  if (filters.starts_with('-')) filters.insert(filters.begin(), ' ');
  if (!filters.empty()) arguments.push_back(std::move(filters));
  return arguments;
}

// One name a line. A line that does not start at the root goes on with the name
// before it, which then holds the line's end.
std::vector<std::string> KdialogNames(std::string_view output, bool multiple) {
  output = OneLine(output);
  std::vector<std::string> names;
  while (multiple) {
    const std::size_t between = output.find("\n/");
    if (between == std::string_view::npos) break;
    names.emplace_back(output.substr(0, between));
    output.remove_prefix(between + 1);
  }
  names.emplace_back(output);
  return names;
}

}  // namespace

const ChooserProgram kZenity{"zenity", &ZenityArguments, &ZenityNames};
const ChooserProgram kKdialog{"kdialog", &KdialogArguments, &KdialogNames};

}  // namespace Orvix
