// Packed colours: channels by value, channels by position, text, inversion.
#include <gtest/gtest.h>

#include "tests/support/component.h"

namespace Orvix::testing {
namespace {

struct ColourCase {
  LONG color;
  LONG red, green, blue;  // by value
  LONG by_text[3];        // red, green, blue by position
  TextView hex;
  LONG inverted;
};

TEST(ColoursTest, ChannelsTextAndInversion) {
  const ComPtr<_classOrvix> orvix = MakeOrvix();
  const ColourCase cases[] = {
      {0x123456, 0x56, 0x34, 0x12, {0x56, 0x34, 0x12}, u"#563412", 0xEDCBA9},
      {0xFFFFFF, 255, 255, 255, {255, 255, 255}, u"#FFFFFF", 0},
      {0, 0, 0, 0, {0, 0, 0}, u"#000000", 0xFFFFFF},
      // Without six digits the positions say something else.
      {255, 255, 0, 0, {255, 0, 255}, u"#FF0000", 0xFFFF00},
      {5, 5, 0, 0, {5, 0, 5}, u"#050000", 0xFFFFFA},
      {0xFF00, 0, 255, 0, {0, 0, 255}, u"#00FF00", 0xFF00FF},
      {0xABC, 0xBC, 0x0A, 0, {0xBC, 0xC, 0xAB}, u"#BC0A00", 0xFFF543},
      {0x0A0B0C, 0x0C, 0x0B, 0x0A, {0x0C, 0xB0, 0xA0}, u"#0C0B0A", 0xF5F4F3},
      // The top byte counts by position only.
      {-2147483643, 5, 0, 0, {5, 0, 0x80}, u"#050000", 0xFFFFFA},
      {-1, 255, 255, 255, {255, 255, 255}, u"#FFFFFF", 0},
  };
  for (const ColourCase& c : cases) {
    SCOPED_TRACE(c.color);
    LONG color = c.color;
    LONG channel = -1;
    EXPECT_EQ(orvix->GetRed(&color, &channel), S_OK);
    EXPECT_EQ(channel, c.red);
    EXPECT_EQ(orvix->GetGreen(&color, &channel), S_OK);
    EXPECT_EQ(channel, c.green);
    EXPECT_EQ(orvix->GetBlue(&color, &channel), S_OK);
    EXPECT_EQ(channel, c.blue);
    for (LONG part = oxRed; part <= oxBlue; ++part) {
      EXPECT_EQ(orvix->GetRGB(&color, &part, &channel), S_OK);
      EXPECT_EQ(channel, c.by_text[part]) << part;
    }
    for (LONG part : {-1, 3}) {
      EXPECT_EQ(orvix->GetRGB(&color, &part, &channel), S_OK);
      EXPECT_EQ(channel, 0);
    }
    EXPECT_EQ(Returned([&](BSTR* result) { return orvix->GetHexColor(&color, result); }), c.hex);
    EXPECT_EQ(orvix->InvertColor(&color, &channel), S_OK);
    EXPECT_EQ(channel, c.inverted);
    EXPECT_EQ(color, c.color);
  }
}

}  // namespace
}  // namespace Orvix::testing
