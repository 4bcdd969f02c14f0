// Decimal arithmetic on digits and on 192-bit integers, the room that a DECIMAL
// takes when its scale is raised by 28.
#include "platform/automation/decimal.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>

namespace Orvix {
namespace {

constexpr int kMostScale = 28;
constexpr std::uint8_t kNegative = 0x80;
constexpr int kCurrencyScale = 4;

class WideNumber {
 public:
  WideNumber() = default;
  explicit WideNumber(const DECIMAL& decimal)
      : limbs_{static_cast<std::uint32_t>(decimal.Lo64), static_cast<std::uint32_t>(decimal.Lo64 >> 32), decimal.Hi32} {
  }

  void MultiplyAdd(std::uint32_t factor, std::uint32_t addend) {
    std::uint64_t carry = addend;
    for (std::uint32_t& limb : limbs_) {
      carry += std::uint64_t{limb} * factor;
      limb = static_cast<std::uint32_t>(carry);
      carry >>= 32;
    }
  }

  // Leaves the quotient, gives the remainder.
  std::uint32_t Divide(std::uint32_t divisor) {
    std::uint64_t rest = 0;
    for (auto limb = limbs_.rbegin(); limb != limbs_.rend(); ++limb) {
      rest = rest << 32 | *limb;
      *limb = static_cast<std::uint32_t>(rest / divisor);
      rest %= divisor;
    }
    return static_cast<std::uint32_t>(rest);
  }

  bool FitsLimbs(std::size_t count) const {
    return std::all_of(limbs_.begin() + static_cast<std::ptrdiff_t>(count), limbs_.end(),
                       [](std::uint32_t limb) { return limb == 0; });
  }
  bool IsZero() const { return FitsLimbs(0); }
  std::uint64_t Low64() const { return std::uint64_t{limbs_[1]} << 32 | limbs_[0]; }
  std::uint32_t High32() const { return limbs_[2]; }

  int Compare(const WideNumber& other) const {
    for (std::size_t i = limbs_.size(); i-- > 0;) {
      if (limbs_[i] != other.limbs_[i]) return limbs_[i] < other.limbs_[i] ? -1 : 1;
    }
    return 0;
  }

 private:
  std::array<std::uint32_t, 6> limbs_{};  // lowest first
};

constexpr std::size_t kDecimalLimbs = 3;
constexpr std::size_t kIntegerLimbs = 2;

// The first `kept` digits as an integer, rounded half to even by those after
// them; false when it does not fit into `limbs` limbs.
bool RoundDigits(const std::string& digits, std::int64_t kept, std::size_t limbs, WideNumber* wide) {
  constexpr std::int64_t kMostDigits = 30;  // beyond 96 bits for sure
  *wide = WideNumber();
  if (digits.empty() || kept < 0) return true;
  if (kept > kMostDigits) return false;
  const auto length = static_cast<std::int64_t>(digits.size());
  for (std::int64_t i = 0; i < kept; ++i) {
    const char digit = i < length ? digits[static_cast<std::size_t>(i)] : '0';
    wide->MultiplyAdd(10, static_cast<std::uint32_t>(digit - '0'));
  }
  if (kept < length) {
    const auto first = static_cast<std::size_t>(kept);
    const bool odd = kept > 0 && (digits[first - 1] - '0') % 2 != 0;
    const bool rest = digits.find_first_not_of('0', first + 1) != std::string::npos;
    if (digits[first] > '5' || (digits[first] == '5' && (rest || odd))) wide->MultiplyAdd(1, 1);
  }
  return wide->FitsLimbs(limbs);
}

template <class Fraction>
HRESULT ToBinary(const DecimalDigits& number, Fraction* value) {
  // Past these the number is out of every range, and the exponent stays small.
  constexpr std::int64_t kOutOfRange = 400;
  *value = 0;
  if (number.digits.empty() || number.point < -kOutOfRange) return S_OK;
  if (number.point > kOutOfRange) return DISP_E_OVERFLOW;
  std::string text = "0." + number.digits + "e" + std::to_string(number.point);
  Fraction parsed = 0;
  const auto read = std::from_chars(text.data(), text.data() + text.size(), parsed);
  if (read.ec == std::errc::result_out_of_range) {
    if (number.point > 0) return DISP_E_OVERFLOW;
    return S_OK;
  }
  if (std::isinf(parsed)) return DISP_E_OVERFLOW;
  *value = number.negative ? -parsed : parsed;
  return S_OK;
}

bool IsValid(const DECIMAL& decimal) {
  return decimal.scale <= kMostScale && (decimal.sign == 0 || decimal.sign == kNegative);
}

}  // namespace

HRESULT RoundToInteger(const DecimalDigits& number, int scale, SignedMagnitude* integer) {
  WideNumber wide;
  if (!RoundDigits(number.digits, number.point + scale, kIntegerLimbs, &wide)) return DISP_E_OVERFLOW;
  *integer = {number.negative && !wide.IsZero(), wide.Low64()};
  return S_OK;
}

HRESULT ToDecimal(const DecimalDigits& number, DECIMAL* decimal) {
  const std::int64_t decimals = static_cast<std::int64_t>(number.digits.size()) - number.point;
  auto scale = static_cast<int>(std::clamp<std::int64_t>(decimals, 0, kMostScale));
  WideNumber wide;
  while (!RoundDigits(number.digits, number.point + scale, kDecimalLimbs, &wide)) {
    if (--scale < 0) return DISP_E_OVERFLOW;
  }
  const bool negative = number.negative && !wide.IsZero();
  *decimal = {0, static_cast<std::uint8_t>(scale), negative ? kNegative : std::uint8_t{0}, wide.High32(), wide.Low64()};
  return S_OK;
}

HRESULT ToDouble(const DecimalDigits& number, double* value) { return ToBinary(number, value); }

HRESULT ToSingle(const DecimalDigits& number, float* value) { return ToBinary(number, value); }

std::string PlainText(const DecimalDigits& number) {
  if (number.digits.empty()) return "0";
  std::string text = number.negative ? "-" : "";
  const auto length = static_cast<std::int64_t>(number.digits.size());
  if (number.point <= 0) {
    text += "0." + std::string(static_cast<std::size_t>(-number.point), '0') + number.digits;
  } else if (number.point >= length) {
    return text + number.digits + std::string(static_cast<std::size_t>(number.point - length), '0');
  } else {
    const auto whole = static_cast<std::size_t>(number.point);
    text += number.digits.substr(0, whole) + "." + number.digits.substr(whole);
  }
  text.erase(text.find_last_not_of('0') + 1);
  if (text.back() == '.') text.pop_back();
  return text;
}

HRESULT DigitsOf(const DECIMAL& decimal, DecimalDigits* number) {
  if (!IsValid(decimal)) return E_INVALIDARG;
  DecimalDigits digits;
  for (WideNumber rest(decimal); !rest.IsZero();) digits.digits.push_back(static_cast<char>('0' + rest.Divide(10)));
  std::ranges::reverse(digits.digits);
  if (!digits.digits.empty()) {
    digits.negative = decimal.sign == kNegative;
    digits.point = static_cast<std::int64_t>(digits.digits.size()) - decimal.scale;
  }
  *number = std::move(digits);
  return S_OK;
}

DECIMAL DecimalOf(SignedMagnitude integer, int scale) noexcept {
  return {0, static_cast<std::uint8_t>(scale), integer.negative ? kNegative : std::uint8_t{0}, 0, integer.magnitude};
}

DECIMAL DecimalOf(CY currency) noexcept {
  const bool negative = currency.int64 < 0;
  const auto bits = static_cast<std::uint64_t>(currency.int64);
  return DecimalOf(SignedMagnitude{negative, negative ? 0 - bits : bits}, kCurrencyScale);
}

HRESULT CompareDecimals(const DECIMAL& left, const DECIMAL& right, int* order) noexcept {
  if (!IsValid(left) || !IsValid(right)) return E_INVALIDARG;
  WideNumber wide_left(left);
  WideNumber wide_right(right);
  const bool left_negative = left.sign == kNegative && !wide_left.IsZero();
  const bool right_negative = right.sign == kNegative && !wide_right.IsZero();
  if (left_negative != right_negative) {
    *order = left_negative ? -1 : 1;
    return S_OK;
  }
  for (int scale = left.scale; scale < right.scale; ++scale) wide_left.MultiplyAdd(10, 0);
  for (int scale = right.scale; scale < left.scale; ++scale) wide_right.MultiplyAdd(10, 0);
  const int sizes = wide_left.Compare(wide_right);
  *order = left_negative ? -sizes : sizes;
  return S_OK;
}

}  // namespace Orvix
