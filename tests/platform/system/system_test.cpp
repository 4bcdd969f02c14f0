#include <gtest/gtest.h>
#include <sys/utsname.h>
#include <time.h>

#include <cstring>
#include <vector>

#include "orvix/host.h"
#include "orvix/platform.h"
#include "platform/system/version.h"

namespace {

class SystemTest : public ::testing::Test {
 protected:
  ~SystemTest() override { OxSetHost(nullptr); }
  void Install(OxHost table) {
    table.size = sizeof table;
    table.context = &seen_;
    ASSERT_EQ(OxSetHost(&table), S_OK);
  }
  uint32_t seen_ = 0;
};

TEST_F(SystemTest, SleepGoesToTheHostUnsigned) {
  OxHost table{};
  table.Sleep = [](void* context, uint32_t milliseconds) { *static_cast<uint32_t*>(context) = milliseconds; };
  Install(table);
  Sleep(static_cast<DWORD>(-1));
  EXPECT_EQ(seen_, 4294967295u);
}

int64_t MonotonicMilliseconds() {
  timespec now{};
  clock_gettime(CLOCK_MONOTONIC, &now);
  return int64_t{now.tv_sec} * 1000 + now.tv_nsec / 1000000;
}

TEST_F(SystemTest, SleepTakesAtLeastItsTimeAndTheTickCountFollows) {
  const int64_t before = MonotonicMilliseconds();
  const DWORD tick = GetTickCount();
  Sleep(12);
  EXPECT_GE(GetTickCount() - tick, 11u);  // each reading is cut to whole milliseconds
  EXPECT_GE(MonotonicMilliseconds() - before, 11);
}

TEST_F(SystemTest, TickCountIsMillisecondsSinceTheStart) {
  timespec boot{};
  clock_gettime(CLOCK_BOOTTIME, &boot);
  const auto now = static_cast<DWORD>(static_cast<uint64_t>(boot.tv_sec) * 1000);
  EXPECT_LT(GetTickCount() - now, 60'000u);
  OxHost table{};
  table.GetTickCount = [](void*) -> uint32_t { return 0xFFFFFFF0; };
  Install(table);
  EXPECT_EQ(GetTickCount(), 0xFFFFFFF0u);
}

TEST(NumbersOfReleaseTest, TakesTheFirstThreeNumbers) {
  using Numbers = std::array<DWORD, 3>;
  EXPECT_EQ(Orvix::NumbersOfRelease("6.1.0-18-amd64"), (Numbers{6, 1, 0}));
  EXPECT_EQ(Orvix::NumbersOfRelease("5.10.209"), (Numbers{5, 10, 209}));
  EXPECT_EQ(Orvix::NumbersOfRelease("4.19"), (Numbers{4, 19, 0}));
  EXPECT_EQ(Orvix::NumbersOfRelease("4.19-7.3"), (Numbers{4, 19, 7}));
  EXPECT_EQ(Orvix::NumbersOfRelease("v99999999999.4294967295.4294967296"),
            (Numbers{4294967295, 4294967295, 4294967295}));
  EXPECT_EQ(Orvix::NumbersOfRelease("unknown"), (Numbers{0, 0, 0}));
  EXPECT_EQ(Orvix::NumbersOfRelease(""), (Numbers{0, 0, 0}));
}

TEST_F(SystemTest, VersionRecordIsTheKernelsWithPlatformFour) {
  utsname system{};
  ASSERT_EQ(uname(&system), 0);
  std::array<DWORD, 3> expected{};
  ASSERT_GE(sscanf(system.release, "%u.%u.%u", &expected[0], &expected[1], &expected[2]), 2);
  for (const DWORD size : {148u, 156u}) {
    std::vector<unsigned char> record(160, 0xAA);
    std::memcpy(record.data(), &size, sizeof size);
    ASSERT_NE(GetVersionExA(record.data()), 0);
    OSVERSIONINFOA version{};
    std::memcpy(&version, record.data(), sizeof version);
    EXPECT_EQ(version.dwOSVersionInfoSize, size);
    EXPECT_EQ(version.dwMajorVersion, expected[0]);
    EXPECT_EQ(version.dwMinorVersion, expected[1]);
    EXPECT_EQ(version.dwBuildNumber, expected[2]);
    EXPECT_EQ(version.dwPlatformId, 4u);
    for (std::size_t i = 20; i < 160; ++i) EXPECT_EQ(record[i], i < size ? 0 : 0xAA) << i;
  }
}

TEST_F(SystemTest, AnotherRecordSizeFailsAndWritesNothing) {
  OxHost table{};
  table.GetVersionExA = [](void*, void*) -> LONG { return 1; };
  for (const bool hosted : {false, true}) {
    if (hosted) Install(table);
    for (const DWORD size : {0u, 147u, 149u, 155u, 157u}) {
      OSVERSIONINFOA version{};
      std::memset(&version, 0xAA, sizeof version);
      version.dwOSVersionInfoSize = size;
      EXPECT_EQ(GetVersionExA(&version), 0) << size;
      EXPECT_EQ(version.dwPlatformId, 0xAAAAAAAA);
    }
    EXPECT_EQ(GetVersionExA(nullptr), 0);
  }
}

TEST_F(SystemTest, AHostMaySayWhatItIs) {
  OxHost table{};
  table.GetVersionExA = [](void*, void* record) -> LONG {
    static_cast<OSVERSIONINFOA*>(record)->dwPlatformId = 2;
    return 1;
  };
  Install(table);
  OSVERSIONINFOA version{};
  version.dwOSVersionInfoSize = 148;
  EXPECT_EQ(GetVersionExA(&version), 1);
  EXPECT_EQ(version.dwPlatformId, 2u);
}

}  // namespace
