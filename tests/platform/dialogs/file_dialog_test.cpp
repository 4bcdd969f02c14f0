// The dialog component, created and called as an application does.
#include <gmock/gmock.h>

#include "support/late_call.h"
#include "support/stand_in_desktop.h"

namespace {

using namespace Orvix::testing;
using Orvix::Text;
using Orvix::TextView;
using Orvix::component::ComPtr;
using Orvix::component::Variant;
using ::testing::ElementsAre;

constexpr CLSID kDialogClass = Orvix::operator""_guid("A4622060-ED13-11CE-9C0D-00AA0062BE57", 36);
constexpr IID kDialogInterface = Orvix::operator""_guid("D1879860-EC80-11CE-9C0D-00AA0062BE57", 36);
constexpr IID kFilesInterface = Orvix::operator""_guid("D1879861-EC80-11CE-9C0D-00AA0062BE57", 36);
constexpr IID kFiltersInterface = Orvix::operator""_guid("A4622061-ED13-11CE-9C0D-00AA0062BE57", 36);

class FileDialogTest : public ::testing::Test {
 protected:
  FileDialogTest() {
    void* object = nullptr;
    EXPECT_EQ(CoCreateInstance(kDialogClass, nullptr, CLSCTX_INPROC_SERVER, kDialogInterface, &object), S_OK);
    *dialog_.Receive() = static_cast<IDispatch*>(object);
  }
  [[nodiscard]] Text Get(const char16_t* member) const { return TextOf(CallByName(dialog_.get(), member)); }
  void Put(const char16_t* member, TextView value) const {
    EXPECT_EQ(PutByName(dialog_.get(), member, Variant(value).get()).code, S_OK);
  }
  static Text TextOf(const LateResult& result) {
    EXPECT_EQ(result.code, S_OK);
    EXPECT_EQ(result.value.get().vt, VT_BSTR);
    return result.value.get().vt == VT_BSTR ? Text(Orvix::ViewOf(result.value.get().bstrVal)) : Text();
  }
  static LONG LongOf(const LateResult& result) {
    EXPECT_EQ(result.code, S_OK);
    EXPECT_EQ(result.value.get().vt, VT_I4);
    return result.value.get().lVal;
  }
  [[nodiscard]] VARIANT_BOOL Show() const {
    const LateResult result = CallByName(dialog_.get(), u"Show");
    EXPECT_EQ(result.code, S_OK);
    EXPECT_EQ(result.value.get().vt, VT_BOOL);
    return result.value.get().boolVal;
  }
  // The object lives as long as the result.
  [[nodiscard]] std::vector<Text> Files() const {
    const LateResult list = CallByName(dialog_.get(), u"Files");
    std::vector<Text> files;
    IDispatch* const object = list.value.get().pdispVal;
    for (LONG i = 0, count = LongOf(CallByName(object, u"Count")); i < count; ++i) {
      files.push_back(TextOf(CallByName(object, u"Item", {Variant(i).get()})));
    }
    return files;
  }

  Desktop desktop_;
  ComPtr<IDispatch> dialog_;
};

TEST_F(FileDialogTest, HasItsMembersInOrderWithoutRegardToCase) {
  const char16_t* const members[] = {u"directory",   u"FILENAME", u"Files",       u"Filters",         u"HideReadOnly",
                                     u"OwnerWindow", u"Center",   u"MultiSelect", u"OverwritePrompt", u"ReadOnly",
                                     u"SaveDialog",  u"Title",    u"sHOW"};
  DISPID expected = 1;
  for (const char16_t* const member : members) EXPECT_EQ(IdOf(dialog_.get(), member), expected++);
  OLECHAR name[] = u"Directoryy";
  OLECHAR* names = name;
  DISPID id = 0;
  EXPECT_EQ(dialog_->GetIDsOfNames(IID_NULL, &names, 1, LOCALE_INVARIANT, &id), DISP_E_UNKNOWNNAME);
}

TEST_F(FileDialogTest, StartsAsAnOpenDialogThatAsksBeforeOverwriting) {
  const std::pair<const char16_t*, VARIANT_BOOL> switches[] = {{u"HideReadOnly", 0}, {u"Center", 0},
                                                               {u"MultiSelect", 0},  {u"OverwritePrompt", -1},
                                                               {u"ReadOnly", 0},     {u"SaveDialog", 0}};
  for (const auto& [member, value] : switches) {
    EXPECT_EQ(CallByName(dialog_.get(), member).value.get().boolVal, value) << Orvix::ToUtf8(member);
  }
  EXPECT_EQ(LongOf(CallByName(dialog_.get(), u"OwnerWindow")), 0);
  EXPECT_EQ(Get(u"Title"), u"");
  EXPECT_THAT(Files(), ElementsAre());
}

TEST_F(FileDialogTest, ConvertsValuesAndRefusesWrongOnes) {
  Put(u"OwnerWindow", u"12");
  Put(u"Center", u"True");
  EXPECT_EQ(LongOf(CallByName(dialog_.get(), u"OwnerWindow")), 12);
  EXPECT_EQ(CallByName(dialog_.get(), u"Center").value.get().boolVal, VARIANT_TRUE);
  const LateResult wrong = PutByName(dialog_.get(), u"OwnerWindow", Variant(TextView(u"x")).get());
  EXPECT_EQ(wrong.code, DISP_E_TYPEMISMATCH);
  EXPECT_EQ(wrong.argument_error, 0u);
  EXPECT_EQ(LongOf(CallByName(dialog_.get(), u"OwnerWindow")), 12);
  EXPECT_EQ(CallByName(dialog_.get(), u"Show", {Variant(LONG{1}).get()}).code, DISP_E_BADPARAMCOUNT);
  EXPECT_EQ(CallByName(dialog_.get(), u"Title", {Variant(LONG{1}).get()}).code, DISP_E_BADPARAMCOUNT);
  EXPECT_EQ(PutByName(dialog_.get(), u"Files", Variant(LONG{1}).get()).code, DISP_E_MEMBERNOTFOUND);
}

TEST_F(FileDialogTest, KeepsFiltersInAListOfItsOwn) {
  const LateResult list = CallByName(dialog_.get(), u"Filters");
  ASSERT_EQ(list.value.get().vt, VT_DISPATCH);
  IDispatch* const filters = list.value.get().pdispVal;
  void* same = nullptr;
  ASSERT_EQ(filters->QueryInterface(kFiltersInterface, &same), S_OK);
  static_cast<IDispatch*>(same)->Release();
  EXPECT_EQ(filters->QueryInterface(kFilesInterface, &same), E_NOINTERFACE);
  for (const TextView text : {u"a", u"b", u"c"}) {
    ASSERT_EQ(CallByName(filters, u"Add", {Variant(text).get()}).code, S_OK);
  }
  ASSERT_EQ(CallByName(filters, u"Remove", {Variant(LONG{1}).get()}).code, S_OK);
  EXPECT_EQ(LongOf(CallByName(CallByName(dialog_.get(), u"Filters").value.get().pdispVal, u"Count")), 2);
  EXPECT_EQ(TextOf(CallByName(filters, u"Item", {Variant(LONG{1}).get()})), u"c");
  for (const LONG outside : {-1, 2}) {
    const LateResult failed = CallByName(filters, u"Item", {Variant(outside).get()});
    EXPECT_EQ(failed.code, DISP_E_EXCEPTION);
    EXPECT_EQ(failed.scode, static_cast<SCODE>(0x800A0009));
    EXPECT_EQ(failed.description, u"Subscript out of range");
    EXPECT_EQ(failed.source, u"Orvix.FileDialogFilters");
  }
  EXPECT_EQ(CallByName(filters, u"Add").code, DISP_E_BADPARAMCOUNT);
  ASSERT_EQ(CallByName(filters, u"Clear").code, S_OK);
  EXPECT_EQ(LongOf(CallByName(filters, u"Count")), 0);
}

TEST_F(FileDialogTest, HandsItsSettingsToTheProgram) {
  desktop_.InstallAnswer("zenity", "/srv/b\n");
  IDispatch* filters = nullptr;
  {
    const LateResult list = CallByName(dialog_.get(), u"Filters");
    filters = list.value.get().pdispVal;
    ASSERT_EQ(CallByName(filters, u"Add", {Variant(TextView(u"Text")).get()}).code, S_OK);
    ASSERT_EQ(CallByName(filters, u"Add", {Variant(TextView(u"*.1")).get()}).code, S_OK);
  }
  Put(u"Directory", desktop_.files.Name(u""));
  Put(u"FileName", u"\u00E4 b");
  Put(u"Title", u"Pick");
  Put(u"SaveDialog", u"True");
  EXPECT_EQ(Show(), VARIANT_TRUE);
  EXPECT_THAT(desktop_.Words(), ElementsAre("zenity", "--file-selection", "--title=Pick",
                                            "--filename=" + desktop_.files.Native("\xC3\xA4 b"), "--save",
                                            "--confirm-overwrite", "--file-filter=Text | *.1"));
}

TEST_F(FileDialogTest, CancelledChangesNothing) {
  desktop_.InstallAnswer("zenity", "/srv/data/a\n", 1);
  Put(u"Directory", u"Z:\\here");
  Put(u"FileName", u"name");
  EXPECT_EQ(Show(), VARIANT_FALSE);
  EXPECT_EQ(Get(u"Directory"), u"Z:\\here");
  EXPECT_EQ(Get(u"FileName"), u"name");
  EXPECT_THAT(Files(), ElementsAre());
}

struct SelectionCase {
  const char* label;
  std::string output;
  Text directory;
  std::vector<Text> files;
};
class SelectionTest : public FileDialogTest, public ::testing::WithParamInterface<SelectionCase> {};

TEST_P(SelectionTest, IsADirectoryAndNames) {
  desktop_.InstallAnswer("zenity", GetParam().output);
  Put(u"MultiSelect", u"True");
  EXPECT_EQ(Show(), VARIANT_TRUE);
  EXPECT_EQ(Get(u"Directory"), GetParam().directory);
  EXPECT_EQ(Get(u"FileName"), GetParam().files.front());
  EXPECT_EQ(Files(), GetParam().files);
}

INSTANTIATE_TEST_SUITE_P(
    Names, SelectionTest,
    ::testing::Values(SelectionCase{"One", "/nowhere/d/a\n", u"Z:\\nowhere\\d", {u"a"}},
                      SelectionCase{"Root", "/a//b\n", u"Z:\\", {u"a", u"b"}},
                      SelectionCase{"Three", "/n/d/b//n/d/a//n/d/-c\n", u"Z:\\n\\d", {u"b", u"a", u"-c"}},
                      SelectionCase{"TwoDirectories", "/n/d/a//n/de/b\n", u"Z:\\n", {u"d\\a", u"de\\b"}},
                      SelectionCase{"NothingShared", "/n/a//m/b\n", u"Z:\\", {u"n\\a", u"m\\b"}},
                      SelectionCase{"Bytes", "/n/\xFF\n", u"Z:\\n", {u"\xDCFF"}}),
    [](const auto& tested) { return tested.param.label; });

TEST_F(FileDialogTest, ADirectoryEndsWithoutSeparatorHoweverTheProgramWritesIt) {
  desktop_.InstallAnswer("kdialog", "/n/d//a\n");
  EXPECT_EQ(Show(), VARIANT_TRUE);
  EXPECT_EQ(Get(u"Directory"), u"Z:\\n\\d");
  EXPECT_EQ(Get(u"FileName"), u"a");
}

TEST_F(FileDialogTest, ANameThatCannotBeExpressedIsAnErrorAndChangesNothing) {
  desktop_.InstallAnswer("zenity", "/n/a\\b\n");
  const LateResult failed = CallByName(dialog_.get(), u"Show");
  EXPECT_EQ(failed.code, DISP_E_EXCEPTION);
  EXPECT_EQ(failed.scode, static_cast<SCODE>(0x800A0034));
  EXPECT_EQ(failed.source, u"Orvix.FileDialog");
  EXPECT_EQ(Get(u"Directory"), u"");
}

}  // namespace
