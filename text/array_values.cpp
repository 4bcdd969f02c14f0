// The smallest and the largest value of an array, with or without zeros. The
// running result is a `long` that was rounded, while elements are compared as
// they are: 2.6 and 2.5 give 3 first, and then 2.
#include <optional>

#include "frame/class_orvix.h"
#include "frame/error_styles.h"
#include "text/array_elements.h"

namespace Orvix::component {

namespace {

// Which of two values a member is after.
struct Lowest {
  static constexpr HRESULT kOrder = VARCMP_LT;
  static bool Beats(LONG value, LONG result) { return value < result; }
};
struct Highest {
  static constexpr HRESULT kOrder = VARCMP_GT;
  static bool Beats(LONG value, LONG result) { return value > result; }
};

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

LONG LongOf(const VARIANT& place) { return place.vt == VT_I4 ? place.lVal : Element(place).AsLong(); }

bool IsNoZero(const VARIANT& place) { return place.vt == VT_I4 ? place.lVal != 0 : Element(place).IsNoZero(); }

// `result` and then every element that beats it in turn.
template <class Wanted, bool kSkipZeros>
LONG Best(std::span<const VARIANT> elements, LONG result) {
  for (auto at = elements.begin(); at != elements.end(); ++at) {
    // Plain longs need no comparison of values.
    for (; at != elements.end() && at->vt == VT_I4; ++at) {
      if (Wanted::Beats(at->lVal, result) && !(kSkipZeros && at->lVal == 0)) result = at->lVal;
    }
    if (at == elements.end()) break;
    Element element(*at);
    if (kSkipZeros && !element.IsNoZero()) continue;
    if (element.OrderTo(result) == Wanted::kOrder) result = element.AsLong();
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
