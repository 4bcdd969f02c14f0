// Storing and reading while others do the same, while files grow, and where the
// system refuses in the middle.
#include <gtest/gtest.h>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/xattr.h>
#include <unistd.h>

#include <atomic>
#include <thread>

#include "orvix/orvix.hpp"
#include "tests/support/file_calls.h"
#include "tests/support/native_directory.h"

namespace Orvix::testing {
namespace {

// The number that a call fails with, 0 for none.
template <class Call>
LONG NumberOf(Call&& call) {
  try {
    call();
  } catch (const Error& error) {
    return error.Number();
  }
  return 0;
}

// No file may become larger than this while it lives.
class FileSizeLimit {
 public:
  explicit FileSizeLimit(rlim_t bytes) {
    getrlimit(RLIMIT_FSIZE, &before_);
    const rlimit limit{bytes, before_.rlim_max};
    setrlimit(RLIMIT_FSIZE, &limit);
  }
  FileSizeLimit(const FileSizeLimit&) = delete;
  FileSizeLimit& operator=(const FileSizeLimit&) = delete;
  ~FileSizeLimit() { setrlimit(RLIMIT_FSIZE, &before_); }

 private:
  rlimit before_{};
};

class StoringFaultsTest : public ::testing::Test {
 protected:
  ~StoringFaultsTest() override {
    for (SHORT number = 1; number <= 9; ++number) OxCloseFile(number);
  }
  [[nodiscard]] Filename Named(TextView name) const { return Filename(directory_.Name(Text(u"\\").append(name))); }
  [[nodiscard]] std::ptrdiff_t Entries() const {
    return std::distance(std::filesystem::directory_iterator(directory_.Native("")), {});
  }

  NativeDirectory directory_;
};

TEST_F(StoringFaultsTest, ThreadsGetNumbersOfTheirOwn) {
  std::atomic<int> failures = 0;
  std::vector<std::thread> threads;
  for (int i = 0; i < 4; ++i) {
    threads.emplace_back([&, name = Named(FromUtf8(std::to_string(i)))] {
      for (int round = 0; round < 500; ++round) {
        const LONG number = NumberOf([&] {
          Global().StoreData(name, "content");
          if (name.GetFile() != "content") ++failures;
        });
        if (number != 0) ++failures;
      }
    });
  }
  for (std::thread& thread : threads) thread.join();
  EXPECT_EQ(failures, 0);
}

TEST_F(StoringFaultsTest, AFileIsMadeByOneAndKeptByTheOther) {
  for (int round = 0; round < 300; ++round) {
    const Text name = FromUtf8(std::to_string(round));
    std::thread other([&] { Named(name).CreateFile(Text(3000, u'o')); });
    Named(name).CreateFile(Text(2000, u't'));
    other.join();
    const std::string content = directory_.Read(ToUtf8(name));
    EXPECT_TRUE(content == std::string(3000, 'o') || content == std::string(2000, 't')) << content.size();
  }
  EXPECT_EQ(Entries(), 300);
}

TEST_F(StoringFaultsTest, WhatCannotBeStoredWholeLeavesTheOldFile) {
  directory_.Write("old", "old content");
  const Array<BYTE> bytes(std::vector<BYTE>(5000, BYTE{1}));
  {
    const FileSizeLimit limit(1000);
    EXPECT_NE(NumberOf([&] { Global().StoreData(Named(u"old"), Text(5000, u'n')); }), 0);
    EXPECT_NE(NumberOf([&] { Global().StoreBinaryData(Named(u"old"), bytes); }), 0);
    EXPECT_EQ(NumberOf([&] { Named(u"new").CreateFile(Text(5000, u'n')); }), 61203);
  }
  EXPECT_EQ(directory_.Read("old"), "old content");
  for (SHORT number = 1; number <= 9; ++number) OxCloseFile(number);
  EXPECT_EQ(directory_.Read("old"), "old content");
  EXPECT_EQ(Entries(), 1);
}

TEST_F(StoringFaultsTest, AStoredFileKeepsItsPlace) {
  directory_.Write("file", "old");
  chmod(directory_.Native("file").c_str(), 0640);
  directory_.Write("first", "old");
  std::filesystem::create_hard_link(directory_.Native("first"), directory_.Native("second"));
  std::filesystem::create_symlink("file", directory_.Native("link"));
  Global().StoreData(Named(u"link"), "new");
  Global().StoreData(Named(u"second"), "new");
  EXPECT_EQ(directory_.Read("file"), "new");
  EXPECT_TRUE(std::filesystem::is_symlink(directory_.Native("link")));
  EXPECT_EQ(directory_.Read("first"), "new");
  struct stat facts {};
  stat(directory_.Native("file").c_str(), &facts);
  EXPECT_EQ(facts.st_mode & 07777, 0640U);
  EXPECT_EQ(Entries(), 4);
}

// A default list of rights in the directory lets a user in whom the file keeps out.
TEST_F(StoringFaultsTest, AStoredFileKeepsItsRightsAndAttributes) {
  directory_.Write("file", "old");
  const std::string file = directory_.Native("file");
  constexpr std::uint16_t kEntries[][4] = {{1, 7, 0xFFFF, 0xFFFF},
                                           {2, 6, 1234, 0},
                                           {4, 4, 0xFFFF, 0xFFFF},
                                           {16, 6, 0xFFFF, 0xFFFF},
                                           {32, 0, 0xFFFF, 0xFFFF}};
  std::string rights("\2\0\0\0", 4);
  rights.append(reinterpret_cast<const char*>(kEntries), sizeof kEntries);
  if (setxattr(directory_.Native("").c_str(), "system.posix_acl_default", rights.data(), rights.size(), 0) != 0 ||
      setxattr(file.c_str(), "user.note", "mine", 4, 0) != 0) {
    GTEST_SKIP() << "a file system without attributes";
  }
  chmod(file.c_str(), 0640);
  Global().StoreData(Named(u"file"), "new");
  char note[8] = {};
  EXPECT_EQ(getxattr(file.c_str(), "system.posix_acl_access", nullptr, 0), -1);
  EXPECT_EQ(getxattr(file.c_str(), "user.note", note, sizeof note), 4);
  EXPECT_STREQ(note, "mine");
  EXPECT_EQ(directory_.Read("file"), "new");
}

TEST_F(StoringFaultsTest, WhoHasTheFileOpenGoesOnWithIt) {
  directory_.Write("file", "old content");
  const int other = open(directory_.Native("file").c_str(), O_RDWR | O_CLOEXEC);
  ASSERT_EQ(flock(other, LOCK_SH), 0);  // as another process's shared opening
  Global().StoreData(Named(u"file"), "new");
  char content[16] = {};
  EXPECT_EQ(pread(other, content, sizeof content, 0), 3);
  EXPECT_STREQ(content, "new");
  EXPECT_EQ(pwrite(other, "more", 4, 3), 4);
  close(other);
  EXPECT_EQ(directory_.Read("file"), "newmore");
  EXPECT_EQ(Entries(), 1);
}

TEST_F(StoringFaultsTest, WhatCannotGetItsNameLeavesNothing) {
  ASSERT_EQ(Open(directory_.Name(u"\\name"), 1, kOxModeStore, kOxAccessWrite, kOxShareShared), 0);
  ASSERT_EQ(Print(1, u"text"), 0);
  std::filesystem::create_directory(directory_.Native("name"));
  EXPECT_EQ(Close(1), 75);
  OxCloseFile(1);
  EXPECT_EQ(Entries(), 1);
}

// The reader sees one writer, and the end of file behind its text.
TEST_F(StoringFaultsTest, APipeIsOpenedOnce) {
  ASSERT_EQ(mkfifo(directory_.Native("pipe").c_str(), 0600), 0);
  for (int round = 0; round < 300; ++round) {
    const int end = open(directory_.Native("pipe").c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC);
    fcntl(end, F_SETFL, 0);
    std::string got;
    std::thread reader([&] {
      for (char byte = 0; got.size() < 3;) {
        if (const ssize_t read_now = read(end, &byte, 1); read_now == 1) got += byte;
      }
    });
    EXPECT_EQ(NumberOf([&] { Global().StoreData(Named(u"pipe"), "abc"); }), 0);
    reader.join();
    close(end);
    EXPECT_EQ(got, "abc");
  }
}

// What a person sets the variable ORVIX_FILE_TEXT for.
TEST_F(StoringFaultsTest, FilesMayHoldUtf8) {
  struct Row {
    Text text;
    std::string bytes;
  };
  const Text most(16383, u'x');  // what is written at a time ends within a pair
  const Row rows[] = {
      {u"", ""},
      {u"a\u00E4\u0416\u65E5\U0001F600\uFFFD", "a\xC3\xA4\xD0\x96\xE6\x97\xA5\xF0\x9F\x98\x80\xEF\xBF\xBD"},
      {most + u"\U0001F600" + most, std::string(16383, 'x') + "\xF0\x9F\x98\x80" + std::string(16383, 'x')},
      {u"a\uF7FFb\uF7C3",
       "a\xFF"
       "b\xC3"},
      {u"\uF7ED\uF7A0\uF780", "\xED\xA0\x80"},                            // half of a pair in UTF-8
      {u"\uF7C0\uF780", "\xC0\x80"},                                      // longer than it need be
      {u"\uF7EF\uF79F\uF7BF", "\xEF\x9F\xBF"},                            // what would look like such a byte
      {u"\uF7F4\uF790\uF780\uF780", "\xF4\x90\x80\x80"},                  // beyond Unicode
      {u"\U0010FFFF\uF7F0\uF79F\uF798", "\xF4\x8F\xBF\xBF\xF0\x9F\x98"},  // cut off
  };
  EXPECT_EQ(OxSetFileText(1252), E_INVALIDARG);
  ASSERT_EQ(OxSetFileText(65001), S_OK);
  for (const Row& row : rows) {
    Global().StoreData(Named(u"file"), row.text);
    EXPECT_EQ(directory_.Read("file"), row.bytes);
    EXPECT_TRUE(Named(u"file").GetFile() == row.text) << row.bytes;
  }
  Named(u"new").CreateFile(u"\u0416\xD83D!");
  EXPECT_EQ(directory_.Read("new"), "\xD0\x96?!");
  ASSERT_EQ(OxSetFileText(CP_ACP), S_OK);
  EXPECT_EQ(Named(u"new").GetFile(), u"\u00D0\u2013?!");
}

TEST_F(StoringFaultsTest, AReaderThatGoesAwayIsAnError) {
  ASSERT_EQ(mkfifo(directory_.Native("pipe").c_str(), 0600), 0);
  std::thread reader([&] { close(open(directory_.Native("pipe").c_str(), O_RDONLY | O_CLOEXEC)); });
  EXPECT_NE(NumberOf([&] { Global().StoreData(Named(u"pipe"), Text(1 << 20, u'x')); }), 0);
  reader.join();
}

TEST_F(StoringFaultsTest, GrowthIsNoFailure) {
  EXPECT_EQ(Filename("Z:\\proc\\self\\status").GetFile(), "");  // its length says 0
  std::atomic<bool> stop = false;
  directory_.Write("log", "x");
  std::thread writer([&] {
    const int file = open(directory_.Native("log").c_str(), O_WRONLY | O_APPEND | O_CLOEXEC);
    while (!stop && write(file, "xxxxxxxx", 8) == 8 && lseek(file, 0, SEEK_CUR) < 1 << 17) {
    }
    close(file);
  });
  const Filename log = Named(u"log");
  std::size_t last = 0;
  for (int round = 0; round < 200; ++round) {
    const Text text = Text(log.GetFile().View());
    EXPECT_GE(text.size(), last);
    EXPECT_EQ(text.find_first_not_of(u'x'), Text::npos);
    last = text.size();
  }
  stop = true;
  writer.join();
  EXPECT_EQ(LowestFree(), 1);
}

}  // namespace
}  // namespace Orvix::testing
