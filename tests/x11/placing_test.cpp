#include "orvix/orvix.h"
#include "tests/x11/x_fixture.h"

namespace Orvix::testing {
namespace {

constexpr UINT kKeepSize = 0x1;
constexpr UINT kKeepPosition = 0x2;
constexpr UINT kKeepOrder = 0x4;
constexpr UINT kDoNotActivate = 0x10;
constexpr UINT kShow = 0x40;
constexpr UINT kHide = 0x80;
// The order, and nothing else.
constexpr UINT kOrderOnly = kKeepSize | kKeepPosition | kDoNotActivate;

class PlacingTest : public XTest {
 protected:
  bool ComesTo(xcb_window_t window, const Frame& frame) {
    const bool came = X().Await([&] { return X().FrameOf(window) == frame; });
    EXPECT_EQ(X().FrameOf(window), frame);
    return came;
  }
  bool IsShownSoon(xcb_window_t window) {
    return X().Await([&] { return X().IsShown(window); });
  }
};

TEST_F(PlacingTest, TheScreenHasItsRealSizeIn15UnitsAPixel) {
  EXPECT_EQ(ScreenNumber(u"Width"), 19200);
  EXPECT_EQ(ScreenNumber(u"Height"), 10800);
}

TEST_F(PlacingTest, AWindowNotYetShownIsShownAboveAtItsPlaceWithoutTheFocus) {
  const xcb_window_t active = MakeActiveWindow();
  const xcb_window_t window = MakeWindow();
  ASSERT_EQ(SetWindowPos(Handle(window), Handle(-1), 200, 150, 320, 240, kShow | kDoNotActivate), 1);
  EXPECT_TRUE(IsShownSoon(window));
  EXPECT_TRUE(ComesTo(window, {200, 150, 320, 240}));
  EXPECT_TRUE(X().Await([&] { return X().IsInFrontOf(window, active); }));
  EXPECT_TRUE(X().IsAbove(window));
  // Had the manager given it the focus, it would know when it has done two more
  // things that were asked later.
  for (const INT x : {500, 510}) {
    SetWindowPos(Handle(window), nullptr, x, 150, 0, 0, kKeepSize | kKeepOrder | kDoNotActivate);
    ASSERT_TRUE(ComesTo(window, {x, 150, 320, 240}));
  }
  EXPECT_EQ(X().Active(), active);
}

TEST_F(PlacingTest, AlwaysInFrontOfTheComponentDoesTheSame) {
  const xcb_window_t window = MakeActiveWindow();
  EXPECT_FALSE(X().IsAbove(window));
  LONG handle = static_cast<LONG>(window);
  LONG x = 40;
  LONG y = 50;
  LONG width = 0;
  LONG height = 30;
  component::ComPtr<IClassFactory> factory;
  ASSERT_EQ(DllGetClassObject(CLSID_classOrvix, IID_IClassFactory, factory.ReceiveVoid()), S_OK);
  component::ComPtr<_classOrvix> orvix;
  ASSERT_EQ(factory->CreateInstance(nullptr, IID__classOrvix, orvix.ReceiveVoid()), S_OK);
  ASSERT_EQ(orvix->AlwaysInFront(&handle, &x, &y, &width, &height), S_OK);
  EXPECT_TRUE(X().Await([&] { return X().IsAbove(window); }));
  EXPECT_TRUE(ComesTo(window, {40, 50, 1, 30}));  // a size of nothing is one pixel
}

TEST_F(PlacingTest, WithoutTheFlagTheWindowIsActivated) {
  const xcb_window_t first = MakeActiveWindow();
  const xcb_window_t second = MakeWindow();
  SetWindowPos(Handle(second), Handle(0), 300, 300, 100, 100, kShow);
  EXPECT_TRUE(X().Await([&] { return X().Active() == second; }));
  SetWindowPos(Handle(first), Handle(0), 0, 0, 0, 0, kKeepSize | kKeepPosition);
  EXPECT_TRUE(X().Await([&] { return X().Active() == first; }));
}

TEST_F(PlacingTest, OneShownWithoutTheFocusMayHaveItWhenShownAgain) {
  MakeActiveWindow();
  const xcb_window_t window = MakeWindow();
  SetWindowPos(Handle(window), Handle(0), 300, 300, 100, 100, kShow | kDoNotActivate);
  ASSERT_TRUE(IsShownSoon(window));
  EXPECT_TRUE(X().ShunsFocus(window));
  SetWindowPos(Handle(window), nullptr, 0, 0, 0, 0, kKeepSize | kKeepPosition | kKeepOrder | kHide);
  ASSERT_TRUE(X().Await([&] { return !X().IsShown(window) && !X().IsManaged(window); }));
  SetWindowPos(Handle(window), Handle(0), 0, 0, 0, 0, kKeepSize | kKeepPosition | kShow);
  EXPECT_FALSE(X().ShunsFocus(window));
  EXPECT_TRUE(X().Await([&] { return X().Active() == window; }));
}

TEST_F(PlacingTest, EachKeepFlagKeepsItsPart) {
  const xcb_window_t window = MakeActiveWindow();
  ASSERT_EQ(SetWindowPos(Handle(window), Handle(0), 60, 70, 130, 140, kDoNotActivate), 1);
  ASSERT_TRUE(ComesTo(window, {60, 70, 130, 140}));
  SetWindowPos(Handle(window), Handle(-1), 80, 90, 1, 1, kKeepSize | kKeepOrder | kDoNotActivate);
  EXPECT_TRUE(ComesTo(window, {80, 90, 130, 140}));
  SetWindowPos(Handle(window), Handle(-1), 1, 1, 150, 160, kKeepPosition | kKeepOrder | kDoNotActivate);
  EXPECT_TRUE(ComesTo(window, {80, 90, 150, 160}));
  EXPECT_FALSE(X().IsAbove(window));
}

TEST_F(PlacingTest, OrderFollowsTheInsertAfterHandle) {
  const xcb_window_t low = MakeActiveWindow();
  const xcb_window_t middle = MakeActiveWindow();
  const xcb_window_t high = MakeActiveWindow();
  const auto becomes = [&](const std::vector<xcb_window_t>& order) {
    const bool came = X().Await([&] { return X().Order() == order; });
    EXPECT_EQ(X().Order(), order);
    return came;
  };
  ASSERT_TRUE(becomes({low, middle, high}));
  SetWindowPos(Handle(low), Handle(0), 0, 0, 0, 0, kOrderOnly);
  ASSERT_TRUE(becomes({middle, high, low}));
  SetWindowPos(Handle(high), Handle(1), 0, 0, 0, 0, kOrderOnly);
  ASSERT_TRUE(becomes({high, middle, low}));
  SetWindowPos(Handle(low), Handle(middle), 0, 0, 0, 0, kOrderOnly);
  // Just behind it, or further down: as the window manager likes.
  ASSERT_TRUE(X().Await([&] { return X().IsInFrontOf(middle, low); }));
  SetWindowPos(Handle(high), Handle(1), 0, 0, 0, 0, kOrderOnly);
  ASSERT_TRUE(becomes({high, low, middle}));
  // Topmost windows stay above one that is raised, until they are so no longer.
  SetWindowPos(Handle(high), Handle(-1), 0, 0, 0, 0, kOrderOnly);
  ASSERT_TRUE(becomes({low, middle, high}));
  SetWindowPos(Handle(low), Handle(0), 0, 0, 0, 0, kOrderOnly);
  ASSERT_TRUE(becomes({middle, low, high}));
  SetWindowPos(Handle(high), Handle(-2), 0, 0, 0, 0, kOrderOnly);
  EXPECT_TRUE(X().Await([&] { return !X().IsAbove(high); }));
  SetWindowPos(Handle(low), Handle(0), 0, 0, 0, 0, kOrderOnly);
  ASSERT_TRUE(becomes({middle, high, low}));
  // One that is not topmost keeps its place.
  SetWindowPos(Handle(middle), Handle(-2), 0, 0, 0, 0, kOrderOnly);
  SetWindowPos(Handle(high), Handle(0), 0, 0, 0, 0, kOrderOnly);
  ASSERT_TRUE(becomes({middle, low, high}));
  SetWindowPos(Handle(high), Handle(-1), 0, 0, 0, 0, kOrderOnly);
  EXPECT_TRUE(X().Await([&] { return X().IsAbove(high); }));
  SetWindowPos(Handle(high), Handle(1), 0, 0, 0, 0, kOrderOnly);
  EXPECT_TRUE(X().Await([&] { return !X().IsAbove(high); }));
  EXPECT_TRUE(becomes({high, middle, low}));
}

TEST_F(PlacingTest, ThePropertyOfAWindowNotYetShownIsWrittenAtOnce) {
  const xcb_window_t window = MakeWindow();
  SetWindowPos(Handle(window), Handle(-1), 0, 0, 0, 0, kOrderOnly);
  EXPECT_TRUE(X().IsAbove(window));
  EXPECT_FALSE(X().IsShown(window));
  SetWindowPos(Handle(window), Handle(-2), 0, 0, 0, 0, kOrderOnly);
  EXPECT_FALSE(X().IsAbove(window));
  SetWindowPos(Handle(window), Handle(-1), 0, 0, 0, 0, kOrderOnly);
  X().Show(window);
  ASSERT_TRUE(IsShownSoon(window));
  EXPECT_TRUE(X().IsAbove(window));
}

TEST_F(PlacingTest, WindowsThatNoManagerLooksAfterArePlacedDirectly) {
  const xcb_window_t outer = MakeActiveWindow();
  const xcb_window_t inner = MakeWindow(outer);
  const xcb_window_t menu = MakeWindow(XCB_NONE, true);
  for (const xcb_window_t window : {inner, menu}) {
    ASSERT_EQ(SetWindowPos(Handle(window), Handle(-1), -5, 6, 17, 18, kShow | kDoNotActivate), 1);
    EXPECT_TRUE(IsShownSoon(window));
    EXPECT_FALSE(X().IsAbove(window));
  }
  EXPECT_EQ(X().FrameOf(menu), (Frame{-5, 6, 17, 18}));
  const Frame inside = X().FrameOf(inner);
  EXPECT_EQ(inside.width, 17);
  EXPECT_EQ(inside.height, 18);
  const xcb_window_t sibling = MakeWindow(outer);
  EXPECT_EQ(X().Children(outer), (std::vector<xcb_window_t>{inner, sibling}));
  SetWindowPos(Handle(sibling), Handle(inner), 0, 0, 0, 0, kOrderOnly);
  EXPECT_EQ(X().Children(outer), (std::vector<xcb_window_t>{sibling, inner}));
}

TEST_F(PlacingTest, AHandleOfNoWindowIsAQuietNo) {
  const xcb_window_t gone = MakeWindow();
  X().Destroy(gone);
  const std::intptr_t handles[] = {0,          -1,          static_cast<std::intptr_t>(gone),
                                   0x1FFFFFFF, 0x100000000, static_cast<std::intptr_t>(X().Root())};
  for (const std::intptr_t handle : handles) {
    EXPECT_EQ(SetWindowPos(Handle(handle), Handle(-1), 0, 0, 10, 10, kShow | kDoNotActivate), 0) << handle;
  }
  // A window behind one that is not there stays where it is.
  const xcb_window_t window = MakeActiveWindow();
  EXPECT_EQ(SetWindowPos(Handle(window), Handle(static_cast<std::intptr_t>(gone)), 0, 0, 0, 0, kOrderOnly), 1);
}

TEST_F(PlacingTest, NoInputWaitsThatTheHostDoesNotLend) {
  EXPECT_EQ(GetInputState(), 0);
  EXPECT_EQ(OxDoEvents(), S_OK);
}

}  // namespace
}  // namespace Orvix::testing
