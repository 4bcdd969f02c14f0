// Types, defaults and signatures in words, and help for mistyped names.
#ifndef ORVIX_TOOLS_ORVIXCTL_WORDS_H
#define ORVIX_TOOLS_ORVIXCTL_WORDS_H

#include <string>
#include <string_view>
#include <vector>

#include "library.h"

namespace Orvix::ctl {

// Names ignore the case of ASCII letters.
[[nodiscard]] bool SameName(std::string_view left, std::string_view right);

// "{BD495FF1-92A6-4A31-A1A1-A38A28B57C24}"; without braces in IDL.
[[nodiscard]] std::string GuidText(const GUID& guid, bool braces = true);

// "long", "BSTR", "SAFEARRAY(VARIANT)", "enumRGB", "_classString*": without the
// "*" of a by-reference parameter.
[[nodiscard]] std::string TypeText(const Type& type);

// A default as it is written in IDL: -1, "Open file"; with a library, a constant's name
// in place of its number.
[[nodiscard]] std::string DefaultText(const Parameter& parameter, const Library* library);

// "method", "property get", "property put", "property set".
[[nodiscard]] std::string_view KindText(INVOKEKIND kind);

// "BSTR GetElement(BSTR sList, long lIndex, BSTR sSeparator)"; what may be left
// out stands in brackets, with its default.
[[nodiscard]] std::string Signature(const Member& member, const Library* library);

// The text between quotation marks, backslash and quotation mark escaped.
[[nodiscard]] std::string Quoted(std::string_view text);

// " Did you mean X?" for the nearest of `names`, or nothing when none is near.
[[nodiscard]] std::string Suggestion(std::string_view typed, const std::vector<std::string>& names);

}  // namespace Orvix::ctl

#endif
