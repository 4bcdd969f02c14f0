// Opening files, help, version and identifiers: what reaches the platform, and
// what comes back to the caller's variables.
#include <gtest/gtest.h>

#include <cstring>
#include <set>

#include "orvix/host.h"
#include "tests/support/component.h"
#include "tests/support/exhausted_low_memory.h"

namespace Orvix::testing {
namespace {

constexpr TextView kRussian = u"\u0416.chm";  // nothing the code page has

// A caller's text variable.
class TextVariable {
 public:
  explicit TextVariable(TextView text) : text_(BstrHandle(text).Detach()) {}
  TextVariable(TextVariable&&) = delete;
  ~TextVariable() { SysFreeString(text_); }
  [[nodiscard]] BSTR* Address() { return &text_; }
  [[nodiscard]] TextView View() const { return ViewOf(text_); }

 private:
  BSTR text_;
};

const char* PointedTo(LONG address) { return reinterpret_cast<const char*>(static_cast<std::uintptr_t>(address)); }

class ShellHelpSystemTest : public ::testing::Test {
 protected:
  struct Opening {
    LONG window;
    std::string words;
    LONG show;
  };
  struct Help {
    char kind;  // 'w' classic, 'h' compiled
    LONG window;
    std::string file;
    LONG command;
    LONG data;
    std::string text;
  };

  ShellHelpSystemTest() {
    OxHost host{};
    host.size = sizeof host;
    host.context = this;
    host.MessageBox = [](void* self, const OLECHAR* text, LONG, const OLECHAR*) -> LONG {
      static_cast<ShellHelpSystemTest*>(self)->reports_.emplace_back(text);
      return 1;
    };
    host.ShellExecuteA = [](void* self, LONG window, const char* verb, const char* file, const char* parameters,
                            const char* directory, LONG show) -> LONG {
      auto* const test = static_cast<ShellHelpSystemTest*>(self);
      EXPECT_EQ(parameters, nullptr);
      EXPECT_EQ(directory, nullptr);
      test->openings_.push_back({window, std::string(verb) + " " + file, show});
      return test->answer_;
    };
    host.WinHelpA = [](void* self, LONG window, const char* file, LONG command, LONG data) -> LONG {
      auto* const test = static_cast<ShellHelpSystemTest*>(self);
      test->helps_.push_back({'w', window, file, command, data, test->has_text_ ? PointedTo(data) : ""});
      return 0;
    };
    host.HtmlHelpA = [](void* self, LONG window, const char* file, LONG command, LONG data) -> LONG {
      auto* const test = static_cast<ShellHelpSystemTest*>(self);
      Help help{'h', window, file, command, data, {}};
      if (command == 13) {
        std::memcpy(test->link_, PointedTo(data), sizeof test->link_);
        LONG keywords = 0;
        std::memcpy(&keywords, test->link_ + 8, sizeof keywords);
        help.text = PointedTo(keywords);
        test->helps_.push_back(help);
        return test->answer_;
      }
      help.text = PointedTo(data);
      test->helps_.push_back(help);
      return 0;
    };
    host.GetVersionExA = [](void* self, void* record) -> LONG {
      auto* const test = static_cast<ShellHelpSystemTest*>(self);
      if (test->answer_ == 0) return 0;
      auto* const bytes = static_cast<char*>(record);
      LONG size = 0;
      std::memcpy(&size, bytes, sizeof size);
      EXPECT_EQ(size, 148);
      const ULONG numbers[] = {10, 0xFFFFFFFE, 19045, 2};
      std::memcpy(bytes + 4, numbers, sizeof numbers);
      std::memcpy(bytes + 20, "SP\0\x80", 4);
      return 1;
    };
    OxSetHost(&host);
  }
  ~ShellHelpSystemTest() override { OxSetHost(nullptr); }

  std::vector<Opening> openings_;
  std::vector<Help> helps_;
  std::vector<Text> reports_;
  char link_[32]{};
  LONG answer_ = 0;
  bool has_text_ = false;
  ComPtr<_classOrvix> orvix_ = MakeOrvix();
};

TEST_F(ShellHelpSystemTest, RunFileOpensInANormalWindow) {
  TextVariable file(u"C:\\caf\u00E9 \u0416.txt");
  LONG window = 5;
  answer_ = 2;  // not found, which nobody hears of
  EXPECT_EQ(orvix_->RunFile(file.Address(), &window), S_OK);
  ASSERT_EQ(openings_.size(), 1U);
  EXPECT_EQ(openings_[0].words, "open C:\\caf\xE9 ?.txt");
  EXPECT_EQ(openings_[0].window, 5);
  EXPECT_EQ(openings_[0].show, 1);
  EXPECT_EQ(file.View(), u"C:\\caf\u00E9 ?.txt");  // as it came through the code page
}

TEST_F(ShellHelpSystemTest, RunFileMoreGivesTheShellsAnswer) {
  TextVariable file(u"a.txt");
  LONG window = 0;
  LONG show = 3;
  LONG result = 0;
  for (const LONG answer : {0, 2, 31, 32, 33, -1, 2147483647}) {
    answer_ = answer;
    EXPECT_EQ(orvix_->RunFileMore(file.Address(), &window, &show, &result), S_OK);
    EXPECT_EQ(result, answer);
    EXPECT_EQ(openings_.back().show, 3);
  }
}

TEST_F(ShellHelpSystemTest, ShowHelpSendsTheNumberOrTheText) {
  TextVariable file(kRussian);
  TextVariable empty(u"");
  LONG id = -7;
  LONG window = 8;
  LONG command = 257;
  EXPECT_EQ(orvix_->ShowHelp(&id, file.Address(), &window, &command, nullptr), S_OK);
  EXPECT_EQ(file.View(), u"?.chm");
  EXPECT_EQ(orvix_->ShowHelp(&id, file.Address(), &window, &command, empty.Address()), S_OK);
  ASSERT_EQ(helps_.size(), 2U);
  for (const Help& help : helps_) {
    EXPECT_EQ(help.kind, 'w');
    EXPECT_EQ(help.file, "?.chm");
    EXPECT_EQ(help.window, 8);
    EXPECT_EQ(help.command, 257);
    EXPECT_EQ(help.data, -7);
  }
  has_text_ = true;
  TextVariable text(u"topic \u0416\u20AC");
  EXPECT_EQ(orvix_->ShowHelp(&id, file.Address(), &window, &command, text.Address()), S_OK);
  EXPECT_EQ(helps_.back().text, "topic ?\x80");
  EXPECT_EQ(text.View(), u"topic ?\u20AC");
  EXPECT_TRUE(reports_.empty());
}

TEST_F(ShellHelpSystemTest, AKeywordLookupThatFailsOpensTheIndex) {
  TextVariable file(kRussian);
  TextVariable text(u"key\u0416");
  LONG window = 8;
  answer_ = 77;
  EXPECT_EQ(orvix_->ShowHTMLHelpKeyword(file.Address(), &window, text.Address()), S_OK);
  ASSERT_EQ(helps_.size(), 1U);
  EXPECT_EQ(helps_[0].command, 13);
  EXPECT_EQ(helps_[0].text, "key?");
  EXPECT_EQ(text.View(), u"key\u0416");  // the record has a copy of its own
  char expected[32]{};
  expected[0] = 28;
  std::memcpy(expected + 8, link_ + 8, 4);
  EXPECT_EQ(std::memcmp(link_, expected, sizeof link_), 0);

  answer_ = 0;
  EXPECT_EQ(orvix_->ShowHTMLHelpKeyword(file.Address(), &window, text.Address()), S_OK);
  ASSERT_EQ(helps_.size(), 3U);
  EXPECT_EQ(helps_[2].kind, 'h');
  EXPECT_EQ(helps_[2].file, "?.chm");
  EXPECT_EQ(file.View(), u"?.chm");
  EXPECT_EQ(helps_[2].window, 8);
  EXPECT_EQ(helps_[2].command, 2);
  EXPECT_EQ(helps_[2].text, "key?");
  EXPECT_EQ(text.View(), u"key?");
}

TEST_F(ShellHelpSystemTest, HelpReportsItsOwnFailures) {
  TextVariable file(u"a.hlp");
  TextVariable text(u"a topic of more than sixteen bytes");
  LONG number = 1;
  {
    const ExhaustedLowMemory exhausted;
    EXPECT_EQ(orvix_->ShowHelp(&number, file.Address(), &number, &number, text.Address()), S_OK);
    EXPECT_EQ(orvix_->ShowHTMLHelpKeyword(file.Address(), &number, text.Address()), S_OK);
  }
  EXPECT_EQ(reports_, std::vector<Text>(2, u"Error showing help.\r\nOut of memory"));
  EXPECT_TRUE(helps_.empty());
}

TEST_F(ShellHelpSystemTest, TheVersionComesWhole) {
  LONG major = 9, minor = 9, build = 9, platform = 9;
  TextVariable extra(u"before");
  answer_ = 1;
  EXPECT_EQ(orvix_->GetOSVersion(&major, &minor, &build, &platform, extra.Address()), S_OK);
  EXPECT_EQ(major, 10);
  EXPECT_EQ(minor, -2);
  EXPECT_EQ(build, 19045);
  EXPECT_EQ(platform, 2);
  EXPECT_EQ(extra.View(), Text(TextView(u"SP\0\u20AC", 4)) + Text(124, u'\0'));
  answer_ = 0;  // a failure leaves zeros
  EXPECT_EQ(orvix_->GetOSVersion(&major, &minor, &build, &platform, extra.Address()), S_OK);
  EXPECT_EQ(major | minor | build | platform, 0);
  EXPECT_EQ(extra.View(), Text(128, u'\0'));
}

TEST_F(ShellHelpSystemTest, IdentifiersAreNewVersion4Identifiers) {
  std::set<Text> seen;
  for (int i = 0; i < 200; ++i) {
    const Text text = Returned([&](BSTR* result) { return orvix_->CreateGUID(result); });
    ASSERT_EQ(text.size(), 38U);
    for (std::size_t at = 0; at < text.size(); ++at) {
      const char16_t unit = text[at];
      const bool is_digit = (unit >= u'0' && unit <= u'9') || (unit >= u'A' && unit <= u'F');
      const TextView frame = u"{--------x----x----x----x------------}";
      EXPECT_TRUE(frame[at] == u'-' ? is_digit : unit == (frame[at] == u'x' ? u'-' : frame[at])) << ToUtf8(text);
    }
    EXPECT_EQ(text[15], u'4');
    EXPECT_NE(TextView(u"89AB").find(text[20]), TextView::npos);
    seen.insert(text);
  }
  EXPECT_EQ(seen.size(), 200U);
}

TEST(IdentifierTest, ASourceThatFailsLeavesTheZeroIdentifier) {
  OxHost host{};
  host.size = sizeof host;
  host.CoCreateGuid = [](void*, GUID*) -> HRESULT { return E_FAIL; };
  OxSetHost(&host);
  const ComPtr<_classOrvix> orvix = MakeOrvix();
  EXPECT_EQ(Returned([&](BSTR* result) { return orvix->CreateGUID(result); }),
            u"{00000000-0000-0000-0000-000000000000}");
  OxSetHost(nullptr);
}

}  // namespace
}  // namespace Orvix::testing
