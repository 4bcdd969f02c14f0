// Placing windows of the application by the protocols of the window manager.
#ifndef ORVIX_PLATFORM_X11_WINDOW_PLACING_H
#define ORVIX_PLATFORM_X11_WINDOW_PLACING_H

#include "platform/windows/display.h"
#include "platform/x11/connection.h"

namespace Orvix::x11 {

// The id of a handle; 0 when it cannot be one.
[[nodiscard]] xcb_window_t WindowOf(std::uintptr_t handle);

// Place, size, order, showing and hiding in one. False when there is no such
// window, when it is a root window, or when the connection is lost.
[[nodiscard]] bool PlaceWindow(Connection& connection, xcb_window_t window, const WindowPlace& place);

}  // namespace Orvix::x11

#endif
