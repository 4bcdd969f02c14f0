#include "frame/error_styles.h"

#include "frame/modOrvix.h"

namespace Orvix::component {

void ReportError(TextView fixed_text, TextView description) noexcept {
  constexpr UINT kCriticalWithOkButton = 16;
  try {
    Text text;
    text.reserve(fixed_text.size() + 2 + description.size());
    text.append(fixed_text).append(u"\r\n").append(description);
    MessageBoxW(nullptr, text.c_str(), u"Orvix", kCriticalWithOkButton);
  } catch (const std::bad_alloc&) {
    return;  // nothing to report with
  }
}

}  // namespace Orvix::component
