// Locks between processes, seen from outside: a lock that this test takes on a
// descriptor of its own is in the way like another process's.
#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/file.h>
#include <unistd.h>

#include <filesystem>

#include "support/file_calls.h"
#include "support/native_directory.h"

namespace Orvix::testing {
namespace {

class Outsider {
 public:
  explicit Outsider(const std::string& path) : descriptor_(open(path.c_str(), O_RDONLY | O_CLOEXEC)) {}
  Outsider(const Outsider&) = delete;
  Outsider& operator=(const Outsider&) = delete;
  ~Outsider() { close(descriptor_); }
  // Whether the lock can be had.
  bool Lock(int kind) { return flock(descriptor_, kind | LOCK_NB) == 0; }
  void Unlock() { flock(descriptor_, LOCK_UN); }

 private:
  int descriptor_;
};

class LocksTest : public ::testing::Test {
 protected:
  LocksTest() { directory_.Write("a", "keep"); }
  ~LocksTest() override {
    for (SHORT number = 1; number <= 3; ++number) OxCloseFile(number);
  }
  LONG OpenShared(SHORT number) { return Open(name_, number, kOxModeBinary, kOxAccessDefault, kOxShareShared); }
  NativeDirectory directory_;
  Text name_ = directory_.Name(u"\\a");
};

TEST_F(LocksTest, DefaultSharingShutsOthersOut) {
  Outsider outsider(directory_.Native("a"));
  ASSERT_EQ(Open(name_, 1, kOxModeBinary), 0);
  EXPECT_FALSE(outsider.Lock(LOCK_SH));
  EXPECT_EQ(Close(1), 0);
  EXPECT_TRUE(outsider.Lock(LOCK_EX));
  EXPECT_EQ(Open(name_, 1, kOxModeBinary), 70);
  EXPECT_EQ(Open(name_, 1, kOxModeOutput), 70);
  EXPECT_EQ(OpenShared(1), 70);
  EXPECT_EQ(std::filesystem::file_size(directory_.Native("a")), 4U);
  outsider.Unlock();
  EXPECT_EQ(Open(name_, 1, kOxModeBinary), 0);
}

TEST_F(LocksTest, SharedLetsSharersIn) {
  Outsider outsider(directory_.Native("a"));
  ASSERT_EQ(OpenShared(1), 0);
  EXPECT_TRUE(outsider.Lock(LOCK_SH));
  EXPECT_EQ(OpenShared(2), 0);
  EXPECT_EQ(Open(name_, 3, kOxModeBinary), 70);
  outsider.Unlock();
  EXPECT_FALSE(outsider.Lock(LOCK_EX));  // still shared after the refusal
  EXPECT_EQ(Open(name_, 3, kOxModeBinary), 0);
  EXPECT_FALSE(outsider.Lock(LOCK_SH));
}

TEST_F(LocksTest, TheLockIsTheStrictestOfThoseLeft) {
  Outsider outsider(directory_.Native("a"));
  ASSERT_EQ(Open(name_, 1, kOxModeBinary), 0);
  ASSERT_EQ(OpenShared(2), 0);
  ASSERT_EQ(Open(name_, 3, kOxModeBinary), 0);
  EXPECT_EQ(Close(1), 0);
  EXPECT_FALSE(outsider.Lock(LOCK_SH));
  EXPECT_EQ(Close(3), 0);
  EXPECT_TRUE(outsider.Lock(LOCK_SH));
  outsider.Unlock();
  EXPECT_FALSE(outsider.Lock(LOCK_EX));
  EXPECT_EQ(Close(2), 0);
  EXPECT_TRUE(outsider.Lock(LOCK_EX));
}

TEST_F(LocksTest, DescriptorsDoNotReachOtherPrograms) {
  const auto open_descriptors = [] {
    int inherited = 0;
    for (int descriptor = 3; descriptor < 100; ++descriptor) {
      const int flags = fcntl(descriptor, F_GETFD);
      inherited += flags >= 0 && (flags & FD_CLOEXEC) == 0 ? 1 : 0;
    }
    return inherited;
  };
  const int before = open_descriptors();
  ASSERT_EQ(Open(name_, 1, kOxModeBinary), 0);
  EXPECT_EQ(open_descriptors(), before);
}

}  // namespace
}  // namespace Orvix::testing
