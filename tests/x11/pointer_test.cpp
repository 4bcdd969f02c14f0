#include <thread>

#include "tests/x11/x_fixture.h"

namespace Orvix::testing {
namespace {

class PointerTest : public XTest {
 protected:
  // On a part of the screen where no other window is.
  xcb_window_t MakeShownWindow(INT x) {
    const xcb_window_t window = MakeWindow();
    SetWindowPos(Handle(window), Handle(0), x, 400, 100, 100, 0x50);
    EXPECT_TRUE(X().Await([&] { return X().IsShown(window) && X().FrameOf(window) == Frame{x, 400, 100, 100}; }));
    return window;
  }
  std::vector<uint32_t> Over(xcb_window_t window) { return X().PointerOver(window, 50, 50); }
  std::vector<uint32_t> OverRoot() { return X().PointerOver(X().Root(), 1200, 100); }
};

TEST_F(PointerTest, TheHourglassIsOverNamedWindowsOnlyAndGoesAgain) {
  const xcb_window_t named = MakeShownWindow(100);
  const xcb_window_t other = MakeShownWindow(300);
  ASSERT_EQ(OxNameWindow(Handle(named), 1), S_OK);
  ASSERT_EQ(OxNameWindow(Handle(named), 1), S_OK);
  const std::vector<uint32_t> usual = Over(named);
  const std::vector<uint32_t> usual_on_root = OverRoot();
  ASSERT_EQ(Over(other), usual);

  SetMousePointer(11);
  EXPECT_EQ(ScreenNumber(u"MousePointer"), 11);
  const std::vector<uint32_t> hourglass = Over(named);
  EXPECT_NE(hourglass, usual);
  EXPECT_EQ(Over(other), usual);
  EXPECT_EQ(OverRoot(), usual_on_root);

  // Named while it shows, and taken out.
  ASSERT_EQ(OxNameWindow(Handle(other), 1), S_OK);
  EXPECT_EQ(Over(other), hourglass);
  ASSERT_EQ(OxNameWindow(Handle(other), 0), S_OK);
  EXPECT_EQ(Over(other), usual);
  EXPECT_EQ(OxNameWindow(Handle(other), 0), S_FALSE);

  SetMousePointer(0);
  EXPECT_EQ(Over(named), usual);
  SetMousePointer(11);
  SetMousePointer(2);  // kept, and shown as the default
  EXPECT_EQ(ScreenNumber(u"MousePointer"), 2);
  EXPECT_EQ(Over(named), usual);
  EXPECT_EQ(OverRoot(), usual_on_root);
}

TEST_F(PointerTest, OnlyWindowsThatAreThereCanBeNamed) {
  const xcb_window_t gone = MakeWindow();
  X().Destroy(gone);
  for (const LONG code : {0, 11}) {
    SetMousePointer(code);
    const std::vector<uint32_t> before = OverRoot();
    EXPECT_EQ(OxNameWindow(nullptr, 1), E_INVALIDARG);
    EXPECT_EQ(OxNameWindow(Handle(-1), 1), S_FALSE);
    EXPECT_EQ(OxNameWindow(Handle(gone), 1), S_FALSE);
    EXPECT_EQ(OxNameWindow(Handle(static_cast<std::intptr_t>(X().Root())), 1), S_FALSE);
    EXPECT_EQ(OverRoot(), before);
  }
}

TEST_F(PointerTest, ANamedWindowThatIsDestroyedIsForgotten) {
  const xcb_window_t gone = MakeWindow();
  const xcb_window_t stays = MakeShownWindow(100);
  const std::vector<uint32_t> usual = Over(stays);
  ASSERT_EQ(OxNameWindow(Handle(gone), 1), S_OK);
  ASSERT_EQ(OxNameWindow(Handle(stays), 1), S_OK);
  X().Destroy(gone);
  SetMousePointer(11);
  EXPECT_NE(Over(stays), usual);
  // Another window under its id is not taken for it.
  X().MakeAgain(gone);
  SetWindowPos(Handle(gone), Handle(0), 300, 400, 100, 100, 0x50);
  ASSERT_TRUE(X().Await([&] { return X().IsShown(gone) && X().FrameOf(gone) == Frame{300, 400, 100, 100}; }));
  SetMousePointer(11);
  EXPECT_EQ(Over(gone), usual);
  EXPECT_EQ(OxNameWindow(Handle(gone), 0), S_FALSE);
}

TEST_F(PointerTest, SeveralThreadsMayCallAtOnce) {
  const xcb_window_t window = MakeShownWindow(100);
  const std::vector<uint32_t> usual = Over(window);
  std::vector<std::thread> threads;
  for (INT t = 0; t < 4; ++t) {
    threads.emplace_back([&, t] {
      for (INT i = 0; i < 50; ++i) {
        OxNameWindow(Handle(window), 1);
        SetMousePointer(11);
        EXPECT_EQ(SetWindowPos(Handle(window), Handle(0), 100 + t, 400, 100, 100, 0x10), 1);
        EXPECT_EQ(ScreenNumber(u"Width"), 19200);
        OxDoEvents();
      }
    });
  }
  for (std::thread& thread : threads) thread.join();
  EXPECT_NE(Over(window), usual);
}

}  // namespace
}  // namespace Orvix::testing
