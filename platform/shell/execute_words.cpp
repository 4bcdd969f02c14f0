// Splitting a command line the way programs of the platform do it themselves.
#include <algorithm>

#include "platform/shell/execute.h"

namespace Orvix {

std::vector<std::string> WordsOfCommandLine(TextView line) {
  std::vector<std::string> words;
  Text word;
  bool in_word = false;
  bool in_quotes = false;
  const auto finish = [&] {
    if (in_word) words.push_back(ToUtf8(word));
    word.clear();
    in_word = false;
  };
  for (std::size_t at = 0; at < line.size(); ++at) {
    if (!in_quotes && (line[at] == u' ' || line[at] == u'\t')) {
      finish();
      continue;
    }
    in_word = true;
    if (line[at] == u'"') {
      in_quotes = !in_quotes;
      continue;
    }
    if (line[at] != u'\\') {
      word += line[at];
      continue;
    }
    const std::size_t after = std::min(line.find_first_not_of(u'\\', at), line.size());
    const std::size_t backslashes = after - at;
    if (after < line.size() && line[after] == u'"') {
      word.append(backslashes / 2, u'\\');
      if (backslashes % 2 != 0) {
        word += u'"';
        at = after;
      } else {
        at = after - 1;
      }
    } else {
      word.append(backslashes, u'\\');
      at = after - 1;
    }
  }
  finish();
  return words;
}

}  // namespace Orvix
