// Times of files as local DATE values, by single calls and by listings alike.
#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <cstdint>
#include <cstdlib>
#include <ctime>

#include "support/file_calls.h"
#include "support/native_directory.h"

namespace Orvix::testing {
namespace {

class LocalTimeTest : public ::testing::Test {
 protected:
  // Central Europe's rules, written out so that no zone files are needed.
  LocalTimeTest() { SetZone("CET-1CEST,M3.5.0,M10.5.0/3"); }
  ~LocalTimeTest() override {
    unsetenv("TZ");
    tzset();
  }
  static void SetZone(const char* zone) { setenv("TZ", zone, 1); }
  void MakeFile(const std::string& name, std::int64_t seconds, LONG nanoseconds = 0) {
    directory_.Write(name, "");
    const timespec times[2] = {{seconds, nanoseconds}, {seconds, nanoseconds}};
    utimensat(AT_FDCWD, directory_.Native(name).c_str(), times, 0);
  }
  DATE Modified(const char16_t* rest) {
    OxFileFacts facts{};
    EXPECT_EQ(Facts(directory_.Name(rest), facts), 0);
    return facts.modified;
  }
  std::vector<DATE> Listed() {
    std::vector<DATE> dates;
    OxSearch* search = nullptr;
    EXPECT_EQ(OxStartSearch(CallText(directory_.Name(u"\\*")).get(), 0, &search), S_OK);
    OxEntry entry{};
    while (OxNextEntry(search, &entry) == S_OK) dates.push_back(entry.modified);
    OxEndSearch(search);
    return dates;
  }
  NativeDirectory directory_;
};

TEST_F(LocalTimeTest, SecondsBeforeAndAfterAChangeOfTheClock) {
  // 2021-03-28 01:00 UTC, when 2:00 became 3:00; 44283 is that day.
  MakeFile("a", 1616893199);
  MakeFile("b", 1616893200);
  // 2021-10-31 01:00 UTC, when 3:00 became 2:00; 44500 is that day.
  MakeFile("c", 1635641999);
  MakeFile("d", 1635642000);
  const std::vector<DATE> expected = {44283 + 7199 / 86400.0, 44283 + 10800 / 86400.0, 44500 + 10799 / 86400.0,
                                      44500 + 7200 / 86400.0};
  EXPECT_EQ(Listed(), expected);
  EXPECT_EQ(Modified(u"\\a"), expected[0]);
  EXPECT_EQ(Modified(u"\\b"), expected[1]);
  EXPECT_EQ(Modified(u"\\c"), expected[2]);
  EXPECT_EQ(Modified(u"\\d"), expected[3]);
}

TEST_F(LocalTimeTest, AChangeWithinAQuarterOfAnHourIsSeen) {
  SetZone("AAA-1BBB,M3.5.0/2:05,M10.5.0/3:05");  // five minutes past the hour
  MakeFile("a", 1616893200 + 299);
  MakeFile("b", 1616893200 + 300);
  MakeFile("c", 1616893200 + 1);
  MakeFile("d", 1616893200 + 899);
  // The quarter after it has one rule throughout.
  MakeFile("e", 1616893200 + 900);
  MakeFile("f", 1616893200 + 901);
  MakeFile("g", 1616893200 + 1799);
  const std::vector<DATE> expected = {44283 + 7499 / 86400.0,  44283 + 11100 / 86400.0, 44283 + 7201 / 86400.0,
                                      44283 + 11699 / 86400.0, 44283 + 11700 / 86400.0, 44283 + 11701 / 86400.0,
                                      44283 + 12599 / 86400.0};
  EXPECT_EQ(Listed(), expected);
}

TEST_F(LocalTimeTest, FractionsOfASecondAreDropped) {
  SetZone("UTC0");
  MakeFile("a", 1616893199, 999999999);
  EXPECT_EQ(Modified(u"\\a"), 44283 + 3599 / 86400.0);
}

TEST_F(LocalTimeTest, TimesBefore1970AndAnotherZoneLater) {
  SetZone("UTC0");
  MakeFile("a", -1);
  EXPECT_EQ(Modified(u"\\a"), 25568 + 86399 / 86400.0);
  EXPECT_EQ(Listed(), std::vector<DATE>{25568 + 86399 / 86400.0});
  SetZone("XXX-1");
  EXPECT_EQ(Modified(u"\\a"), 25569 + 3599 / 86400.0);
  EXPECT_EQ(Listed(), std::vector<DATE>{25569 + 3599 / 86400.0});
}

}  // namespace
}  // namespace Orvix::testing
