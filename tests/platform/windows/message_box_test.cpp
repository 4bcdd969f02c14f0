// The system log is caught here: this program's syslog comes before the C
// library's.
#include <gtest/gtest.h>
#include <syslog.h>
#include <unistd.h>

#include <cstdarg>
#include <string>
#include <vector>

#include "orvix/platform.h"
#include "orvix/runtime.h"
#include "tests/support/recording_host.h"
#include "tests/support/stand_in_desktop.h"

namespace {

struct LogRecord {
  std::string ident;
  int priority;
  std::string format;
  std::string text;
};
std::string current_ident;
std::vector<LogRecord> records;

void Keep(int priority, const char* format, va_list arguments) {
  records.push_back({current_ident, priority, format, va_arg(arguments, const char*)});
}

}  // namespace

extern "C" {
__attribute__((visibility("default"))) void openlog(const char* ident, int, int) { current_ident = ident; }
__attribute__((visibility("default"))) void syslog(int priority, const char* format, ...) {
  va_list arguments;
  va_start(arguments, format);
  Keep(priority, format, arguments);
  va_end(arguments);
}
__attribute__((visibility("default"))) void __syslog_chk(int priority, int, const char* format, ...) {
  va_list arguments;
  va_start(arguments, format);
  Keep(priority, format, arguments);
  va_end(arguments);
}
}

namespace {

class MessageBoxTest : public ::testing::Test {
 protected:
  MessageBoxTest() { records.clear(); }
  ~MessageBoxTest() override { OxSetHost(nullptr); }

  static std::string Logged(const OLECHAR* text, const OLECHAR* title) {
    records.clear();
    EXPECT_EQ(MessageBoxW(nullptr, text, title, 16), 1);
    EXPECT_EQ(records.size(), 1u);
    return records.empty() ? "" : records[0].text;
  }
};

TEST_F(MessageBoxTest, UnattendedRequestIsOneErrorRecordAndIsAnsweredWithOk) {
  EXPECT_EQ(MessageBoxW(nullptr, u"100%s of it", u"Orvix", 16), 1);
  ASSERT_EQ(records.size(), 1u);
  EXPECT_EQ(records[0].ident, "Orvix");
  EXPECT_EQ(records[0].priority, LOG_USER | LOG_ERR);
  EXPECT_EQ(records[0].format, "%s");
  EXPECT_EQ(records[0].text, "100%s of it");  // the log puts the name in front
}

TEST_F(MessageBoxTest, GoesWhereItIsSent) {
  Orvix::testing::Desktop desktop;
  desktop.InstallAnswer("zenity", "");
  const bool log_is_there = access("/dev/log", W_OK) == 0;
  const struct {
    const char* where;
    std::size_t logged;
    std::string told;  // on standard error
    bool shown;
  } rows[] = {
      {"log", 1, "", false},
      {"stderr", 0, "Orvix: a b\n", false},
      {"off", 0, "", false},
      {"dialog", 0, "", true},
      {"", 1, log_is_there ? "" : "Orvix: a b\n", false},
  };
  for (const auto& row : rows) {
    records.clear();
    std::filesystem::remove(desktop.programs.Native("calls"));
    setenv("ORVIX_MESSAGES", row.where, 1);
    ::testing::internal::CaptureStderr();
    EXPECT_EQ(MessageBoxW(nullptr, u"a\r\nb", u"Orvix", 48), 1);
    EXPECT_EQ(::testing::internal::GetCapturedStderr(), row.told) << row.where;
    EXPECT_EQ(records.size(), row.logged) << row.where;
    const std::vector<std::string> shown{"zenity", "--warning", "--no-markup", "--title=Orvix", "--text=a\r\nb"};
    EXPECT_EQ(desktop.Words(), row.shown ? shown : std::vector<std::string>()) << row.where;
  }
  unsetenv("ORVIX_MESSAGES");
}

// Once for each place in a process.
TEST_F(MessageBoxTest, LostTextIsNotedOnceForEachPlace) {
  static std::size_t said = 0;
  for (const char* where : {"a", "b", "a"}) OxNoteLostText(where);
  said += records.size();
  ASSERT_EQ(said, 2u);
  if (!records.empty()) {
    EXPECT_EQ(records[0].text, "Text put into a lost characters: they are \"?\" there");
  }
}

// Once in a process, however often it is asked for.
TEST_F(MessageBoxTest, PlacingWindowsOnWaylandIsNoted) {
  const Orvix::testing::Variable x("DISPLAY", nullptr);
  const Orvix::testing::Variable wayland("WAYLAND_DISPLAY", "wayland-9");
  static std::size_t said = 0;
  for (int i = 0; i < 3; ++i) EXPECT_EQ(SetWindowPos(reinterpret_cast<void*>(1), nullptr, 0, 0, 1, 1, 0), 1);
  said += records.size();
  EXPECT_EQ(said, 1u);
}

TEST_F(MessageBoxTest, OtherStylesAreNoErrors) {
  for (const UINT style : {0u, 32u, 48u, 64u}) {
    records.clear();
    MessageBoxW(nullptr, u"done", u"", style);
    ASSERT_EQ(records.size(), 1u);
    const int expected = style == 48u ? LOG_USER | LOG_WARNING : LOG_USER | LOG_NOTICE;
    EXPECT_EQ(records[0].priority, expected) << style;
  }
}

TEST_F(MessageBoxTest, TextIsOneLineOfUtf8) {
  struct Case {
    const OLECHAR* text;
    const OLECHAR* title;
    std::string expected;
  };
  const Case cases[] = {
      {u"Error GetElement.\r\nBad", u"A", "A: Error GetElement. Bad"},
      {u"a\r\n\r\nb", u"", "a  b"},
      {u"\ta\nb\rc\r", u"", "\\ta\\nb\\rc\\r"},
      {u"\x01\x1F\x7F~ \x80\x9F\xA0", u"", "\\x01\\x1F\\x7F~ \\u0080\\u009F\xC2\xA0"},
      {u"C:\\new\\table", u"", "C:\\new\\table"},
      {u"\u00E9\u20AC\U0001F600", u"\u00DF", "\xC3\x9F: \xC3\xA9\xE2\x82\xAC\xF0\x9F\x98\x80"},
      {u"\xDCFF\xD800!", u"", "\\xFF\xEF\xBF\xBD!"},
      {nullptr, nullptr, ""},
      {u"x", nullptr, "x"},
      {nullptr, u"t", "t: "},
  };
  for (const Case& c : cases) EXPECT_EQ(Logged(c.text, c.title), c.expected);
}

TEST_F(MessageBoxTest, ALongTextIsCutBetweenCharacters) {
  EXPECT_EQ(Logged(std::u16string(8000, u'x').c_str(), u""), std::string(8000, 'x'));
  EXPECT_EQ(Logged(std::u16string(8001, u'x').c_str(), u""), std::string(7997, 'x') + "...");
  // Two bytes each: byte 7997 is the second of a character, which goes whole.
  std::string expected;
  for (int i = 0; i < 3998; ++i) expected += "\xC3\xA9";
  EXPECT_EQ(Logged(std::u16string(4001, u'\u00E9').c_str(), u""), expected + "...");
}

TEST_F(MessageBoxTest, AHostGetsTextStyleAndTitleUntouched) {
  Orvix::testing::RecordingHost host;
  EXPECT_EQ(MessageBoxW(nullptr, u"a\r\n\x01", u"Title", 16), 1);
  ASSERT_EQ(host.boxes.size(), 1u);
  EXPECT_EQ(host.boxes[0], (Orvix::testing::MessageBoxRequest{u"a\r\n\x01", 16, u"Title"}));
  EXPECT_TRUE(records.empty());
}

TEST_F(MessageBoxTest, TheHostsAnswerIsTheResult) {
  OxHost table{};
  table.size = sizeof table;
  table.MessageBox = [](void*, const OLECHAR* text, LONG, const OLECHAR* title) -> LONG {
    return text == nullptr && title == nullptr ? 7 : -1;
  };
  ASSERT_EQ(OxSetHost(&table), S_OK);
  EXPECT_EQ(MessageBoxW(nullptr, nullptr, nullptr, 4), 7);
}

}  // namespace
