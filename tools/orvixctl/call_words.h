// The words of a call command line as steps: which member, put or not, with
// which arguments.
#ifndef ORVIX_TOOLS_ORVIXCTL_CALL_WORDS_H
#define ORVIX_TOOLS_ORVIXCTL_CALL_WORDS_H

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace Orvix::ctl {

struct Step {
  std::string member;
  bool on_result = false;          // on the object that the step before returned
  std::optional<std::string> put;  // the value for a property
  std::vector<std::string> arguments;
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

// The text of an argument: one backslash in front of "_", "@" or ".", which
// keeps the word from its meaning, is taken away.
[[nodiscard]] std::string Unescaped(std::string_view argument);

}  // namespace Orvix::ctl

#endif
