// Time: waiting, and the count of milliseconds since the system started.
#include <time.h>

#include <cerrno>

#include "orvix/platform.h"
#include "platform/host/host_table.h"

namespace {

constexpr LONG kMillisecond = 1'000'000;  // in nanoseconds

void WaitOnce(DWORD milliseconds) {
  timespec end{};
  clock_gettime(CLOCK_MONOTONIC, &end);
  end.tv_sec += static_cast<time_t>(milliseconds / 1000);
  end.tv_nsec += static_cast<LONG>(milliseconds % 1000) * kMillisecond;
  if (end.tv_nsec >= 1000 * kMillisecond) {
    end.tv_nsec -= 1000 * kMillisecond;
    ++end.tv_sec;
  }
  // A signal handled meanwhile does not shorten the wait.
  while (clock_nanosleep(CLOCK_MONOTONIC, TIMER_ABSTIME, &end, nullptr) == EINTR) continue;
}

}  // namespace

void ORVIX_CALL Sleep(DWORD milliseconds) {
  const OxHost host = Orvix::CurrentHost();
  if (host.Sleep != nullptr) return host.Sleep(host.context, milliseconds);
  do {
    WaitOnce(milliseconds);
  } while (milliseconds == INFINITE);
}

DWORD ORVIX_CALL GetTickCount() {
  const OxHost host = Orvix::CurrentHost();
  if (host.GetTickCount != nullptr) return host.GetTickCount(host.context);
  timespec now{};
  // Time spent suspended counts where the kernel can tell.
  if (clock_gettime(CLOCK_BOOTTIME, &now) != 0) clock_gettime(CLOCK_MONOTONIC, &now);
  const auto milliseconds =
      static_cast<std::uint64_t>(now.tv_sec) * 1000 + static_cast<std::uint64_t>(now.tv_nsec / kMillisecond);
  return static_cast<DWORD>(milliseconds);  // wraps
}
