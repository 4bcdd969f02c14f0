// Each test in a process of its own: the run-time looks for its display once.
#include <csignal>

#include "tests/x11/x_fixture.h"

namespace Orvix::testing {
namespace {

// Runs the body in a fresh process, whose failures are this one's.
template <class Body>
void InFreshProcess(Body body) {
  GTEST_FLAG_SET(death_test_style, "threadsafe");
  EXPECT_EXIT(
      {
        body();
        std::exit(::testing::Test::HasFailure() ? 1 : 0);
      },
      ::testing::ExitedWithCode(0), "");
}

#define SKIP_WITHOUT_SERVER() \
  if (!Installed("Xvfb")) GTEST_SKIP() << "Xvfb is not installed"

TEST(WithoutServerTest, ADisplayThatIsNotThereIsTheHeadlessScreen) {
  InFreshProcess([] {
    setenv("DISPLAY", "/nonexistent/display:0", 1);
    EXPECT_EQ(ScreenNumber(u"Width"), 15360);
    EXPECT_EQ(ScreenNumber(u"Height"), 11520);
    EXPECT_EQ(SetWindowPos(Handle(1), Handle(-1), 0, 0, 0, 0, 0x50), 1);
    EXPECT_EQ(OxNameWindow(Handle(1), 1), S_OK);
    EXPECT_EQ(OxNameWindow(nullptr, 1), E_INVALIDARG);
  });
}

TEST(WithoutServerTest, AServerThatIsKilledIsQuiet) {
  SKIP_WITHOUT_SERVER();
  // The hourglass is fetched before, or never.
  for (const LONG code : {0, 11}) {
    InFreshProcess([code] {
      XServer server;
      const auto client = std::make_unique<Client>();
      const xcb_window_t window = client->MakeWindow();
      ASSERT_EQ(OxNameWindow(Handle(window), 1), S_OK);
      SetMousePointer(code);
      ASSERT_EQ(ScreenNumber(u"Width"), 19200);
      server.Kill();
      EXPECT_EQ(SetWindowPos(Handle(window), Handle(-1), 0, 0, 10, 10, 0x50), 0);
      SetMousePointer(11 - code);
      EXPECT_EQ(ScreenNumber(u"MousePointer"), 11 - code);
      EXPECT_EQ(OxNameWindow(Handle(window), 1), S_FALSE);
      EXPECT_EQ(OxNameWindow(Handle(window), 0), S_FALSE);
      EXPECT_EQ(ScreenNumber(u"Width"), 19200);
      EXPECT_EQ(ScreenNumber(u"Height"), 10800);
      EXPECT_EQ(GetInputState(), 0);
      EXPECT_EQ(OxDoEvents(), S_OK);
      // The program's own signals are as they were.
      sigset_t set;
      sigpending(&set);
      EXPECT_EQ(sigismember(&set, SIGPIPE), 0);
      pthread_sigmask(SIG_BLOCK, nullptr, &set);
      EXPECT_EQ(sigismember(&set, SIGPIPE), 0);
    });
  }
}

TEST(WithoutServerTest, WithoutAWindowManagerWindowsArePlacedDirectly) {
  SKIP_WITHOUT_SERVER();
  InFreshProcess([] {
    XServer server;
    Client client;
    const xcb_window_t window = client.MakeWindow();
    const xcb_window_t other = client.MakeWindow();
    ASSERT_EQ(SetWindowPos(Handle(window), Handle(-1), 30, 40, 50, 60, 0x50), 1);
    // When the call returns it is done.
    EXPECT_TRUE(client.IsShown(window));
    EXPECT_EQ(client.FrameOf(window), (Frame{30, 40, 50, 60}));
    EXPECT_TRUE(client.IsAbove(window));
    EXPECT_EQ(client.Children(client.Root()), (std::vector<xcb_window_t>{other, window}));
    EXPECT_EQ(SetWindowPos(Handle(window), Handle(1), 40000, -40000, 0, -1, 0x90), 1);
    EXPECT_FALSE(client.IsShown(window));
    EXPECT_FALSE(client.IsAbove(window));
    EXPECT_EQ(client.FrameOf(window), (Frame{32767, -32768, 1, 1}));
    EXPECT_EQ(client.Children(client.Root()), (std::vector<xcb_window_t>{window, other}));
  });
}

}  // namespace
}  // namespace Orvix::testing
