// Storing texts and bytes, copying files, playing sounds: what reaches the disk
// or the host, and which failures the caller hears of.
#include <gtest/gtest.h>

#include "tests/support/component.h"
#include "tests/support/file_calls.h"
#include "tests/support/native_directory.h"
#include "tests/support/recording_host.h"

namespace Orvix::testing {
namespace {

class StoringTest : public ::testing::Test {
 protected:
  ~StoringTest() override {
    for (SHORT number = 1; number <= 9; ++number) OxCloseFile(number);
  }
  _classFilename** Named(TextView name) {
    BSTR text = NewBstr(name);
    EXPECT_EQ(filename_->put_CompleteFilename(&text), S_OK);
    SysFreeString(text);
    object_ = filename_.get();
    return &object_;
  }
  HRESULT StoreText(TextView name, TextView data) {
    BSTR text = NewBstr(data);
    const HRESULT result = orvix_->StoreData(Named(name), &text);
    EXPECT_EQ(ViewOf(text), data);
    SysFreeString(text);
    return result;
  }
  // Bytes in an array whose first index is `lower`.
  HRESULT StoreBytes(TextView name, const std::string& bytes, LONG lower = 0) {
    SAFEARRAYBOUND bound{static_cast<ULONG>(bytes.size()), lower};
    SAFEARRAY* array = SafeArrayCreate(VT_UI1, 1, &bound);
    std::copy(bytes.begin(), bytes.end(), static_cast<char*>(array->pvData));
    const HRESULT result = orvix_->StoreBinaryData(Named(name), &array);
    SafeArrayDestroy(array);
    return result;
  }
  HRESULT Copy(TextView from, TextView to, VARIANT_BOOL* sub_directories = nullptr) {
    BSTR source = NewBstr(from);
    BSTR destination = NewBstr(to);
    const HRESULT result = orvix_->MyFileCopy(&source, &destination, sub_directories);
    SysFreeString(source);
    SysFreeString(destination);
    return result;
  }

  NativeDirectory directory_;
  ComPtr<_classOrvix> orvix_ = MakeOrvix();
  ComPtr<_classFilename> filename_ = MakeFilename();
  _classFilename* object_ = nullptr;
};

TEST_F(StoringTest, TextsReplaceWhatWasThere) {
  struct Case {
    const char16_t* name;
    TextView data;
    const char* native;
    std::string bytes;
  };
  const Case cases[] = {
      {u"\\x\\y\\a.txt", u"a longer text", "x/y/a.txt", "a longer text"},
      {u"\\x\\Y\\A.txt", u"short", "x/y/a.txt", "short"},
      {u"\\x\\y\\a.txt", u"", "x/y/a.txt", ""},
      {u"\\b", u"\u20AC\u0081\u00FF\u0416\r\n", "b", "\x80\x81\xFF?\r\n"},
      {u"\\b", TextView(u"a\0b", 3), "b", std::string("a\0b", 3)},
  };
  for (const Case& one : cases) {
    EXPECT_EQ(StoreText(directory_.Name(one.name), one.data), S_OK);
    EXPECT_TRUE(directory_.Has(one.native));
    EXPECT_EQ(directory_.Read(one.native), one.bytes);
    EXPECT_EQ(LowestFree(), 1);
  }
  BSTR none = nullptr;
  EXPECT_EQ(orvix_->StoreData(Named(directory_.Name(u"\\b")), &none), S_OK);
  EXPECT_EQ(directory_.Read("b"), "");
}

TEST_F(StoringTest, BytesReplaceWhatWasThere) {
  struct Case {
    std::string bytes;
    LONG lower;
  };
  const Case cases[] = {
      {"a longer content", 0},
      {std::string("\1\2\3", 3), 0},
      {std::string("\0\x80\x0D\x0A\xFF", 5), -2},
      {"z", 7},
      {"", 0},
  };
  for (const Case& one : cases) {
    EXPECT_EQ(StoreBytes(directory_.Name(u"\\p\\q\\data"), one.bytes, one.lower), S_OK);
    EXPECT_EQ(directory_.Read("p/q/data"), one.bytes);
    EXPECT_EQ(LowestFree(), 1);
  }
  directory_.Write("old", "content");
  SAFEARRAY* unallocated = nullptr;
  EXPECT_EQ(orvix_->StoreBinaryData(Named(directory_.Name(u"\\old")), &unallocated), S_OK);
  EXPECT_TRUE(directory_.Has("old"));
  EXPECT_EQ(directory_.Read("old"), "");
}

TEST_F(StoringTest, ArraysOfAnotherKindAreRefusedAndTheFileKept) {
  SAFEARRAYBOUND bounds[2] = {{2, 0}, {2, 0}};
  struct Case {
    VARTYPE type;
    UINT dimensions;
    HRESULT result;
  };
  const Case cases[] = {
      {VT_I2, 1, MakeResult(0x800A000D)}, {VT_UI1, 2, MakeResult(0x800A0009)}, {VT_BSTR, 1, MakeResult(0x800A000D)}};
  directory_.Write("a", "keep");
  for (const Case& one : cases) {
    SAFEARRAY* array = SafeArrayCreate(one.type, one.dimensions, bounds);
    EXPECT_EQ(orvix_->StoreBinaryData(Named(directory_.Name(u"\\a")), &array), one.result);
    SafeArrayDestroy(array);
    EXPECT_EQ(LowestFree(), 1);
  }
  EXPECT_EQ(directory_.Read("a"), "keep");
}

TEST_F(StoringTest, FailuresReachTheCallerAndLoseNothing) {
  directory_.Write("file", "keep");
  directory_.Write("locked", "keep");
  directory_.MakeDirectory("sub");
  chmod(directory_.Native("locked").c_str(), 0444);
  struct Case {
    Text name;
    HRESULT result;
    Failure failure;
  };
  const Case cases[] = {
      {u"", MakeResult(0x800A0034), {u"Orvix.classOrvix", u"Bad file name or number"}},
      {directory_.Name(u"\\sub"), MakeResult(0x800A004B), {u"Orvix.classOrvix", u"Path/File access error"}},
      {directory_.Name(u"\\locked"), MakeResult(0x800A004B), {u"Orvix.classOrvix", u"Path/File access error"}},
      {directory_.Name(u"\\file\\sub\\a"), MakeResult(0x800AEF10), {u"classOrvix.MakeDir", u"Path not found"}},
      {u"Q:\\new\\a", MakeResult(0x800AEF10), {u"classOrvix.MakeDir", u"Path not found"}},
  };
  for (const Case& one : cases) {
    EXPECT_EQ(StoreText(one.name, u"data"), one.result) << ToUtf8(one.name);
    EXPECT_EQ(TakeFailure(), one.failure) << ToUtf8(one.name);
    EXPECT_EQ(StoreBytes(one.name, "data"), one.result) << ToUtf8(one.name);
    EXPECT_EQ(TakeFailure(), one.failure) << ToUtf8(one.name);
    EXPECT_EQ(LowestFree(), 1) << ToUtf8(one.name);
  }
  EXPECT_EQ(directory_.Read("file"), "keep");
  EXPECT_EQ(directory_.Read("locked"), "keep");
}

TEST_F(StoringTest, WithoutAnObjectIsError91) {
  _classFilename* none = nullptr;
  BSTR text = nullptr;
  SAFEARRAY* array = nullptr;
  EXPECT_EQ(orvix_->StoreData(&none, &text), MakeResult(0x800A005B));
  EXPECT_EQ(TakeFailure().source, u"Orvix.classOrvix");
  EXPECT_EQ(orvix_->StoreBinaryData(&none, &array), MakeResult(0x800A005B));
  EXPECT_EQ(orvix_->PlaySound(&none), S_OK);
  EXPECT_EQ(TakeFailure().source, u"(none)");
}

TEST_F(StoringTest, AFailureAfterTheOpeningLeavesTheNumberTaken) {
  EXPECT_EQ(StoreText(u"Z:\\dev\\full", u"data"), MakeResult(0x800A003D));
  EXPECT_EQ(TakeFailure(), (Failure{u"Orvix.classOrvix", u"Disk full"}));
  EXPECT_EQ(LowestFree(), 2);
  EXPECT_EQ(StoreBytes(u"Z:\\dev\\full", "data"), MakeResult(0x800A003D));
  EXPECT_EQ(LowestFree(), 3);
  EXPECT_EQ(StoreText(u"Z:\\dev\\full", u""), S_OK);
  EXPECT_EQ(LowestFree(), 3);
}

// No host: the files are really copied.
TEST_F(StoringTest, CopiesMatchesAndTreesOnlyWhenWanted) {
  directory_.Write("a.txt", "1");
  directory_.Write("b.txt", "2");
  directory_.Write("c.doc", "3");
  directory_.MakeDirectory("d.txt");
  directory_.Write("d.txt/x", "4");
  directory_.MakeDirectory("to");
  directory_.Write("to/a.txt", "old");
  EXPECT_EQ(Copy(directory_.Name(u"\\*.txt"), directory_.Name(u"\\to")), S_OK);
  EXPECT_EQ(directory_.Read("to/a.txt"), "1");
  EXPECT_EQ(directory_.Read("to/b.txt"), "2");
  EXPECT_FALSE(directory_.Has("to/c.doc"));
  EXPECT_FALSE(directory_.Has("to/d.txt"));
  VARIANT_BOOL any_non_zero = 1;
  EXPECT_EQ(Copy(directory_.Name(u"\\*.txt"), directory_.Name(u"\\new\\to"), &any_non_zero), S_OK);
  EXPECT_EQ(directory_.Read("new/to/d.txt/x"), "4");
  EXPECT_EQ(directory_.Read("new/to/b.txt"), "2");
  EXPECT_EQ(directory_.Read("a.txt"), "1");
}

TEST_F(StoringTest, ACopyThatFailsIsNotHeardOf) {
  const Text sources[] = {directory_.Name(u"\\gone"), u"", u"Q:\\a"};
  for (const Text& source : sources) {
    EXPECT_EQ(Copy(source, directory_.Name(u"\\b")), S_OK) << ToUtf8(source);
    EXPECT_EQ(TakeFailure().source, u"(none)");
    EXPECT_FALSE(directory_.Has("b")) << ToUtf8(source);
  }
}

// The code page has no such letter, and its substitute is no wildcard.
TEST_F(StoringTest, ANameThatLosesCharactersCopiesNoOtherFile) {
  directory_.Write("a1b", "1");
  directory_.Write("a?b", "2");
  EXPECT_EQ(Copy(directory_.Name(u"\\a\u0416b"), directory_.Name(u"\\to")), S_OK);
  EXPECT_FALSE(directory_.Has("to"));
  EXPECT_EQ(Copy(directory_.Name(u"\\a?b"), directory_.Name(u"\\to")), S_OK);
  EXPECT_EQ(directory_.Read("to/a1b"), "1");
}

TEST_F(StoringTest, SoundsArePlayedToTheirEndByTheirAnsiName) {
  struct Played {
    std::string name;
    LONG flags;
  };
  std::vector<Played> played;
  OxHost table{};
  table.context = &played;
  table.sndPlaySoundA = [](void* list, const char* name, LONG flags) -> LONG {
    static_cast<std::vector<Played>*>(list)->push_back({name, flags});
    return 0;  // a failure to play is not the caller's
  };
  const RecordingHost host(table);
  directory_.Write("\u20AC.wav", "");
  directory_.Write("\u0416.wav", "");
  directory_.MakeDirectory("sub");
  for (const char16_t* name : {u"\\gone.wav", u"\\sub", u"\\*.wav"}) {
    EXPECT_EQ(orvix_->PlaySound(Named(directory_.Name(name))), S_OK);
  }
  EXPECT_EQ(orvix_->PlaySound(Named(u"")), S_OK);
  EXPECT_TRUE(played.empty());
  EXPECT_EQ(orvix_->PlaySound(Named(directory_.Name(u"\\\u20AC.wav"))), S_OK);
  EXPECT_EQ(orvix_->PlaySound(Named(directory_.Name(u"\\\u0416.wav"))), S_OK);
  ASSERT_EQ(played.size(), 2U);
  const std::string place = ToUtf8(directory_.Name(u"\\"));
  EXPECT_EQ(played[0].name, place + "\x80.wav");
  EXPECT_EQ(played[1].name, place + "?.wav");
  EXPECT_EQ(played[0].flags, 0);
  EXPECT_EQ(TakeFailure().source, u"(none)");
}

}  // namespace
}  // namespace Orvix::testing
