// An X server and a window manager of the test's own, and a connection that
// looks at them from outside.
#ifndef ORVIX_TESTS_X11_X_SESSION_H
#define ORVIX_TESTS_X11_X_SESSION_H

#include <sys/types.h>
#include <xcb/xcb.h>
#include <xcb/xcb_ewmh.h>

#include <cstdint>
#include <cstdlib>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "tests/support/run_program.h"

namespace Orvix::testing {

// A program that runs until this goes.
class ChildProgram {
 public:
  // `kept` stays open in the program; -1: none.
  explicit ChildProgram(const std::vector<std::string>& words, int kept = -1);
  ChildProgram(const ChildProgram&) = delete;
  ChildProgram& operator=(const ChildProgram&) = delete;
  ~ChildProgram() { Kill(); }
  void Kill();

 private:
  pid_t id_ = -1;
};

// Whether a program of this name is on the search path.
bool Installed(const std::string& program);

// A screen of 1280 by 720 pixels on a free display, which DISPLAY names from
// then on.
class XServer {
 public:
  XServer();
  void Kill() { server_->Kill(); }

 private:
  std::unique_ptr<ChildProgram> server_;
};

struct Frame {
  int x, y;           // upper left corner of the window manager's frame, on the screen
  int width, height;  // of the window without it
  bool operator==(const Frame&) const = default;
};
std::ostream& operator<<(std::ostream& stream, const Frame& frame);

struct FreeAnswer {
  void operator()(void* answer) const noexcept { std::free(answer); }
};
template <class T>
using Answer = std::unique_ptr<T, FreeAnswer>;

// The application's connection, which makes windows and sees what became of them.
class Client {
 public:
  Client();
  Client(const Client&) = delete;
  Client& operator=(const Client&) = delete;
  ~Client();

  [[nodiscard]] xcb_connection_t* get() const { return connection_; }
  [[nodiscard]] xcb_window_t Root() const { return root_; }
  // 100 by 80 pixels at (10, 10), not shown; in the root window by default.
  xcb_window_t MakeWindow(xcb_window_t parent = XCB_NONE, bool bypasses_manager = false);
  // Another window under the id of one that was destroyed.
  void MakeAgain(xcb_window_t window) { Make(window, root_, false); }
  void Show(xcb_window_t window);
  void Destroy(xcb_window_t window);
  // As the user does with a task bar.
  void Activate(xcb_window_t window);
  // False when it does not come true while events of the windows made here and
  // of the root window arrive, and no more of them in ten seconds.
  [[nodiscard]] bool Await(const std::function<bool()>& condition);
  // What the server did so far is seen afterwards.
  void Finish();

  [[nodiscard]] bool IsShown(xcb_window_t window);
  [[nodiscard]] Frame FrameOf(xcb_window_t window);
  [[nodiscard]] bool IsAbove(xcb_window_t window);     // as its _NET_WM_STATE says
  [[nodiscard]] bool ShunsFocus(xcb_window_t window);  // as its _NET_WM_USER_TIME says
  [[nodiscard]] xcb_window_t Active();                 // the window manager's active window
  [[nodiscard]] bool HasManager();
  [[nodiscard]] bool IsManaged(xcb_window_t window);
  // The window manager's windows, lowest first.
  [[nodiscard]] std::vector<xcb_window_t> Order();
  [[nodiscard]] bool IsInFrontOf(xcb_window_t front, xcb_window_t behind);
  // The children of a window, lowest first.
  [[nodiscard]] std::vector<xcb_window_t> Children(xcb_window_t window);
  // The pixels of the pointer that shows at a place of the window.
  [[nodiscard]] std::vector<uint32_t> PointerOver(xcb_window_t window, int x, int y);

 private:
  void Make(xcb_window_t window, xcb_window_t parent, bool bypasses_manager);
  [[nodiscard]] std::vector<uint32_t> Words(xcb_window_t window, xcb_atom_t property);

  xcb_connection_t* connection_;
  xcb_ewmh_connection_t ewmh_{};
  xcb_window_t root_ = XCB_NONE;
};

// Openbox with the settings of its package, looking after the windows when the
// constructor returns.
class WindowManager {
 public:
  explicit WindowManager(Client& client);

 private:
  Orvix::testing_support::ScratchDirectory home_;
  std::unique_ptr<ChildProgram> manager_;
};

}  // namespace Orvix::testing

#endif
