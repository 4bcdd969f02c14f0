// The smallest and the largest value of an array, with or without zeros. The
// running result is a `long` that was rounded, while elements are compared as
// they are: 2.6 and 2.5 give 3 first, and then 2.
#include <cmath>
#include <cstdint>
#include <optional>

#include "frame/class_orvix.h"
#include "frame/error_styles.h"
#include "text/array_elements.h"

namespace Orvix::component {

namespace {

// How a value stands to a number; kAsk where the platform has to be asked.
enum class Standing : std::uint8_t { kBelow, kEqual, kAbove, kNeither, kAsk };

// Which of two values a member is after.
struct Lowest {
  static constexpr HRESULT kOrder = VARCMP_LT;
  static constexpr Standing kStanding = Standing::kBelow;
};
struct Highest {
  static constexpr HRESULT kOrder = VARCMP_GT;
  static constexpr Standing kStanding = Standing::kAbove;
};

template <class Value>
Standing StandingOf(Value value, Value number) {
  return value < number ? Standing::kBelow : value == number ? Standing::kEqual : Standing::kAbove;
}

// What VarCmp says of the types that need no conversion: the wider of the two
// decides, single precision before double, and a text is above every number.
Standing StandingTo(const VARIANT& place, LONG number) {
  switch (place.vt) {
    case VT_I4:
    case VT_INT:
      return StandingOf(place.lVal, number);
    case VT_I2:
    case VT_BOOL:
      return StandingOf(LONG{place.iVal}, number);
    case VT_UI1:
      return StandingOf(LONG{place.bVal}, number);
    case VT_EMPTY:
      return StandingOf(LONG{0}, number);
    case VT_R8:
    case VT_DATE:
      return StandingOf(place.dblVal, static_cast<double>(number));
    case VT_R4:
      return StandingOf(place.fltVal, static_cast<float>(number));
    case VT_CY:
      return StandingOf(LONGLONG{place.cyVal.int64}, LONGLONG{number} * 10000);
    case VT_BSTR:
      return Standing::kAbove;
    case VT_NULL:
      return Standing::kNeither;
    default:
      return Standing::kAsk;
  }
}

// An element behind references, if it is one, and held while it is looked at:
// converting an object calls it, and it may write into the array.
class Element {
 public:
  explicit Element(const VARIANT& place) { CheckRuntime(VariantCopyInd(own_.Address(), &place)); }

  [[nodiscard]] LONG AsLong() {
    LONG number = 0;
    CheckConversion(OxLongOf(own_.Address(), &number));
    return number;
  }
  // VARCMP_LT, _EQ, _GT; VARCMP_NULL for Null, which no test takes as true.
  [[nodiscard]] HRESULT OrderTo(LONG number) {
    Variant other(number);
    const HRESULT order = VarCmp(own_.Address(), other.Address(), 0, 0);
    CheckRuntime(order);
    return order;
  }
  [[nodiscard]] bool IsNoZero() {
    const HRESULT order = OrderTo(0);
    return order == VARCMP_LT || order == VARCMP_GT;
  }

 private:
  Variant own_;
};

LONG LongOf(const VARIANT& place) {
  constexpr double kInside = 2147483647;  // nearer to the ends the platform decides
  switch (place.vt) {
    case VT_I4:
    case VT_INT:
      return place.lVal;
    case VT_I2:
    case VT_BOOL:
      return place.iVal;
    case VT_UI1:
      return place.bVal;
    case VT_R8:
      if (std::abs(place.dblVal) < kInside) return static_cast<LONG>(std::lrint(place.dblVal));
      break;
    default:
      break;
  }
  return Element(place).AsLong();
}

bool IsNoZero(const VARIANT& place) {
  const Standing standing = StandingTo(place, 0);
  if (standing == Standing::kAsk) return Element(place).IsNoZero();
  return standing == Standing::kBelow || standing == Standing::kAbove;
}

// `result` and then every element that beats it in turn.
template <class Wanted, bool kSkipZeros>
LONG Best(std::span<const VARIANT> elements, LONG result) {
  for (const VARIANT& place : elements) {
    const Standing standing = StandingTo(place, result);
    if (standing == Standing::kAsk) {
      Element element(place);
      if (kSkipZeros && !element.IsNoZero()) continue;
      if (element.OrderTo(result) == Wanted::kOrder) result = element.AsLong();
    } else if (standing == Wanted::kStanding && !(kSkipZeros && !IsNoZero(place))) {
      result = LongOf(place);
    }
  }
  return result;
}

template <class Wanted>
LONG BestOfAll(ArrayOf<VARIANT> values) {
  const ArrayElements<VARIANT> array(values);
  const auto elements = array.FromZero();
  if (elements.empty()) RaiseRuntimeError(kSubscriptOutOfRange);
  return Best<Wanted, false>(elements, LongOf(elements.front()));
}

// 0 when there is no element but zeros.
template <class Wanted>
LONG BestButZero(ArrayOf<VARIANT> values) {
  const ArrayElements<VARIANT> array(values);
  auto elements = array.FromZero();
  while (!elements.empty() && !IsNoZero(elements.front())) elements = elements.subspan(1);
  if (elements.empty()) return 0;
  return Best<Wanted, true>(elements.subspan(1), LongOf(elements.front()));
}

// A `long`; after a report the `short` 0, which tells callers the two apart.
template <class Body>
Variant LongOrReport(TextView fixed_text, Body&& body) {
  const std::optional<LONG> number =
      ReportAndContinue(fixed_text, std::nullopt, [&]() -> std::optional<LONG> { return body(); });
  return number ? Variant(*number) : Variant::Short(0);
}

}  // namespace

Variant classOrvix::Min(ArrayOf<VARIANT> values) {
  return LongOrReport(u"Error Min.", [&] { return BestOfAll<Lowest>(values); });
}

Variant classOrvix::Max(ArrayOf<VARIANT> values) {
  return LongOrReport(u"Error Max.", [&] { return BestOfAll<Highest>(values); });
}

Variant classOrvix::MinButZero(ArrayOf<VARIANT> values) {
  return LongOrReport(u"Error MinButZero.", [&] { return BestButZero<Lowest>(values); });
}

Variant classOrvix::MaxButZero(ArrayOf<VARIANT> values) {
  return LongOrReport(u"Error MaxButZero.", [&] { return BestButZero<Highest>(values); });
}

}  // namespace Orvix::component
