// Numbers from text and to text.
#include "platform/automation/number_text.h"

#include <algorithm>
#include <charconv>
#include <cmath>

#include "platform/automation/text_scan.h"

namespace Orvix {
namespace {

class NumberReader {
 public:
  explicit NumberReader(TextView text) : text_(text) {}

  bool Read(ParsedNumber* number) {
    SkipSpaces();
    if (Peek() == u'&') return ReadBits(number) && AtEndAfterSpaces();
    if (!ReadPrefix() || !ReadDecimal(&number->decimal) || !ReadSuffix()) return false;
    number->decimal.negative = negative_ && !number->decimal.digits.empty();
    return true;
  }

 private:
  char16_t Peek() const { return at_ < text_.size() ? text_[at_] : u'\0'; }
  bool AtEnd() const { return at_ == text_.size(); }
  void SkipSpaces() {
    while (!AtEnd() && IsSpace(text_[at_])) ++at_;
  }
  bool AtEndAfterSpaces() {
    SkipSpaces();
    return AtEnd();
  }

  bool TakeSign() {
    if (signed_ || parentheses_) return false;
    signed_ = true;
    negative_ = Peek() == u'-';
    return true;
  }

  // Sign, "$" and "(", each at most once and in any order.
  bool ReadPrefix() {
    bool dollar = false;
    for (;; SkipSpaces()) {
      const char16_t unit = Peek();
      if (unit == u'+' || unit == u'-') {
        if (!TakeSign()) return false;
      } else if (unit == u'$') {
        if (dollar) return false;
        dollar = true;
      } else if (unit == u'(') {
        if (signed_ || parentheses_) return false;
        parentheses_ = true;
        negative_ = true;
      } else {
        return true;
      }
      ++at_;
    }
  }

  // Spaces, one sign when there was none before, any number of "$", and the
  // closing parenthesis.
  bool ReadSuffix() {
    bool closed = false;
    for (;; ++at_) {
      SkipSpaces();
      if (AtEnd()) return closed == parentheses_;
      const char16_t unit = Peek();
      if (unit == u'+' || unit == u'-') {
        if (!TakeSign()) return false;
      } else if (unit == u')') {
        if (!parentheses_ || closed) return false;
        closed = true;
      } else if (unit != u'$') {
        return false;
      }
    }
  }

  bool ReadDecimal(DecimalDigits* number) {
    bool any = false;
    for (;; ++at_) {
      const char16_t unit = Peek();
      if (IsDigit(unit)) {
        any = true;
        if (unit == u'0' && number->digits.empty()) continue;
        number->digits.push_back(static_cast<char>(unit));
        ++number->point;
      } else if (unit != u',' || !any) {
        break;
      }
    }
    if (Peek() == u'.') {
      for (++at_; IsDigit(Peek()); ++at_) {
        any = true;
        if (Peek() == u'0' && number->digits.empty()) {
          --number->point;
        } else {
          number->digits.push_back(static_cast<char>(Peek()));
        }
      }
    }
    if (!any) return false;
    if ((Peek() == u'e' || Peek() == u'E') && !ReadExponent(number)) return false;
    if (number->digits.empty()) number->point = 0;
    return true;
  }

  bool ReadExponent(DecimalDigits* number) {
    constexpr std::int64_t kMostExponent = 1'000'000'000'000;  // far beyond any text's length
    ++at_;
    const bool negative = Peek() == u'-';
    if (negative || Peek() == u'+') ++at_;
    if (!IsDigit(Peek())) return false;
    std::int64_t exponent = 0;
    for (; IsDigit(Peek()); ++at_) exponent = std::min(kMostExponent, exponent * 10 + (Peek() - u'0'));
    number->point += negative ? -exponent : exponent;
    return true;
  }

  bool ReadBits(ParsedNumber* number) {
    ++at_;
    const char16_t letter = LowerOf(Peek());
    if (letter != u'h' && letter != u'o') return false;
    ++at_;
    const int shift = letter == u'h' ? 4 : 3;
    const std::size_t start = at_;
    for (int digit = DigitOf(Peek()); digit >= 0 && digit < 1 << shift; digit = DigitOf(Peek())) {
      number->bits_overflow = number->bits_overflow || number->bits >> (64 - shift) != 0;
      number->bits = number->bits << shift | static_cast<std::uint64_t>(digit);
      ++at_;
    }
    number->is_bits = true;
    return at_ > start;
  }

  static int DigitOf(char16_t unit) {
    if (IsDigit(unit)) return unit - u'0';
    const char16_t lower = LowerOf(unit);
    return lower >= u'a' && lower <= u'f' ? lower - u'a' + 10 : -1;
  }

  TextView text_;
  std::size_t at_ = 0;
  bool signed_ = false;
  bool negative_ = false;
  bool parentheses_ = false;
};

// "d.ddde+xx" of a positive number with `count` significant digits, exactly
// rounded half to even, taken apart.
DecimalDigits Scientific(double value, int count) {
  char buffer[800];  // a double has at most 767 significant digits
  const auto end = std::to_chars(buffer, buffer + sizeof buffer, value, std::chars_format::scientific, count - 1).ptr;
  const char* exponent = std::find(static_cast<const char*>(buffer), static_cast<const char*>(end), 'e') + 1;
  DecimalDigits number;
  for (const char* at = buffer; at < exponent - 1; ++at) {
    if (*at != '.') number.digits.push_back(*at);
  }
  int power = 0;
  std::from_chars(*exponent == '+' ? exponent + 1 : exponent, end, power);
  number.point = power + 1;
  return number;
}

void Increment(DecimalDigits* number) {
  std::size_t at = number->digits.size();
  while (at > 0 && number->digits[at - 1] == '9') number->digits[--at] = '0';
  if (at > 0) {
    ++number->digits[at - 1];
    return;
  }
  number->digits.insert(number->digits.begin(), '1');
  number->digits.pop_back();
  ++number->point;
}

}  // namespace

bool ParseNumber(TextView text, ParsedNumber* number) {
  *number = ParsedNumber();
  return NumberReader(text).Read(number);
}

DecimalDigits SignificantDigits(double value, int count) {
  if (value == 0) return {};
  const double size = std::fabs(value);
  DecimalDigits number = Scientific(size, count);
  // Only a tie can differ from half to even, and a tie shows a "5" one digit
  // further on and nothing after it.
  DecimalDigits longer = Scientific(size, count + 1);
  if (longer.digits.back() == '5') {
    const DecimalDigits exact = Scientific(size, 770);
    const auto kept = static_cast<std::size_t>(count);
    if (exact.digits[kept] == '5' && exact.digits.find_first_not_of('0', kept + 1) == std::string::npos) {
      number = exact;
      number.digits.resize(kept);
      Increment(&number);
    }
  }
  number.negative = value < 0;
  number.digits.erase(number.digits.find_last_not_of('0') + 1);
  return number;
}

std::string FractionText(double value, int count) {
  if (std::isnan(value)) return "1.#QNAN";
  if (std::isinf(value)) return value < 0 ? "-1.#INF" : "1.#INF";
  const DecimalDigits number = SignificantDigits(value, count);
  const auto decimals = static_cast<std::int64_t>(number.digits.size()) - number.point;
  if (number.point <= count && (number.point > 0 || decimals <= count)) return PlainText(number);
  std::string text = number.negative ? "-" : "";
  text += number.digits[0];
  if (number.digits.size() > 1) text += "." + number.digits.substr(1);
  const std::int64_t exponent = number.point - 1;
  const std::string power = std::to_string(exponent < 0 ? -exponent : exponent);
  text += exponent < 0 ? "E-" : "E+";
  if (power.size() < 2) text += '0';
  return text + power;
}

}  // namespace Orvix
