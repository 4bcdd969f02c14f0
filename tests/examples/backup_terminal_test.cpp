// A backup at a terminal: progress, and Ctrl-C while a file is being copied.
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <fstream>

#include "support/run_program.h"

namespace Orvix {
namespace {

namespace fs = std::filesystem;
using testing_support::ReadWhole;
using testing_support::ScratchDirectory;

// A backup whose standard error is a terminal of the test's own.
class AtTerminal {
 public:
  explicit AtTerminal(std::vector<std::string> words) {
    const char* folder = std::getenv("ORVIX_BIN");
    words.insert(words.begin(), (folder == nullptr ? std::string("bin") : std::string(folder)) + "/backup");
    std::vector<char*> arguments;
    for (std::string& word : words) arguments.push_back(word.data());
    arguments.push_back(nullptr);
    terminal_ = Opened();
    if (terminal_ < 0) throw std::runtime_error("no terminal");
    const std::string name = ptsname(terminal_);
    const std::string out = (scratch_.Path() / "out").string();
    child_ = fork();
    if (child_ < 0) throw std::runtime_error("cannot start");
    if (child_ == 0) {
      dup2(open(out.c_str(), O_WRONLY | O_CREAT, 0600), STDOUT_FILENO);
      dup2(open(name.c_str(), O_RDWR | O_NOCTTY), STDERR_FILENO);
      // Whatever this process was started with, it can be interrupted, and an
      // endless file does not fill the disk.
      signal(SIGINT, SIG_DFL);
      sigset_t none;
      sigemptyset(&none);
      sigprocmask(SIG_SETMASK, &none, nullptr);
      const rlimit most{rlim_t{1} << 30, rlim_t{1} << 30};
      setrlimit(RLIMIT_FSIZE, &most);
      execv(arguments.front(), arguments.data());
      _exit(127);
    }
  }
  // Whether this machine has terminals to give.
  static bool Possible() {
    const int terminal = Opened();
    if (terminal >= 0) close(terminal);
    return terminal >= 0;
  }
  AtTerminal(const AtTerminal&) = delete;
  AtTerminal& operator=(const AtTerminal&) = delete;
  ~AtTerminal() {
    close(terminal_);
    if (child_ >= 0 && kill(child_, SIGKILL) == 0) waitpid(child_, nullptr, 0);
  }

  // Reads on until the terminal shows `text`; false when the program ends first.
  bool WaitFor(const std::string& text) {
    while (shown_.find(text) == std::string::npos) {
      if (!Read()) return false;
    }
    return true;
  }
  void Interrupt() const { kill(child_, SIGINT); }
  // The exit status.
  int End() {
    while (Read()) {
    }
    int status = 0;
    waitpid(child_, &status, 0);
    child_ = -1;
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
  }
  [[nodiscard]] const std::string& Shown() const { return shown_; }
  [[nodiscard]] std::string Out() const { return ReadWhole(scratch_.Path() / "out"); }

 private:
  static int Opened() {
    const int terminal = posix_openpt(O_RDWR | O_NOCTTY | O_CLOEXEC);
    if (terminal < 0) return -1;
    if (grantpt(terminal) == 0 && unlockpt(terminal) == 0 && ptsname(terminal) != nullptr) return terminal;
    close(terminal);
    return -1;
  }
  bool Read() {
    char bytes[4096];
    const ssize_t got = read(terminal_, bytes, sizeof bytes);
    if (got > 0) shown_.append(bytes, static_cast<std::size_t>(got));
    return got > 0;
  }

  ScratchDirectory scratch_;
  int terminal_ = -1;
  pid_t child_ = -1;
  std::string shown_;
};

TEST(BackupTerminalTest, StagesAreShownOnOneLineAndGoneAtTheEnd) {
  if (!AtTerminal::Possible()) GTEST_SKIP() << "no terminals here";
  const ScratchDirectory source;
  const ScratchDirectory target;
  std::ofstream(source.Path() / "a.txt") << "12345";
  std::ofstream(source.Path() / "b.txt") << "123";
  AtTerminal backup({source.Path().string(), target.Path().string()});
  EXPECT_EQ(backup.End(), 0);
  const std::string& shown = backup.Shown();
  EXPECT_NE(shown.find("\r\x1B[Kselecting: 0 files ..."), std::string::npos) << shown;
  EXPECT_NE(shown.find("\r\x1B[Kcopying 1 of 2, 0 bytes of 8 bytes ..."), std::string::npos) << shown;
  EXPECT_EQ(shown.find('\n'), std::string::npos) << shown;
  EXPECT_TRUE(shown.ends_with("\r\x1B[K")) << shown;
  EXPECT_TRUE(backup.Out().starts_with("2 files copied to ")) << backup.Out();
}

// The page map of a process has no end worth waiting for.
TEST(BackupTerminalTest, InterruptLeavesNoHalfFile) {
  if (!AtTerminal::Possible()) GTEST_SKIP() << "no terminals here";
  if (access("/proc/self/pagemap", R_OK) != 0) GTEST_SKIP() << "there is no endless file";
  const ScratchDirectory target;
  AtTerminal backup({"/proc/self", target.Path().string(), "--mask", "pagemap"});
  ASSERT_TRUE(backup.WaitFor("copying 1 of 1")) << backup.Shown();
  backup.Interrupt();
  EXPECT_EQ(backup.End(), 1);
  EXPECT_TRUE(backup.Shown().ends_with("backup: cancelled: 1 file was not copied\r\n")) << backup.Shown();
  EXPECT_EQ(backup.Out(), "0 files copied\n");
  EXPECT_TRUE(fs::is_empty(target.Path()));
}

}  // namespace
}  // namespace Orvix
