// The numbers in a kernel's release text.
#ifndef ORVIX_PLATFORM_SYSTEM_VERSION_H
#define ORVIX_PLATFORM_SYSTEM_VERSION_H

#include <algorithm>
#include <array>
#include <string_view>

#include "orvix/automation.h"

namespace Orvix {

// The first three numbers of a release such as "6.1.0-18-amd64"; 0 for those
// that are not there, the largest DWORD for one that does not fit.
[[nodiscard]] constexpr std::array<DWORD, 3> NumbersOfRelease(std::string_view release) {
  constexpr std::uint64_t kLargest = 0xFFFFFFFF;
  std::array<DWORD, 3> numbers{};
  std::size_t at = 0;
  for (DWORD& number : numbers) {
    const auto is_digit = [&] { return release[at] >= '0' && release[at] <= '9'; };
    while (at < release.size() && !is_digit()) ++at;
    std::uint64_t value = 0;
    for (; at < release.size() && is_digit(); ++at) {
      value = std::min(value * 10 + static_cast<std::uint64_t>(release[at] - '0'), kLargest);
    }
    number = static_cast<DWORD>(value);
  }
  return numbers;
}

}  // namespace Orvix

#endif
