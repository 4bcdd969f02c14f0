#include "platform/x11/pointer.h"

#include <xcb/xcb_cursor.h>

#include <utility>
#include <vector>

namespace Orvix::x11 {
namespace {

xcb_cursor_t LoadHourglass(Connection& connection) {
  xcb_cursor_context_t* context = nullptr;
  if (xcb_cursor_context_new(connection.get(), connection.screen(), &context) < 0) return XCB_NONE;
  // The user's theme, else the server's own cursors.
  const xcb_cursor_t cursor = xcb_cursor_load_cursor(context, "watch");
  xcb_cursor_context_free(context);
  return cursor;
}

xcb_void_cookie_t Change(Connection& connection, xcb_window_t window, xcb_cursor_t cursor) {
  return xcb_change_window_attributes_checked(connection.get(), window, XCB_CW_CURSOR, &cursor);
}

bool Succeeded(Connection& connection, xcb_void_cookie_t asked) {
  const Reply<xcb_generic_error_t> error(xcb_request_check(connection.get(), asked));
  return error == nullptr && !connection.Lost();
}

}  // namespace

xcb_cursor_t Pointer::Cursor(Connection& connection) {
  if (code_ != kHourglass) return XCB_NONE;
  if (hourglass_ == XCB_NONE) hourglass_ = LoadHourglass(connection);
  return hourglass_;
}

void Pointer::Set(Connection& connection, LONG code) {
  code_ = code;
  if (windows_.empty() || connection.Lost()) return;
  const xcb_cursor_t cursor = Cursor(connection);
  // All asked first, so that the server is waited for once.
  std::vector<std::pair<xcb_window_t, xcb_void_cookie_t>> asked;
  asked.reserve(windows_.size());
  for (const xcb_window_t window : windows_) asked.emplace_back(window, Change(connection, window, cursor));
  for (const auto& [window, change] : asked) {
    if (!Succeeded(connection, change)) windows_.erase(window);
  }
}

bool Pointer::Name(Connection& connection, xcb_window_t window, bool named) {
  if (window == XCB_NONE || connection.ScreenOf(window) >= 0 || connection.Lost()) return false;
  if (!named) return windows_.erase(window) != 0 && Succeeded(connection, Change(connection, window, XCB_NONE));
  if (code_ == kHourglass) {
    if (!Succeeded(connection, Change(connection, window, Cursor(connection)))) return false;
  } else {
    // A pointer of its own stays until the first hourglass: the window is only
    // looked for.
    xcb_connection_t* const x = connection.get();
    const Reply<xcb_query_tree_reply_t> tree(xcb_query_tree_reply(x, xcb_query_tree(x, window), nullptr));
    if (tree == nullptr) return false;
  }
  windows_.insert(window);
  return true;
}

}  // namespace Orvix::x11
