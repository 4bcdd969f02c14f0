// classDirectory on real files: both modes, the date filter, the sorts, and
// every failure with what it leaves behind.
#include <gtest/gtest.h>

#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <functional>
#include <iterator>
#include <map>
#include <random>

#include "tests/support/component.h"
#include "tests/support/file_calls.h"
#include "tests/support/native_directory.h"
#include "tests/support/ordinary_user.h"

namespace Orvix::testing {
namespace {

constexpr HRESULT kScanFailed = static_cast<HRESULT>(0x800AEF15);
constexpr HRESULT kOutOfRange = static_cast<HRESULT>(0x800AEF16);

// What a test looks at in a record.
struct Row {
  Text file;
  Text complete;
  Text extension;
  LONG size;
  DATE date;
  bool operator==(const Row&) const = default;
};

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
  std::vector<Row> Rows() {
    std::vector<Row> rows;
    for (LONG i = 1; i <= Count(); ++i) {
      FileType record{};
      EXPECT_EQ(directory_->File(&i, &record), S_OK);
      rows.push_back({Text(ViewOf(record.sFile)), Text(ViewOf(record.sCompleteFilename)),
                      Text(ViewOf(record.sExtension)), record.lSize, record.dDate});
      for (BSTR text : {record.sFile, record.sPath, record.sCompleteFilename, record.sExtension}) SysFreeString(text);
    }
    return rows;
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
  EXPECT_EQ(Init(files_.Name(u"\\s*b\\*.txt")), kScanFailed);             // only the last part may have wildcards
  EXPECT_EQ(TakeFailure(), (Failure{u"Orvix.classDirectory", u"Bad file name or number"}));
}

TEST_F(DirectoryTest, ADirectoryThatMayNotBeReadIsAFailure) {
  files_.MakeDirectory("closed");
  files_.Write("closed/a.txt", "x");
  ASSERT_EQ(chmod(files_.Native("").c_str(), 0755), 0);
  ASSERT_EQ(chmod(files_.Native("closed").c_str(), 0311), 0);  // entered, but not read
  {
    const OrdinaryUser user;
    if (!user.ok()) GTEST_SKIP() << "cannot give up rights";
    for (const LONG attribute : {0, 2}) {
      EXPECT_EQ(Init(files_.Name(u"\\closed\\*"), attribute), kScanFailed);
      EXPECT_EQ(TakeFailure(), (Failure{u"Orvix.classDirectory", u"Path/File access error"}));
    }
    EXPECT_EQ(Init(files_.Name(u"\\closed\\"), 16), kScanFailed);
    EXPECT_EQ(TakeFailure(), (Failure{u"Orvix.classDirectory", u"Path/File access error"}));
    EXPECT_EQ(Count(), 0);
    EXPECT_EQ(Init(files_.Name(u"\\closed\\a.txt")), S_OK);  // by its name it is within reach
    EXPECT_EQ(Names(), u"a.txt");
  }
  EXPECT_EQ(chmod(files_.Native("closed").c_str(), 0755), 0);
}

TEST_F(DirectoryTest, TheExtensionIsThatOfAFilename) {
  files_.MakeDirectory("dir.d");
  const std::map<std::string, TextView> extensions = {
      {"d.", u""}, {"a.b.", u"b."}, {"none", u""}, {"x.Y.ZIP", u"zip"}, {"t..", u"."}, {"one.\xC3\x84", u"\u00E4"}};
  for (const auto& [name, extension] : extensions) files_.Write("dir.d/" + name, "");
  ASSERT_EQ(Init(files_.Name(u"\\dir.d\\*")), S_OK);
  std::map<std::string, Text> listed;
  for (const Row& row : Rows()) listed[ToUtf8(row.file)] = row.extension;
  EXPECT_EQ(listed.size(), extensions.size());
  for (const auto& [name, extension] : extensions) EXPECT_EQ(listed[name], extension) << name;
}

// Bytes that are no UTF-8 come back as other names do, and lead to their file.
TEST_F(DirectoryTest, NamesThatAreNoUtf8AreListedAndOpened) {
  const std::vector<std::string> names = {"caf\xE9.bin", "\xFF.bin",         "\xFE.bin",
                                          "\xC3.bin",    "\xED\xA0\x80.bin", "\xC0\xAF.bin"};
  for (const std::string& name : names) files_.Write(name, name);
  ASSERT_EQ(Init(files_.Name(u"\\*.bin")), S_OK);
  const std::vector<Row> rows = Rows();
  EXPECT_EQ(rows.size(), names.size());
  for (const Row& row : rows) {
    EXPECT_EQ(row.extension, u"bin");
    ASSERT_EQ(Open(row.complete, 1, kOxModeBinary, kOxAccessReadWrite), 0);
    std::string content(static_cast<std::size_t>(row.size), '\0');
    LONG got = 0;
    EXPECT_EQ(OxGetFile(1, content.data(), row.size, &got), S_OK);
    EXPECT_EQ(Put(1, "+"), 0);
    EXPECT_EQ(Close(1), 0);
    EXPECT_EQ(std::count(names.begin(), names.end(), content), 1);
    EXPECT_EQ(Native(row.complete), files_.Native(content));
    EXPECT_EQ(std::filesystem::file_size(files_.Native(content)), content.size() + 1);
  }
}

// What the search found out about an entry is not asked for again: here the
// whole name is longer than any that the system takes.
TEST_F(DirectoryTest, WhatTheSearchFoundIsEnough) {
  constexpr std::size_t kMost = 4096;  // with the name; without it there are 3950 to 4000
  const auto before = std::filesystem::current_path();
  std::filesystem::current_path(files_.Native(""));
  Text below;
  const std::string level(49, 'd');
  while (files_.Native("").size() + below.size() + level.size() < kMost - 96) {
    std::filesystem::create_directory(level);
    std::filesystem::current_path(level);
    below += u"\\" + FromUtf8(level);
  }
  const std::string name = std::string(250, 'f') + ".a";
  const std::string directory(250, 'g');
  std::ofstream(name) << "12345";
  std::filesystem::create_directory(directory);
  std::filesystem::current_path(before);
  ASSERT_EQ(Init(files_.Name(below + u"\\*")), S_OK);
  ASSERT_EQ(Count(), 1);
  EXPECT_EQ(Rows()[0].size, 5);
  EXPECT_EQ(Rows()[0].file, FromUtf8(name));
  Variant from{TextView(u"1999-01-01")};
  EXPECT_EQ(Init(files_.Name(below + u"\\"), 16, from.Address()), S_OK);
  EXPECT_EQ(Count(), 1);
  EXPECT_EQ(Rows()[0].file, FromUtf8(directory));
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

TEST_F(DirectoryTest, ANullBoundPassesNothingElseBothAreConverted) {
  files_.Write("file", "x");
  files_.MakeDirectory("dir");
  files_.Touch("file", 2002, 11, 15, 0, 0, 0);
  files_.Touch("dir", 2002, 11, 15, 0, 0, 0);
  VARIANT null{};
  null.vt = VT_NULL;
  Variant early{TextView(u"2002-11-01")};
  Variant late{TextView(u"2002-11-30")};
  Variant bad{TextView(u"no date")};
  Variant absent;
  Variant array;
  array.Address()->parray = SafeArrayCreateVector(VT_UI1, 0, 1);
  array.Address()->vt = VT_ARRAY | VT_UI1;
  const auto reference = [](VARIANT* to) { return ByReference(VT_VARIANT, to); };
  const struct {
    const char* label;
    VARIANT from;
    VARIANT to;
    LONG passes;  // -1: a failure
  } cases[] = {
      {"between", early.get(), late.get(), 1},
      {"before", late.get(), absent.get(), 0},
      {"after", absent.get(), early.get(), 0},
      {"no end", early.get(), null, 0},
      {"Null end alone", absent.get(), null, 0},
      {"no start", null, late.get(), 0},
      {"neither", null, null, 0},
      {"Null behind a reference", reference(&null), absent.get(), 0},
      {"Null end behind a reference", early.get(), reference(&null), 0},
      {"dates behind references", reference(early.Address()), reference(late.Address()), 1},
      {"absent behind a reference", reference(absent.Address()), late.get(), 1},
      {"bad end with a Null start", null, bad.get(), 0},
      {"bad end after a start that fails", late.get(), bad.get(), -1},
      {"bad start with a Null end", bad.get(), null, 0},
      {"an array", array.get(), absent.get(), -1},
  };
  for (const auto& c : cases) {
    VARIANT from = c.from;
    VARIANT to = c.to;
    for (const LONG mode : {0, 16}) {
      const Text mask = files_.Name(mode == 0 ? u"\\*" : u"\\");
      EXPECT_EQ(Init(mask, mode, &from, &to), c.passes < 0 ? kScanFailed : S_OK) << c.label << mode;
      EXPECT_EQ(TakeFailure().description, c.passes < 0 ? u"Type mismatch" : u"(none)") << c.label << mode;
      EXPECT_EQ(Count(), c.passes < 0 ? 0 : c.passes) << c.label << mode;
    }
  }
}

// The sort as its rules are told: every exchange starts it over.
void SortAsTold(std::vector<Row>& rows, const std::function<bool(const Row&, const Row&)>& exchanged) {
  const auto exchange_one = [&] {
    for (std::size_t i = 0; i + 1 < rows.size(); ++i) {
      for (std::size_t j = i + 1; j < rows.size(); ++j) {
        if (!exchanged(rows[i], rows[j])) continue;
        std::swap(rows[i], rows[j]);
        return true;
      }
    }
    return false;
  };
  while (exchange_one()) {
  }
}

TEST_F(DirectoryTest, SortsLikeTheExchangesWithTies) {
  const std::vector<std::string> names = {"a", "B", "b1", "C", "Ca", "d", "E", "_", "z", "\xC3\x84"};
  for (const std::string& name : names) files_.Write(name, "x");
  std::mt19937 numbers(20021115);
  for (int round = 0; round < 200; ++round) {
    SCOPED_TRACE(round);
    for (const std::string& name : names) files_.Touch(name, 2001, 1, 1 + static_cast<int>(numbers() % 3), 0, 0, 0);
    ASSERT_EQ(Init(files_.Name(u"\\*")), S_OK);
    ASSERT_EQ(directory_->put_lNumFiles(6 + static_cast<LONG>(numbers() % 5)), S_OK);  // the others are hidden
    std::vector<Row> told = Rows();
    for (int step = 0; step < 4; ++step) {
      const VARIANT_BOOL up = numbers() % 2 == 0 ? VARIANT_TRUE : VARIANT_FALSE;
      const bool ascending = up == VARIANT_TRUE;
      switch (numbers() % 3) {
        case 0:
          SortByName(up);
          SortAsTold(told, [=](const Row& i, const Row& j) { return ascending ? i.file > j.file : i.file < j.file; });
          break;
        case 1:
          SortByDate(up);
          SortAsTold(told, [=](const Row& i, const Row& j) { return ascending ? i.date > j.date : i.date < j.date; });
          break;
        default:
          EXPECT_EQ(directory_->SortFilesDate(), S_OK);
          SortAsTold(told, [](const Row& i, const Row& j) { return i.date > j.date; });
      }
      ASSERT_TRUE(Rows() == told);
    }
  }
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
  // Each in a process of its own, which ends unless its sort returns first.
  VARIANT_BOOL up = VARIANT_TRUE;
  VARIANT_BOOL down = VARIANT_FALSE;
  const std::function<void()> sorts[] = {
      [&] { directory_->SortFilesDate(); },        [&] { directory_->SoftFilesDateEx(&up); },
      [&] { directory_->SoftFilesDateEx(&down); }, [&] { SortByName(VARIANT_TRUE); },
      [&] { SortByName(VARIANT_FALSE); },
  };
  std::vector<pid_t> children;
  for (const LONG count : {0, -1}) {
    ASSERT_EQ(directory_->put_lNumFiles(count), S_OK);
    for (const auto& sort : sorts) {
      children.push_back(fork());
      if (children.back() != 0) continue;
      alarm(1);
      sort();
      _exit(0);
    }
  }
  for (std::size_t i = 0; i < children.size(); ++i) {
    int status = 0;
    ASSERT_EQ(waitpid(children[i], &status, 0), children[i]);
    EXPECT_TRUE(WIFSIGNALED(status) && WTERMSIG(status) == SIGALRM) << i;
  }
}

}  // namespace
}  // namespace Orvix::testing
