// Identifiers as text, "{BD495FF1-92A6-4A31-A1A1-A38A28B57C24}".
#ifndef ORVIX_PLATFORM_AUTOMATION_GUID_TEXT_H
#define ORVIX_PLATFORM_AUTOMATION_GUID_TEXT_H

#include <optional>

#include "orvix/text.h"

namespace Orvix {

// With braces, hyphens and upper-case digits: 38 characters.
[[nodiscard]] Text GuidText(const GUID& guid);

// The identifier that the text is, digits in either case; nothing for a text of
// any other form.
[[nodiscard]] std::optional<GUID> ParseGuid(TextView text) noexcept;

}  // namespace Orvix

#endif
