#include "platform/windows/display.h"

#include <dlfcn.h>

#include <array>
#include <atomic>
#include <climits>
#include <cstdlib>
#include <mutex>
#include <string>

#include "frame/runtime/never_destroyed.h"
#include "orvix/runtime.h"
#include "orvix/text.h"

namespace Orvix {
namespace {

class HeadlessDisplay final : public Display {
 public:
  LONG Width() override { return 1024; }
  LONG Height() override { return 768; }
  LONG Pointer() override { return pointer_; }
  void SetPointer(LONG code) override { pointer_ = code; }
  // A caller cannot tell a window that it never sees from one that is placed,
  // so neither is a failure.
  bool NameWindow(std::uintptr_t, bool) override { return true; }
  bool PlaceWindow(std::uintptr_t, const WindowPlace&) override { return true; }
  bool HasPendingInput() override { return false; }
  void HandleEvents() override {}

 private:
  std::atomic<LONG> pointer_ = 0;
};

// The folder of the library that this code is in, with the slash; empty when
// unknown.
std::string OwnFolder() {
  constexpr DWORD kFlags = GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT;
  HMODULE own = nullptr;
  // Any address inside does.
  if (GetModuleHandleExW(kFlags, reinterpret_cast<const OLECHAR*>(kMakeDisplayName), &own) == 0) return {};
  std::array<OLECHAR, PATH_MAX> name{};
  const DWORD length = GetModuleFileNameW(own, name.data(), PATH_MAX);
  if (length == PATH_MAX) return {};  // cut
  const std::string file = ToUtf8(TextView(name.data(), length));
  return file.substr(0, file.rfind('/') + 1);
}

// The module lies beside this library or below it. It stays loaded: its code runs as long
// as the display is used, which is to the end.
std::shared_ptr<Display> MakeX11Display() {
  const char* const server = secure_getenv("DISPLAY");
  if (server == nullptr || server[0] == '\0') return nullptr;
  const std::string folder = OwnFolder();
  if (folder.empty()) return nullptr;
  // Installed it lies in a folder of its own.
  void* module = nullptr;
  for (const char* const place : {"liborvixrt-x11.so", "orvix/liborvixrt-x11.so"}) {
    if (module == nullptr) module = dlopen((folder + place).c_str(), RTLD_NOW | RTLD_LOCAL | RTLD_NODELETE);
  }
  if (module == nullptr) return nullptr;
  const auto make = reinterpret_cast<MakeDisplayFunction>(dlsym(module, kMakeDisplayName));
  if (make == nullptr) return nullptr;
  return std::shared_ptr<Display>(make(kDisplayVersion));
}

struct Holder {
  std::mutex mutex;
  std::shared_ptr<Display> display;
};

Holder& TheHolder() {
  static NeverDestroyed<Holder> holder;
  return *holder;
}

}  // namespace

std::shared_ptr<Display> MakeHeadlessDisplay() { return std::make_shared<HeadlessDisplay>(); }

std::shared_ptr<Display> CurrentDisplay() {
  Holder& holder = TheHolder();
  const std::lock_guard lock(holder.mutex);
  if (holder.display == nullptr) holder.display = MakeX11Display();
  if (holder.display == nullptr) holder.display = MakeHeadlessDisplay();
  return holder.display;
}

}  // namespace Orvix
