// classFilename and the file that it names: what is there, reading, creating
// and deleting it, what may be done with it, and the name shortened for display.
#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <unistd.h>

#include <limits>

#include "tests/support/component.h"
#include "tests/support/file_calls.h"
#include "tests/support/native_directory.h"
#include "tests/support/ordinary_user.h"

namespace Orvix::testing {
namespace {

constexpr HRESULT kFileMissing = static_cast<HRESULT>(0x800AEF11);
constexpr HRESULT kFileAccess = static_cast<HRESULT>(0x800AEF13);

class FilenameOnDiskTest : public ::testing::Test {
 protected:
  ~FilenameOnDiskTest() override {
    for (SHORT number = 1; number <= 255; ++number) OxCloseFile(number);
  }
  void Assign(TextView name) {
    VARIANT_BOOL yes = VARIANT_TRUE;
    EXPECT_EQ(filename_->put_AllowWildCards(&yes), S_OK);
    BSTR text = NewBstr(name);
    EXPECT_EQ(filename_->put_CompleteFilename(&text), S_OK);
    SysFreeString(text);
  }
  void Assign(const char16_t* rest) { Assign(TextView(directory_.Name(rest))); }
  bool Is(HRESULT (ORVIX_CALL _classFilename::*member)(VARIANT_BOOL*)) {
    VARIANT_BOOL answer = 7;
    EXPECT_EQ((filename_.get()->*member)(&answer), S_OK);
    EXPECT_TRUE(answer == VARIANT_TRUE || answer == VARIANT_FALSE);
    return answer == VARIANT_TRUE;
  }
  LONG Size() {
    LONG size = -7;
    EXPECT_EQ(filename_->FileSize(&size), S_OK);
    return size;
  }
  Text Content() {
    return Returned([&](BSTR* result) { return filename_->GetFile(result); });
  }
  // The failure of reading, as description; its number and source never vary.
  Text ReadFailure() {
    BstrHandle text;
    EXPECT_EQ(filename_->GetFile(text.Receive()), kFileAccess);
    const Failure failure = TakeFailure();
    EXPECT_EQ(failure.source, u"classFile.GetFile");
    return failure.description;
  }
  HRESULT Create(TextView data) {
    BSTR text = NewBstr(data);
    const HRESULT result = filename_->CreateFile(&text);
    SysFreeString(text);
    return result;
  }
  Text Shortened(LONG most) {
    const LONG given = most;
    const Text text = Returned([&](BSTR* result) { return filename_->ShortenedFilename(&most, result); });
    EXPECT_EQ(most, given);
    return text;
  }

  NativeDirectory directory_;
  ComPtr<_classFilename> filename_ = MakeFilename();
};

TEST_F(FilenameOnDiskTest, ANewObjectNamesNoFile) {
  EXPECT_FALSE(Is(&_classFilename::Exists));
  EXPECT_FALSE(Is(&_classFilename::IsReadOnly));
  EXPECT_FALSE(Is(&_classFilename::HasReadPermission));
  EXPECT_FALSE(Is(&_classFilename::HasWritePersmission));
  EXPECT_EQ(filename_->Delete(), S_OK);
  Variant time;
  EXPECT_EQ(filename_->DateTime(time.Receive()), S_OK);
  EXPECT_EQ(time.get().vt, VT_EMPTY);
  LONG size = 7;
  EXPECT_EQ(filename_->FileSize(&size), kFileMissing);
  EXPECT_EQ(TakeFailure(), (Failure{u"classFilename.FileSize", u"File does not exist."}));
  EXPECT_EQ(ReadFailure(), u"File does not exist. ");
  EXPECT_EQ(Create(u"x"), kFileAccess);
  EXPECT_EQ(TakeFailure(), (Failure{u"classFile.GetFile", u"Bad file name or number"}));
  EXPECT_EQ(Shortened(0), u"");
  EXPECT_EQ(LowestFree(), 1);
}

TEST_F(FilenameOnDiskTest, FilesExistAndDirectoriesAndPatternsDoNot) {
  directory_.Write("a.txt", "12345");
  directory_.Write(".hidden", "");
  directory_.MakeDirectory("sub.txt");
  struct Case {
    const char16_t* name;
    bool exists;
    LONG size;
  };
  const Case cases[] = {
      {u"\\a.txt", true, 5},  {u"\\A.TXT", true, 5},  {u"\\.hidden", true, 0}, {u"\\sub.txt", false, 0},
      {u"\\*.txt", false, 0}, {u"\\a.tx?", false, 0}, {u"\\b.txt", false, 0},  {u"\\no\\a.txt", false, 0},
  };
  for (const Case& one : cases) {
    Assign(one.name);
    EXPECT_EQ(Is(&_classFilename::Exists), one.exists) << ToUtf8(one.name);
    LONG size = -7;
    EXPECT_EQ(filename_->FileSize(&size), one.exists ? S_OK : kFileMissing) << ToUtf8(one.name);
    if (one.exists) {
      EXPECT_EQ(size, one.size) << ToUtf8(one.name);
    }
  }
}

TEST_F(FilenameOnDiskTest, ContentComesWholeAndThroughTheCodePage) {
  struct Case {
    std::string bytes;
    Text text;
  };
  const Case cases[] = {
      {"", u""},
      {"A\r\n", u"A\r\n"},
      {std::string("\0\x80\x81\xE9\xFF", 5), Text(u"\0\u20AC\u0081\u00E9\u00FF", 5)},
      {std::string(300'000, 'a') + "\x80z", Text(300'000, u'a') + u"\u20ACz"},  // more than is read at once
  };
  for (const Case& one : cases) {
    directory_.Write("a", one.bytes);
    Assign(u"\\a");
    EXPECT_TRUE(Content() == one.text) << one.bytes.size();
    EXPECT_EQ(LowestFree(), 1);
  }
}

TEST_F(FilenameOnDiskTest, AMissingFileIsReportedByItsName) {
  Assign(u"\\gone");
  EXPECT_EQ(ReadFailure(), u"File does not exist. " + directory_.Name(u"\\gone"));
  Assign(TextView(u"ftp:\\\\host\\dir\\f.txt"));
  EXPECT_EQ(ReadFailure(), u"File does not exist. ftp://host/dir/f.txt");
}

TEST_F(FilenameOnDiskTest, WhatNoTextCanHoldIsNotReadInPart) {
  directory_.Write("a", "x");
  Assign(u"\\a");
  std::filesystem::resize_file(directory_.Native("a"), 2147483648U);
  EXPECT_EQ(Size(), -2147483647 - 1);
  EXPECT_EQ(ReadFailure(), u"Out of memory");
  EXPECT_EQ(LowestFree(), 1);
  std::filesystem::resize_file(directory_.Native("a"), 4294967301U);
  EXPECT_EQ(Size(), 5);
  EXPECT_EQ(ReadFailure(), u"Out of memory");
  EXPECT_EQ(LowestFree(), 2);  // a failure after the opening leaves the number taken
}

TEST_F(FilenameOnDiskTest, CreatingMakesTheDirectoriesAndKeepsWhatIsThere) {
  Assign(u"\\x\\y\\a.txt");
  EXPECT_EQ(Create(u"A\u20AC\u0416"), S_OK);
  EXPECT_EQ(directory_.Read("x/y/a.txt"), "A\x80?");
  EXPECT_EQ(Create(u"other"), S_OK);
  EXPECT_EQ(directory_.Read("x/y/a.txt"), "A\x80?");
  Assign(u"\\x\\b");
  EXPECT_EQ(filename_->CreateFile(nullptr), S_OK);
  EXPECT_TRUE(directory_.Has("x/b"));
  EXPECT_EQ(Size(), 0);
  EXPECT_EQ(Create(u"late"), S_OK);
  EXPECT_EQ(Size(), 0);
  Assign(u"\\c");
  EXPECT_EQ(InvokeNamed(filename_.get(), u"createfile", DISPATCH_METHOD, {Missing()}), S_OK);
  EXPECT_TRUE(directory_.Has("c"));
  EXPECT_EQ(LowestFree(), 1);
}

TEST_F(FilenameOnDiskTest, CreatingWhereThatCannotBe) {
  directory_.Write("file", "keep");
  directory_.MakeDirectory("sub");
  struct Case {
    Text name;
    TextView description;
  };
  const Case cases[] = {
      {directory_.Name(u"\\sub"), u"Path/File access error"},
      {directory_.Name(u"\\file\\a"), u"Path not found"},
      {directory_.Name(u"\\a*"), u"Bad file name or number"},
      {directory_.Name(u"\\") + Text(256, u'n'), u"Path not found"},
      {u"Q:\\a", u"Path not found"},
  };
  for (const Case& one : cases) {
    Assign(TextView(one.name));
    EXPECT_EQ(Create(u"data"), kFileAccess) << ToUtf8(one.name);
    EXPECT_EQ(TakeFailure(), (Failure{u"classFile.GetFile", Text(one.description)})) << ToUtf8(one.name);
  }
  EXPECT_EQ(directory_.Read("file"), "keep");
  EXPECT_EQ(LowestFree(), 1);
}

TEST_F(FilenameOnDiskTest, DeletingTakesOneFileAndNoOther) {
  for (const char* name : {"a.txt", "b.txt", ".h", "locked"}) directory_.Write(name, "1");
  directory_.MakeDirectory("sub");
  chmod(directory_.Native("locked").c_str(), 0444);
  for (const char16_t* name : {u"\\*.txt", u"\\A.TXT", u"\\.h", u"\\locked", u"\\sub", u"\\gone"}) {
    Assign(name);
    EXPECT_EQ(filename_->Delete(), S_OK);
    EXPECT_EQ(TakeFailure().source, u"(none)");
  }
  EXPECT_FALSE(directory_.Has("a.txt"));
  EXPECT_TRUE(directory_.Has("b.txt"));
  EXPECT_FALSE(directory_.Has(".h"));
  EXPECT_TRUE(directory_.Has("locked"));
  EXPECT_TRUE(directory_.Has("sub"));
}

TEST_F(FilenameOnDiskTest, ShortenedNamesHaveTwoCharactersMoreOrKeepTheirName) {
  constexpr TextView kLong = u"C:\\Program Files\\Common Files\\Vendor\\Shared\\Component\\library.dll";
  struct Case {
    TextView name;
    LONG most;
    TextView result;
  };
  const Case cases[] = {
      {kLong, 65, kLong},
      {kLong, 2147483647, kLong},
      {kLong, 60, u"C:\\Program Files..on Files\\Vendor\\Shared\\Component\\library.dll"},
      {kLong, 30, u"C:\\Pro..ed\\Component\\library.dll"},
      {kLong, 20, u"C:\\..onent\\library.dll"},
      {kLong, 18, u"C:..nent\\library.dll"},  // one more than the drive with its dots takes
      {kLong, 17, u"C:\\..\\library.dll"},
      {kLong, 10, u"C:\\..\\library.dll"},
      {kLong, 0, u"C:\\..\\library.dll"},
      {kLong, -5, u"C:\\..\\library.dll"},
      {kLong, std::numeric_limits<LONG>::min(), u"C:\\..\\library.dll"},
      {u"\\\\server\\share\\a\\b\\c\\d\\e\\file.txt", 20, u"\\\\server\\..\\file.txt"},
      {u"a-long-name-without-a-path.txt", 3, u"a-long-name-without-a-path.txt"},
      {u"a-long-name-without-a-path.txt", -1, u"a-long-name-without-a-path.txt"},
      {u"ftp:\\\\host\\some\\long\\dir\\f.txt", 4, u"ftp:\\..\\f.txt"},
  };
  for (const Case& one : cases) {
    Assign(one.name);
    EXPECT_EQ(Shortened(one.most), one.result) << one.most;
  }
}

TEST_F(FilenameOnDiskTest, TimeAndReadOnlyMark) {
  directory_.Write("a", "x");
  directory_.Touch("a", 2001, 2, 3, 4, 5, 6);
  Assign(u"\\a");
  Variant time;
  EXPECT_EQ(filename_->DateTime(time.Receive()), S_OK);
  ASSERT_EQ(time.get().vt, VT_DATE);
  EXPECT_EQ(time.get().date, 36925 + 14706 / 86400.0);
  for (const auto& [mode, read_only] : {std::pair{0444, true}, {0644, false}, {0464, false}, {0, true}}) {
    chmod(directory_.Native("a").c_str(), static_cast<mode_t>(mode));
    EXPECT_EQ(Is(&_classFilename::IsReadOnly), read_only) << std::oct << mode;
  }
  Assign(u"\\gone");
  EXPECT_FALSE(Is(&_classFilename::IsReadOnly));
  Variant none;
  EXPECT_EQ(filename_->DateTime(none.Receive()), S_OK);
  EXPECT_EQ(none.get().vt, VT_EMPTY);
  EXPECT_EQ(TakeFailure().source, u"(none)");
}

TEST_F(FilenameOnDiskTest, PermissionsAreTriedAndNothingChanges) {
  directory_.Write("free", "x");
  directory_.Write("locked", "keep");
  directory_.Touch("locked", 2001, 2, 3, 4, 5, 6);
  directory_.Write("blind", "x");
  directory_.MakeDirectory("sub");
  chmod(directory_.Native("").c_str(), 0777);
  chmod(directory_.Native("free").c_str(), 0666);
  chmod(directory_.Native("locked").c_str(), 0444);
  chmod(directory_.Native("blind").c_str(), 0222);
  const auto expect = [&](const char16_t* name, bool reads, bool writes) {
    Assign(name);
    EXPECT_EQ(Is(&_classFilename::HasReadPermission), reads) << ToUtf8(name);
    EXPECT_EQ(Is(&_classFilename::HasWritePersmission), writes) << ToUtf8(name);
    EXPECT_EQ(LowestFree(), 1);
  };
  expect(u"\\free", true, true);
  expect(u"\\locked", true, false);  // whoever asks
  expect(u"\\sub", false, false);
  expect(u"\\gone", false, false);
  expect(u"\\*", false, false);
  EXPECT_FALSE(directory_.Has("gone"));
  EXPECT_EQ(directory_.Read("locked"), "keep");
  struct stat facts;
  ASSERT_EQ(stat(directory_.Native("locked").c_str(), &facts), 0);
  EXPECT_EQ(facts.st_mtime, 981'173'106);  // 2001-02-03 04:05:06
  const OrdinaryUser user;
  if (!user.ok()) GTEST_SKIP() << "cannot give up rights";
  expect(u"\\blind", false, true);
}

TEST_F(FilenameOnDiskTest, WithoutAFreeNumberTheCallerIsTold) {
  directory_.Write("a", "x");
  for (SHORT number = 1; number <= 255; ++number) {
    ASSERT_EQ(Open(directory_.Name(u"\\a"), number, kOxModeBinary, kOxAccessRead), 0);
  }
  Assign(u"\\a");
  VARIANT_BOOL answer = 7;
  EXPECT_EQ(filename_->HasReadPermission(&answer), MakeResult(0x800A0043));
  EXPECT_EQ(filename_->HasWritePersmission(&answer), MakeResult(0x800A0043));
  EXPECT_EQ(ReadFailure(), u"Too many files");
  EXPECT_TRUE(Is(&_classFilename::Exists));
  Assign(u"\\b");
  EXPECT_EQ(Create(u"x"), kFileAccess);
  EXPECT_FALSE(directory_.Has("b"));
}

// An empty file left behind would count as there, and the data never come.
TEST_F(FilenameOnDiskTest, WithoutFreeDescriptorsNoFileIsLeft) {
  Assign(u"\\new");
  BSTR data = NewBstr(u"data");
  const int lowest = open("/", O_RDONLY | O_CLOEXEC);
  close(lowest);
  rlimit before{};
  getrlimit(RLIMIT_NOFILE, &before);
  for (int free = 0; free < 2; ++free) {
    const rlimit few{static_cast<rlim_t>(lowest + free), before.rlim_max};
    setrlimit(RLIMIT_NOFILE, &few);
    const HRESULT result = filename_->CreateFile(&data);
    setrlimit(RLIMIT_NOFILE, &before);
    EXPECT_EQ(result, kFileAccess) << free;
    EXPECT_EQ(TakeFailure(), (Failure{u"classFile.GetFile", u"Too many files"})) << free;
    EXPECT_FALSE(directory_.Has("new")) << free;
  }
  EXPECT_EQ(filename_->CreateFile(&data), S_OK);
  EXPECT_EQ(directory_.Read("new"), "data");
  SysFreeString(data);
}

}  // namespace
}  // namespace Orvix::testing
