// classFilename as text: cleaning, splitting, derived parts, the put of an
// extension with its oddities, and what a refusal leaves behind.
#include <gtest/gtest.h>

#include "tests/support/component.h"

namespace Orvix::testing {
namespace {

constexpr HRESULT kInvalidFilename = static_cast<HRESULT>(0x800AEA60);

class FilenameTest : public ::testing::Test {
 protected:
  HRESULT Assign(TextView name) {
    BSTR text = NewBstr(name);
    const HRESULT result = filename_->put_CompleteFilename(&text);
    written_back_ = Text(ViewOf(text));
    SysFreeString(text);
    return result;
  }
  HRESULT PutExtension(TextView extension) {
    BSTR text = NewBstr(extension);
    const HRESULT result = filename_->put_Extension(&text);
    SysFreeString(text);
    return result;
  }
  void AllowWildCards(VARIANT_BOOL allow) { EXPECT_EQ(filename_->put_AllowWildCards(&allow), S_OK); }
  Text Get(HRESULT (ORVIX_CALL _classFilename::*member)(BSTR*)) {
    return Returned([&](BSTR* result) { return (filename_.get()->*member)(result); });
  }
  Text Complete() { return Get(&_classFilename::get_CompleteFilename); }
  Text WithoutRoot() {
    VARIANT_BOOL add_root = VARIANT_FALSE;
    return Returned([&](BSTR* result) { return filename_->GetDrivelessCompleteFilenameEx(&add_root, result); });
  }

  ComPtr<_classFilename> filename_ = MakeFilename();
  Text written_back_;
};

TEST_F(FilenameTest, SplitsAtTheLastSeparator) {
  struct Case {
    TextView name, name_part, path, extension, drive, without_extension, driveless, without_root;
  };
  const Case cases[] = {
      {u"C:\\Data\\Report.TXT", u"Report.TXT", u"C:\\Data\\", u"txt", u"C:", u"Report", u"\\Data\\Report.TXT",
       u"Data\\Report.TXT"},
      {u"\\\\server\\share\\dir\\file.doc", u"file.doc", u"\\\\server\\share\\dir\\", u"doc", u"\\\\server", u"file",
       u"\\share\\dir\\file.doc", u"share\\dir\\file.doc"},
      {u"ftp://host/pub/Read.Me", u"Read.Me", u"ftp://host/pub/", u"me", u"ftp:", u"Read", u"//host/pub/Read.Me",
       u"/host/pub/Read.Me"},
      {u"C:file.txt", u"file.txt", u"C:", u"txt", u"C:", u"file", u"file.txt", u""},
      {u"*.txt", u".txt", u"", u"txt", u"", u"", u".txt", u""},
      {u"a.b.", u"a.b.", u"", u"b.", u"", u"a", u"a.b.", u""},
      {u"", u"", u"", u"", u"", u"", u"", u""},
      {u"C:\\my.dir\\file", u"file", u"C:\\my.dir\\", u"", u"C:", u"file", u"\\my.dir\\file", u"my.dir\\file"},
      {u".profile", u".profile", u"", u"profile", u"", u"", u".profile", u""},
      {u"archive.tar.gz", u"archive.tar.gz", u"", u"gz", u"", u"archive.tar", u"archive.tar.gz", u""},
      {u"file..txt", u"file..txt", u"", u"txt", u"", u"file", u"file..txt", u""},
      {u"/usr/x.y", u"x.y", u"/usr/", u"y", u"", u"x", u"/usr/x.y", u"usr/x.y"},
      {u":x\\y", u"y", u":x\\", u"", u"", u"y", u"x\\y", u""},
      {u"x>y<z|w?.txt", u"xyzw.txt", u"", u"txt", u"", u"xyzw", u"xyzw.txt", u""},
      {u"\\\\ab\\c", u"c", u"\\\\ab\\", u"", u"\\\\ab", u"c", u"\\c", u"c"},
      // A path part of four characters or fewer has no server.
      {u"\\\\a\\c", u"c", u"\\\\a\\", u"", u"", u"c", u"\\c", u"c"},
      {u"\\\\server", u"server", u"\\\\", u"", u"", u"server", u"\\\\server", u"\\server"},
      {u"\\\\\\x", u"x", u"\\\\\\", u"", u"", u"x", u"\\x", u"x"},
      {u"\\\\\\\\x", u"x", u"\\\\\\\\", u"", u"", u"x", u"\\\\x", u"\\x"},
      {u"\\\\\\ab\\c", u"c", u"\\\\\\ab\\", u"", u"\\\\", u"c", u"\\ab\\c", u"ab\\c"},
      // The server ends at a backslash only.
      {u"\\\\srv/share/f.x", u"f.x", u"\\\\srv/share/", u"x", u"", u"f", u"\\\\srv/share/f.x", u"\\srv/share/f.x"},
      {u"//server/x", u"x", u"//server/", u"", u"", u"x", u"//server/x", u"/server/x"},
      // A colon goes before the form with a server.
      {u"\\\\srv\\c:d", u"d", u"\\\\srv\\c:", u"", u"\\\\srv\\c:", u"d", u"d", u""},
      {u"a\\\\b", u"b", u"a\\\\", u"", u"", u"b", u"a\\\\b", u""},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(ToUtf8(c.name));
    ASSERT_EQ(Assign(c.name), S_OK);
    EXPECT_EQ(Get(&_classFilename::get_Filename), c.name_part);
    EXPECT_EQ(Get(&_classFilename::get_Path), c.path);
    EXPECT_EQ(Get(&_classFilename::get_Extension), c.extension);
    EXPECT_EQ(Get(&_classFilename::Drive), c.drive);
    EXPECT_EQ(Get(&_classFilename::get_ExtensionlessFilename), c.without_extension);
    EXPECT_EQ(Get(&_classFilename::get_ExtensionlessWithPath), Text(c.path) + Text(c.without_extension));
    EXPECT_EQ(Get(&_classFilename::GetDrivelessCompleteFilename), c.driveless);
    EXPECT_EQ(WithoutRoot(), c.without_root);
  }
}

TEST_F(FilenameTest, ThePathWithoutItsDrive) {
  struct Case {
    TextView name, expected;
  };
  const Case cases[] = {
      {u"C:\\Data\\Report.TXT", u"\\Data\\"},
      {u"\\\\server\\share\\dir\\file.doc", u"\\share\\dir\\"},
      {u"ftp://host/pub/Read.Me", u"//host/pub/"},
      {u"C:file.txt", u""},
      {u":x\\y", u"x\\"},
      {u"\\\\a\\c", u"\\"},
      {u"\\\\server", u"\\\\"},
      {u"dir\\sub\\x.txt", u"dir\\sub\\"},
      {u"readme", u""},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(ToUtf8(c.name));
    ASSERT_EQ(Assign(c.name), S_OK);
    EXPECT_EQ(Get(&_classFilename::GetDrivelessPath), c.expected);
  }
}

TEST_F(FilenameTest, ARefusedNameChangesNothingButTheCallersText) {
  ASSERT_EQ(Assign(u"C:\\a\\b.c"), S_OK);
  for (const TextView name : {TextView(u"C:\\d?ir\\"), TextView(u"C:"), TextView(u"a/"), TextView(u"*:")}) {
    EXPECT_EQ(Assign(name), kInvalidFilename);
    EXPECT_EQ(TakeFailure(), (Failure{u"classFilename.CompleteFilename", u"Invalid filename."}));
    EXPECT_EQ(Complete(), u"C:\\a\\b.c");
  }
  EXPECT_EQ(written_back_, u":");
  EXPECT_EQ(Get(&_classFilename::get_Filename), u"b.c");
}

TEST_F(FilenameTest, WildCardsStayOnlyWhileAllowed) {
  VARIANT_BOOL has = VARIANT_TRUE;
  AllowWildCards(VARIANT_TRUE);
  ASSERT_EQ(Assign(u"C:\\temp\\*.tx?"), S_OK);
  EXPECT_EQ(written_back_, u"C:\\temp\\*.tx?");
  EXPECT_EQ(Get(&_classFilename::get_Filename), u"*.tx?");
  EXPECT_EQ(Get(&_classFilename::get_Extension), u"tx?");
  AllowWildCards(VARIANT_FALSE);  // for later names only
  EXPECT_EQ(filename_->HasWildCards(&has), S_OK);
  EXPECT_EQ(has, VARIANT_TRUE);
  ASSERT_EQ(Assign(u"a*b?c"), S_OK);
  EXPECT_EQ(written_back_, u"abc");
  EXPECT_EQ(filename_->HasWildCards(&has), S_OK);
  EXPECT_EQ(has, VARIANT_FALSE);
  // The other forbidden characters go whatever the setting.
  AllowWildCards(VARIANT_TRUE);
  ASSERT_EQ(Assign(u"a<b>|*"), S_OK);
  EXPECT_EQ(written_back_, u"ab*");
  EXPECT_EQ(Complete(), u"ab*");
  EXPECT_EQ(Get(&_classFilename::get_Filename), u"ab*");
  EXPECT_EQ(filename_->HasWildCards(&has), S_OK);
  EXPECT_EQ(has, VARIANT_TRUE);
  AllowWildCards(7);  // kept as it was put
  VARIANT_BOOL kept = 0;
  EXPECT_EQ(filename_->get_AllowWildCards(&kept), S_OK);
  EXPECT_EQ(kept, 7);
}

TEST_F(FilenameTest, PuttingAnExtensionTakesItsLengthOffTheOldName) {
  struct Case {
    TextView name, extension, expected;
  };
  const Case cases[] = {
      {u"C:\\Data\\Report.txt", u"htm", u"C:\\Data\\Report.htm"},
      {u"C:\\Data\\Report.txt", u"html", u"C:\\Data\\Report.html"},
      {u"C:\\Data\\Report.txt", u"c", u"C:\\Data\\Report.tx.c"},
      {u"C:\\Data\\Report.txt", u"markdown", u"C:\\Data\\Re.markdown"},
      {u"C:\\a\\README", u"txt", u"C:\\a\\REA.txt"},
      {u"C:\\Data\\Report.txt", u"", u"C:\\Data\\Report.txt."},
      {u"C:\\Data\\Report.txt", u"HTM", u"C:\\Data\\Report.HTM"},
  };
  for (const Case& c : cases) {
    ASSERT_EQ(Assign(c.name), S_OK);
    ASSERT_EQ(PutExtension(c.extension), S_OK);
    EXPECT_EQ(Complete(), c.expected);
    EXPECT_EQ(Get(&_classFilename::get_Filename), c.name.substr(c.name.rfind(u'\\') + 1));
  }
  EXPECT_EQ(Get(&_classFilename::get_Extension), u"htm");
}

TEST_F(FilenameTest, AnExtensionLongerThanTheNameFailsHalfWay) {
  ASSERT_EQ(Assign(u"C:\\a\\ab"), S_OK);
  EXPECT_EQ(PutExtension(u"abcdef"), static_cast<HRESULT>(0x800A0005));
  EXPECT_EQ(TakeFailure(), (Failure{u"Orvix.classFilename", u"Invalid procedure call or argument"}));
  EXPECT_EQ(Get(&_classFilename::get_Extension), u"abcdef");
  EXPECT_EQ(Complete(), u"C:\\a\\ab");
  BstrHandle text;
  EXPECT_EQ(filename_->get_ExtensionlessFilename(text.Receive()), static_cast<HRESULT>(0x800A0005));
  EXPECT_EQ(PutExtension(u"bc"), S_OK);
  EXPECT_EQ(Complete(), u"C:\\a\\.bc");
}

TEST_F(FilenameTest, FtpNamesTurnBackslashesInSomeViewsOnly) {
  ASSERT_EQ(Assign(u"FTP:\\\\host\\dir\\f.txt"), S_OK);
  VARIANT_BOOL ftp = VARIANT_FALSE;
  EXPECT_EQ(filename_->IsFTP(&ftp), S_OK);
  EXPECT_EQ(ftp, VARIANT_TRUE);
  EXPECT_EQ(Complete(), u"FTP://host/dir/f.txt");
  EXPECT_EQ(Get(&_classFilename::get_ExtensionlessWithPath), u"FTP://host/dir/f");
  EXPECT_EQ(Get(&_classFilename::GetDrivelessPath), u"//host/dir/");
  EXPECT_EQ(Get(&_classFilename::get_Path), u"FTP:\\\\host\\dir\\");
  ASSERT_EQ(Assign(u"sftp:\\x\\y"), S_OK);
  EXPECT_EQ(Complete(), u"sftp:\\x\\y");
}

}  // namespace
}  // namespace Orvix::testing
