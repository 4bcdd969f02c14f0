// File numbers: the table, modes, transfer, and who may open what.
#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <fstream>
#include <iterator>
#include <thread>

#include "support/file_calls.h"
#include "support/native_directory.h"

namespace Orvix::testing {
namespace {

class FileNumbersTest : public ::testing::Test {
 protected:
  ~FileNumbersTest() override {
    for (SHORT number = 1; number <= 511; ++number) OxCloseFile(number);
  }
  Text Name(const char16_t* rest) { return directory_.Name(rest); }
  std::string Content(const std::string& name) {
    std::ifstream file(directory_.Native(name), std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
  }
  static SHORT Free() {
    SHORT number = -1;
    const LONG error = NumberOf(OxFreeFile(&number));
    return error == 0 ? number : static_cast<SHORT>(-error);
  }
  NativeDirectory directory_;
};

TEST_F(FileNumbersTest, LowestUnusedNumberIsGivenButNotReserved) {
  EXPECT_EQ(Free(), 1);
  EXPECT_EQ(Free(), 1);
  ASSERT_EQ(Open(Name(u"\\a"), 1, kOxModeBinary), 0);
  ASSERT_EQ(Open(Name(u"\\b"), 3, kOxModeBinary), 0);
  EXPECT_EQ(Free(), 2);
  EXPECT_EQ(Close(1), 0);
  EXPECT_EQ(Free(), 1);
  EXPECT_EQ(OxFreeFile(nullptr), E_POINTER);
}

TEST_F(FileNumbersTest, TwoHundredFiftyFiveAreGivenAndAllOpened) {
  directory_.Write("a", "x");
  for (SHORT number = 1; number <= 255; ++number) {
    ASSERT_EQ(Free(), number);
    ASSERT_EQ(Open(Name(u"\\a"), number, kOxModeBinary, kOxAccessRead), 0);
  }
  EXPECT_EQ(Free(), -67);
  EXPECT_EQ(Open(Name(u"\\a"), 511, kOxModeBinary), 0);
  EXPECT_EQ(Open(Name(u"\\a"), 512, kOxModeBinary), 52);
  EXPECT_EQ(Open(Name(u"\\a"), 0, kOxModeBinary), 52);
  EXPECT_EQ(Open(Name(u"\\a"), -1, kOxModeBinary), 52);
}

TEST_F(FileNumbersTest, NumbersInUseAndNumbersNotOpen) {
  ASSERT_EQ(Open(Name(u"\\a"), 1, kOxModeBinary), 0);
  EXPECT_EQ(Open(Name(u"\\b"), 1, kOxModeBinary), 55);
  EXPECT_FALSE(directory_.Has("b"));
  EXPECT_EQ(Open(Name(u"\\missing\\b"), 2, kOxModeBinary), 76);
  EXPECT_EQ(Open(Name(u"\\b"), 2, kOxModeBinary), 0);  // the failure left the number unused
  EXPECT_EQ(Close(2), 0);
  EXPECT_EQ(Close(2), 0);
  EXPECT_EQ(Close(0), 0);
  LONG length = 7;
  EXPECT_EQ(NumberOf(OxFileLength(2, &length)), 52);
  EXPECT_EQ(length, 0);
  EXPECT_EQ(Put(2, "x"), 52);
  EXPECT_EQ(Print(0, u"x"), 52);
  EXPECT_EQ(NumberOf(OxSeekFile(600, 1)), 52);
}

TEST_F(FileNumbersTest, OutputEmptiesAndPrintsTheTextAlone) {
  directory_.Write("a", "something long");
  ASSERT_EQ(Open(Name(u"\\a"), 1, kOxModeOutput, kOxAccessWrite, kOxShareShared), 0);
  EXPECT_EQ(Content("a"), "");
  EXPECT_EQ(Print(1, u"A\u20AC\u0100"), 0);
  EXPECT_EQ(Print(1, u""), 0);
  EXPECT_EQ(NumberOf(OxPrintFile(1, nullptr)), 0);
  EXPECT_EQ(Put(1, "x"), 54);
  char byte = 0;
  LONG got = 9;
  EXPECT_EQ(NumberOf(OxGetFile(1, &byte, 1, &got)), 54);
  EXPECT_EQ(got, 0);
  EXPECT_EQ(Close(1), 0);
  EXPECT_EQ(Content("a"), "A\x80?");
}

TEST_F(FileNumbersTest, LongTextsArePrintedWhole) {
  ASSERT_EQ(Open(Name(u"\\a"), 1, kOxModeOutput), 0);
  EXPECT_EQ(Print(1, Text(65535, u'a') + u"\u20AC\u0100" + Text(70000, u'b')), 0);
  EXPECT_EQ(Close(1), 0);
  EXPECT_TRUE(Content("a") == std::string(65535, 'a') + "\x80?" + std::string(70000, 'b'));
}

TEST_F(FileNumbersTest, BinaryGoesOnWhereTheLastTransferEnded) {
  directory_.Write("a", "0123456789");
  ASSERT_EQ(Open(Name(u"\\A"), 1, kOxModeBinary), 0);
  char bytes[8] = "#######";
  LONG got = 0;
  EXPECT_EQ(NumberOf(OxGetFile(1, bytes, 3, &got)), 0);
  EXPECT_EQ(got, 3);
  EXPECT_STREQ(bytes, "012####");
  EXPECT_EQ(Put(1, "AB"), 0);
  EXPECT_EQ(NumberOf(OxSeekFile(1, 9)), 0);
  EXPECT_EQ(NumberOf(OxGetFile(1, bytes, 7, &got)), 0);
  EXPECT_EQ(got, 2);
  EXPECT_STREQ(bytes, "892####");
  EXPECT_EQ(NumberOf(OxGetFile(1, bytes, 7, &got)), 0);
  EXPECT_EQ(got, 0);
  EXPECT_EQ(NumberOf(OxSeekFile(1, 0)), 63);
  EXPECT_EQ(NumberOf(OxSeekFile(1, -1)), 63);
  EXPECT_EQ(NumberOf(OxSeekFile(1, 13)), 0);
  EXPECT_EQ(Put(1, "Z"), 0);
  EXPECT_EQ(Put(1, ""), 0);
  EXPECT_EQ(NumberOf(OxPutFile(1, bytes, -1)), 5);
  EXPECT_EQ(OxPutFile(1, nullptr, 1), E_POINTER);
  EXPECT_EQ(Print(1, u"x"), 54);
  LONG length = 0;
  EXPECT_EQ(NumberOf(OxFileLength(1, &length)), 0);
  EXPECT_EQ(length, 13);
  EXPECT_EQ(Close(1), 0);
  EXPECT_EQ(Content("a"), std::string("012AB56789\0\0Z", 13));
}

TEST_F(FileNumbersTest, AccessDecidesWhatIsCreatedAndTransferred) {
  EXPECT_EQ(Open(Name(u"\\a"), 1, kOxModeBinary, kOxAccessRead), 53);
  EXPECT_FALSE(directory_.Has("a"));
  EXPECT_EQ(Open(Name(u"\\x\\a"), 1, kOxModeBinary, kOxAccessRead), 76);
  EXPECT_EQ(Open(Name(u"\\x\\a"), 1, kOxModeOutput), 76);
  ASSERT_EQ(Open(Name(u"\\a"), 1, kOxModeBinary, kOxAccessWrite), 0);
  EXPECT_EQ(Put(1, "abc"), 0);
  EXPECT_EQ(NumberOf(OxSeekFile(1, 1)), 0);
  char byte = '#';
  LONG got = 0;
  EXPECT_EQ(NumberOf(OxGetFile(1, &byte, 1, &got)), 75);
  EXPECT_EQ(Close(1), 0);
  ASSERT_EQ(Open(Name(u"\\a"), 1, kOxModeBinary, kOxAccessRead), 0);
  EXPECT_EQ(Put(1, "x"), 75);
  EXPECT_EQ(Close(1), 0);
  EXPECT_EQ(Content("a"), "abc");
  EXPECT_EQ(Open(Name(u"\\a"), 1, 3), 5);
  EXPECT_EQ(Open(Name(u"\\a"), 1, kOxModeBinary, 4), 5);
  EXPECT_EQ(Open(Name(u"\\a"), 1, kOxModeOutput, kOxAccessRead), 5);
  EXPECT_EQ(Open(Name(u"\\a"), 1, kOxModeBinary, 0, 2), 5);
  EXPECT_EQ(Open(u"", 1, kOxModeBinary), 52);
  EXPECT_EQ(NumberOf(OxOpenFile(nullptr, 1, kOxModeOutput, 0, 0)), 52);
  EXPECT_EQ(Open(Name(u"\\*"), 1, kOxModeBinary), 52);
  EXPECT_EQ(Open(Name(u""), 1, kOxModeBinary), 75);  // a directory
  EXPECT_EQ(Open(Name(u""), 1, kOxModeBinary, kOxAccessRead), 75);
  EXPECT_EQ(Open(Name(u"\\a\\b"), 1, kOxModeOutput), 76);
}

TEST_F(FileNumbersTest, ReadOnlyFilesKeepTheirContentWhoeverAsks) {
  directory_.Write("a", "keep");
  chmod(directory_.Native("a").c_str(), 0444);
  EXPECT_EQ(Open(Name(u"\\a"), 1, kOxModeOutput), 75);
  EXPECT_EQ(Open(Name(u"\\a"), 1, kOxModeBinary, kOxAccessWrite), 75);
  EXPECT_EQ(Open(Name(u"\\a"), 1, kOxModeBinary, kOxAccessReadWrite), 75);
  ASSERT_EQ(Open(Name(u"\\a"), 1, kOxModeBinary), 0);  // reads only
  EXPECT_EQ(Put(1, "x"), 75);
  char bytes[4];
  LONG got = 0;
  EXPECT_EQ(NumberOf(OxGetFile(1, bytes, 4, &got)), 0);
  EXPECT_EQ(std::string(bytes, 4), "keep");
}

TEST_F(FileNumbersTest, AFileOpenForOutputIsOpenOnce) {
  directory_.Write("b", "keep");
  ASSERT_EQ(Open(Name(u"\\a"), 1, kOxModeOutput), 0);
  EXPECT_EQ(Open(Name(u"\\a"), 2, kOxModeOutput), 55);
  EXPECT_EQ(Open(Name(u"\\A"), 2, kOxModeBinary, 0, kOxShareShared), 55);
  ASSERT_EQ(Open(Name(u"\\b"), 2, kOxModeBinary), 0);
  EXPECT_EQ(Open(Name(u"\\b"), 3, kOxModeOutput), 55);
  EXPECT_EQ(Content("b"), "keep");
  ASSERT_EQ(Open(Name(u"\\b"), 3, kOxModeBinary), 0);  // in binary mode as often as wanted
  EXPECT_EQ(Close(1), 0);
  EXPECT_EQ(Open(Name(u"\\a"), 1, kOxModeOutput), 0);
}

TEST_F(FileNumbersTest, WritingToAFullDeviceIsDiskFull) {
  ASSERT_EQ(Open(u"\\dev\\full", 1, kOxModeOutput), 0);
  EXPECT_EQ(Print(1, u"x"), 61);
  EXPECT_EQ(Close(1), 0);
  ASSERT_EQ(Open(u"\\dev\\full", 1, kOxModeBinary), 0);
  EXPECT_EQ(Put(1, "x"), 61);
}

TEST_F(FileNumbersTest, RunningOutOfDescriptorsIsTooManyFilesAndLeavesNothingOpen) {
  directory_.Write("a", "keep");
  const Text name = Name(u"\\a");
  const int lowest = open("/", O_RDONLY | O_CLOEXEC);
  close(lowest);
  rlimit before{};
  getrlimit(RLIMIT_NOFILE, &before);
  // One descriptor more is for the file, a second for its lock.
  for (int more = 0; more < 2; ++more) {
    const rlimit few{static_cast<rlim_t>(lowest + more), before.rlim_max};
    setrlimit(RLIMIT_NOFILE, &few);
    const LONG error = Open(name, 1, kOxModeOutput);
    setrlimit(RLIMIT_NOFILE, &before);
    EXPECT_EQ(error, 67) << more;
    EXPECT_EQ(Content("a"), "keep");
    EXPECT_EQ(Free(), 1);
  }
  EXPECT_EQ(Open(name, 1, kOxModeOutput), 0);
}

TEST_F(FileNumbersTest, AnOpenFileKeepsItsFormerLengthForOthers) {
  directory_.Write("a", "12345");
  OxFileFacts facts{};
  ASSERT_EQ(Open(Name(u"\\a"), 1, kOxModeOutput), 0);
  EXPECT_EQ(Print(1, u"123456789"), 0);
  ASSERT_EQ(Facts(Name(u"\\a"), facts), 0);
  EXPECT_EQ(facts.size, 5);
  LONG length = 0;
  EXPECT_EQ(NumberOf(OxFileLength(1, &length)), 0);
  EXPECT_EQ(length, 9);
  EXPECT_EQ(Close(1), 0);
  ASSERT_EQ(Facts(Name(u"\\a"), facts), 0);
  EXPECT_EQ(facts.size, 9);
}

TEST_F(FileNumbersTest, ThreadsOpenTransferAndCloseTheSameNumbers) {
  std::atomic<int> surprises{0};
  const auto work = [&](int thread) {
    const Text name = Name(thread % 2 == 0 ? u"\\even" : u"\\odd");
    for (int i = 0; i < 300; ++i) {
      const auto number = static_cast<SHORT>(1 + i % 3);
      const auto expect = [&](LONG error, std::initializer_list<LONG> allowed) {
        if (std::find(allowed.begin(), allowed.end(), error) == allowed.end()) ++surprises;
      };
      SHORT lowest = 0;
      expect(NumberOf(OxFreeFile(&lowest)), {0});
      expect(Open(name, number, kOxModeBinary), {0, 55});
      expect(Put(number, "some bytes"), {0, 52});
      LONG length = 0;
      expect(NumberOf(OxFileLength(number, &length)), {0, 52});
      expect(Close(number), {0});
    }
  };
  std::vector<std::thread> threads;
  for (int i = 0; i < 4; ++i) threads.emplace_back(work, i);
  for (std::thread& thread : threads) thread.join();
  EXPECT_EQ(surprises, 0);
}

}  // namespace
}  // namespace Orvix::testing
