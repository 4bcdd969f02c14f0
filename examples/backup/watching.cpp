// A signal only sets a flag; the next report of progress cancels the operation.
#include "watching.h"

#include <algorithm>
#include <csignal>
#include <string>

#include "orvix/wrapper/error.hpp"

namespace backup {

namespace {

volatile std::sig_atomic_t interrupted = 0;

std::string SizeText(int64_t bytes) {
  if (bytes < 1000) return std::to_string(bytes) + " bytes";
  if (bytes < 1000 * 1000) return std::to_string(bytes / 1000) + " kB";
  return std::to_string(bytes / (1000 * 1000)) + " MB";
}

}  // namespace

void CatchInterrupts() {
  struct sigaction action {};
  action.sa_handler = [](int) { interrupted = 1; };
  // What is under way goes on until the flag is looked at.
  action.sa_flags = SA_RESTART;
  sigset_t caught;
  sigemptyset(&caught);
  for (const int signal : {SIGINT, SIGTERM}) {
    // A shell starts background work with interrupts ignored: they stay so.
    struct sigaction before {};
    sigaction(signal, nullptr, &before);
    if (before.sa_handler == SIG_IGN) continue;
    sigaction(signal, &action, nullptr);
    sigaddset(&caught, signal);
  }
  sigprocmask(SIG_UNBLOCK, &caught, nullptr);
}

bool Interrupted() { return interrupted != 0; }

Watch::Watch(examples::Stages& stages, std::size_t files) : stages_(stages), files_(files) {
  OxHost host{};
  host.size = sizeof host;
  host.context = this;
  host.FileProgress = &Hear;
  Orvix::Check(OxSetHost(&host));
}

Watch::~Watch() { OxSetHost(nullptr); }

LONG Watch::Hear(void* context, const OLECHAR* /*name*/, int64_t items_done, int64_t /*items_total*/,
                 int64_t bytes_done, int64_t bytes_total) {
  constexpr LONG kGoOn = 0;
  constexpr LONG kCancel = 1;
  if (Interrupted()) return kCancel;
  try {
    static_cast<Watch*>(context)->Show(items_done, bytes_done, bytes_total);
  } catch (const std::exception&) {
    return kCancel;  // no exception may cross the caller
  }
  return kGoOn;
}

void Watch::Show(int64_t items_done, int64_t bytes_done, int64_t bytes_total) {
  // What is done does not count as under way.
  const std::size_t under_way = std::min(finished_ + static_cast<std::size_t>(items_done) + 1, files_);
  stages_.Show("copying " + std::to_string(under_way) + " of " + std::to_string(files_) + ", " + SizeText(bytes_done) +
               " of " + SizeText(bytes_total));
}

}  // namespace backup
