// Names and the native names behind them, over real directories.
#include <gtest/gtest.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>

#include "support/file_calls.h"
#include "support/native_directory.h"

namespace Orvix::testing {
namespace {

class PathMapTest : public ::testing::Test {
 protected:
  PathMapTest() { OxMapDrive(u'T', directory_.Native("drive").c_str()); }
  ~PathMapTest() override {
    OxMapDrive(u'T', nullptr);
    OxMapShare(u"\\\\Server\\Share", nullptr);
  }
  // What lies behind a name on drive T, without the drive's own directory.
  std::string OnDrive(TextView name) {
    const std::string native = Native(name);
    const std::string root = directory_.Native("drive");
    return native.starts_with(root) ? native.substr(root.size()) : native;
  }
  NativeDirectory directory_;
};

TEST_F(PathMapTest, SeparatorsDotsAndRoots) {
  directory_.MakeDirectory("drive/a");
  const struct {
    const char16_t* name;
    const char* native;
  } cases[] = {
      {u"T:\\a\\b", "/a/b"},
      {u"t:/a\\b", "/a/b"},
      {u"T:a\\b", "/a/b"},
      {u"T:\\\\a//b", "/a/b"},
      {u"T:\\.\\a\\.", "/a"},
      {u"T:\\a\\..\\b", "/b"},
      {u"T:\\..\\..\\b", "/b"},
      {u"T:\\a\\..\\..\\..\\b", "/b"},
      {u"T:\\a\\", "/a/"},
      {u"T:", ""},
      {u"T:\\", ""},
      {u"T:\\..", ""},
      {u"T:\\a.", "/a"},
      {u"T:\\a. .", "/a"},
      {u"T:\\b.", "/b."},
      {u"T:\\a<\">|:", "/a<\">|:"},
      {u"T:\\a\\...", "/a/..."},
  };
  for (const auto& c : cases) EXPECT_EQ(OnDrive(c.name), c.native) << ToUtf8(c.name);
}

TEST_F(PathMapTest, NamesWithoutADriveAreNative) {
  EXPECT_EQ(Native(u"\\usr\\x-missing"), "/usr/x-missing");
  EXPECT_EQ(Native(u"/"), "/");
  EXPECT_EQ(Native(u"Z:\\"), "/");
  EXPECT_EQ(Native(u"\\..\\usr"), "/usr");
  EXPECT_EQ(Native(u"x-missing\\y"), "x-missing/y");
  EXPECT_EQ(Native(u"..\\x-missing"), "../x-missing");
  EXPECT_EQ(Native(u"x-missing\\.."), ".");
  EXPECT_EQ(Native(u"1:\\x-missing"), "1:/x-missing");  // no drive letter
}

TEST_F(PathMapTest, BadNamesAreRefused) {
  for (const Text& name : {Text{}, Text{u"T:\\a*"}, Text{u"T:\\?\\a"}, Text{u"T:\\", 3} + Text(1, 0xD800),
                           Text{u"T:\\"} + Text(1, 0xDC7F), Text{u"T:\\"} + Text(1, 0xDD00)}) {
    EXPECT_EQ(Native(name), "error 52") << ToUtf8(name);
  }
  EXPECT_EQ(MakeDirectory(Text(u"T:\\a\0b", 6)), 52);
  EXPECT_EQ(Native(u"Q:\\a"), "error 76");
  EXPECT_EQ(Native(u"\\\\Server\\Share\\a"), "error 76");
  EXPECT_EQ(Native(u"\\\\Server"), "error 76");
  EXPECT_EQ(OxNativeName(u"T:\\a", nullptr), E_POINTER);
}

TEST_F(PathMapTest, ComponentsAreFoundExactlyThenWithoutCase) {
  directory_.Write("other", "");
  directory_.MakeDirectory("drive/Data");
  directory_.Write("drive/Data/b.txt", "");
  directory_.Write("drive/Data/B.TXT", "");
  directory_.Write("drive/Data/\xC3\x89t\xC3\xA9", "");
  directory_.Write("drive/Data/\xF0\x90\x90\x80", "");  // a capital of the second plane
  EXPECT_EQ(OnDrive(u"T:\\DATA\\b.txt"), "/Data/b.txt");
  EXPECT_EQ(OnDrive(u"T:\\data\\B.TXT"), "/Data/B.TXT");
  EXPECT_EQ(OnDrive(u"T:\\data\\B.txt"), "/Data/B.TXT");  // the lowest by bytes
  EXPECT_EQ(OnDrive(u"T:\\data\\b.txt ."), "/Data/b.txt");
  EXPECT_EQ(OnDrive(u"T:\\data\\\u00E9T\u00C9"), "/Data/\xC3\x89t\xC3\xA9");
  EXPECT_EQ(OnDrive(u"T:\\data\\\U00010428"), "/Data/\xF0\x90\x90\x80");
  EXPECT_EQ(OnDrive(u"T:\\data\\NEW\\x"), "/Data/NEW/x");
  directory_.MakeDirectory("drive/DATA");
  EXPECT_EQ(OnDrive(u"T:\\DATA\\b.txt"), "/DATA/b.txt");  // told apart now
}

TEST_F(PathMapTest, NamesThatAreNoUtf8Survive) {
  directory_.MakeDirectory("drive");
  directory_.Write("drive/\xE9\x80.txt", "");
  EXPECT_EQ(OnDrive(Text(u"T:\\") + Text({0xDCE9, 0xDC80}) + u".TXT"), "/\xE9\x80.txt");
  EXPECT_EQ(FromUtf8(Platform(directory_.Native("drive/\xE9\x80.txt"))), FromUtf8("T:\\\xE9\x80.txt"));
}

TEST_F(PathMapTest, LinksDoNotLeadDotsAstray) {
  directory_.MakeDirectory("drive/a/deep");
  std::filesystem::create_symlink("a/deep", directory_.Native("drive/link"));
  EXPECT_EQ(OnDrive(u"T:\\link\\..\\x"), "/x");
  EXPECT_EQ(Platform(directory_.Native("drive/link/../x")), "T:\\a\\x");
}

TEST_F(PathMapTest, SharesIgnoreCase) {
  directory_.MakeDirectory("share");
  ASSERT_EQ(OxMapShare(u"\\\\Server\\Share", directory_.Native("share").c_str()), S_OK);
  EXPECT_EQ(Native(u"\\\\SERVER\\share\\x"), directory_.Native("share/x"));
  EXPECT_EQ(Native(u"//server/SHARE"), directory_.Native("share"));
  EXPECT_EQ(Native(u"\\\\server\\share\\..\\..\\x"), directory_.Native("share/x"));
  EXPECT_EQ(Native(u"\\\\server\\shar\\x"), "error 76");
  // A share's name is its directory, as any other directory's; a separator asks for what is in it.
  directory_.Write("share/file", "");
  EXPECT_EQ(Search(u"\\\\server\\share", 18), "share|");
  EXPECT_EQ(Search(u"\\\\server\\share", 14), "");
  EXPECT_EQ(Search(u"\\\\server\\share\\", 18), ".|..|file|");
  EXPECT_EQ(OxMapShare(u"\\\\Server\\Share", nullptr), S_OK);
  EXPECT_EQ(Native(u"\\\\Server\\Share\\x"), "error 76");
  for (const char16_t* bad : {u"", u"\\Server\\Share", u"\\\\Server", u"\\\\Server\\", u"\\\\a\\b\\c"}) {
    EXPECT_EQ(NumberOf(OxMapShare(bad, "/tmp")), 52) << ToUtf8(bad);
  }
}

TEST_F(PathMapTest, PlatformNamesTakeTheNearestDrive) {
  EXPECT_EQ(Platform(directory_.Native("drive/a/b")), "T:\\a\\b");
  EXPECT_EQ(Platform(directory_.Native("drive")), "T:\\");
  EXPECT_EQ(Platform(directory_.Native("drive/a/")), "T:\\a\\");
  EXPECT_EQ(Platform(directory_.Native("drive2")), ToUtf8(directory_.Name(u"\\drive2")));
  EXPECT_EQ(Platform("/"), "Z:\\");
  EXPECT_EQ(Platform("//usr/./x"), "Z:\\usr\\x");
  EXPECT_EQ(Platform(std::string(std::getenv("XDG_DATA_HOME")) + "/orvix/drive_c/x"), "C:\\x");
  EXPECT_EQ(Platform(""), "error 52");
  EXPECT_EQ(Platform("/a\\b"), "error 52");
}

TEST_F(PathMapTest, RelativeNamesCountFromTheProcessDirectory) {
  directory_.MakeDirectory("drive/here");
  const std::filesystem::path before = std::filesystem::current_path();
  std::filesystem::current_path(directory_.Native("drive/here"));
  EXPECT_EQ(Platform("x"), "T:\\here\\x");
  EXPECT_EQ(Platform("../x"), "T:\\x");
  EXPECT_EQ(MakeDirectory(u"sub"), 0);
  EXPECT_EQ(OxMapDrive(u'u', "sub"), S_OK);
  std::filesystem::current_path(before);
  EXPECT_TRUE(directory_.Has("drive/here/sub"));
  EXPECT_EQ(Native(u"U:\\y"), directory_.Native("drive/here/sub/y"));
  EXPECT_EQ(OxMapDrive(u'U', nullptr), S_OK);
}

TEST_F(PathMapTest, DrivesAreMappedByLetters) {
  EXPECT_EQ(NumberOf(OxMapDrive(u'1', "/tmp")), 5);
  EXPECT_EQ(NumberOf(OxMapDrive(u'\u00C5', "/tmp")), 5);
  EXPECT_EQ(NumberOf(OxMapDrive(u'T', "")), 52);
  EXPECT_EQ(OxMapDrive(u't', nullptr), S_OK);
  EXPECT_EQ(Native(u"T:\\a"), "error 76");
  OxFileFacts facts{};
  EXPECT_EQ(Facts(u"T:\\a", facts), 76);
  EXPECT_EQ(Search(u"T:\\*", 18), "");
}

TEST(OwnDriveTest, IsMadeOnFirstUse) {
  const std::string own = std::string(std::getenv("XDG_DATA_HOME")) + "/orvix/drive_c";
  std::filesystem::remove_all(own);
  EXPECT_EQ(MakeDirectory(u"C:\\first"), 0);
  EXPECT_TRUE(std::filesystem::is_directory(own + "/first"));
  std::filesystem::remove_all(own);
  EXPECT_EQ(Search(u"C:", 16), ".|..|");
}

// Run in a process of its own, before anything asked for the drives.
void ReportDrives() {
  setenv("ORVIX_DRIVES", "C=/srv/data;t=/tmp/t/;;Q;1=/x;Z=", 1);
  const std::string report =
      Native(u"C:\\x") + " " + Native(u"T:\\x") + " " + Native(u"Z:\\x") + " " + Native(u"Q:\\x");
  _exit(report == "/srv/data/x /tmp/t/x error 76 error 76" ? 0 : 1);
}

TEST(OwnDriveDeathTest, EnvironmentReplacesTheListedDrives) {
  GTEST_FLAG_SET(death_test_style, "threadsafe");
  EXPECT_EXIT(ReportDrives(), ::testing::ExitedWithCode(0), "");
}

}  // namespace
}  // namespace Orvix::testing
