// classDirectory on real files: both modes, the date filter, the sorts, and
// every failure with what it leaves behind.
#include <gtest/gtest.h>

#include <sys/wait.h>
#include <unistd.h>

#include <csignal>

#include "tests/support/component.h"
#include "tests/support/native_directory.h"

namespace Orvix::testing {
namespace {

constexpr HRESULT kScanFailed = static_cast<HRESULT>(0x800AEF15);
constexpr HRESULT kOutOfRange = static_cast<HRESULT>(0x800AEF16);

class DirectoryTest : public ::testing::Test {
 protected:
  HRESULT Init(const Text& mask, LONG attribute = 0, VARIANT* from = nullptr, VARIANT* to = nullptr) {
    BSTR text = NewBstr(mask);
    const HRESULT result = directory_->Init(&text, &attribute, from, to);
    SysFreeString(text);
    return result;
  }
  LONG Count() {
    LONG count = -1;
    EXPECT_EQ(directory_->get_lNumFiles(&count), S_OK);
    return count;
  }
  // The names in order, joined by a space.
  Text Names() {
    Text names;
    for (LONG i = 1; i <= Count(); ++i) {
      if (i > 1) names += u' ';
      names += Returned([&](BSTR* result) { return directory_->GetFileName(&i, result); });
    }
    return names;
  }
  void SortByName(VARIANT_BOOL ascending) {
    Variant result(5);
    EXPECT_EQ(directory_->SortFilesName(&ascending, result.Receive()), S_OK);
    EXPECT_EQ(result.get().vt, VT_EMPTY);
  }
  void SortByDate(VARIANT_BOOL ascending) { EXPECT_EQ(directory_->SoftFilesDateEx(&ascending), S_OK); }

  NativeDirectory files_;
  ComPtr<_classDirectory> directory_ = MakeDirectory();
};

TEST_F(DirectoryTest, ListsFilesWithTheirFacts) {
  files_.Write("b.TXT", "12345");
  files_.Write("a.txt", "1");
  files_.Write("c.dat", "1");
  files_.Write(".h.txt", "1");
  files_.MakeDirectory("d.txt");
  files_.Touch("b.TXT", 2002, 11, 30, 10, 0, 0);
  ASSERT_EQ(Init(files_.Name(u"\\*.txt")), S_OK);
  EXPECT_EQ(Names(), u"a.txt b.TXT");
  FileType record{};
  LONG two = 2;
  ASSERT_EQ(directory_->File(&two, &record), S_OK);
  EXPECT_EQ(ViewOf(record.sFile), u"b.TXT");
  EXPECT_EQ(ViewOf(record.sPath), files_.Name(u"\\"));
  EXPECT_EQ(ViewOf(record.sCompleteFilename), files_.Name(u"\\b.TXT"));
  EXPECT_EQ(ViewOf(record.sExtension), u"txt");
  EXPECT_EQ(record.lSize, 5);
  EXPECT_EQ(record.dDate, 37590.0 + 36000.0 / 86400.0);  // 2002-11-30 10:00
  for (BSTR text : {record.sFile, record.sPath, record.sCompleteFilename, record.sExtension}) SysFreeString(text);
  ASSERT_EQ(Init(files_.Name(u"\\*.txt"), 2), S_OK);
  EXPECT_EQ(Names(), u".h.txt a.txt b.TXT");
  ASSERT_EQ(Init(files_.Name(u"\\*.none")), S_OK);
  EXPECT_EQ(Count(), 0);
}

TEST_F(DirectoryTest, TheRecordTravelsThroughInvoke) {
  files_.Write("a.txt", "123");
  ASSERT_EQ(Init(files_.Name(u"\\*.*")), S_OK);
  Variant result;
  const Variant one(1);
  ASSERT_EQ(InvokeNamed(directory_.get(), u"File", DISPATCH_METHOD, {one.get()}, result.Receive()), S_OK);
  ASSERT_EQ(result.get().vt, VT_RECORD);
  Variant size;
  EXPECT_EQ(result.get().pRecInfo->GetField(result.get().pvRecord, u"LSIZE", size.Receive()), S_OK);
  EXPECT_EQ(size.get().lVal, 3);
  Variant copy;
  EXPECT_EQ(VariantCopy(copy.Receive(), result.Address()), S_OK);
  Variant name;
  EXPECT_EQ(copy.get().pRecInfo->GetField(copy.get().pvRecord, u"sFile", name.Receive()), S_OK);
  EXPECT_EQ(ViewOf(name.get().bstrVal), u"a.txt");
}

TEST_F(DirectoryTest, DirectoryModeIsANumberNotABit) {
  files_.MakeDirectory("sub.d");
  files_.Write("file", "x");
  for (const LONG attribute : {16, 18, 48}) {
    ASSERT_EQ(Init(files_.Name(u"\\"), attribute), S_OK);
    EXPECT_EQ(Names(), u"sub.d") << attribute;
    FileType record{};
    LONG one = 1;
    ASSERT_EQ(directory_->File(&one, &record), S_OK);
    EXPECT_EQ(ViewOf(record.sPath), files_.Name(u"\\"));
    EXPECT_EQ(ViewOf(record.sExtension), u"");
    EXPECT_EQ(record.lSize, 0);
    for (BSTR text : {record.sFile, record.sPath, record.sCompleteFilename, record.sExtension}) SysFreeString(text);
  }
  ASSERT_EQ(Init(files_.Name(u"\\"), 32), S_OK);  // selects the mode, admits no directory
  EXPECT_EQ(Count(), 0);
}

TEST_F(DirectoryTest, AnyFailureEmptiesTheList) {
  files_.Write("a.txt", "x");
  files_.MakeDirectory("sub");
  ASSERT_EQ(Init(files_.Name(u"\\*.txt")), S_OK);
  ASSERT_EQ(Count(), 1);
  EXPECT_EQ(Init(files_.Name(u"\\")), kScanFailed);
  EXPECT_EQ(TakeFailure(), (Failure{u"Orvix.classDirectory", u"Invalid filename."}));
  EXPECT_EQ(Count(), 0);
  EXPECT_EQ(Init(files_.Name(u"\\sub"), 16), kScanFailed);  // asks for "...subsub"
  EXPECT_EQ(TakeFailure(), (Failure{u"Orvix.classDirectory", u"File not found"}));
  Variant no_date{TextView(u"no date")};
  EXPECT_EQ(Init(files_.Name(u"\\*.txt"), 0, no_date.Address()), kScanFailed);
  EXPECT_EQ(TakeFailure(), (Failure{u"Orvix.classDirectory", u"Type mismatch"}));
  EXPECT_EQ(Init(files_.Name(u"\\*.none"), 0, no_date.Address()), S_OK);  // never converted
}

TEST_F(DirectoryTest, TheDateFilterIncludesBothEnds) {
  files_.Write("first", "x");
  files_.Write("last", "x");
  files_.Write("after", "x");
  files_.Touch("first", 2002, 11, 1, 0, 0, 0);
  files_.Touch("last", 2002, 11, 30, 0, 0, 0);
  files_.Touch("after", 2002, 11, 30, 0, 0, 1);
  Variant from{TextView(u"2002-11-01")};
  Variant to{TextView(u"2002-11-30")};
  Variant empty;
  Variant empty_text{TextView()};
  Variant null;
  null.Address()->vt = VT_NULL;
  const Text mask = files_.Name(u"\\*");
  ASSERT_EQ(Init(mask, 0, from.Address(), to.Address()), S_OK);
  EXPECT_EQ(Names(), u"first last");
  ASSERT_EQ(Init(mask, 0, empty.Address(), to.Address()), S_OK);
  EXPECT_EQ(Names(), u"first last");
  Variant second = Variant::Date(37561.0 + 1.0 / 86400.0);  // 2002-11-01 00:00:01
  ASSERT_EQ(Init(mask, 0, second.Address(), empty_text.Address()), S_OK);
  EXPECT_EQ(Names(), u"after last");
  ASSERT_EQ(Init(mask, 0, null.Address(), nullptr), S_OK);
  EXPECT_EQ(Count(), 0);
  Variant missing;
  *missing.Address() = Missing();
  ASSERT_EQ(Init(mask, 0, missing.Address(), missing.Address()), S_OK);
  EXPECT_EQ(Count(), 3);
}

TEST_F(DirectoryTest, SortsByUnitsAndByDateUnstably) {
  for (const char* name : {"a1", "B", "c"}) files_.Write(name, "x");
  ASSERT_EQ(Init(files_.Name(u"\\*")), S_OK);
  EXPECT_EQ(Names(), u"a1 B c");
  SortByName(VARIANT_TRUE);
  EXPECT_EQ(Names(), u"B a1 c");
  SortByName(VARIANT_FALSE);
  EXPECT_EQ(Names(), u"c a1 B");
  files_.Touch("a1", 2001, 1, 2, 0, 0, 0);
  files_.Touch("B", 2001, 1, 2, 0, 0, 0);
  files_.Touch("c", 2001, 1, 1, 0, 0, 0);
  ASSERT_EQ(Init(files_.Name(u"\\*")), S_OK);
  EXPECT_EQ(directory_->SortFilesDate(), S_OK);
  EXPECT_EQ(Names(), u"c B a1");  // the equal ones have changed places
  SortByDate(VARIANT_FALSE);
  EXPECT_EQ(Names(), u"B a1 c");
}

TEST_F(DirectoryTest, IndexesOutsideTheListAreRefused) {
  files_.Write("one", "x");
  files_.Write("two", "x");
  ASSERT_EQ(Init(files_.Name(u"\\*")), S_OK);
  BstrHandle name;
  FileType record{};
  for (LONG index : {0, -1, 3, 2147483647}) {
    EXPECT_EQ(directory_->GetFileName(&index, name.Receive()), kOutOfRange);
    EXPECT_EQ(TakeFailure(), (Failure{u"Orvix.classDirectory", u"Index out of range"}));
    EXPECT_EQ(directory_->File(&index, &record), kOutOfRange);
  }
  // The count is the caller's to write, and is trusted.
  EXPECT_EQ(directory_->put_lNumFiles(1), S_OK);
  LONG two = 2;
  EXPECT_EQ(directory_->GetFileName(&two, name.Receive()), kOutOfRange);
  EXPECT_EQ(directory_->put_lNumFiles(9), S_OK);
  LONG nine = 9;
  EXPECT_EQ(directory_->GetFileName(&nine, name.Receive()), kOutOfRange);
  VARIANT_BOOL up = VARIANT_TRUE;
  EXPECT_EQ(directory_->SoftFilesDateEx(&up), static_cast<HRESULT>(0x800A0009));
  EXPECT_EQ(directory_->put_lPointer(77), S_OK);
  ASSERT_EQ(Init(files_.Name(u"\\*")), S_OK);
  LONG pointer = 0;
  EXPECT_EQ(directory_->get_lPointer(&pointer), S_OK);
  EXPECT_EQ(pointer, 77);
}

TEST_F(DirectoryTest, SortingOneReturnsAndSortingNoneDoesNot) {
  files_.Write("one", "x");
  ASSERT_EQ(Init(files_.Name(u"\\*")), S_OK);
  SortByName(VARIANT_TRUE);
  EXPECT_EQ(Names(), u"one");
  ASSERT_EQ(Init(files_.Name(u"\\*.none")), S_OK);
  const pid_t child = fork();
  if (child == 0) {
    alarm(1);  // ends the child unless the sort returns first
    directory_->SortFilesDate();
    _exit(0);
  }
  int status = 0;
  ASSERT_EQ(waitpid(child, &status, 0), child);
  EXPECT_TRUE(WIFSIGNALED(status) && WTERMSIG(status) == SIGALRM);
}

}  // namespace
}  // namespace Orvix::testing
