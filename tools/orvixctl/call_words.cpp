// Splitting a call command line into steps.
#include "call_words.h"

#include <algorithm>

#include "console.h"

namespace Orvix::ctl {

namespace {

bool IsLetter(char c) { return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || c == '_'; }

bool StartsStep(std::string_view word) {
  std::size_t points = 0;
  while (points < word.size() && points < 2 && word[points] == '.') ++points;
  return points > 0 && points < word.size() && IsLetter(word[points]);
}

}  // namespace

Step ParseStep(const Word& word) {
  Step step;
  const std::size_t equals = std::min(word.text.find('='), word.literal_from);
  const bool puts = equals < word.literal_from && equals != std::string::npos;
  step.member = word.text.substr(0, equals);
  if (!puts) return step;
  Word value = word;
  value.text.erase(0, equals + 1);
  if (value.literal_from != std::string::npos) value.literal_from -= equals + 1;
  step.put = std::move(value);
  return step;
}

CallLine ParseCallLine(const std::vector<std::string>& words) {
  CallLine line;
  const std::string& first = words.front();
  // The member may be put: its value may hold points of its own.
  std::string_view target = std::string_view(first).substr(0, first.find('='));
  std::size_t point = target.rfind('.');
  if (point == std::string_view::npos || point == 0 || point + 1 == target.size()) {
    throw UsageError("\"" + first + "\" names no member: type the class, a point and the member, such as " +
                     "classOrvix.GetElement.");
  }
  line.class_name = target.substr(0, point);
  line.steps.push_back(ParseStep(first.substr(point + 1)));
  for (std::size_t i = 1; i < words.size(); ++i) {
    std::string_view word = words[i];
    if (!StartsStep(word)) {
      line.steps.back().arguments.emplace_back(std::string(word));
      continue;
    }
    const bool on_result = word[1] == '.';
    word.remove_prefix(on_result ? 2 : 1);
    line.steps.push_back(ParseStep(std::string(word)));
    line.steps.back().on_result = on_result;
  }
  return line;
}

std::string Unescaped(const Word& word, std::size_t start) {
  const std::string_view argument = std::string_view(word.text).substr(start);
  std::size_t backslashes = 0;
  while (backslashes < argument.size() && argument[backslashes] == '\\') ++backslashes;
  const std::string_view rest = argument.substr(backslashes);
  const bool special = rest == kLeftOut || rest == kVariable || StartsStep(rest) || rest.starts_with('$');
  const bool escaped = word.literal_from > start && backslashes > 0 && special;
  return std::string(argument.substr(escaped ? 1 : 0));
}

}  // namespace Orvix::ctl
