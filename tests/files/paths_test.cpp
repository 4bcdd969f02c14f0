// Paths and directories on real files.
#include <gtest/gtest.h>

#include <fcntl.h>
#include <sys/stat.h>

#include <cstdio>
#include <fstream>
#include <random>
#include <set>

#include "orvix/runtime.h"
#include "tests/support/component.h"
#include "tests/support/native_directory.h"
#include "tests/support/ordinary_user.h"
#include "tests/support/recording_host.h"

namespace Orvix::testing {
namespace {

constexpr HRESULT kNotMade = static_cast<HRESULT>(0x800AEF10);

// The process's current directory for the length of a test.
class CurrentDirectory {
 public:
  explicit CurrentDirectory(const std::string& native) { std::filesystem::current_path(native); }
  CurrentDirectory(const CurrentDirectory&) = delete;
  CurrentDirectory& operator=(const CurrentDirectory&) = delete;
  ~CurrentDirectory() { std::filesystem::current_path(before_); }

 private:
  std::filesystem::path before_ = std::filesystem::current_path();
};

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
  files_.MakeDirectory(".secret");
  EXPECT_TRUE(DirExists(files_.Name(u"")));
  EXPECT_TRUE(DirExists(files_.Name(u"\\.secret")));
  EXPECT_TRUE(DirExists(files_.Name(u"\\.hidden")));
  EXPECT_TRUE(DirExists(files_.Name(u"\\.s*")));
  EXPECT_TRUE(DirExists(files_.Name(u"\\sub")));
  EXPECT_TRUE(DirExists(files_.Name(u"\\SUB\\inner\\")));
  EXPECT_TRUE(DirExists(files_.Name(u"\\a.txt")));
  EXPECT_TRUE(DirExists(files_.Name(u"\\a*")));
  EXPECT_TRUE(DirExists(u""));
  EXPECT_TRUE(DirExists(u"Z:"));
  EXPECT_FALSE(DirExists(files_.Name(u"\\none")));
  EXPECT_FALSE(DirExists(u"Q:\\"));
  files_.MakeDirectory("closed");
  chmod(files_.Native("closed").c_str(), 0);
  chmod(files_.Native("").c_str(), 0755);
  {
    const OrdinaryUser ordinary;
    EXPECT_TRUE(DirExists(files_.Name(u"\\closed\\")));  // it may not be read, yet it is there
  }
  EXPECT_TRUE(FileExists(files_.Name(u"\\A.TXT")));
  EXPECT_TRUE(FileExists(files_.Name(u"\\.hidden")));
  EXPECT_FALSE(FileExists(files_.Name(u"\\a*")));
  EXPECT_FALSE(FileExists(files_.Name(u"\\a<.txt")));  // "a.txt" only once it is cleaned
  EXPECT_FALSE(FileExists(files_.Name(u"\\Sub")));
  EXPECT_FALSE(FileExists(files_.Name(u"\\")));
  EXPECT_FALSE(FileExists(u""));
  EXPECT_FALSE(FileExists(Text(files_.Name(u"\\a.txt")) + u'\0'));
  EXPECT_TRUE(host_.boxes.empty());
}

TEST_F(PathsTest, MakeDirMakesWhatIsMissing) {
  EXPECT_EQ(MakeDir(files_.Name(u"") + u"/x/y\\z"), S_OK);
  EXPECT_TRUE(files_.Has("x/y/z"));
  EXPECT_EQ(MakeDir(files_.Name(u"\\x\\y\\z\\")), S_OK);
  EXPECT_EQ(MakeDir(files_.Name(u"\\X\\Y\\w")), S_OK);
  EXPECT_TRUE(files_.Has("x/y/w"));
  // A doubled backslash hides the element from being made.
  EXPECT_EQ(MakeDir(files_.Name(u"\\p\\\\q")), S_OK);
  EXPECT_FALSE(files_.Has("p"));
  EXPECT_EQ(MakeDir(u""), S_OK);
}

// What each name leaves in an empty directory that has "there.txt" and
// "two@@marks/inner".
TEST_F(PathsTest, MakeDirLeavesAloneWhatIsThereOrNeverMade) {
  const struct {
    TextView name;
    const char* made;
  } cases[] = {
      {u"\\there*", nullptr},             // something matches, so it counts as there
      {u"\\two@@marks\\inner", nullptr},  // not walked: the marker in it is a name's own
      {u"\\x:y", nullptr},                // like a drive
      {u"/p//q", nullptr},                // doubled separators of either kind
      {u"\\p/\\q", nullptr},
      {u"\\p\\/q", nullptr},
      {u"\\p", "p"},
      {u"/p/q", "p/q"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(ToUtf8(c.name));
    const NativeDirectory place;
    place.Write("there.txt", "x");
    place.MakeDirectory("two@@marks/inner");
    EXPECT_EQ(MakeDir(place.Name(u"").append(c.name)), S_OK);
    const auto entries = std::filesystem::recursive_directory_iterator(place.Native(""));
    const auto count = std::distance(begin(entries), end(entries));
    if (c.made == nullptr) {
      EXPECT_EQ(count, 3);
    } else {
      EXPECT_TRUE(place.Has(c.made));
    }
  }
}

TEST_F(PathsTest, MakeDirDropsALeadingSeparator) {
  const CurrentDirectory current(files_.Native(""));
  EXPECT_EQ(MakeDir(u"\\dir\\sub"), S_OK);
  EXPECT_TRUE(files_.Has("dir/sub"));
  // Not of what is there under its root.
  const Text rooted = files_.Name(u"\\dir").substr(2);
  EXPECT_TRUE(DirExists(rooted));
  EXPECT_EQ(MakeDir(rooted), S_OK);
  const auto entries = std::filesystem::directory_iterator(files_.Native(""));
  EXPECT_EQ(std::distance(begin(entries), end(entries)), 1);
}

TEST_F(PathsTest, MakeDirGoesBelowAShare) {
  const CurrentDirectory current(files_.Native(""));
  files_.MakeDirectory("share");
  ASSERT_EQ(OxMapShare(u"\\\\srv\\shr", files_.Native("share").c_str()), S_OK);
  EXPECT_EQ(MakeDir(u"\\\\srv\\shr\\n1\\n2"), S_OK);
  EXPECT_EQ(MakeDir(u"//srv/shr/n3"), S_OK);
  EXPECT_EQ(MakeDir(u"\\\\srv\\shr"), S_OK);
  EXPECT_EQ(MakeDir(u"\\\\srv"), S_OK);  // a server is never made
  files_.Write("share/f", "x");
  EXPECT_FALSE(FileExists(u"\\\\srv\\shr"));  // a directory, whatever it holds
  EXPECT_TRUE(FileExists(u"\\\\srv\\shr\\f"));
  EXPECT_EQ(OxMapShare(u"\\\\srv\\shr", nullptr), S_OK);
  EXPECT_TRUE(files_.Has("share/n1/n2"));
  EXPECT_TRUE(files_.Has("share/n3"));
  EXPECT_FALSE(files_.Has("srv"));
  EXPECT_EQ(MakeDir(u"\\\\srv\\shr\\n4"), kNotMade);  // the share is gone, and tried
}

TEST_F(PathsTest, MakeDirPassesOver75AndTranslatesTheRest) {
  files_.Write("file", "x");
  // Below a file: the parent is there as an entry, the child is refused.
  EXPECT_EQ(MakeDir(files_.Name(u"\\file\\below")), kNotMade);
  EXPECT_EQ(TakeFailure(), (Failure{u"classOrvix.MakeDir", u"Path not found"}));
  EXPECT_FALSE(MakeDirEx(files_.Name(u"\\file\\below")));
  EXPECT_TRUE(MakeDirEx(files_.Name(u"\\fresh\\one")));
  EXPECT_TRUE(files_.Has("fresh/one"));
  EXPECT_EQ(MakeDir(u"Q:\\a"), kNotMade);
  // A link that leads nowhere is no entry, and yet cannot be made.
  std::filesystem::create_symlink("nowhere", files_.Native("dangling"));
  EXPECT_EQ(MakeDir(files_.Name(u"\\dangling")), S_OK);
  EXPECT_EQ(MakeDir(files_.Name(u"\\dangling\\below")), kNotMade);  // passed over, then nowhere to go
  EXPECT_EQ(TakeFailure(), (Failure{u"classOrvix.MakeDir", u"Path not found"}));
}

TEST_F(PathsTest, MakeDirPassesOverADeniedDirectory) {
  files_.MakeDirectory("closed");
  ASSERT_EQ(chmod(files_.Native("").c_str(), 0755), 0);
  ASSERT_EQ(chmod(files_.Native("closed").c_str(), 0555), 0);
  const OrdinaryUser user;
  if (!user.ok()) GTEST_SKIP() << "cannot give up rights";
  EXPECT_EQ(MakeDir(files_.Name(u"\\closed\\new")), S_OK);
  EXPECT_TRUE(MakeDirEx(files_.Name(u"\\closed\\new\\")));
  EXPECT_FALSE(files_.Has("closed/new"));
  EXPECT_EQ(MakeDir(files_.Name(u"\\closed\\new\\deeper")), kNotMade);
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

// Others make, delete, rename and exchange entries while other spellings of them
// are looked for; the directory is large enough to be remembered.
TEST_F(PathsTest, ALargeDirectoryIsSeenAsItIsNow) {
  const auto native = [&](int number) { return files_.Native("name " + std::to_string(number)); };
  std::mt19937 random(7);
  std::set<int> there;
  const auto fill = [&] {
    for (int number = 0; number < 200; number += 2) {
      std::ofstream(native(number)).put('x');
      there.insert(number);
    }
  };
  fill();
  for (int step = 0; step < 600; ++step) {
    const int one = static_cast<int>(random() % 200);
    const int other = static_cast<int>(random() % 200);
    switch (there.contains(one) ? random() % 3 : 3) {
      case 0:
        std::filesystem::remove(native(one));
        there.erase(one);
        break;
      case 1:
        std::filesystem::rename(native(one), native(other));
        there.erase(one);
        there.insert(other);
        break;
      case 2:
        if (there.contains(other)) {
          renameat2(AT_FDCWD, native(one).c_str(), AT_FDCWD, native(other).c_str(), RENAME_EXCHANGE);
        }
        break;
      default:
        std::ofstream(native(one)).put('x');
        there.insert(one);
        break;
    }
    if (step % 150 == 149) {
      std::filesystem::remove_all(files_.Native(""));
      std::filesystem::create_directory(files_.Native(""));
      there.clear();
      fill();
    }
    for (const int number : {one, other}) {
      EXPECT_EQ(FileExists(files_.Name(u"\\NAME " + FromUtf8(std::to_string(number)))), there.contains(number)) << step;
    }
  }
}

}  // namespace
}  // namespace Orvix::testing
