#include "frame/lifetime.h"

#include <atomic>

namespace Orvix::component {

namespace {
std::atomic<long long> live_objects_and_locks{0};
}  // namespace

LiveObject::LiveObject() noexcept { ++live_objects_and_locks; }
LiveObject::~LiveObject() { --live_objects_and_locks; }

void LockServer(bool lock) noexcept { live_objects_and_locks += lock ? 1 : -1; }
bool MayUnload() noexcept { return live_objects_and_locks == 0; }

}  // namespace Orvix::component
