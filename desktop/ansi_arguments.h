// Texts on their way to the platform's narrow functions: NUL-terminated bytes of
// the ANSI code page.
#ifndef ORVIX_DESKTOP_ANSI_ARGUMENTS_H
#define ORVIX_DESKTOP_ANSI_ARGUMENTS_H

#include <cstring>
#include <string>

#include "frame/ansi_text.h"
#include "frame/low_bytes.h"
#include "frame/modErrorCodes.h"
#include "frame/parameters.h"

namespace Orvix::component {

// A caller's own variable, handed over by reference: once the function has been
// called, the variable holds the text as it came through the code page, so that
// what the code page lacks has become the substitute there. Callers rely on it.
template <class Reference>
class AnsiArgument {
 public:
  explicit AnsiArgument(Reference variable) : variable_(variable), bytes_(variable.View().size(), '\0') {
    exact_ = NarrowForCall(variable.View(), bytes_.data());
  }
  [[nodiscard]] const char* get() const { return bytes_.c_str(); }
  void WriteBack() {
    if (!exact_) variable_.Take(Widened(bytes_));
  }

 private:
  Reference variable_;
  std::string bytes_;
  bool exact_;
};

// Bytes in low memory, followed by a NUL, whose address a 32-bit field of a
// packed record carries. Error 7 when low memory is exhausted.
class LowText {
 public:
  explicit LowText(TextView text) : size_(text.size()) {
    if (!bytes_.Resize(size_ + 1)) RaiseRuntimeError(kOutOfMemory);
    NarrowForCall(text, reinterpret_cast<char*>(bytes_.data()));
    bytes_.data()[size_] = 0;
  }
  [[nodiscard]] LONG Address() const { return static_cast<LONG>(reinterpret_cast<std::uintptr_t>(bytes_.data())); }
  // The whole length, as it now is in memory.
  [[nodiscard]] std::string_view View() const { return {reinterpret_cast<const char*>(bytes_.data()), size_}; }

 private:
  LowBytes bytes_;
  std::size_t size_;
};

// A window handle as the platform's functions take it.
[[nodiscard]] inline void* WindowOf(LONG handle) { return reinterpret_cast<void*>(static_cast<std::intptr_t>(handle)); }

}  // namespace Orvix::component

#endif
