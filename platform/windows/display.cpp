#include "platform/windows/display.h"

#include <atomic>
#include <mutex>
#include <utility>

namespace Orvix {
namespace {

class HeadlessDisplay final : public Display {
 public:
  LONG Width() override { return 1024; }
  LONG Height() override { return 768; }
  LONG Pointer() override { return pointer_; }
  void SetPointer(LONG code) override { pointer_ = code; }
  // A caller cannot tell a window that it never sees from one that is placed,
  // so this is no failure.
  bool PlaceWindow(std::uintptr_t, const WindowPlace&) override { return true; }
  bool HasPendingInput() override { return false; }
  void HandleEvents() override {}

 private:
  std::atomic<LONG> pointer_ = 0;
};

struct Holder {
  std::mutex mutex;
  std::shared_ptr<Display> display;
};

// Never destroyed: threads that outlive the end of main may still draw.
Holder& TheHolder() {
  alignas(Holder) static std::byte storage[sizeof(Holder)];
  static Holder* const holder = ::new (static_cast<void*>(storage)) Holder;
  return *holder;
}

}  // namespace

std::shared_ptr<Display> MakeHeadlessDisplay() { return std::make_shared<HeadlessDisplay>(); }

std::shared_ptr<Display> CurrentDisplay() {
  Holder& holder = TheHolder();
  const std::lock_guard lock(holder.mutex);
  if (holder.display == nullptr) holder.display = MakeHeadlessDisplay();
  return holder.display;
}

void InstallDisplay(std::shared_ptr<Display> display) {
  Holder& holder = TheHolder();
  // The one replaced goes outside the lock: it may have work to do.
  const std::lock_guard lock(holder.mutex);
  std::swap(holder.display, display);
}

}  // namespace Orvix
