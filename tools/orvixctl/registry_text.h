// The registry as text: keys and values, a line each.
//
//   Orvix registry 1
//
//   [HKEY_CURRENT_USER\Software\Demo]
//   "Name" = "a text"
//   "Count" = dword:42
//
// Every key and value has exactly one text, which gives it back bit by bit: names
// and texts escape control characters, quotation marks, backslashes and halves of
// surrogate pairs (\n, \r, \t, \", \\, \u1234); a value that its type's own form
// cannot hold is written as bytes.
#ifndef ORVIX_TOOLS_ORVIXCTL_REGISTRY_TEXT_H
#define ORVIX_TOOLS_ORVIXCTL_REGISTRY_TEXT_H

#include <optional>
#include <string>
#include <string_view>

#include "library.h"
#include "quoted.h"

namespace Orvix::ctl {

inline constexpr std::string_view kRegistryTextHeader = "Orvix registry 1";

struct RegistryValue {
  DWORD type = 0;
  std::string data;
};

[[nodiscard]] std::string ValueText(const RegistryValue& value);
// Nothing when the text is no value.
[[nodiscard]] std::optional<RegistryValue> ReadValueText(std::string_view text);
// A text value, as texts are written: with a NUL at its end.
[[nodiscard]] RegistryValue TextValue(TextView text);

// A key from its root on, in brackets; quoted as well where that keeps it on one
// line and apart from the brackets.
[[nodiscard]] std::string KeyText(TextView key);
[[nodiscard]] std::optional<Text> ReadKeyText(std::string_view line);

}  // namespace Orvix::ctl

#endif
