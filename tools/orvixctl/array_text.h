// Arrays as they are typed: [1, 2.5, "text", true, bare words].
#ifndef ORVIX_TOOLS_ORVIXCTL_ARRAY_TEXT_H
#define ORVIX_TOOLS_ORVIXCTL_ARRAY_TEXT_H

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace Orvix::ctl {

struct ArrayItem {
  std::string text;     // without quotation marks, escapes resolved; an inner array as typed
  bool quoted = false;  // stood in quotation marks, so it is a text whatever it says
};

// The elements between the outer brackets; nothing when brackets, quotation
// marks or commas do not fit. Escapes in quotation marks are JSON's.
[[nodiscard]] std::optional<std::vector<ArrayItem>> ParseArray(std::string_view text);

}  // namespace Orvix::ctl

#endif
