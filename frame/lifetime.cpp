#include "frame/lifetime.h"

#include <atomic>

namespace Orvix::component {

namespace {
std::atomic<long long> live_objects_and_locks{0};
}  // namespace

LiveObject::LiveObject() noexcept { ++live_objects_and_locks; }
LiveObject::~LiveObject() { --live_objects_and_locks; }

EndsInTurn& EndsOfThisThread() noexcept {
  // In the space that every thread has from its start: nothing is allocated.
  [[gnu::tls_model("initial-exec")]] static constinit thread_local EndsInTurn ends;
  return ends;
}

void LockServer(bool lock) noexcept { live_objects_and_locks += lock ? 1 : -1; }
bool MayUnload() noexcept { return live_objects_and_locks == 0; }

}  // namespace Orvix::component
