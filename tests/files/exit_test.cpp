// Ways in which a process ends while files are open and members run: what was
// printed is on disk, and the exit code is the program's own.
#include <gtest/gtest.h>

#include <unistd.h>

#include <atomic>
#include <cstdlib>
#include <thread>

#include "orvix/orvix.hpp"
#include "tests/support/native_directory.h"

namespace Orvix::testing {
namespace {

const Text* stored_at_the_end = nullptr;

// Made before anything of the run-time, and so ended after all that is.
struct StoresAtTheEnd {
  ~StoresAtTheEnd() {
    if (stored_at_the_end == nullptr) return;
    const Filename name(*stored_at_the_end);
    Global().StoreData(name, "at the end");
    if (!name.Exists()) _exit(4);
  }
} stores_at_the_end;

void LeaveOpen(const Text& name) {
  if (OxOpenFile(name.c_str(), 1, kOxModeOutput, kOxAccessDefault, kOxShareDefault) != S_OK) _exit(5);
  BSTR text = NewBstr(u"left open");
  OxPrintFile(1, text);
  SysFreeString(text);
}

[[noreturn]] void ExitWhileThreadsRun(const Text& name) {
  std::atomic<int> started = 0;
  for (int i = 0; i < 3; ++i) {
    std::thread([&, i] {
      const Filename own(name + FromUtf8(std::to_string(i)));
      for (;;) {
        Global().StoreData(own, "running");
        static_cast<void>(own.GetFile());
        ++started;
      }
    }).detach();
  }
  while (started < 30) std::this_thread::yield();
  std::exit(3);
}

TEST(ExitTest, LosesNothingAndKeepsTheCode) {
  const NativeDirectory directory;
  const Text open = directory.Name(u"\\open");
  const Text last = directory.Name(u"\\last");
  EXPECT_EXIT((LeaveOpen(open), std::exit(3)), ::testing::ExitedWithCode(3), "^$");
  EXPECT_EQ(directory.Read("open"), "left open");
  EXPECT_EXIT((stored_at_the_end = &last, LeaveOpen(open), std::exit(3)), ::testing::ExitedWithCode(3), "^$");
  EXPECT_EQ(directory.Read("last"), "at the end");
  for (int round = 0; round < 5; ++round) {
    EXPECT_EXIT(ExitWhileThreadsRun(last), ::testing::ExitedWithCode(3), "^$") << "round " << round;
  }
}

}  // namespace
}  // namespace Orvix::testing
