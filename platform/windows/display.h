// The screen that the windows service works on. Headless unless a module for
// a real display installs its own.
#ifndef ORVIX_PLATFORM_WINDOWS_DISPLAY_H
#define ORVIX_PLATFORM_WINDOWS_DISPLAY_H

#include <memory>

#include "orvix/automation.h"

namespace Orvix {

struct WindowPlace {
  LONG after;  // -1 topmost, -2 no longer topmost, 0 top, 1 bottom
  LONG x, y, width, height;
  UINT flags;  // 0x1 keep the size, 0x2 keep the position, 0x10 do not activate, 0x40 show, ...
};

// Called from several threads. Sizes are pixels.
class Display {
 public:
  virtual ~Display() = default;
  Display() = default;
  Display(const Display&) = delete;
  Display& operator=(const Display&) = delete;

  virtual LONG Width() = 0;
  virtual LONG Height() = 0;
  // The pointer of all windows of the application: 0 default, 11 hourglass.
  virtual LONG Pointer() = 0;
  virtual void SetPointer(LONG code) = 0;
  // False for a handle that names no window.
  virtual bool PlaceWindow(std::uintptr_t window, const WindowPlace& place) = 0;
  // Whether button or key events wait for this thread.
  virtual bool HasPendingInput() = 0;
  // Handles the events that wait, and returns.
  virtual void HandleEvents() = 0;
};

// A screen of 1024 by 768 pixels that nobody sees: windows are not placed,
// input never waits, the pointer code is kept.
[[nodiscard]] std::shared_ptr<Display> MakeHeadlessDisplay();

// The display in use; headless until another one is installed. Null restores
// the headless one.
[[nodiscard]] std::shared_ptr<Display> CurrentDisplay();
void InstallDisplay(std::shared_ptr<Display> display);

}  // namespace Orvix

#endif
