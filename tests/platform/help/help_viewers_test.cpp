// Help files: what a viewer is started with, what is quietly nothing, and the
// host's turn.
#include <gmock/gmock.h>

#include "orvix/host.h"
#include "orvix/platform.h"
#include "support/stand_in_desktop.h"

namespace Orvix::testing {
namespace {

using ::testing::ElementsAre;

constexpr UINT kIndex = 2;
constexpr UINT kKeyword = 13;

class HelpTest : public ::testing::Test {
 protected:
  HelpTest() { desktop_.files.Write("--a b.chm", ""); }
  bool Shows(const std::string& name, UINT command = kIndex) const {
    return HtmlHelpA(nullptr, (ToUtf8(desktop_.files.Name(u"\\")) + name).c_str(), command, 0) != nullptr;
  }
  std::vector<std::string> WordsOnceThere() const {
    for (int i = 0; i < 5000 && desktop_.Words().empty(); ++i) usleep(1000);
    return desktop_.Words();
  }
  Desktop desktop_;
};

TEST_F(HelpTest, TheBestViewerGetsTheFile) {
  desktop_.InstallAnswer("xchm", "");
  desktop_.InstallAnswer("kchmviewer", "");
  EXPECT_TRUE(Shows("--A B.CHM::/topic.htm>main"));
  EXPECT_THAT(WordsOnceThere(), ElementsAre("kchmviewer", desktop_.files.Native("--a b.chm")));
}

TEST_F(HelpTest, AViewerThatCannotStartGivesWayToTheNext) {
  desktop_.Install("kchmviewer", "no program");
  desktop_.InstallAnswer("okular", "");
  EXPECT_TRUE(Shows("--a b.chm>main", 15));
  EXPECT_THAT(WordsOnceThere(), ElementsAre("okular", desktop_.files.Native("--a b.chm")));
}

TEST_F(HelpTest, EverythingElseIsQuietlyNothing) {
  EXPECT_FALSE(Shows("--a b.chm"));  // no viewer
  desktop_.InstallAnswer("xchm", "");
  desktop_.files.Write("a.txt", "");
  EXPECT_FALSE(Shows("a.txt"));
  desktop_.files.Write(
      "b\x0E"
      "chm",
      "");
  desktop_.files.MakeDirectory("folder.chm");
  EXPECT_FALSE(
      Shows("b\x0E"
            "chm"));
  EXPECT_FALSE(Shows("folder.chm"));
  EXPECT_FALSE(Shows("missing.chm"));
  EXPECT_FALSE(Shows("missing\\a.chm"));
  EXPECT_FALSE(Shows("--a b.chm", kKeyword));  // nobody can be asked for one
  EXPECT_EQ(HtmlHelpA(nullptr, nullptr, kIndex, 0), nullptr);
  EXPECT_EQ(HtmlHelpA(nullptr, "Q:\\a.chm", kIndex, 0), nullptr);
  EXPECT_EQ(WinHelpA(nullptr, "Z:\\a.hlp", 1, 0), 0);
  desktop_.display.Set(nullptr);
  EXPECT_FALSE(Shows("--a b.chm"));
  EXPECT_FALSE(desktop_.WasShown());
}

TEST_F(HelpTest, TheHostIsAskedFirst) {
  static std::string seen;
  seen.clear();
  OxHost host{};
  host.size = sizeof host;
  const auto note = [](const char* kind, LONG window, const char* file, LONG command, LONG data) {
    seen += std::string(kind) + std::to_string(window) + file + std::to_string(command) + "," + std::to_string(data);
    return LONG{-2};
  };
  static const auto keep = note;
  host.WinHelpA = [](void*, LONG w, const char* f, LONG c, LONG d) { return keep("w", w, f, c, d); };
  host.HtmlHelpA = [](void*, LONG w, const char* f, LONG c, LONG d) { return keep("h", w, f, c, d); };
  OxSetHost(&host);
  EXPECT_EQ(WinHelpA(reinterpret_cast<void*>(5), "f", 0x101, 0xFFFFFFFF), -2);
  EXPECT_EQ(HtmlHelpA(reinterpret_cast<void*>(5), "g", 2, 7), reinterpret_cast<void*>(std::intptr_t{-2}));
  OxSetHost(nullptr);
  EXPECT_EQ(seen, "w5f257,-1h5g2,7");
}

}  // namespace
}  // namespace Orvix::testing
