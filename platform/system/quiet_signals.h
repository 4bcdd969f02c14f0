// While it lives, a write that nobody reads any more, or that goes beyond the
// limit on file sizes, fails with its error and does not end the process.
#ifndef ORVIX_PLATFORM_SYSTEM_QUIET_SIGNALS_H
#define ORVIX_PLATFORM_SYSTEM_QUIET_SIGNALS_H

#include <signal.h>

#include <cerrno>
#include <ctime>

namespace Orvix {

class QuietSignals {
 public:
  QuietSignals() {
    sigset_t quiet;
    sigemptyset(&quiet);
    sigaddset(&quiet, SIGPIPE);
    sigaddset(&quiet, SIGXFSZ);
    pthread_sigmask(SIG_BLOCK, &quiet, &before_);
  }
  QuietSignals(const QuietSignals&) = delete;
  QuietSignals& operator=(const QuietSignals&) = delete;
  ~QuietSignals() { pthread_sigmask(SIG_SETMASK, &before_, nullptr); }

  // After a failed call: takes the signal that came with its error away. Who had
  // it blocked before looks after it.
  void Failed(int error) {
    const int signal = error == EPIPE ? SIGPIPE : error == EFBIG ? SIGXFSZ : 0;
    if (signal == 0 || sigismember(&before_, signal) == 1) return;
    sigset_t one;
    sigemptyset(&one);
    sigaddset(&one, signal);
    const timespec at_once{};
    sigtimedwait(&one, nullptr, &at_once);
  }

 private:
  sigset_t before_;
};

}  // namespace Orvix

#endif
