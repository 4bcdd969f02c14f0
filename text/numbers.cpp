// Numbers: rounding, parity, a random integer, the tick count, waiting, and a
// text of any value.
#include <cmath>
#include <cstdint>
#include <limits>

#include "frame/class_orvix.h"
#include "frame/error.h"
#include "frame/modErrorCodes.h"

namespace Orvix::component {

namespace {

// The floor of `value` plus one half: halves go up, negative ones too. Error 6
// when the result is beyond single precision.
float RoundUpFromHalf(double value) {
  const double rounded = std::floor(value + 0.5);
  if (std::abs(rounded) > double{std::numeric_limits<float>::max()}) RaiseRuntimeError(kOverflow);
  return static_cast<float>(rounded);
}

}  // namespace

void classOrvix::Wait(LONG milliseconds) { Sleep(static_cast<DWORD>(milliseconds)); }

float classOrvix::RoundSingle(float value) { return RoundUpFromHalf(value); }

float classOrvix::RoundDouble(double value) { return RoundUpFromHalf(value); }

bool classOrvix::IsEven(LONG number) { return number % 2 == 0; }

bool classOrvix::IsOdd(LONG number) { return !IsEven(number); }

LONG classOrvix::GetTick() { return static_cast<LONG>(GetTickCount()); }

LONG classOrvix::GetRandom(LONG upper_bound, LONG lower_bound) {
  double number = 0;
  CheckRuntime(OxRandom(&number));
  // The span wraps, and bounds in the wrong order are taken as they are: from
  // `upper_bound` + 1 to `lower_bound`. Callers rely on it.
  const LONG span = WrapAdd(WrapSubtract(upper_bound, lower_bound), 1);
  // A wrapped span may lead past the largest `long`; the result wraps too.
  return static_cast<LONG>(static_cast<std::int64_t>(std::floor(span * number + lower_bound)));
}

BstrHandle classOrvix::MyStr(const VARIANT& value) {
  Variant held;
  CheckRuntime(VariantCopyInd(held.Address(), &value));
  if (held.get().vt == VT_NULL) return {};
  BstrHandle text;
  CheckConversion(OxTextOf(held.Address(), text.Receive()));  // an object may raise its own error
  return text;
}

}  // namespace Orvix::component
