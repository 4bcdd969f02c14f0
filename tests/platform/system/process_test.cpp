// Programs that are started: what they inherit, how much of them is heard, and
// that none stays behind.
#include "platform/system/process.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <poll.h>
#include <signal.h>
#include <sys/auxv.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>

#include "platform/names/drive_map.h"
#include "support/ordinary_user.h"
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
TEST_F(ProcessTest, HelpersLeftBehindAreNotWaitedFor) {
  const std::optional<std::string> helper = OutputOf("/bin/sleep 30 & printf $!");
  ASSERT_TRUE(helper);
  EXPECT_EQ(kill(std::stoi(*helper), SIGKILL), 0);
}

TEST_F(ProcessTest, StartFailuresAreNumbered) {
  ChildProgram missing;
  EXPECT_EQ(missing.Start({"/no/such/program", {}}, ChildProgram::Output::kUnheard), ENOENT);
  desktop_.programs.Write("plain", "x");
  ChildProgram plain;
  EXPECT_EQ(plain.Start({desktop_.programs.Native("plain"), {}}, ChildProgram::Output::kRead), EACCES);
  desktop_.Install("tool", "#!/bin/sh\n");
  ChildProgram elsewhere;
  EXPECT_EQ(elsewhere.Start({FindProgram("tool"), {}, "/no/such/directory"}, ChildProgram::Output::kRead), ENOENT);
}

// Waiting for nothing must not take a child of the application's own.
TEST_F(ProcessTest, WhatNeverStartedHasEnded) {
  const pid_t own = fork();
  if (own == 0) _exit(5);
  ChildProgram missing;
  EXPECT_EQ(missing.Start({"/no/such/program", {}}, ChildProgram::Output::kRead), ENOENT);
  EXPECT_EQ(missing.Wait().kind, ProgramEnd::Kind::kUnknown);
  missing.Kill();
  int status = 0;
  EXPECT_EQ(waitpid(own, &status, 0), own);
  EXPECT_EQ(WEXITSTATUS(status), 5);
}

TEST_F(ProcessTest, OnlyWhatMayBeExecutedIsFoundOnThePath) {
  const NativeDirectory first;
  for (const std::string& directory : {first.Native(""), desktop_.programs.Native("")}) {
    std::filesystem::permissions(directory, std::filesystem::perms(0755));
  }
  first.Write("tool", "");
  std::filesystem::permissions(first.Native("tool"), std::filesystem::perms(0601));  // by others than owner and group
  first.MakeDirectory("folder");
  desktop_.Install("tool", "#!/bin/sh\n");
  std::filesystem::permissions(desktop_.programs.Native("tool"), std::filesystem::perms(0755));
  const std::filesystem::path before = std::filesystem::current_path();
  std::filesystem::current_path(desktop_.programs.Native(""));
  desktop_.path.Set((".::" + first.Native("") + ":" + desktop_.programs.Native("")).c_str());
  {
    const OrdinaryUser user;
    ASSERT_TRUE(user.ok());
    EXPECT_EQ(FindProgram("tool"), desktop_.programs.Native("") + "/tool");
    EXPECT_EQ(FindProgram("folder"), "");
    EXPECT_EQ(FindProgram("missing"), "");
  }
  desktop_.path.Set(":.:");
  EXPECT_EQ(FindProgram("tool"), "");
  std::filesystem::current_path(before);
}

// Started anew by another user, who says where programs and drives are.
TEST_F(ProcessTest, TheCallersWordsDoNotCountWithMoreRights) {
  if (getauxval(AT_SECURE) != 0) {
    EXPECT_EQ(FindProgram("tool"), "");
    EXPECT_EQ(FindProgram("env"), "/usr/bin/env");
    EXPECT_FALSE(HasDisplay());
    EXPECT_NE(DirectoryOfDrive(u'C'), std::string(getenv("XDG_DATA_HOME")) + "/orvix/drive_c");
    ChildProgram child;
    ASSERT_EQ(child.Start({"/usr/bin/env", {}}, ChildProgram::Output::kRead), 0);
    EXPECT_EQ(child.ReadOutput(1000), "PATH=/usr/bin:/bin\n");
    return;
  }
  desktop_.Install("tool", "#!/bin/sh\n");
  const pid_t again = fork();
  if (again == 0) {
    if (setresuid(65534, 0, 0) != 0) _exit(77);
    setenv("PATH", desktop_.programs.Native("").c_str(), 1);
    setenv("DISPLAY", ":7", 1);
    execl("/proc/self/exe", "tests", "--gtest_filter=*TheCallersWords*", nullptr);
    _exit(78);
  }
  int status = 0;
  waitpid(again, &status, 0);
  if (WEXITSTATUS(status) == 77) GTEST_SKIP() << "cannot be two users";
  if (WEXITSTATUS(status) == 127) GTEST_SKIP() << "libraries beside the program are not loaded then";
  EXPECT_EQ(status, 0);
}

TEST_F(ProcessTest, WaitingHasALimit) {
  desktop_.Install("tool", "#!/bin/sh\nexec /bin/sleep 30\n");
  ChildProgram child;
  ASSERT_EQ(child.Start({FindProgram("tool"), {}}, ChildProgram::Output::kUnheard), 0);
  EXPECT_EQ(child.WaitFor(milliseconds(5)), std::nullopt);
  child.Kill();
  const std::optional<ProgramEnd> end = child.WaitFor(milliseconds(0));
  ASSERT_TRUE(end);
  EXPECT_EQ(end->kind, ProgramEnd::Kind::kKilled);
}

// The helper holds a pipe open that hangs up when the helper is gone.
TEST_F(ProcessTest, KillingEndsTheHelpersToo) {
  constexpr int kAtMost_ms = 20'000;
  const std::string pipe = desktop_.files.Native("pipe");
  ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
  for (const bool ended_itself : {false, true}) {
    const int heard = open(pipe.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC);
    ASSERT_GE(heard, 0);
    desktop_.Install(
        "tool", "#!/bin/sh\nexec >'" + pipe + "'\n/bin/sleep 30 &\necho $$\n" + (ended_itself ? "exit 4\n" : "wait\n"));
    ChildProgram child;
    ASSERT_EQ(child.Start({FindProgram("tool"), {}}, ChildProgram::Output::kUnheard), 0);
    pollfd waiting{heard, POLLIN, 0};
    ASSERT_EQ(poll(&waiting, 1, kAtMost_ms), 1);
    char number[20]{};
    ASSERT_GT(read(heard, number, sizeof number - 1), 0);
    siginfo_t facts{};
    if (ended_itself) {
      ASSERT_EQ(waitid(P_PID, static_cast<id_t>(std::stoi(number)), &facts, WEXITED | WNOWAIT), 0);
    }
    child.Kill();
    EXPECT_EQ(child.Wait().ExitedWith(4), ended_itself);
    EXPECT_EQ(poll(&waiting, 1, kAtMost_ms), 1);
    EXPECT_EQ(waiting.revents, POLLHUP);
    close(heard);
  }
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
