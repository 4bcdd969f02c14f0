// The module's own connection to the X server, and what every request needs:
// replies that free themselves, and quiet on a connection that is lost.
#ifndef ORVIX_PLATFORM_X11_CONNECTION_H
#define ORVIX_PLATFORM_X11_CONNECTION_H

#include <signal.h>
#include <xcb/xcb.h>
#include <xcb/xcb_ewmh.h>

#include <cstdint>
#include <cstdlib>
#include <memory>
#include <vector>

namespace Orvix::x11 {

struct FreeReply {
  void operator()(void* reply) const noexcept { std::free(reply); }
};
// Null after any error, a lost connection included.
template <class T>
using Reply = std::unique_ptr<T, FreeReply>;

// Writing to a server that is gone raises SIGPIPE, which ends a program that
// does not expect it. While this lives, none reaches the thread.
class NoPipeSignal {
 public:
  NoPipeSignal();
  NoPipeSignal(const NoPipeSignal&) = delete;
  NoPipeSignal& operator=(const NoPipeSignal&) = delete;
  ~NoPipeSignal();

 private:
  sigset_t pipe_{};
  sigset_t before_{};
  bool was_pending_ = false;
};

// One at a time: the owner guards it. Errors of the server are read and dropped;
// once the connection is lost every reply is null and every request nothing.
class Connection {
 public:
  // Null when the display that DISPLAY names cannot be reached.
  [[nodiscard]] static std::unique_ptr<Connection> Open();
  Connection(const Connection&) = delete;
  Connection& operator=(const Connection&) = delete;
  ~Connection();

  [[nodiscard]] xcb_connection_t* get() const { return connection_; }
  [[nodiscard]] xcb_ewmh_connection_t* ewmh() { return &ewmh_; }
  [[nodiscard]] xcb_atom_t wm_state() const { return wm_state_; }
  // The screen that DISPLAY names.
  [[nodiscard]] xcb_screen_t* screen() const { return screen_; }
  // The number of the screen with this root window; -1 when there is none.
  [[nodiscard]] int ScreenOf(xcb_window_t root) const;
  [[nodiscard]] bool Lost() const { return xcb_connection_has_error(connection_) != 0; }

  // The words of a 32-bit property, at most 1024; none when it is absent or of
  // another form.
  [[nodiscard]] std::vector<uint32_t> Words(xcb_window_t window, xcb_atom_t property);
  // Reads and drops what the server sent without being asked: errors, and the
  // events that every client gets. Never waits.
  void Drain();
  // Returns when the server has done all that was asked, so that requests of the
  // application's own connection come after it.
  void Finish();

 private:
  explicit Connection(xcb_connection_t* connection) : connection_(connection) {}
  [[nodiscard]] bool Prepare(int screen_number);

  xcb_connection_t* connection_;
  xcb_ewmh_connection_t ewmh_{};
  bool has_ewmh_ = false;
  xcb_atom_t wm_state_ = XCB_ATOM_NONE;
  xcb_screen_t* screen_ = nullptr;
};

}  // namespace Orvix::x11

#endif
