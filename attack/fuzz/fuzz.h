// The bytes of one trial, taken piece by piece.
#ifndef ORVIX_ATTACK_FUZZ_FUZZ_H
#define ORVIX_ATTACK_FUZZ_FUZZ_H

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <string>

#include "orvix/runtime.h"
#include "orvix/text.h"

namespace Orvix::fuzz {

class Input {
 public:
  Input(const std::uint8_t* data, std::size_t size) : at_(data), left_(size) {}

  std::uint8_t Byte() { return left_ == 0 ? 0 : (--left_, *at_++); }
  template <class T>
  T Number() {
    T number{};
    const std::size_t taken = std::min(left_, sizeof number);
    if (taken != 0) std::memcpy(&number, at_, taken);
    at_ += taken;
    left_ -= taken;
    return number;
  }
  // Units up to a zero, or all that are left.
  Text Words() {
    Text text;
    while (left_ > 0) {
      const auto unit = Number<char16_t>();
      if (unit == 0) break;
      text.push_back(unit);
    }
    return text;
  }
  std::string Bytes() {
    std::string bytes(reinterpret_cast<const char*>(at_), left_);
    left_ = 0;
    return bytes;
  }

 private:
  const std::uint8_t* at_;
  std::size_t left_;
};

}  // namespace Orvix::fuzz

#endif
