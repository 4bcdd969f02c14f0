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

Text Wide7(const std::string& ascii) { return {ascii.begin(), ascii.end()}; }

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

TEST(CodePageTest, AnotherSingleBytePageCanBeChosen) {
  const struct {
    UINT page;
    const char* bytes;
    const char16_t* text;
  } rows[] = {
      {1250, "\xB9\x9C", u"\u0105\u015B"}, {1251, "\xC6\xFF", u"\u0416\u044F"}, {1253, "\xE1", u"\u03B1"},
      {1254, "\xFD", u"\u0131"},           {1255, "\xE0", u"\u05D0"},           {1256, "\xC7", u"\u0627"},
      {1257, "\xE0", u"\u0105"},           {1258, "\xD5", u"\u01A0"},           {874, "\xA1\xFF", u"\u0E01\uF7FF"},
      {20866, "\xC1", u"\u0430"},          {21866, "\xA4", u"\u0454"},          {28591, "\xE4\x80", u"\u00E4\u0080"},
      {28592, "\xB1", u"\u0105"},          {28595, "\xB6", u"\u0416"},          {28605, "\xA4", u"\u20AC"},
  };
  std::string all;
  for (int byte = 0; byte < 256; ++byte) all.push_back(static_cast<char>(byte));
  for (const auto& row : rows) {
    ASSERT_EQ(OxSetCodePage(row.page), S_OK) << row.page;
    EXPECT_EQ(OxCodePage(), row.page);
    EXPECT_EQ(Ansi(row.text), row.bytes) << row.page;
    Text text(256, u'#');
    EXPECT_EQ(MultiByteToWideChar(row.page, 0, all.data(), 256, text.data(), 256), 256);
    EXPECT_EQ(Ansi(text), all) << row.page;
    EXPECT_EQ(text.substr(0, 128), Wide7(all.substr(0, 128))) << row.page;
  }
  for (const UINT page : {0U, 932U, 1249U, 1259U, 28602U, 65001U}) EXPECT_EQ(OxSetCodePage(page), E_INVALIDARG) << page;
  EXPECT_EQ(OxSetCodePage(1252), S_OK);
  EXPECT_EQ(Ansi(u"\u0416"), "?");
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
