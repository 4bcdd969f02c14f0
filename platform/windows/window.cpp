// Placing and naming windows and looking for input: the host's way, else the
// display's.
#include <syslog.h>

#include <atomic>
#include <cstdlib>
#include <new>

#include "frame/runtime/runtime_error.h"
#include "orvix/platform.h"
#include "platform/host/host_table.h"
#include "platform/system/log.h"
#include "platform/windows/display.h"

namespace {

// Handles have 32 bits for a host; the platform keeps them sign-extended.
LONG HandleBits(const void* handle) { return static_cast<LONG>(reinterpret_cast<std::intptr_t>(handle)); }

// On a Wayland display programs do not place windows.
void NoteWaylandAlone() noexcept {
  const auto is_set = [](const char* name) {
    const char* const value = secure_getenv(name);
    return value != nullptr && *value != '\0';
  };
  static constinit std::atomic_flag said = ATOMIC_FLAG_INIT;
  if (is_set("WAYLAND_DISPLAY") && !is_set("DISPLAY")) {
    Orvix::LogOnce(said, LOG_NOTICE, "Windows are not placed: that takes an X display, and there is a Wayland one");
  }
}

}  // namespace

BOOL ORVIX_CALL SetWindowPos(void* window, void* after, INT x, INT y, INT cx, INT cy, UINT flags) {
  const OxHost host = Orvix::CurrentHost();
  if (host.SetWindowPos != nullptr) {
    return host.SetWindowPos(host.context, HandleBits(window), HandleBits(after), x, y, cx, cy,
                             static_cast<LONG>(flags));
  }
  try {
    const Orvix::WindowPlace place{HandleBits(after), x, y, cx, cy, flags};
    NoteWaylandAlone();
    return Orvix::CurrentDisplay()->PlaceWindow(reinterpret_cast<std::uintptr_t>(window), place) ? 1 : 0;
  } catch (const std::bad_alloc&) {
    return 0;
  }
}

BOOL ORVIX_CALL GetInputState() {
  const OxHost host = Orvix::CurrentHost();
  if (host.GetInputState != nullptr) return host.GetInputState(host.context);
  try {
    return Orvix::CurrentDisplay()->HasPendingInput() ? 1 : 0;
  } catch (const std::bad_alloc&) {
    return 0;
  }
}

HRESULT ORVIX_CALL OxNameWindow(void* window, BOOL named) {
  if (window == nullptr) return E_INVALIDARG;
  bool done = false;
  const HRESULT result = Orvix::AtRuntimeEdge(
      [&] { done = Orvix::CurrentDisplay()->NameWindow(reinterpret_cast<std::uintptr_t>(window), named != 0); });
  return FAILED(result) || done ? result : S_FALSE;
}
