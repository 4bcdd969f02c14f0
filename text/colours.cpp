// Colours as packed numbers, 0x00BBGGRR; the top byte is ignored.
#include <algorithm>

#include "frame/class_orvix.h"
#include "frame/error.h"

namespace Orvix::component {

namespace {

constexpr TextView kHexMark = u"&h";

Text HexText(LONG value) {
  BstrHandle text;
  CheckRuntime(OxHexText(value, text.Receive()));
  return Text(text.View());
}

// The channel's part of a colour in hexadecimal, taken by position and not by
// value.
TextView PartOf(TextView hex, enumRGB part) {
  switch (part) {
    case oxRed:
      return hex.substr(hex.size() < 2 ? 0 : hex.size() - 2);
    case oxGreen:
      return Mid(hex, 3, 2);
    case oxBlue:
      return Left(hex, 2);
  }
  return {};
}

// One channel in two upper-case digits.
Text TwoDigits(LONG channel) {
  const BstrHandle hex(HexText(channel));
  BstrHandle aligned;
  CheckRuntime(OxFormatText(hex.get(), u"@&", aligned.Receive()));
  Text digits(aligned.View());
  std::ranges::replace(digits, u' ', u'0');
  return digits;
}

}  // namespace

LONG classOrvix::GetRed(LONG color) { return color & 0xFF; }

LONG classOrvix::GetGreen(LONG color) { return (color & 0xFF00) / 0x100; }

LONG classOrvix::GetBlue(LONG color) { return (color & 0xFF0000) / 0x10000; }

LONG classOrvix::GetRGB(LONG color, enumRGB part) {
  // Without leading zeros the positions hold for six digits only: pure red, FF,
  // is blue 255 here. Callers rely on it.
  const Text hex = HexText(color);
  const TextView digits = PartOf(hex, part);
  if (digits.empty()) return 0;
  const BstrHandle marked(Text(kHexMark).append(digits));
  ULONG value = 0;
  CheckRuntime(OxHexValue(marked.get(), &value));
  return static_cast<LONG>(value);
}

Text classOrvix::GetHexColor(LONG color) {
  return Text(u"#")
      .append(TwoDigits(GetRed(color)))
      .append(TwoDigits(GetGreen(color)))
      .append(TwoDigits(GetBlue(color)));
}

LONG classOrvix::InvertColor(LONG color) {
  return 255 - GetRed(color) + 0x100 * (255 - GetGreen(color)) + 0x10000 * (255 - GetBlue(color));
}

}  // namespace Orvix::component
