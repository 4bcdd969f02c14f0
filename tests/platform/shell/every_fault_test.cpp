// Each system call of an operation fails in its turn, or the process ends there.
// Nothing is lost by that, and the next operation leaves nothing of it behind.
#include <sys/resource.h>
#include <sys/wait.h>

#include <map>
#include <optional>
#include <ostream>

#include "platform/shell/faulty_calls.h"
#include "platform/shell/file_request.h"
#include "platform/shell/mounted.h"

namespace Orvix::testing {
namespace {

using Kind = Faults::Kind;
constexpr std::uint16_t kUndo = 0x50;
constexpr char kContent[] = "l>x s/ s/y=2 x=1";

// The file system that the item is on.
enum class Volume {
  kHome,   // that of the home trash
  kOwn,    // another one, which has a trash
  kTaken,  // another one, where there is no place for a trash
};

struct Row {
  const char* name;
  Volume volume;
  Kind kind;
  int error;
  const char* calls = "";
};
void PrintTo(const Row& row, std::ostream* stream) { *stream << row.name; }

class EveryFaultTest : public ShellTest, public ::testing::WithParamInterface<Row> {
 protected:
  EveryFaultTest() : data_home_(getenv("XDG_DATA_HOME")) {
    setenv("XDG_DATA_HOME", directory_.Native("home").c_str(), 1);
  }
  ~EveryFaultTest() override { setenv("XDG_DATA_HOME", data_home_.c_str(), 1); }

  void MakeItem() {
    const std::string own = "p/.Trash-" + std::to_string(geteuid());
    trash_ = GetParam().volume == Volume::kOwn ? own : "home/Trash";
    for (const std::string& left : {trash_, std::string("p/q")}) std::filesystem::remove_all(left);
    Make("p/q/d/x=1 p/q/d/s/y=2 p/q/d/l>x");
    if (GetParam().volume == Volume::kTaken) Make(own + "=file");
  }

  static bool IsWhole(const std::string& path) {
    return std::filesystem::is_directory(path) && Listing(path) == kContent;
  }

  // The items that are whole and have their information.
  int WholeInTrash() const {
    int whole = 0;
    for (const std::string name : {"d", "d (2)", "d (3)"}) {
      if (std::filesystem::exists(trash_ + "/info/" + name + ".trashinfo") && IsWhole(trash_ + "/files/" + name))
        ++whole;
    }
    return whole;
  }

  // Everything in the trash has its information, all information its item.
  void ExpectNothingLeftOver() const {
    std::map<std::string, int> names;
    for (const auto& entry : std::filesystem::directory_iterator(trash_)) {
      const std::string name = entry.path().filename();
      EXPECT_TRUE(name == "files" || name == "info") << name;
    }
    for (const auto& entry : std::filesystem::directory_iterator(trash_ + "/files"))
      names[entry.path().filename()] += 1;
    for (const auto& entry : std::filesystem::directory_iterator(trash_ + "/info")) {
      EXPECT_GT(file_size(entry), 30u) << entry.path();
      names[entry.path().stem()] += 2;
    }
    for (const auto& [name, parts] : names) EXPECT_EQ(parts, 3) << name;
  }

  // Of the deletion with the fault at that call.
  struct Try {
    Outcome outcome{};
    bool reached = false;
  };
  [[nodiscard]] Try Delete(int at) const {
    Try tried;
    if (GetParam().kind == Kind::kKill) {
      const pid_t child = fork();
      if (child == 0) {
        const Faults killing(Kind::kKill, at, 0);
        _exit(Perform(kDeleting, {Full("p\\q\\d")}, {}, kUndo) == kDone ? 0 : 1);
      }
      int status = 0;
      waitpid(child, &status, 0);
      tried.reached = WEXITSTATUS(status) == 9;
      tried.outcome = WEXITSTATUS(status) == 0 ? kDone : Outcome{1, 0};
      return tried;
    }
    const Faults failing(GetParam().kind, at, GetParam().error, GetParam().calls);
    try {
      tried.outcome = Perform(kDeleting, {Full("p\\q\\d")}, {}, kUndo);
    } catch (const std::bad_alloc&) {  // the test's own
      tried.outcome = {8, 0};
    }
    tried.reached = failing.calls >= at;
    EXPECT_FALSE(failing.endless);
    return tried;
  }

 private:
  std::string data_home_;
  std::string trash_;
};

TEST_P(EveryFaultTest, LosesNothingAndLeavesNothing) {
  std::optional<Mounted> volume;
  std::optional<Mounted> home;  // nothing to wait for when it is made safe
  if (GetParam().volume != Volume::kHome) {
    home.emplace(directory_.Native("home"));
    volume.emplace(directory_.Native("p"));
    if (!home->ok() || !volume->ok()) GTEST_SKIP() << "mounting is not allowed";
  }
  int refused = 0;
  for (int at = 1; at < 1000; ++at) {
    SCOPED_TRACE(at);
    MakeItem();
    const Try tried = Delete(at);
    if (!tried.reached) {
      EXPECT_EQ(tried.outcome, kDone);
      EXPECT_GT(refused, 10);
      return;
    }
    refused += tried.outcome == kDone ? 0 : 1;
    const bool stayed = IsWhole("p/q/d");
    const int whole = WholeInTrash();
    if (GetParam().kind == Kind::kKill) {
      ASSERT_GE(whole + (stayed ? 1 : 0), 1);
    } else {
      ASSERT_EQ(whole + (stayed ? 1 : 0), 1);
    }
    EXPECT_TRUE(tried.outcome != kDone || whole == 1);
    Make("p/q/other=3");
    EXPECT_EQ(Perform(kDeleting, {Full("p\\q\\other")}, {}, kUndo), kDone);
    if (std::filesystem::exists("p/q/d")) {
      EXPECT_EQ(Perform(kDeleting, {Full("p\\q\\d")}, {}, kUndo), kDone);
    }
    EXPECT_GE(WholeInTrash(), 1);
    ExpectNothingLeftOver();
    EXPECT_EQ(Listing("p/q"), "");
    if (HasFailure()) return;
  }
  FAIL() << "there is no end of calls";
}

INSTANTIATE_TEST_SUITE_P(Trash, EveryFaultTest,
                         ::testing::Values(Row{"Refused", Volume::kHome, Kind::kOnce, EACCES},
                                           Row{"Broken", Volume::kHome, Kind::kOnce, EIO},
                                           Row{"Killed", Volume::kHome, Kind::kKill, 0},
                                           Row{"NoMemory", Volume::kHome, Kind::kOnce, ENOMEM, "new "},
                                           Row{"NoMemoryAcross", Volume::kTaken, Kind::kOnce, ENOMEM, "new "},
                                           Row{"BrokenElsewhere", Volume::kOwn, Kind::kOnce, EIO},
                                           Row{"KilledElsewhere", Volume::kOwn, Kind::kKill, 0},
                                           Row{"RefusedAcross", Volume::kTaken, Kind::kOnce, EACCES},
                                           Row{"BrokenAcross", Volume::kTaken, Kind::kOnce, EIO},
                                           Row{"FullAcross", Volume::kTaken, Kind::kOnce, ENOSPC},
                                           Row{"KilledAcross", Volume::kTaken, Kind::kKill, 0}),
                         [](const auto& test) { return std::string(test.param.name); });

TEST_F(ShellTest, LargeTargetsAreNotReadForEachItem) {
  Make("a=1 t/");
  for (int i = 0; i < 1000; ++i) std::ofstream("t/other" + std::to_string(i));
  const Faults none(Kind::kOnce, 1 << 30, 0, "getdents64 ");
  EXPECT_EQ(Perform(kCopying, {"a"}, {"t\\b"}), kDone);
  EXPECT_EQ(Perform(kCopying, {"a"}, {"t\\OTHER7"}), kDone);
  EXPECT_EQ(none.calls, 0);
  EXPECT_EQ(ContentOf("t/other7"), "1");
}

// The whole operation with one kind of fault; `after` when the code is 0.
struct Case {
  const char* name;
  Kind kind;
  int error;
  const char* calls;  // that count
  const char* before;
  std::uint32_t operation;
  const char* from;
  const char* to;
  INT code;
  const char* after;
  int at = 1;
  std::uint16_t flags = kUndo;
};
void PrintTo(const Case& row, std::ostream* stream) { *stream << row.name; }

class FaultyOperationTest : public ShellTest, public ::testing::WithParamInterface<Case> {};

TEST_P(FaultyOperationTest, Ends) {
  const Case& c = GetParam();
  const mode_t mask = umask(022);
  Make(c.before);
  const std::vector<std::string> to = *c.to == '\0' ? std::vector<std::string>{} : std::vector<std::string>{c.to};
  const std::string data_home = getenv("XDG_DATA_HOME");
  setenv("XDG_DATA_HOME", directory_.Native("home").c_str(), 1);
  const std::string from = Full(c.from);
  Outcome outcome{};
  bool endless = false;
  {
    const Faults faulty(c.kind, c.at, c.error, c.calls);
    outcome = Perform(c.operation, {from}, to, c.flags);
    endless = faulty.endless;
    EXPECT_GT(faulty.calls, 0);
  }
  setenv("XDG_DATA_HOME", data_home.c_str(), 1);
  EXPECT_EQ(outcome, (Outcome{c.code, 0}));
  EXPECT_FALSE(endless);
  if (c.operation == kDeleting && c.code == 0) {
    EXPECT_NE(Listing("home/Trash/files"), "");
    EXPECT_TRUE(Listing("home/Trash/info").find("DeletionDate=") != std::string::npos);
  }
  std::filesystem::remove_all("home");
  umask(mask);
  EXPECT_EQ(Now(), c.after);
  for (const auto& entry : std::filesystem::recursive_directory_iterator(".")) {
    EXPECT_TRUE(!entry.is_directory() || entry.status().permissions() == std::filesystem::perms(0755)) << entry.path();
  }
}

INSTANTIATE_TEST_SUITE_P(
    All, FaultyOperationTest,
    ::testing::Values(
        Case{"InterruptedCopy", Kind::kTurns, EINTR, "", "d/s/x=1 d/y=2 t/", kCopying, "d", "t", 0,
             "d/ d/s/ d/s/x=1 d/y=2 t/ t/d/ t/d/s/ t/d/s/x=1 t/d/y=2"},
        Case{"InterruptedMerge", Kind::kTurns, EINTR, "", "d/x=1 t/d/x=2", kMoving, "d", "t", 0, "t/ t/d/ t/d/x=1"},
        Case{"InterruptedTrash", Kind::kTurns, EINTR, "", "d/x=1", kDeleting, "d", "", 0, ""},
        Case{"InterruptedClose", Kind::kOnward, EINTR, "close ", "a=1", kDeleting, "a", "", 0, ""},
        Case{"ShortWrites", Kind::kShort, 0, "", "a=1", kDeleting, "a", "", 0, ""},
        Case{"WithoutLinks", Kind::kOnward, EPERM, "linkat ", "a=1", kDeleting, "a", "", 0, ""},
        Case{"StatusFailsForGood", Kind::kOnward, ENOENT, "stat ", "a=1", kDeleting, "a", "", 3, "a=1"},
        Case{"OpenFailsForGood", Kind::kOnward, ENOENT, "openat ", "d/x=1 t/", kCopying, "d", "t", 3, "d/ d/x=1 t/", 2},
        Case{"NothingThereButTaken", Kind::kOnward, EEXIST, "renameat2 ", "a=1 t/", kMoving, "a", "t", 32, "a=1 t/"},
        Case{"EveryNameIsTaken", Kind::kOnward, EEXIST, "linkat ", "a=1 t/", kCopying, "a", "t", 32, "a=1 t/"},
        Case{"WriteError", Kind::kOnce, EIO, "pwrite ", "a=1 t/a=9", kCopying, "a", "t", 29, "a=1 t/ t/a=9"},
        Case{"WriteErrorInTree", Kind::kOnce, EIO, "pwrite ", "d/s/x=1 t/", kCopying, "d", "t", 29,
             "d/ d/s/ d/s/x=1 t/ t/d/ t/d/s/"},
        Case{"AcrossFoundWhenReplacing", Kind::kOnce, EXDEV, "renameat ", "a=1 t/a=9", kMoving, "a", "t", 0,
             "t/ t/a=1"},
        Case{"AcrossFoundWhenNumbering", Kind::kOnce, EXDEV, "renameat2 ", "a=1 t/a=9", kMoving, "a", "t", 0,
             "t/ t/a (2)=1 t/a=9", 2, 0x18},
        Case{"Quota", Kind::kOnce, EDQUOT, "pwrite ", "a=1 t/a=9", kCopying, "a", "t", 112, "a=1 t/ t/a=9"},
        Case{"LateWriteError", Kind::kOnward, EIO, "close ", "a=1 t/a=9", kCopying, "a", "t", 29, "a=1 t/ t/a=9"}),
    [](const auto& test) { return std::string(test.param.name); });

}  // namespace
}  // namespace Orvix::testing
