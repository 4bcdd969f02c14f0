// The module's own pieces, without a server.
#include "platform/x11/connection.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <cerrno>

namespace Orvix::x11 {
namespace {

bool PipeSignalWaits() {
  sigset_t pending;
  sigpending(&pending);
  return sigismember(&pending, SIGPIPE) == 1;
}

bool PipeSignalIsBlocked() {
  sigset_t blocked;
  pthread_sigmask(SIG_BLOCK, nullptr, &blocked);
  return sigismember(&blocked, SIGPIPE) == 1;
}

// A pipe that nobody reads.
class BrokenPipe {
 public:
  BrokenPipe() {
    int ends[2];
    if (pipe(ends) == 0) {
      close(ends[0]);
      end_ = ends[1];
    }
  }
  ~BrokenPipe() { close(end_); }
  [[nodiscard]] int Write() const { return write(end_, "x", 1) < 0 ? errno : 0; }

 private:
  int end_ = -1;
};

TEST(NoPipeSignalTest, WritingToNobodyDoesNotEndTheProgram) {
  const BrokenPipe broken;
  {
    const NoPipeSignal quiet;
    EXPECT_EQ(broken.Write(), EPIPE);
  }
  EXPECT_FALSE(PipeSignalWaits());
  EXPECT_FALSE(PipeSignalIsBlocked());
}

TEST(NoPipeSignalTest, ASignalThatWaitedBeforeStays) {
  const BrokenPipe broken;
  const NoPipeSignal outer;
  EXPECT_EQ(broken.Write(), EPIPE);
  {
    const NoPipeSignal inner;
    EXPECT_EQ(broken.Write(), EPIPE);
  }
  EXPECT_TRUE(PipeSignalWaits());
  EXPECT_TRUE(PipeSignalIsBlocked());
}

}  // namespace
}  // namespace Orvix::x11
