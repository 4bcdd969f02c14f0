// Programs that are started: what they inherit, how much of them is heard, and
// that none stays behind.
#include "platform/system/process.h"

#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>

#include "support/stand_in_desktop.h"

namespace Orvix::testing {
namespace {

using std::chrono::milliseconds;

class ProcessTest : public ::testing::Test {
 protected:
  std::optional<std::string> OutputOf(const std::string& script, std::size_t most = 1000, ProgramEnd* end = nullptr) {
    desktop_.Install("tool", "#!/bin/sh\n" + script + "\n");
    ChildProgram child;
    EXPECT_EQ(child.Start({FindProgram("tool"), {"one word", ""}}, ChildProgram::Output::kRead), 0);
    std::optional<std::string> output = child.ReadOutput(most);
    if (end != nullptr) *end = child.Wait();
    return output;
  }

  Desktop desktop_;
};

TEST_F(ProcessTest, ArgumentsOutputAndStatus) {
  ProgramEnd end;
  EXPECT_EQ(OutputOf("printf '%s|' \"$@\"; exit 3", 1000, &end), "one word||");
  EXPECT_TRUE(end.ExitedWith(3));
  EXPECT_EQ(OutputOf("kill -9 $$", 1000, &end), "");
  EXPECT_EQ(end.kind, ProgramEnd::Kind::kKilled);
  EXPECT_EQ(end.status, 9);
}

TEST_F(ProcessTest, NothingButTheStandardDescriptorsIsInherited) {
  constexpr int kLeaky = 57;
  ASSERT_EQ(dup2(STDIN_FILENO, kLeaky), kLeaky);  // without the mark to close it
  const std::optional<std::string> seen = OutputOf("for f in /proc/$$/fd/*; do printf '%s ' ${f##*/}; done; /bin/cat");
  close(kLeaky);
  ASSERT_TRUE(seen);
  EXPECT_NE(seen->find("0 1 "), std::string::npos) << *seen;
  EXPECT_EQ(seen->find("57 "), std::string::npos) << *seen;
}

TEST_F(ProcessTest, OutputIsBounded) {
  EXPECT_EQ(OutputOf("printf 12345", 5), "12345");
  ProgramEnd end;
  EXPECT_EQ(OutputOf("while :; do echo much; done", 5000, &end), std::nullopt);
  EXPECT_EQ(end.kind, ProgramEnd::Kind::kKilled);
}

// What a program leaves behind holds its output open, and is not waited for.
TEST_F(ProcessTest, HelpersLeftBehindAreNotWaitedFor) { EXPECT_EQ(OutputOf("/bin/sleep 30 & printf done"), "done"); }

TEST_F(ProcessTest, StartFailuresAreNumbered) {
  ChildProgram missing;
  EXPECT_EQ(missing.Start({"/no/such/program", {}}, ChildProgram::Output::kUnheard), ENOENT);
  desktop_.programs.Write("plain", "x");
  ChildProgram plain;
  EXPECT_EQ(plain.Start({desktop_.programs.Native("plain"), {}}, ChildProgram::Output::kRead), EACCES);
  EXPECT_EQ(FindProgram("plain"), "");
  EXPECT_EQ(FindProgram("missing"), "");
  desktop_.path.Set(("relative:" + desktop_.programs.Native("")).c_str());
  desktop_.Install("tool", "#!/bin/sh\n");
  EXPECT_EQ(FindProgram("tool"), desktop_.programs.Native("") + "/tool");
}

TEST_F(ProcessTest, WaitingHasALimitAndKillingEndsTheSession) {
  desktop_.Install("tool", "#!/bin/sh\n/bin/sleep 30 &\necho $!\nwait\n");
  ChildProgram child;
  ASSERT_EQ(child.Start({FindProgram("tool"), {}}, ChildProgram::Output::kUnheard), 0);
  EXPECT_EQ(child.WaitFor(milliseconds(5)), std::nullopt);
  child.Kill();
  const std::optional<ProgramEnd> end = child.WaitFor(milliseconds(0));
  ASSERT_TRUE(end);
  EXPECT_EQ(end->kind, ProgramEnd::Kind::kKilled);
}

TEST_F(ProcessTest, ProgramsNobodyWaitedForAreCollected) {
  desktop_.Install("tool", "#!/bin/sh\nexit 0\n");
  for (int i = 0; i < 5; ++i) {
    ChildProgram child;
    ASSERT_EQ(child.Start({FindProgram("tool"), {}}, ChildProgram::Output::kUnheard), 0);
  }
  // Each start collects those that have ended; in the end none is left over.
  for (int i = 0; i < 2000; ++i) {
    ChildProgram last;
    ASSERT_EQ(last.Start({FindProgram("tool"), {}}, ChildProgram::Output::kUnheard), 0);
    last.Wait();
    siginfo_t info{};
    const int result = waitid(P_ALL, 0, &info, WEXITED | WNOHANG | WNOWAIT);
    if (result != 0 ? errno == ECHILD : info.si_pid == 0) return;
    usleep(1000);
  }
  ADD_FAILURE() << "children stay uncollected";
}

}  // namespace
}  // namespace Orvix::testing
