// The screen that the windows service works on: that of the X display when the
// process has one and the module for it is installed, else one that nobody sees.
#ifndef ORVIX_PLATFORM_WINDOWS_DISPLAY_H
#define ORVIX_PLATFORM_WINDOWS_DISPLAY_H

#include <memory>

#include "orvix/automation.h"

namespace Orvix {

struct WindowPlace {
  LONG after;  // -1 topmost, -2 no longer topmost, 0 top, 1 bottom, else the window in front
  LONG x, y, width, height;
  UINT flags;  // 0x1 keep the size, 0x2 keep the position, 0x10 do not activate, 0x40 show, ...
};

// Called from several threads. Sizes are pixels. A display in a module of its
// own is called through this class alone; kDisplayVersion changes with it.
class Display {
 public:
  virtual ~Display() = default;
  Display() = default;
  Display(const Display&) = delete;
  Display& operator=(const Display&) = delete;

  virtual LONG Width() = 0;
  virtual LONG Height() = 0;
  // The pointer of the windows named: 0 default, 11 hourglass.
  virtual LONG Pointer() = 0;
  virtual void SetPointer(LONG code) = 0;
  // Takes a window among those that show the pointer, or out again. False for a
  // handle that names no window, or that was not among them.
  virtual bool NameWindow(std::uintptr_t window, bool named) = 0;
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

// What a module for a display exports under kMakeDisplayName: a display for
// `delete`, null when it cannot be reached or `version` is not the module's.
inline constexpr std::uint32_t kDisplayVersion = 1;
inline constexpr char kMakeDisplayName[] = "OrvixMakeDisplay";
using MakeDisplayFunction = Display* (*)(std::uint32_t version) noexcept;

// The display of this process, sought at the first call and kept.
[[nodiscard]] std::shared_ptr<Display> CurrentDisplay();

}  // namespace Orvix

#endif
