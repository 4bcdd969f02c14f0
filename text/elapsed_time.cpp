// Elapsed times as text. The two forms differ in their formats; callers rely on
// both.
#include <cmath>

#include "frame/class_orvix.h"
#include "frame/error.h"

namespace Orvix::component {

namespace {

Text Formatted(double value, const OLECHAR* pattern) {
  BstrHandle text;
  CheckRuntime(OxFormatNumber(static_cast<LONG>(value), pattern, text.Receive()));
  return Text(text.View());
}

Text Digits(double value) {
  const Variant number(static_cast<LONG>(value));
  BstrHandle text;
  CheckRuntime(OxTextOf(&number.get(), text.Receive()));
  return Text(text.View());
}

}  // namespace

Text classOrvix::DayTime(LONG seconds) {
  // Whole parts are floors, so only the hours of a negative time are negative.
  const double hours = std::floor(seconds / 3600.0);
  const double minutes = std::floor((seconds - 3600 * hours) / 60);
  const double rest = seconds - 60 * (minutes + 60 * hours);
  return Formatted(hours, u"00") + u":" + Formatted(minutes, u"00") + u":" + Formatted(rest, u"00");
}

Text classOrvix::MillisecondsToTime(LONG milliseconds) {
  const double seconds = std::floor(milliseconds / 1000.0);
  const double minutes = std::floor(seconds / 60);
  const double hours = std::floor(minutes / 60);
  // "0#" shows one digit for 0 and two for all others: "1:0:05".
  return Digits(hours) + u":" + Formatted(minutes - 60 * hours, u"0#") + u":" +
         Formatted(seconds - 60 * minutes, u"0#");
}

}  // namespace Orvix::component
