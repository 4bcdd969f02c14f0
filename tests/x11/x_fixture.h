// Tests on one X server of their own for the whole program: the run-time looks
// for its display once.
#ifndef ORVIX_TESTS_X11_X_FIXTURE_H
#define ORVIX_TESTS_X11_X_FIXTURE_H

#include <gtest/gtest.h>

#include "frame/com_ptr.h"
#include "orvix/host.h"
#include "orvix/platform.h"
#include "orvix/runtime.h"
#include "tests/support/late_call.h"
#include "tests/x11/x_session.h"

namespace Orvix::testing {

inline void* Handle(std::intptr_t value) { return reinterpret_cast<void*>(value); }

inline component::ComPtr<IDispatch> NativeScreen() {
  component::ComPtr<IDispatch> global;
  EXPECT_EQ(OxGlobalObject(global.Receive()), S_OK);
  const LateResult screen = CallByName(global.get(), u"Screen");
  EXPECT_EQ(screen.code, S_OK);
  return component::ComPtr<IDispatch>::Share(screen.value.get().pdispVal);
}
inline LONG ScreenNumber(const char16_t* name) { return CallByName(NativeScreen().get(), name).value.get().lVal; }
inline void SetMousePointer(LONG code) {
  EXPECT_EQ(PutByName(NativeScreen().get(), u"MousePointer", component::Variant(code).get()).code, S_OK);
}

// A server with a window manager, a client and nothing else.
struct XSession {
  XServer server;
  Client client;
  WindowManager manager{client};
};

class XTest : public ::testing::Test {
 protected:
  void SetUp() override {
    for (const char* const program : {"Xvfb", "openbox"}) {
      if (!Installed(program)) GTEST_SKIP() << program << " is not installed";
    }
    static const std::unique_ptr<XSession> session = std::make_unique<XSession>();
    client_ = &session->client;
  }
  void TearDown() override {
    if (client_ == nullptr) return;
    SetMousePointer(0);
    for (const xcb_window_t window : windows_) client_->Destroy(window);
  }

  xcb_window_t MakeWindow(xcb_window_t parent = XCB_NONE, bool bypasses_manager = false) {
    windows_.push_back(client_->MakeWindow(parent, bypasses_manager));
    return windows_.back();
  }
  // Shown, and active as a user's new window is.
  xcb_window_t MakeActiveWindow() {
    const xcb_window_t window = MakeWindow();
    client_->Show(window);
    EXPECT_TRUE(client_->Await([&] { return client_->IsShown(window) && client_->Active() == window; }));
    return window;
  }
  Client& X() { return *client_; }

 private:
  Client* client_ = nullptr;
  std::vector<xcb_window_t> windows_;
};

}  // namespace Orvix::testing

#endif
