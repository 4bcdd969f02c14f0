// File facts, making directories, deleting files.
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <filesystem>

#include "support/file_calls.h"
#include "support/native_directory.h"
#include "support/ordinary_user.h"

namespace Orvix::testing {
namespace {

class FileFunctionsTest : public ::testing::Test {
 protected:
  Text Name(const char16_t* rest) { return directory_.Name(rest); }
  LONG FactsError(const char16_t* rest) {
    OxFileFacts facts{};
    return Facts(Name(rest), facts);
  }
  LONG Attributes(const char16_t* rest) {
    OxFileFacts facts{};
    EXPECT_EQ(Facts(Name(rest), facts), 0);
    return facts.attributes;
  }
  NativeDirectory directory_;
};

TEST_F(FileFunctionsTest, FactsOfFilesAndDirectories) {
  directory_.Write("a", "123");
  directory_.Write(".h", "");
  directory_.MakeDirectory("d");
  std::filesystem::create_symlink("d", directory_.Native("link"));
  EXPECT_EQ(Attributes(u"\\A"), 32);
  EXPECT_EQ(Attributes(u"\\.h"), 32 | 2);
  EXPECT_EQ(Attributes(u"\\d"), 16);
  EXPECT_EQ(Attributes(u"\\d\\"), 16);
  EXPECT_EQ(Attributes(u"\\link"), 16);
  chmod(directory_.Native("a").c_str(), 0555);
  EXPECT_EQ(Attributes(u"\\a"), 32 | 1);
  OxFileFacts facts{};
  directory_.Touch("a", 2000, 2, 29, 23, 59, 59);
  ASSERT_EQ(Facts(Name(u"\\a"), facts), 0);
  EXPECT_EQ(facts.size, 3);
  EXPECT_EQ(facts.modified, 36585 + 86399 / 86400.0);
  EXPECT_EQ(Facts(u"Z:\\", facts), 0);
  EXPECT_EQ(facts.attributes & 18, 16);
}

TEST_F(FileFunctionsTest, FactsTellMissingFilesFromMissingPaths) {
  directory_.Write("a", "");
  std::filesystem::create_symlink("nowhere", directory_.Native("dangling"));
  EXPECT_EQ(FactsError(u"\\x"), 53);
  EXPECT_EQ(FactsError(u"\\x\\y"), 76);
  EXPECT_EQ(FactsError(u"\\a\\y"), 76);
  EXPECT_EQ(FactsError(u"\\a\\"), 76);
  EXPECT_EQ(FactsError(u"\\dangling"), 53);
  EXPECT_EQ(FactsError(u"\\dangling\\x"), 76);
  EXPECT_EQ(FactsError(u"\\*"), 52);
  OxFileFacts facts{};
  EXPECT_EQ(Facts(u"", facts), 52);
  EXPECT_EQ(OxGetFileFacts(nullptr, nullptr), E_POINTER);
}

TEST_F(FileFunctionsTest, SizesWrapAtThirtyTwoBits) {
  directory_.Write("a", "");
  std::filesystem::resize_file(directory_.Native("a"), 0x180000005);
  OxFileFacts facts{};
  ASSERT_EQ(Facts(Name(u"\\a"), facts), 0);
  EXPECT_EQ(facts.size, static_cast<LONG>(0x80000005));
}

TEST_F(FileFunctionsTest, FailuresCarryTheStandardDescription) {
  EXPECT_EQ(MakeDirectory(Name(u"\\x\\y")), 76);
  IErrorInfo* info = nullptr;
  ASSERT_EQ(GetErrorInfo(0, &info), S_OK);
  BSTR description = nullptr;
  info->GetDescription(&description);
  EXPECT_EQ(ViewOf(description), u"Path not found");
  SysFreeString(description);
  info->Release();
}

TEST_F(FileFunctionsTest, MakesOneLevel) {
  directory_.Write("file", "");
  EXPECT_EQ(MakeDirectory(Name(u"\\New")), 0);
  EXPECT_TRUE(directory_.Has("New"));
  EXPECT_EQ(MakeDirectory(Name(u"\\Other\\")), 0);
  EXPECT_TRUE(directory_.Has("Other"));
  EXPECT_EQ(MakeDirectory(Name(u"\\new")), 75);
  EXPECT_FALSE(directory_.Has("new"));
  EXPECT_EQ(MakeDirectory(Name(u"\\new\\.")), 75);
  EXPECT_EQ(MakeDirectory(Name(u"\\file")), 75);
  EXPECT_EQ(MakeDirectory(Name(u"\\a\\b")), 76);
  EXPECT_EQ(MakeDirectory(Name(u"\\file\\b")), 76);
  EXPECT_EQ(MakeDirectory(u"Z:\\"), 75);
  EXPECT_EQ(MakeDirectory(u"C:"), 75);
  EXPECT_EQ(MakeDirectory(u"Q:\\a"), 76);
  EXPECT_EQ(MakeDirectory(u""), 52);
  EXPECT_EQ(MakeDirectory(Name(u"\\a?")), 52);
  EXPECT_EQ(MakeDirectory(Name(u"\\") + Text(256, u'a')), 76);
}

TEST_F(FileFunctionsTest, DeletesFilesOnly) {
  directory_.Write("a", "");
  directory_.Write(".h", "");
  directory_.Write("kept", "");
  directory_.Write("target", "");
  directory_.MakeDirectory("d");
  chmod(directory_.Native("kept").c_str(), 0444);
  std::filesystem::create_symlink("target", directory_.Native("link"));
  EXPECT_EQ(DeleteFile(Name(u"\\A")), 0);
  EXPECT_FALSE(directory_.Has("a"));
  EXPECT_EQ(DeleteFile(Name(u"\\.h")), 0);
  EXPECT_EQ(DeleteFile(Name(u"\\kept")), 75);
  EXPECT_TRUE(directory_.Has("kept"));
  EXPECT_EQ(DeleteFile(Name(u"\\link")), 0);
  EXPECT_TRUE(directory_.Has("target"));
  EXPECT_EQ(DeleteFile(Name(u"\\d")), 53);
  EXPECT_TRUE(directory_.Has("d"));
  EXPECT_EQ(DeleteFile(Name(u"\\missing")), 53);
  EXPECT_EQ(DeleteFile(Name(u"\\missing\\x")), 76);
  EXPECT_EQ(DeleteFile(Name(u"\\t*")), 52);
  ASSERT_EQ(Open(Name(u"\\target"), 1, kOxModeBinary), 0);
  EXPECT_EQ(DeleteFile(Name(u"\\target")), 55);
  EXPECT_EQ(Close(1), 0);
  EXPECT_EQ(DeleteFile(Name(u"\\target")), 0);
  EXPECT_FALSE(directory_.Has("target"));
}

TEST_F(FileFunctionsTest, DeniedAccessHasItsNumbers) {
  directory_.MakeDirectory("locked");
  directory_.Write("locked/a", "keep");
  directory_.Write("mine", "keep");
  directory_.Write("readable", "keep");
  chmod(directory_.Native("").c_str(), 0755);
  chmod(directory_.Native("locked").c_str(), 0700);
  chmod(directory_.Native("mine").c_str(), 0600);
  chmod(directory_.Native("readable").c_str(), 0644);
  if (geteuid() != 0) GTEST_SKIP() << "needs a second user";
  const OrdinaryUser user;
  ASSERT_TRUE(user.ok());
  EXPECT_EQ(FactsError(u"\\locked\\a"), 70);
  EXPECT_EQ(MakeDirectory(Name(u"\\locked\\b")), 75);
  EXPECT_EQ(MakeDirectory(Name(u"\\new")), 75);
  EXPECT_EQ(DeleteFile(Name(u"\\mine")), 70);
  EXPECT_EQ(Open(Name(u"\\mine"), 1, kOxModeBinary, kOxAccessRead), 70);
  EXPECT_EQ(Open(Name(u"\\mine"), 1, kOxModeOutput), 75);
  EXPECT_EQ(Open(Name(u"\\mine"), 1, kOxModeBinary, kOxAccessWrite), 75);
  EXPECT_EQ(Open(Name(u"\\new"), 1, kOxModeBinary), 75);
  ASSERT_EQ(Open(Name(u"\\readable"), 1, kOxModeBinary), 0);  // falls back to reading
  EXPECT_EQ(Put(1, "x"), 75);
  EXPECT_EQ(Close(1), 0);
}

}  // namespace
}  // namespace Orvix::testing
