// What goes wrong: rights, limits, names, and names that lost characters. The
// code says which it was, and what was there before is there still.
#include <pthread.h>
#include <sys/resource.h>

#include "platform/names/text_behind.h"
#include "platform/shell/file_request.h"
#include "support/ordinary_user.h"

namespace Orvix::testing {
namespace {

// A lower limit of the process for the length of a scope.
class Limit {
 public:
  Limit(int resource, rlim_t value) : resource_(resource) {
    getrlimit(static_cast<__rlimit_resource>(resource), &before_);
    rlimit lowered = before_;
    lowered.rlim_cur = value;
    setrlimit(static_cast<__rlimit_resource>(resource), &lowered);
  }
  Limit(const Limit&) = delete;
  Limit& operator=(const Limit&) = delete;
  ~Limit() { setrlimit(static_cast<__rlimit_resource>(resource_), &before_); }

 private:
  int resource_;
  rlimit before_{};
};

using FaultTest = ShellTest;

TEST_F(FaultTest, AFileBeyondTheLimitLeavesTheOldOne) {
  Make("a=1 t/big=old");
  std::ofstream("big") << std::string(100'000, 'x');
  {
    const Limit limit(RLIMIT_FSIZE, 50'000);
    EXPECT_EQ(Perform(kCopying, {"a", "big"}, {"t"}), (Outcome{0x85, 0}));
  }
  EXPECT_EQ(Listing("t"), "a=1 big=old");
}

TEST_F(FaultTest, EveryLackOfDescriptorsEndsCleanly) {
  Make("d/x=1 d/s/y=2 t/d/x=9");
  rlim_t free_from = 0;
  while (fcntl(static_cast<int>(free_from), F_GETFD) >= 0) ++free_from;
  bool done = false;
  int refused = 0;
  // One descriptor more each time until the copy gets through.
  for (rlim_t extra = 0; extra < 20 && !done; ++extra) {
    Outcome outcome{};
    {
      const Limit limit(RLIMIT_NOFILE, free_from + extra);
      outcome = Perform(kCopying, {"d"}, {"t"});
    }
    done = outcome == kDone;
    if (!done) {
      EXPECT_EQ(outcome, (Outcome{4, 0})) << extra;
      ++refused;
    }
    const std::string x = ContentOf("t/d/x");
    EXPECT_TRUE(x == "9" || x == "1") << x;
    for (const auto& entry : std::filesystem::recursive_directory_iterator("t")) {
      EXPECT_FALSE(entry.path().filename().string().starts_with(".orvix-")) << entry.path();
    }
  }
  EXPECT_TRUE(done);
  EXPECT_GE(refused, 4);
  EXPECT_EQ(Listing("t/d"), "s/ s/y=2 x=1");
}

struct Denial {
  const char* name;
  std::uint32_t operation;
  std::vector<std::string> from;
  std::vector<std::string> to;
  INT code;
};
void PrintTo(const Denial& denial, std::ostream* stream) { *stream << denial.name; }

class DeniedTest : public ShellTest, public ::testing::WithParamInterface<Denial> {};

TEST_P(DeniedTest, LeavesEverything) {
  Make("secret=1 locked/x=2 open/y=3 hidden/z=4");
  chmod("secret", 0);
  chmod("locked", 0555);
  chmod("hidden", 0311);
  for (const char* name : {"open", "open/y"}) chmod(name, 0777);
  const std::string before = Now();
  Outcome outcome{};
  {
    const OrdinaryUser user;
    if (!user.ok()) GTEST_SKIP() << "cannot give up rights";
    outcome = Perform(GetParam().operation, GetParam().from, GetParam().to);
  }
  EXPECT_EQ(outcome, (Outcome{GetParam().code, 0}));
  EXPECT_EQ(Now(), before);
  for (const char* name : {"locked", "hidden"}) chmod(name, 0755);
}

INSTANTIATE_TEST_SUITE_P(Rights, DeniedTest,
                         ::testing::Values(Denial{"UnreadableFile", kCopying, {"secret"}, {"open"}, 0x78},
                                           Denial{"UnwritableTarget", kCopying, {"open\\y"}, {"locked"}, 5},
                                           Denial{
                                               "NewDirectoryInUnwritable", kCopying, {"open\\y"}, {"locked\\n\\y"}, 5},
                                           Denial{"ReplaceInUnwritable", kCopying, {"open\\y"}, {"locked\\x"}, 5},
                                           Denial{"DeleteFromUnwritable", kDeleting, {"locked\\x"}, {}, 0x78},
                                           Denial{"DeleteTreeUnwritable", kDeleting, {"locked"}, {}, 0x78},
                                           Denial{"MoveFromUnwritable", kMoving, {"locked\\x"}, {"open"}, 5},
                                           Denial{"ListUnreadable", kDeleting, {"hidden\\*"}, {}, 0x78},
                                           Denial{"RenameInUnwritable", kRenaming, {"locked\\x"}, {"locked\\y"}, 5}),
                         [](const auto& test) { return std::string(test.param.name); });

TEST_F(FaultTest, WriteProtectedFilesAreReplacedAndDeleted) {
  Make("a=1 b=2 d/c=3");
  chmod("b", 0444);
  chmod("d/c", 0444);
  chmod(".", 0777);
  EXPECT_EQ(Perform(kCopying, {"a"}, {"b"}), kDone);
  EXPECT_EQ(Perform(kDeleting, {"d"}, {}), kDone);
  EXPECT_EQ(Now(), "a=1 b=1");
}

TEST_F(FaultTest, NamesThatAreTooLong) {
  Make("a=1");
  const std::string name(256, 'n');
  EXPECT_EQ(Perform(kCopying, {"a"}, {name}), (Outcome{0x81, 0}));
  EXPECT_EQ(Perform(kCopying, {name}, {"b"}), (Outcome{0x81, 0}));
  std::string deep = "d";
  for (int i = 0; i < 2100; ++i) deep += "\\d";
  EXPECT_EQ(Perform(kCopying, {"a"}, {deep}), (Outcome{0x79, 0}));
  EXPECT_EQ(Now(), "a=1");
}

TEST_F(FaultTest, LinksThatLoopAreNoWay) {
  Make("a=1 l>m m>l");
  EXPECT_EQ(Perform(kCopying, {"l\\x"}, {"b"}), (Outcome{0x7C, 0}));
  EXPECT_EQ(Perform(kCopying, {"a"}, {"l\\x"}), (Outcome{0x7C, 0}));
  EXPECT_EQ(Now(), "a=1 l>m m>l");
}

// A chain of directories, each in the one before.
void MakeDeep(const char* top, int levels) {
  int here = open(".", O_PATH | O_DIRECTORY);
  for (int i = 0; i < levels; ++i) {
    const char* const name = i == 0 ? top : "d";
    mkdirat(here, name, 0755);
    const int below = openat(here, name, O_PATH | O_DIRECTORY);
    close(here);
    here = below;
  }
  close(openat(here, "file", O_WRONLY | O_CREAT, 0644));
  close(here);
}

TEST_F(FaultTest, DeepTreesNeedNoMoreOfTheStack) {
  constexpr int kLevels = 2500;
  MakeDeep("d", kLevels);
  MakeDeep("m", kLevels);
  Outcome outcomes[4]{};
  const auto work = [](void* results) -> void* {
    Outcome* const outcome = static_cast<Outcome*>(results);
    outcome[0] = Perform(kCopying, {"d"}, {"t\\m"});
    outcome[1] = Perform(kCopying, {"d"}, {"t\\c"});
    outcome[2] = Perform(kMoving, {"m"}, {"t"});
    outcome[3] = Perform(kDeleting, {"d", "t"}, {});
    return nullptr;
  };
  pthread_attr_t small;
  pthread_attr_init(&small);
  pthread_attr_setstacksize(&small, 512 * 1024);
  pthread_t thread{};
  ASSERT_EQ(pthread_create(&thread, &small, work, outcomes), 0);
  pthread_join(thread, nullptr);
  pthread_attr_destroy(&small);
  for (const Outcome& outcome : outcomes) EXPECT_EQ(outcome, kDone);
  EXPECT_EQ(Now(), "");
}

// The list converted into the code page where it lies.
Outcome DeleteConverted(TextView list) {
  const LowBytes bytes(std::string(list.size(), ' '));
  const auto units = static_cast<INT>(list.size());
  WideCharToMultiByte(CP_ACP, 0, list.data(), units, bytes.get(), units, nullptr, nullptr);
  return RunRequest(kDeleting, 0x10, bytes.Address(), 0);
}

// The text behind the bytes counts: no substitute is a wildcard.
TEST_F(FaultTest, EveryNameCanBeNamed) {
  const auto make_all = [&] { Make("a1=1 a2=2 a\u0416=3 \u65E5\u672C=4 \u03A9\u03C9/\u0436=5 \U0001F600=6"); };
  make_all();
  EXPECT_EQ(DeleteConverted({u"a\u0416\0", 4}), kDone);
  EXPECT_EQ(DeleteConverted({u"\u65E5\u672C\0\u03A9\u03C9\0\xD83D\xDE00\0", 10}), kDone);
  EXPECT_EQ(Now(), "a1=1 a2=2");
  EXPECT_EQ(DeleteConverted({u"a?\0", 4}), kDone);  // very likely at the same place
  EXPECT_EQ(Now(), "");
  make_all();
  const LowBytes bytes(std::string("a1\0  \0\0", 7));  // converted one by one
  WideCharToMultiByte(CP_ACP, 0, u"a\u0416", 2, bytes.get() + 3, 2, nullptr, nullptr);
  EXPECT_EQ(RunRequest(kDeleting, 0x10, bytes.Address(), 0), kDone);
  EXPECT_EQ(DeleteConverted({u"a?\0\0b\u0416\0\0", 8}), kDone);  // a loss behind the end of the list is none
  EXPECT_EQ(Now(), "\u03A9\u03C9/ \u03A9\u03C9/\u0436=5 \u65E5\u672C=4 \U0001F600=6");
}

TEST(TextBehindTest, IsKnownByPlaceAndContent) {
  char bytes[] = "x?y";
  char same[] = "x?y";
  NoteLossyConversion({bytes, 3}, u"x\u0416y");
  EXPECT_EQ(TextBehind({bytes, 3}), u"x\u0416y");
  EXPECT_EQ(TextBehind({bytes + 1, 1}), u"\u0416");
  EXPECT_EQ(TextBehind({same, 3}), u"x?y");
  bytes[0] = 'z';  // someone else's bytes by now
  EXPECT_EQ(TextBehind({bytes, 3}), u"z?y");
  bytes[0] = 'x';
  for (int i = 0; i < 15; ++i) NoteLossyConversion({same, 3}, u"a\u0416b");
  EXPECT_EQ(TextBehind({bytes, 3}), u"x\u0416y");
  ForgetLossyConversion({bytes + 2, 1});
  EXPECT_EQ(TextBehind({bytes, 3}), u"x?y");
}

}  // namespace
}  // namespace Orvix::testing
