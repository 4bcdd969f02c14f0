// Paths and directories on real files.
#include <gtest/gtest.h>

#include "tests/support/component.h"
#include "tests/support/native_directory.h"
#include "tests/support/recording_host.h"

namespace Orvix::testing {
namespace {

class PathsTest : public ::testing::Test {
 protected:
  Text GetPath(TextView name) {
    const BstrHandle text(name);
    return Returned([&](BSTR* result) { return orvix_->GetPath(text.get(), result); });
  }
  bool DirExists(TextView name) { return Ask(&_classOrvix::DirExists, name); }
  bool FileExists(TextView name) { return Ask(&_classOrvix::FileExists, name); }
  bool MakeDirEx(TextView name) { return Ask(&_classOrvix::MakeDirEx, name); }
  HRESULT MakeDir(TextView name) {
    const BstrHandle text(name);
    return orvix_->MakeDir(text.get());
  }
  bool IsNewer(const Text& first, const Text& second) {
    BSTR a = NewBstr(first);
    BSTR b = NewBstr(second);
    VARIANT_BOOL newer = 1;
    EXPECT_EQ(orvix_->FileIsNewerThan(&a, &b, &newer), S_OK);
    SysFreeString(a);
    SysFreeString(b);
    return newer == VARIANT_TRUE;
  }

  RecordingHost host_;
  NativeDirectory files_;
  ComPtr<_classOrvix> orvix_ = MakeOrvix();

 private:
  bool Ask(HRESULT (ORVIX_CALL _classOrvix::*member)(BSTR, VARIANT_BOOL*), TextView name) {
    const BstrHandle text(name);
    VARIANT_BOOL answer = 1;
    EXPECT_EQ((orvix_.get()->*member)(text.get(), &answer), S_OK);
    EXPECT_TRUE(answer == VARIANT_TRUE || answer == VARIANT_FALSE);
    return answer == VARIANT_TRUE;
  }
};

TEST_F(PathsTest, GetPathKeepsTheLastSeparator) {
  EXPECT_EQ(GetPath(u"C:\\Data\\Report.txt"), u"C:\\Data\\");
  EXPECT_EQ(GetPath(u"ftp://host/x"), u"ftp://host/");
  EXPECT_EQ(GetPath(u"C:\\dir\\"), u"C:\\dir\\");
  EXPECT_EQ(GetPath(u"C:"), u"C:");
  EXPECT_EQ(GetPath(u"report.txt"), u"");
  EXPECT_EQ(GetPath(u""), u"");
}

TEST_F(PathsTest, ExistenceTestsDifferInWhatTheyAdmit) {
  files_.Write("a.txt", "x");
  files_.Write(".hidden", "x");
  files_.MakeDirectory("Sub/Inner");
  EXPECT_TRUE(DirExists(files_.Name(u"")));
  EXPECT_TRUE(DirExists(files_.Name(u"\\sub")));
  EXPECT_TRUE(DirExists(files_.Name(u"\\SUB\\inner\\")));
  EXPECT_TRUE(DirExists(files_.Name(u"\\a.txt")));
  EXPECT_TRUE(DirExists(files_.Name(u"\\a*")));
  EXPECT_TRUE(DirExists(u""));
  EXPECT_TRUE(DirExists(u"Z:"));
  EXPECT_FALSE(DirExists(files_.Name(u"\\none")));
  EXPECT_FALSE(DirExists(u"Q:\\"));
  EXPECT_TRUE(FileExists(files_.Name(u"\\A.TXT")));
  EXPECT_TRUE(FileExists(files_.Name(u"\\.hidden")));
  EXPECT_FALSE(FileExists(files_.Name(u"\\a*")));
  EXPECT_FALSE(FileExists(files_.Name(u"\\Sub")));
  EXPECT_FALSE(FileExists(files_.Name(u"\\")));
  EXPECT_FALSE(FileExists(u""));
  EXPECT_FALSE(FileExists(Text(files_.Name(u"\\a.txt")) + u'\0'));
  EXPECT_TRUE(host_.boxes.empty());
}

TEST_F(PathsTest, MakeDirMakesWhatIsMissing) {
  EXPECT_EQ(MakeDir(files_.Name(u"/x/y\\z")), S_OK);
  EXPECT_TRUE(files_.Has("x/y/z"));
  EXPECT_EQ(MakeDir(files_.Name(u"\\x\\y\\z\\")), S_OK);
  EXPECT_EQ(MakeDir(files_.Name(u"\\X\\Y\\w")), S_OK);
  EXPECT_TRUE(files_.Has("x/y/w"));
  // A doubled backslash hides the element from being made.
  EXPECT_EQ(MakeDir(files_.Name(u"\\p\\\\q")), S_OK);
  EXPECT_FALSE(files_.Has("p"));
  EXPECT_EQ(MakeDir(u""), S_OK);
}

TEST_F(PathsTest, MakeDirDropsALeadingSeparator) {
  const auto before = std::filesystem::current_path();
  std::filesystem::current_path(files_.Native(""));
  EXPECT_EQ(MakeDir(u"\\dir\\sub"), S_OK);
  std::filesystem::current_path(before);
  EXPECT_TRUE(files_.Has("dir/sub"));
}

TEST_F(PathsTest, MakeDirPassesOver75AndTranslatesTheRest) {
  files_.Write("file", "x");
  // Below a file: the parent is there as an entry, the child is refused.
  EXPECT_EQ(MakeDir(files_.Name(u"\\file\\below")), static_cast<HRESULT>(0x800AEF10));
  EXPECT_EQ(TakeFailure(), (Failure{u"classOrvix.MakeDir", u"Path not found"}));
  EXPECT_FALSE(MakeDirEx(files_.Name(u"\\file\\below")));
  EXPECT_TRUE(MakeDirEx(files_.Name(u"\\fresh\\one")));
  EXPECT_TRUE(files_.Has("fresh/one"));
  EXPECT_EQ(MakeDir(u"Q:\\a"), static_cast<HRESULT>(0x800AEF10));
}

TEST_F(PathsTest, NewerComparesWholeSecondsStrictly) {
  files_.Write("old", "x");
  files_.Write("new", "x");
  files_.Touch("old", 2020, 5, 6, 7, 8, 9);
  files_.Touch("new", 2020, 5, 6, 7, 8, 10);
  EXPECT_TRUE(IsNewer(files_.Name(u"\\new"), files_.Name(u"\\old")));
  EXPECT_FALSE(IsNewer(files_.Name(u"\\old"), files_.Name(u"\\new")));
  EXPECT_FALSE(IsNewer(files_.Name(u"\\new"), files_.Name(u"\\new")));
  EXPECT_FALSE(IsNewer(files_.Name(u"\\new"), files_.Name(u"\\none")));
  EXPECT_TRUE(IsNewer(files_.Name(u""), files_.Name(u"\\old")));
}

}  // namespace
}  // namespace Orvix::testing
