// The ANSI code page through the platform's two conversion functions.
#include <gtest/gtest.h>

#include <string>

#include "orvix/runtime.h"
#include "orvix/text.h"

namespace Orvix {
namespace {

std::string Ansi(const Text& text, BOOL* substituted = nullptr, const char* substitute = nullptr) {
  std::string bytes(text.size(), '#');
  const INT written = WideCharToMultiByte(CP_ACP, 0, text.data(), static_cast<INT>(text.size()), bytes.data(),
                                          static_cast<INT>(bytes.size()), substitute, substituted);
  EXPECT_EQ(written, static_cast<INT>(text.size()));
  return bytes;
}

Text Wide(const std::string& bytes) {
  Text text(bytes.size(), u'#');
  const INT written = MultiByteToWideChar(1252, 0, bytes.data(), static_cast<INT>(bytes.size()), text.data(),
                                          static_cast<INT>(text.size()));
  EXPECT_EQ(written, static_cast<INT>(bytes.size()));
  return text;
}

TEST(CodePageTest, UpperControlsHaveTheirCharacters) {
  EXPECT_EQ(Wide("\x80\x82\x85\x8A\x93\x99\x9C\x9F"), u"\u20AC\u201A\u2026\u0160\u201C\u2122\u0153\u0178");
  EXPECT_EQ(Ansi(u"\u20AC\u201A\u2026\u0160\u201C\u2122\u0153\u0178"), "\x80\x82\x85\x8A\x93\x99\x9C\x9F");
  EXPECT_EQ(Wide("\x7F\xA0\xE4\xFF"), u"\u007F\u00A0\u00E4\u00FF");
}

TEST(CodePageTest, OpenBytesAreControlCharactersBothWays) {
  EXPECT_EQ(Wide("\x81\x8D\x8F\x90\x9D"), Text({0x81, 0x8D, 0x8F, 0x90, 0x9D}));
  EXPECT_EQ(Ansi({0x81, 0x8D, 0x8F, 0x90, 0x9D}), "\x81\x8D\x8F\x90\x9D");
}

TEST(CodePageTest, EveryByteComesBack) {
  std::string all;
  for (int byte = 0; byte < 256; ++byte) all.push_back(static_cast<char>(byte));
  BOOL substituted = 7;
  EXPECT_EQ(Ansi(Wide(all), &substituted), all);
  EXPECT_EQ(substituted, 0);
}

TEST(CodePageTest, OtherCharactersGiveOneSubstituteForEachUnit) {
  BOOL substituted = 0;
  EXPECT_EQ(Ansi(u"a\u0100b", &substituted), "a?b");
  EXPECT_NE(substituted, 0);
  EXPECT_EQ(Ansi(u"\U0001F600"), "??");
  EXPECT_EQ(Ansi({0xDC80}), "?");
  EXPECT_EQ(Ansi({0x80}), "?");  // a control character whose byte is the euro sign
  EXPECT_EQ(Ansi(u"\u0100", nullptr, "_"), "_");
}

TEST(CodePageTest, OneOddCharacterAnywhereInALongTextIsSeen) {
  for (std::size_t at = 0; at < 200; ++at) {
    Text text(200, u'x');
    text[at] = u'\u20AC';
    std::string expected(200, 'x');
    expected[at] = '\x80';
    EXPECT_EQ(Ansi(text), expected) << at;
    EXPECT_EQ(Wide(expected), text) << at;
    text[at] = u'\u0400';
    expected[at] = '?';
    BOOL substituted = 0;
    EXPECT_EQ(Ansi(text, &substituted), expected) << at;
    EXPECT_EQ(substituted, 1) << at;
  }
}

TEST(CodePageTest, CountsAndCapacities) {
  char16_t text[4] = {u'#', u'#', u'#', u'#'};
  EXPECT_EQ(MultiByteToWideChar(CP_ACP, 0, "ab", -1, nullptr, 0), 3);
  EXPECT_EQ(MultiByteToWideChar(CP_ACP, 0, "ab", -1, text, 3), 3);
  EXPECT_EQ(text[2], u'\0');
  EXPECT_EQ(MultiByteToWideChar(CP_ACP, 0, "xyz", 3, text, 2), 0);
  EXPECT_EQ(text[0], u'a');
  EXPECT_EQ(MultiByteToWideChar(CP_ACP, 0, "ab", 0, text, 3), 0);
  EXPECT_EQ(MultiByteToWideChar(65001, 0, "ab", 2, text, 3), 0);
  char bytes[4] = {'#', '#', '#', '#'};
  EXPECT_EQ(WideCharToMultiByte(CP_ACP, 0, u"ab", -1, nullptr, 0, nullptr, nullptr), 3);
  EXPECT_EQ(WideCharToMultiByte(CP_ACP, 0, u"ab", -1, bytes, 3, nullptr, nullptr), 3);
  EXPECT_EQ(bytes[2], '\0');
  EXPECT_EQ(WideCharToMultiByte(CP_ACP, 0, u"xyz", 3, bytes, 2, nullptr, nullptr), 0);
  EXPECT_EQ(bytes[0], 'a');
  EXPECT_EQ(WideCharToMultiByte(CP_ACP, 0, nullptr, 2, bytes, 3, nullptr, nullptr), 0);
}

}  // namespace
}  // namespace Orvix
