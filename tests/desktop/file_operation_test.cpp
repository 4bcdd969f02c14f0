// CSHFileOp: the bytes that reach the shell's service, and what becomes of its
// answer.
#include <gtest/gtest.h>

#include <cstring>

#include "orvix/host.h"
#include "tests/support/component.h"
#include "tests/support/exhausted_low_memory.h"
#include "tests/support/native_directory.h"

namespace Orvix::testing {
namespace {

struct Request {
  ULONG code;
  LONG window;
  USHORT flags;
  std::string from;
  std::string to;
  std::string title;
  LONG aborted;
  LONG mappings;
};

template <class T>
T At(const char* bytes, std::size_t offset) {
  T value{};
  std::memcpy(&value, bytes + offset, sizeof value);
  return value;
}

// A list up to the two NULs that end it, both included; the one NUL of an empty
// list.
std::string ListAt(LONG address) {
  const auto* bytes = reinterpret_cast<const char*>(static_cast<std::uintptr_t>(address));
  std::size_t length = 1;
  if (bytes[0] != 0) {
    while (bytes[length - 1] != 0 || bytes[length] != 0) ++length;
    ++length;
  }
  return {bytes, length};
}

class FileOperationTest : public ::testing::Test {
 protected:
  FileOperationTest() {
    OxHost host{};
    host.size = sizeof host;
    host.context = this;
    host.SHFileOperationA = [](void* self, void* request) {
      return static_cast<FileOperationTest*>(self)->Serve(static_cast<char*>(request));
    };
    OxSetHost(&host);
  }
  ~FileOperationTest() override { OxSetHost(nullptr); }

  LONG Serve(char* bytes) {
    seen_.push_back({At<ULONG>(bytes, 4), At<LONG>(bytes, 0), At<USHORT>(bytes, 16), ListAt(At<LONG>(bytes, 8)),
                     ListAt(At<LONG>(bytes, 12)),
                     reinterpret_cast<const char*>(static_cast<std::uintptr_t>(At<LONG>(bytes, 26))),
                     At<LONG>(bytes, 18), At<LONG>(bytes, 22)});
    if (aborts_) std::memcpy(bytes + 18, &aborts_, sizeof aborts_);
    return answer_;
  }

  void Source(TextView name) { Add(&_CSHFileOp::AddSourceFile, name); }
  void Destination(TextView name) { Add(&_CSHFileOp::AddDestFile, name); }
  bool Copies() {
    VARIANT_BOOL done = 7;
    EXPECT_EQ(operation_->CopyFiles(&done), S_OK);
    EXPECT_TRUE(done == VARIANT_TRUE || done == VARIANT_FALSE);
    return done == VARIANT_TRUE;
  }
  void Option(HRESULT (ORVIX_CALL _CSHFileOp::*put)(VARIANT_BOOL*), VARIANT_BOOL value) {
    EXPECT_EQ((operation_.get()->*put)(&value), S_OK);
  }
  void Title(TextView text) {
    BstrHandle title(text);
    BSTR variable = title.get();
    EXPECT_EQ(operation_->put_CustomText(&variable), S_OK);
  }

  std::vector<Request> seen_;
  LONG answer_ = 0;
  LONG aborts_ = 0;
  ComPtr<_CSHFileOp> operation_ = Make<_CSHFileOp>(CLSID_CSHFileOp, IID__CSHFileOp);

 private:
  void Add(HRESULT (ORVIX_CALL _CSHFileOp::*add)(BSTR*), TextView name) {
    BstrHandle text(name);
    BSTR variable = text.get();
    EXPECT_EQ((operation_.get()->*add)(&variable), S_OK);
  }
};

TEST_F(FileOperationTest, ANewObjectAsksForNothingSpecial) {
  Source(u"a");
  VARIANT_BOOL done = VARIANT_FALSE;
  EXPECT_EQ(operation_->DeleteFiles(&done), S_OK);
  EXPECT_EQ(done, VARIANT_TRUE);
  ASSERT_EQ(seen_.size(), 1U);
  EXPECT_EQ(seen_[0].code, 3U);
  EXPECT_EQ(seen_[0].window, 0);
  EXPECT_EQ(seen_[0].flags, 0);
  EXPECT_EQ(seen_[0].from, std::string("a\0\0", 3));
  EXPECT_EQ(seen_[0].to, std::string("\0", 1));
  EXPECT_EQ(seen_[0].title, "");
  EXPECT_EQ(seen_[0].aborted, 0);
  EXPECT_EQ(seen_[0].mappings, 0);
}

TEST_F(FileOperationTest, EachOperationHasItsCode) {
  Source(u"a");
  LONG window = -9;
  EXPECT_EQ(operation_->put_ParentWnd(&window), S_OK);
  VARIANT_BOOL done = VARIANT_FALSE;
  for (const auto operation :
       {&_CSHFileOp::MoveFiles, &_CSHFileOp::CopyFiles, &_CSHFileOp::DeleteFiles, &_CSHFileOp::RenameFiles}) {
    EXPECT_EQ((operation_.get()->*operation)(&done), S_OK);
  }
  ASSERT_EQ(seen_.size(), 4U);
  for (ULONG i = 0; i < 4; ++i) {
    EXPECT_EQ(seen_[i].code, i + 1);
    EXPECT_EQ(seen_[i].window, -9);
  }
}

TEST_F(FileOperationTest, FlagsFollowTheOptions) {
  struct Case {
    HRESULT (ORVIX_CALL _CSHFileOp::*put)(VARIANT_BOOL*);
    VARIANT_BOOL value;
    USHORT flags;
  };
  const Case cases[] = {
      {&_CSHFileOp::put_AllowUndo, -1, 0x40},          {&_CSHFileOp::put_AllowUndo, 1, 0x40},
      {&_CSHFileOp::put_SilentMode, -1, 0x4},          {&_CSHFileOp::put_RenameOnCollision, -1, 0x8},
      {&_CSHFileOp::put_ConfirmOperation, 0, 0x10},    {&_CSHFileOp::put_ConfirmMakeDir, 0, 0x200},
      {&_CSHFileOp::put_IncludeDirectories, 0, 0x80},  {&_CSHFileOp::put_AllowUndo, 0, 0},
      {&_CSHFileOp::put_IncludeDirectories, 256, 0x0},
  };
  for (const Case& one : cases) {
    operation_ = Make<_CSHFileOp>(CLSID_CSHFileOp, IID__CSHFileOp);
    Source(u"a");
    Option(one.put, one.value);
    EXPECT_TRUE(Copies());
    EXPECT_EQ(seen_.back().flags, one.flags);
  }
  operation_ = Make<_CSHFileOp>(CLSID_CSHFileOp, IID__CSHFileOp);
  Source(u"a");
  Option(&_CSHFileOp::put_ConfirmOperation, 0);
  Option(&_CSHFileOp::put_ConfirmMakeDir, 0);
  Option(&_CSHFileOp::put_AllowUndo, -1);
  EXPECT_TRUE(Copies());
  EXPECT_EQ(seen_.back().flags, 0x250);
}

TEST_F(FileOperationTest, ATitleAsksForSimpleProgress) {
  Source(u"a");
  Title(u"Copying \u20AC\u0416");
  Option(&_CSHFileOp::put_SilentMode, -1);
  EXPECT_TRUE(Copies());
  EXPECT_EQ(seen_.back().flags, 0x104);
  EXPECT_EQ(seen_.back().title, "Copying \x80?");
  Title(u"");
  EXPECT_TRUE(Copies());
  EXPECT_EQ(seen_.back().flags, 0x4);
  EXPECT_EQ(seen_.back().title, "");
}

TEST_F(FileOperationTest, ListsKeepOrderDuplicatesAndWhatWasAdded) {
  Source(u"b");
  Source(u"a");
  Source(u"b");
  Destination(u"C:\\x");
  EXPECT_TRUE(Copies());
  EXPECT_EQ(seen_.back().from, std::string("b\0a\0b\0\0", 7));
  EXPECT_EQ(seen_.back().to, std::string("C:\\x\0\0", 6));
  EXPECT_EQ(seen_.back().flags, 0);
  Destination(u"D:\\\u00E9\u0416");
  EXPECT_TRUE(Copies());
  EXPECT_EQ(seen_.back().from, std::string("b\0a\0b\0\0", 7));  // sent again
  EXPECT_EQ(seen_.back().to, std::string("C:\\x\0D:\\\xE9?\0\0", 12));
  EXPECT_EQ(seen_.back().flags, 0x1);
  EXPECT_EQ(operation_->ClearDestFiles(), S_OK);
  EXPECT_TRUE(Copies());
  EXPECT_EQ(seen_.back().to, std::string("\0", 1));
  EXPECT_EQ(seen_.back().flags, 0);
}

TEST_F(FileOperationTest, AnEmptyNameEndsTheListAsTheServiceReadsIt) {
  Source(u"a");
  Source(u"");
  Source(u"b");
  EXPECT_TRUE(Copies());
  EXPECT_EQ(seen_.back().from, std::string("a\0\0", 3));
}

TEST_F(FileOperationTest, WithoutSourcesNothingIsAsked) {
  Destination(u"x");
  VARIANT_BOOL done = 7;
  EXPECT_EQ(operation_->MoveFiles(&done), MakeResult(0x800403E8));
  EXPECT_EQ(TakeFailure(), (Failure{u"Orvix.CSHFileOp", u"No source files specified file operation"}));
  Source(u"a");
  EXPECT_EQ(operation_->ClearSourceFiles(), S_OK);
  EXPECT_EQ(operation_->RenameFiles(&done), MakeResult(0x800403E8));
  EXPECT_TRUE(seen_.empty());
}

TEST_F(FileOperationTest, OnlyFullSuccessIsTrue) {
  Source(u"a");
  answer_ = 2;
  EXPECT_FALSE(Copies());
  answer_ = 0;
  aborts_ = 0x01000000;
  EXPECT_FALSE(Copies());
  aborts_ = 0;
  EXPECT_TRUE(Copies());
}

TEST_F(FileOperationTest, ExhaustedLowMemoryIsError7AndKeepsTheLists) {
  Source(Text(40, u'a'));
  {
    const ExhaustedLowMemory exhausted;
    VARIANT_BOOL done = VARIANT_FALSE;
    EXPECT_EQ(operation_->CopyFiles(&done), MakeResult(0x800A0007));
  }
  EXPECT_TRUE(seen_.empty());
  EXPECT_TRUE(Copies());
}

TEST_F(FileOperationTest, TheLibrarysOwnCopyGoesTheSameWay) {
  const ComPtr<_classOrvix> orvix = MakeOrvix();
  BstrHandle source(u"C:\\a\\*.txt");
  BstrHandle destination(u"D:\\b");
  BSTR from = source.get();
  BSTR to = destination.get();
  VARIANT_BOOL yes = VARIANT_TRUE;
  answer_ = 5;
  EXPECT_EQ(orvix->MyFileCopy(&from, &to, nullptr), S_OK);
  EXPECT_EQ(orvix->MyFileCopy(&from, &to, &yes), S_OK);
  ASSERT_EQ(seen_.size(), 2U);
  EXPECT_EQ(seen_[0].code, 2U);
  EXPECT_EQ(seen_[0].flags, 0x94);
  EXPECT_EQ(seen_[1].flags, 0x14);
  EXPECT_EQ(seen_[0].from, std::string("C:\\a\\*.txt\0\0", 12));
  EXPECT_EQ(seen_[0].to, std::string("D:\\b\0\0", 6));
  EXPECT_EQ(TakeFailure().source, u"(none)");
}

// No host: the files are really moved.
TEST(FileOperationNativeTest, MovesAFileOnDisk) {
  const NativeDirectory directory;
  directory.Write("a.txt", "content");
  directory.MakeDirectory("sub");
  const ComPtr<_CSHFileOp> operation = Make<_CSHFileOp>(CLSID_CSHFileOp, IID__CSHFileOp);
  const BstrHandle from(directory.Name(u"\\a.txt"));
  const BstrHandle to(directory.Name(u"\\sub\\b.txt"));
  BSTR name = from.get();
  EXPECT_EQ(operation->AddSourceFile(&name), S_OK);
  name = to.get();
  EXPECT_EQ(operation->AddDestFile(&name), S_OK);
  VARIANT_BOOL done = VARIANT_FALSE;
  EXPECT_EQ(operation->MoveFiles(&done), S_OK);
  EXPECT_EQ(done, VARIANT_TRUE);
  EXPECT_FALSE(directory.Has("a.txt"));
  EXPECT_TRUE(directory.Has("sub/b.txt"));
  EXPECT_EQ(operation->MoveFiles(&done), S_OK);
  EXPECT_EQ(done, VARIANT_FALSE);
}

}  // namespace
}  // namespace Orvix::testing
