// The words of a call command line as steps: which member, put or not, with
// which arguments.
#ifndef ORVIX_TOOLS_ORVIXCTL_CALL_WORDS_H
#define ORVIX_TOOLS_ORVIXCTL_CALL_WORDS_H

#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "orvix/orvix.hpp"

namespace Orvix::ctl {

// A word of a line. What a shell has quoted cannot be told from what it has not;
// a script's quotation marks are kept as the place where the literal text begins.
struct Word {
  Word() = default;
  Word(std::string its_text) : text(std::move(its_text)) {}

  std::string text;
  std::size_t literal_from = std::string::npos;  // nothing has a meaning of its own from here on
  std::string variable;                          // of a script: what the argument stands for
  std::optional<Value> value;                    // what it holds; an empty one without
};

struct Step {
  std::string member;
  bool on_result = false;   // on the object that the step before returned
  std::optional<Word> put;  // the value for a property
  std::vector<Word> arguments;
};
struct CallLine {
  std::string class_name;
  std::vector<Step> steps;
};

// An argument with a meaning of its own.
inline constexpr std::string_view kLeftOut = "_";   // not given
inline constexpr std::string_view kVariable = "@";  // an empty variable, shown afterwards

// classX.Member[=VALUE] [ARGUMENT...] { .Member[=VALUE] | ..Member } ...
// A word of a point and a letter starts the next step. UsageError when the first
// word names no member.
[[nodiscard]] CallLine ParseCallLine(const std::vector<std::string>& words);

// What stands behind the equals sign of a first word is its put.
[[nodiscard]] Step ParseStep(const Word& word);

// The text of the word from `start` on: one backslash in front of "_", "@", "$" or a
// point and a letter, which keeps the word from its meaning, is taken away where it
// is not literal.
[[nodiscard]] std::string Unescaped(const Word& word, std::size_t start = 0);

}  // namespace Orvix::ctl

#endif
