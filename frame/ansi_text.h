// Texts of arguments, and their way through the ANSI code page: one byte per
// UTF-16 unit, both ways.
#ifndef ORVIX_FRAME_ANSI_TEXT_H
#define ORVIX_FRAME_ANSI_TEXT_H

#include <string>
#include <string_view>

#include "frame/com_ptr.h"
#include "frame/error.h"

namespace Orvix::component {

// Writes text.size() bytes. False when a unit that the code page lacks became
// the substitute.
bool Narrow(TextView text, BYTE* bytes) noexcept;
// For the platform's narrow functions: converted in place and by the platform, which
// then knows what stands behind each substitute. True when nothing was substituted.
bool NarrowForCall(TextView text, char* bytes);
[[nodiscard]] std::string Narrowed(TextView text);
// Every byte has a unit, so nothing is lost.
[[nodiscard]] BstrHandle Widened(std::string_view bytes);

// `value` behind references to a VARIANT.
[[nodiscard]] const VARIANT& Followed(const VARIANT& value);

// The text form of a value, borrowed where it is a text already. Error 94 for
// Null, 13 for a value without a text form, or what an object's default member
// raises.
class ArgumentText {
 public:
  explicit ArgumentText(const VARIANT& value) {
    if (value.vt == VT_BSTR) {
      view_ = ViewOf(value.bstrVal);
      return;
    }
    CheckConversion(OxTextOf(&value, owned_.Receive()));
    view_ = owned_.View();
  }
  [[nodiscard]] TextView View() const { return view_; }
  [[nodiscard]] LONG Size() const { return static_cast<LONG>(view_.size()); }

 private:
  BstrHandle owned_;
  TextView view_;
};

}  // namespace Orvix::component

#endif
