// Texts at the edge: String owns a BSTR, TextArgument turns any C++ text into
// one for the length of a call. `char` text is UTF-8.
#ifndef ORVIX_WRAPPER_TEXT_HPP
#define ORVIX_WRAPPER_TEXT_HPP

#include <concepts>
#include <cstddef>
#include <new>
#include <ostream>
#include <string>
#include <string_view>
#include <utility>

#include "orvix/text.h"

namespace Orvix {

template <class T>
concept Utf16Text = std::convertible_to<const T&, TextView>;
template <class T>
concept Utf8Text = std::convertible_to<const T&, std::string_view>;
template <class T>
concept AnyText = !std::same_as<T, std::nullptr_t> && (Utf16Text<T> || Utf8Text<T>);

namespace wrapper_detail {
inline BSTR MakeBstr(TextView text) {
  BSTR made = NewBstr(text);
  if (made == nullptr) throw std::bad_alloc();
  return made;
}
template <AnyText T>
BSTR MakeBstrOf(const T& text) {
  if constexpr (Utf16Text<T>) {
    return MakeBstr(text);
  } else {
    return MakeBstr(FromUtf8(text));
  }
}
}  // namespace wrapper_detail

// A text that a member returned or that is kept for several calls. Embedded
// NULs count. It reads as a UTF-16 view and prints as UTF-8.
class String {
 public:
  String() noexcept = default;
  template <AnyText T>
  requires(!std::same_as<T, String>) String(const T& text)  // NOLINT(google-explicit-constructor): a text is a text
      : text_(wrapper_detail::MakeBstrOf(text)) {}
  String(const String& other) : text_(other.text_ == nullptr ? nullptr : wrapper_detail::MakeBstr(other.View())) {}
  String(String&& other) noexcept : text_(std::exchange(other.text_, nullptr)) {}
  String& operator=(String other) noexcept {
    std::swap(text_, other.text_);
    return *this;
  }
  ~String() { SysFreeString(text_); }

  // Takes over a BSTR that the caller owns.
  [[nodiscard]] static String Adopt(BSTR text) noexcept {
    String owner;
    owner.text_ = text;
    return owner;
  }

  [[nodiscard]] TextView View() const noexcept { return ViewOf(text_); }
  operator TextView() const noexcept { return View(); }  // NOLINT(google-explicit-constructor)
  [[nodiscard]] std::string Utf8() const { return ToUtf8(View()); }
  [[nodiscard]] std::size_t Size() const noexcept { return View().size(); }  // code units
  [[nodiscard]] bool IsEmpty() const noexcept { return Size() == 0; }

  [[nodiscard]] BSTR get() const noexcept { return text_; }
  [[nodiscard]] BSTR Detach() noexcept { return std::exchange(text_, nullptr); }
  // The place for a result; what was held is freed first.
  [[nodiscard]] BSTR* Receive() noexcept {
    SysFreeString(Detach());
    return &text_;
  }
  // The variable itself, for a by-reference argument that reads and writes it.
  [[nodiscard]] BSTR* Reference() noexcept { return &text_; }

  template <AnyText T>
  friend bool operator==(const String& left, const T& right) {
    if constexpr (Utf16Text<T>) {
      return left.View() == TextView(right);
    } else {
      return left.View() == TextView(FromUtf8(right));
    }
  }
  friend std::ostream& operator<<(std::ostream& out, const String& text) { return out << text.Utf8(); }

 private:
  BSTR text_ = nullptr;
};

// A text on its way into a call: a String is borrowed, everything else copied
// into a BSTR of the platform.
class TextArgument {
 public:
  template <AnyText T>
  TextArgument(const T& text) {  // NOLINT(google-explicit-constructor): every text is an argument
    if constexpr (std::same_as<T, String>) {
      borrowed_ = text.get();
    } else {
      owned_ = text;
    }
  }

  [[nodiscard]] BSTR get() const noexcept { return borrowed_ != nullptr ? borrowed_ : owned_.get(); }
  // A variable that the member may replace: the caller's String stays as it is.
  [[nodiscard]] BSTR* Reference() {
    if (borrowed_ != nullptr) owned_ = ViewOf(std::exchange(borrowed_, nullptr));
    return owned_.Reference();
  }

 private:
  BSTR borrowed_ = nullptr;
  String owned_;
};

}  // namespace Orvix

#endif
