#include "frame/error_styles.h"

#include "frame/modOrvix.h"

namespace Orvix::component {

void ReportError(TextView fixed_text, TextView description) noexcept {
  constexpr UINT kCriticalWithOkButton = 16;
  const auto show = [](const OLECHAR* text) { MessageBoxW(nullptr, text, u"Orvix", kCriticalWithOkButton); };
  try {
    Text text;
    text.reserve(fixed_text.size() + 2 + description.size());
    text.append(fixed_text).append(u"\r\n").append(description);
    show(text.c_str());
  } catch (const std::bad_alloc&) {
    show(fixed_text.data());
  }
}

}  // namespace Orvix::component
