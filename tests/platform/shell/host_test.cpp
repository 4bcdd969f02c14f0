// A host that takes the service over, watches it, answers its questions.
#include "orvix/host.h"
#include "platform/shell/file_request.h"
#include "platform/shell/mounted.h"
#include "tests/support/stand_in_desktop.h"

namespace Orvix::testing {
namespace {

struct Seen {
  LONG kind;  // 0: progress
  std::string name;
  std::int64_t items_total;
  std::int64_t bytes_done;
  std::int64_t bytes_total;
};

class HostTest : public ShellTest {
 protected:
  HostTest() {
    table_.size = sizeof table_;
    table_.context = this;
    table_.FileQuestion = [](void* self, LONG kind, const OLECHAR* name) -> LONG {
      auto& test = *static_cast<HostTest*>(self);
      test.seen_.push_back({kind, ToUtf8(name), 0, 0, 0});
      const LONG answer = test.answers_.empty() ? 1 : test.answers_.front();
      if (!test.answers_.empty()) test.answers_.erase(test.answers_.begin());
      return answer;
    };
    OxSetHost(&table_);
  }
  ~HostTest() override { OxSetHost(nullptr); }

  // Cancels at the `cancel_at`-th report, counted from 1.
  void Watch(int cancel_at = 0) {
    cancel_at_ = cancel_at;
    table_.FileProgress = [](void* self, const OLECHAR* name, std::int64_t, std::int64_t items_total,
                             std::int64_t bytes_done, std::int64_t bytes_total) -> LONG {
      auto& test = *static_cast<HostTest*>(self);
      test.seen_.push_back({0, ToUtf8(name), items_total, bytes_done, bytes_total});
      if (test.seen_.size() == 2 && test.meanwhile_ != nullptr) test.meanwhile_();
      return static_cast<int>(test.seen_.size()) == test.cancel_at_ ? 1 : 0;
    };
    OxSetHost(&table_);
  }
  [[nodiscard]] std::string Questions() const {
    std::string line;
    const std::string root = Full("");
    for (const Seen& seen : seen_) {
      const std::string name = seen.name.starts_with(root) ? seen.name.substr(root.size()) : seen.name;
      line += std::to_string(seen.kind) + ":" + name + " ";
    }
    return line;
  }

  OxHost table_{};
  std::vector<LONG> answers_;
  std::vector<Seen> seen_;
  int cancel_at_ = 0;
  void (*meanwhile_)() = nullptr;  // called at the second report
};

constexpr LONG kNo = 0;
constexpr LONG kYes = 1;
constexpr LONG kYesToAll = 2;
constexpr LONG kCancel = 3;

TEST_F(HostTest, TakesTheServiceOver) {
  table_.SHFileOperationA = [](void*, void* request) -> LONG {
    static_cast<char*>(request)[18] = 1;
    return 42;
  };
  OxSetHost(&table_);
  Make("a=1");
  EXPECT_EQ(Perform(kDeleting, {"a"}, {}), (Outcome{42, 1}));
  EXPECT_EQ(Now(), "a=1");
}

TEST_F(HostTest, IsAskedBeforeOverwriting) {
  Make("a=1 b=2 c=3 d/a=8 d/b=9");
  answers_ = {kNo, kYes};
  EXPECT_EQ(Perform(kMoving, {"a", "b", "c"}, {"d"}, 0), (Outcome{0, 1}));
  EXPECT_EQ(Now(), "a=1 d/ d/a=8 d/b=2 d/c=3");
  EXPECT_EQ(Questions(), "1:d\\a 1:d\\b ");
}

TEST_F(HostTest, YesToAllIsAskedOnceForItsKind) {
  Make("a=1 b=2 d/a=8 d/b=9");
  answers_ = {kYesToAll};
  EXPECT_EQ(Perform(kCopying, {"a", "b"}, {"d"}, 0), kDone);
  EXPECT_EQ(Questions(), "1:d\\a ");
  seen_.clear();
  answers_ = {kYesToAll};
  EXPECT_EQ(Perform(kDeleting, {"a", "b"}, {}, 0), kDone);
  EXPECT_EQ(Questions(), "2:a ");
}

TEST_F(HostTest, DirectoriesMergeInTheOrderOfNames) {
  Make("d/c=1 d/f=1 d/a=1 d/h=1 d/b=1 d/g=1 d/e=1 t/d/c=2 t/d/f=2 t/d/a=2 t/d/h=2 t/d/b=2 t/d/g=2 t/d/e=2");
  const std::string in_order = "1:t\\d\\a 1:t\\d\\b 1:t\\d\\c 1:t\\d\\e 1:t\\d\\f 1:t\\d\\g 1:t\\d\\h ";
  for (const std::uint32_t operation : {kCopying, kMoving}) {
    EXPECT_EQ(Perform(operation, {"d"}, {"t"}, 0), kDone);
    EXPECT_EQ(Questions(), in_order);
    seen_.clear();
  }
}

TEST_F(HostTest, CancelStopsAtOnce) {
  Make("a=1 b=2 c=3");
  answers_ = {kYes, kCancel};
  EXPECT_EQ(Perform(kDeleting, {"a", "b", "c"}, {}, 0), (Outcome{0x75, 1}));
  EXPECT_EQ(Now(), "b=2 c=3");
}

TEST_F(HostTest, DirectoriesAreMadeWhenTheUserAgrees) {
  Make("a=1");
  answers_ = {kNo, kYes};
  EXPECT_EQ(Perform(kCopying, {"a"}, {"x\\y\\b"}, 0), (Outcome{0, 1}));
  EXPECT_EQ(Now(), "a=1");
  EXPECT_EQ(Perform(kCopying, {"a"}, {"x\\y\\b"}, 0), kDone);
  EXPECT_EQ(Now(), "a=1 x/ x/y/ x/y/b=1");
  EXPECT_EQ(Questions(), "3:x\\y 3:x\\y ");
}

TEST_F(HostTest, ConfirmationsCanBeTurnedOff) {
  Make("a=1 d/a=8");
  EXPECT_EQ(Perform(kCopying, {"a"}, {"d"}, 0x10), kDone);
  EXPECT_EQ(Perform(kCopying, {"a"}, {"n\\a"}, 0x200), kDone);
  EXPECT_EQ(Perform(kDeleting, {"a"}, {}, 0x10), kDone);
  EXPECT_EQ(Questions(), "");
}

TEST_F(HostTest, SkippedPartsOfATreeStayAtTheirSource) {
  Make("d/x=1 d/s/y=2 d/s/z=3 t/d/s/y=9");
  answers_ = {kNo};
  EXPECT_EQ(Perform(kMoving, {"d"}, {"t"}, 0), (Outcome{0, 1}));
  EXPECT_EQ(Now(), "d/ d/s/ d/s/y=2 t/ t/d/ t/d/s/ t/d/s/y=9 t/d/s/z=3 t/d/x=1");
}

TEST_F(HostTest, SeesTotalsBeforeAnythingIsDone) {
  Make("d/x=12345 d/s/y=67 f=8");
  Watch();
  EXPECT_EQ(Perform(kCopying, {"d", "f"}, {"t"}), kDone);
  ASSERT_GE(seen_.size(), 4u);
  EXPECT_EQ(seen_[0].name, Full("d"));
  EXPECT_EQ(seen_[0].items_total, 5);
  EXPECT_EQ(seen_[0].bytes_done, 0);
  EXPECT_EQ(seen_[0].bytes_total, 8);
}

TEST_F(HostTest, ACancelledCopyLeavesNoHalfFile) {
  Make("t/big=old");
  std::ofstream("big") << std::string(40'000'000, 'x');
  Watch(3);  // the start, one piece, the next piece
  EXPECT_EQ(Perform(kCopying, {"big"}, {"t"}), (Outcome{0x75, 1}));
  EXPECT_EQ(Listing("t"), "big=old");
  ASSERT_EQ(seen_.size(), 3u);
  EXPECT_GT(seen_[2].bytes_done, 0);
  EXPECT_LT(seen_[2].bytes_done, 40'000'000);
}

TEST_F(HostTest, WhatIsMountedInATreeIsLeftAndNamed) {
  Make("d/m/ d/n/ d/k/ o/y=2");
  const Mounted file_system(directory_.Native("d/m"));
  const Mounted same_device(directory_.Native("d/n"), directory_.Native("o"));
  const Mounted file(directory_.Native("d/k/f"), directory_.Native("o/y"));
  const Mounted elsewhere(directory_.Native("v"));
  if (!file_system.ok() || !same_device.ok() || !file.ok() || !elsewhere.ok())
    GTEST_SKIP() << "mounting is not allowed";
  Make("d/m/x=1 v/d/");
  Watch();
  const std::string before = Now();
  for (const char* const top : {"d", "d\\m", "d\\n", "d\\k"}) {
    for (const std::uint32_t operation : {kDeleting, kMoving}) {
      EXPECT_EQ(Perform(operation, {top}, {"v"}), (Outcome{32, 0})) << top;
      const std::string named = seen_.back().name;
      EXPECT_TRUE(named == Full("d\\m") || named == Full("d\\n") || named == Full("d\\k\\f")) << named;
    }
  }
  EXPECT_EQ(Now(), before);
}

TEST_F(HostTest, WhatChangesWhileItIsCopiedStays) {
  const Mounted elsewhere(directory_.Native("v"));
  if (!elsewhere.ok()) GTEST_SKIP() << "mounting is not allowed";
  Make("d/s/x=1 d/y=2");
  meanwhile_ = [] { std::ofstream("d/s/x") << "changed"; };
  Watch();
  EXPECT_EQ(Perform(kMoving, {"d"}, {"v"}), (Outcome{32, 0}));
  EXPECT_EQ(Listing("d"), "s/ s/x=changed");
  EXPECT_EQ(Listing("v"), "d/ d/s/ d/s/x=1 d/y=2");
}

// The walk is far below, and what it came from is another's by then.
TEST_F(HostTest, ATreeMovedAwayIsNotFollowedUp) {
  std::string path = "d";
  for (int i = 0; i < 40; ++i) path += "/d";
  Make(path + "/x=1 o/keep=2");
  meanwhile_ = [] { std::filesystem::rename("d/d/d/d", "o/d"); };
  Watch();
  EXPECT_EQ(Perform(kDeleting, {"d"}, {}), (Outcome{32, 0}));
  EXPECT_EQ(Now(), "d/ d/d/ d/d/d/ o/ o/d/ o/keep=2");
}

TEST_F(HostTest, ReportsAreRareAndSilenceIsKept) {
  for (int i = 0; i < 300; ++i) MakeFiles("d", "f" + std::to_string(i) + "=1");
  Watch();
  EXPECT_EQ(Perform(kDeleting, {"d"}, {}), kDone);
  EXPECT_LT(seen_.size(), 50u);
  seen_.clear();
  Make("a=1");
  EXPECT_EQ(Perform(kDeleting, {"a"}, {}, 0x14), kDone);
  EXPECT_EQ(seen_.size(), 0u);
}

TEST_F(HostTest, SimpleProgressShowsTheTitle) {
  Make("a=1");
  Watch();
  EXPECT_EQ(Perform(kDeleting, {"a"}, {}, 0x110, "Tidying\x85"), kDone);
  ASSERT_FALSE(seen_.empty());
  EXPECT_EQ(seen_[0].name, "Tidying\u2026\n" + Full("a"));
}

TEST_F(HostTest, TheLastReportSaysAllOfAll) {
  for (int i = 0; i < 300; ++i) MakeFiles("d", "f" + std::to_string(i) + "=12345");
  Watch();
  EXPECT_EQ(Perform(kCopying, {"d"}, {"t"}), kDone);
  ASSERT_FALSE(seen_.empty());
  EXPECT_EQ(seen_.back().items_total, 301);
  EXPECT_EQ(seen_.back().bytes_total, 1500);
  EXPECT_EQ(seen_.back().bytes_done, 1500);
}

// A window of the desktop asks where the host does not.
TEST_F(HostTest, AQuestionWindowIsAnsweredInEveryWay) {
  OxSetHost(nullptr);
  const Desktop desktop;
  const struct {
    const char* output;
    int status;
    Outcome outcome;
    const char* after;
  } rows[] = {
      {"", 0, kDone, "d/a=1 d/b=2"},  // Yes
      {"Yes to all\n", 1, kDone, "d/a=1 d/b=2"},
      {"No\n", 1, {0, 1}, "d/a=8 d/b=9"},
      {"", 1, {0x75, 1}, "d/a=8 d/b=9"},  // cancelled
      {"what is this\n", 1, {0x75, 1}, "d/a=8 d/b=9"},
  };
  for (const auto& row : rows) {
    Make("a=1 b=2 d/a=8 d/b=9");
    std::filesystem::remove(desktop.programs.Native("calls"));
    desktop.InstallAnswer("zenity", row.output, row.status);
    EXPECT_EQ(Perform(kCopying, {"a", "b"}, {"d"}, 0), row.outcome) << row.output;
    EXPECT_EQ(Now(), std::string("a=1 b=2 d/ ") + row.after) << row.output;
    const std::vector<std::string> words = desktop.Words();
    ASSERT_GE(words.size(), 5u);
    EXPECT_EQ(words[4], "--text=Replace the file that is there already?\n" + Full("d\\a"));
    const bool once = row.outcome.code != 0 || std::string(row.output) == "Yes to all\n";
    EXPECT_EQ(words.size(), once ? 9u : 18u) << row.output;
  }
}

TEST_F(HostTest, WithNobodyToAskNothingIsLost) {
  OxSetHost(nullptr);
  const Variable x("DISPLAY", nullptr);
  const Variable wayland("WAYLAND_DISPLAY", nullptr);
  Make("a=1 b=2 d/a=8");
  EXPECT_EQ(Perform(kCopying, {"a", "b"}, {"d"}, 0), (Outcome{0, 1}));
  EXPECT_EQ(Perform(kDeleting, {"a"}, {}, 0), (Outcome{0, 1}));
  EXPECT_EQ(Perform(kMoving, {"b"}, {"new\\b"}, 0), kDone);
  EXPECT_EQ(Now(), "a=1 d/ d/a=8 d/b=2 new/ new/b=2");
  OxFileOperationFacts facts{};
  BSTR item = nullptr;
  BSTR words = nullptr;
  ASSERT_EQ(OxLastFileOperation(&facts, &item, &words), S_OK);
  EXPECT_EQ(facts.code, 0);
  EXPECT_EQ(facts.itemsDone, 1);
  EXPECT_EQ(ViewOf(words), u"done");
  SysFreeString(item);
  SysFreeString(words);
  const std::int64_t serial = facts.serial;
  EXPECT_EQ(Perform(kCopying, {"none"}, {"d"}).code, 2);
  ASSERT_EQ(OxLastFileOperation(&facts, &item, &words), S_OK);
  EXPECT_EQ(facts.serial, serial + 1);
  EXPECT_EQ(facts.code, 2);
  EXPECT_EQ(ViewOf(words), u"there is no such file or directory");
  SysFreeString(item);
  SysFreeString(words);
  EXPECT_EQ(Perform(kDeleting, {"a"}, {}, 0), (Outcome{0, 1}));
  ASSERT_EQ(OxLastFileOperation(&facts, &item, nullptr), S_OK);
  EXPECT_EQ(facts.aborted, 1);
  EXPECT_EQ(ToUtf8(ViewOf(item)), Full("a"));
  SysFreeString(item);
}

}  // namespace
}  // namespace Orvix::testing
