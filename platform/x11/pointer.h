// The pointer over the windows that the host named.
#ifndef ORVIX_PLATFORM_X11_POINTER_H
#define ORVIX_PLATFORM_X11_POINTER_H

#include <set>

#include "orvix/automation.h"
#include "platform/x11/connection.h"

namespace Orvix::x11 {

inline constexpr LONG kHourglass = 11;

// Windows that are gone are forgotten at the next change. Guarded by its owner.
class Pointer {
 public:
  [[nodiscard]] LONG Code() const { return code_; }
  // 11 shows the hourglass; every other code is kept and shows the default, that
  // of the window's parent.
  void Set(Connection& connection, LONG code);
  // False when there is no such window, for a root window, and for one taken out
  // that was not in.
  [[nodiscard]] bool Name(Connection& connection, xcb_window_t window, bool named);

 private:
  [[nodiscard]] xcb_cursor_t Cursor(Connection& connection);

  LONG code_ = 0;
  std::set<xcb_window_t> windows_;
  xcb_cursor_t hourglass_ = XCB_NONE;
};

}  // namespace Orvix::x11

#endif
