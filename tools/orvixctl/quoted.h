// Texts between quotation marks, which keep every code unit on one line of UTF-8.
#ifndef ORVIX_TOOLS_ORVIXCTL_QUOTED_H
#define ORVIX_TOOLS_ORVIXCTL_QUOTED_H

#include <optional>
#include <string>
#include <string_view>

#include "orvix/text.h"

namespace Orvix::ctl {

// Whether the unit at `at` is a control character or half of a surrogate pair.
[[nodiscard]] bool NeedsEscape(TextView text, std::size_t at);
// Four of them.
[[nodiscard]] std::string HexDigits(char16_t unit);

// With JSON's escapes: \n, \", \\, \u1234 and so on.
[[nodiscard]] std::string QuotedText(TextView text);
// Takes a quoted text off the front of `*line`; nothing when it is none.
[[nodiscard]] std::optional<Text> TakeQuoted(std::string_view* line);

}  // namespace Orvix::ctl

#endif
