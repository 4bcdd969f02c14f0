// FileType as late-bound callers see it: every method of its IRecordInfo, with
// what it refuses and what a refusal leaves alone.
#include "frame/record_info.h"

#include <gtest/gtest.h>

#include "tests/support/component.h"

namespace Orvix::testing {
namespace {

class RecordInfoTest : public ::testing::Test {
 protected:
  void TearDown() override { info_->RecordClear(&record_); }
  void Fill() { record_ = {NewBstr(u"C:\\a\\b.c"), NewBstr(u"b.c"), NewBstr(u"C:\\a\\"), NewBstr(u"c"), 17, 36526.5}; }

  ComPtr<IRecordInfo> info_ = ComPtr<IRecordInfo>::Adopt(component::FileTypeRecordInfo());
  FileType record_{};
};

TEST_F(RecordInfoTest, TellsWhatItDescribes) {
  GUID guid{};
  EXPECT_EQ(info_->GetGuid(&guid), S_OK);
  EXPECT_EQ(guid, "F779FF2C-E269-4239-AC00-DCC7B4680938"_guid);
  BstrHandle name;
  EXPECT_EQ(info_->GetName(name.Receive()), S_OK);
  EXPECT_EQ(name.View(), u"FileType");
  ULONG size = 0;
  EXPECT_EQ(info_->GetSize(&size), S_OK);
  EXPECT_EQ(size, 48u);
  ComPtr<ITypeInfo> type;
  ASSERT_EQ(info_->GetTypeInfo(type.Receive()), S_OK);
  EXPECT_EQ(type->GetDocumentation(MEMBERID_NIL, name.Receive(), nullptr, nullptr, nullptr), S_OK);
  EXPECT_EQ(name.View(), u"FileType");
  EXPECT_EQ(info_->GetGuid(nullptr), E_INVALIDARG);
  EXPECT_EQ(info_->GetName(nullptr), E_INVALIDARG);
  EXPECT_EQ(info_->GetSize(nullptr), E_INVALIDARG);
  EXPECT_TRUE(FAILED(info_->GetTypeInfo(nullptr)));
  void* other = this;
  EXPECT_EQ(info_->QueryInterface(IID_IDispatch, &other), E_NOINTERFACE);
  EXPECT_EQ(other, nullptr);
  EXPECT_EQ(info_->QueryInterface(IID_IRecordInfo, nullptr), E_POINTER);
}

TEST_F(RecordInfoTest, InitForgetsAndClearFrees) {
  FileType noise;
  std::memset(static_cast<void*>(&noise), 0xCC, sizeof noise);
  EXPECT_EQ(info_->RecordInit(&noise), S_OK);  // frees nothing
  EXPECT_EQ(noise.sCompleteFilename, nullptr);
  EXPECT_EQ(noise.sExtension, nullptr);
  EXPECT_EQ(noise.lSize, 0);
  EXPECT_EQ(noise.dDate, 0.0);
  Fill();
  EXPECT_EQ(info_->RecordClear(&record_), S_OK);
  EXPECT_EQ(record_.sFile, nullptr);
  EXPECT_EQ(record_.sPath, nullptr);
  EXPECT_EQ(record_.lSize, 0);
  EXPECT_EQ(record_.dDate, 0.0);
  EXPECT_EQ(info_->RecordInit(nullptr), E_INVALIDARG);
  EXPECT_EQ(info_->RecordClear(nullptr), E_INVALIDARG);
}

TEST_F(RecordInfoTest, CopiesAreDeep) {
  Fill();
  FileType copy = {nullptr, NewBstr(u"old"), nullptr, nullptr, -1, -1.0};
  EXPECT_EQ(info_->RecordCopy(&record_, &copy), S_OK);
  EXPECT_EQ(ViewOf(copy.sCompleteFilename), u"C:\\a\\b.c");
  EXPECT_EQ(ViewOf(copy.sFile), u"b.c");
  EXPECT_EQ(ViewOf(copy.sPath), u"C:\\a\\");
  EXPECT_EQ(ViewOf(copy.sExtension), u"c");
  EXPECT_EQ(copy.lSize, 17);
  EXPECT_EQ(copy.dDate, 36526.5);
  EXPECT_NE(copy.sFile, record_.sFile);
  info_->RecordClear(&copy);
  EXPECT_EQ(ViewOf(record_.sFile), u"b.c");
  // Onto itself: nothing is lost.
  const BSTR file = record_.sFile;
  EXPECT_EQ(info_->RecordCopy(&record_, &record_), S_OK);
  EXPECT_EQ(record_.sFile, file);
  EXPECT_EQ(ViewOf(record_.sFile), u"b.c");
  EXPECT_EQ(record_.lSize, 17);
  EXPECT_EQ(info_->RecordCopy(nullptr, &record_), E_INVALIDARG);
  EXPECT_EQ(info_->RecordCopy(&record_, nullptr), E_INVALIDARG);
  EXPECT_EQ(ViewOf(record_.sPath), u"C:\\a\\");
}

TEST_F(RecordInfoTest, FieldsAreReadByName) {
  Fill();
  Variant value;
  EXPECT_EQ(info_->GetField(&record_, u"SPATH", value.Receive()), S_OK);
  EXPECT_EQ(value.get().vt, VT_BSTR);
  EXPECT_EQ(ViewOf(value.get().bstrVal), u"C:\\a\\");
  EXPECT_NE(value.get().bstrVal, record_.sPath);
  EXPECT_EQ(info_->GetField(&record_, u"lSize", value.Receive()), S_OK);
  EXPECT_EQ(value.get().vt, VT_I4);
  EXPECT_EQ(value.get().lVal, 17);
  EXPECT_EQ(info_->GetField(&record_, u"dDate", value.Receive()), S_OK);
  EXPECT_EQ(value.get().vt, VT_DATE);
  EXPECT_EQ(value.get().date, 36526.5);
  VARIANT reference{};
  void* data = nullptr;
  EXPECT_EQ(info_->GetFieldNoCopy(&record_, u"sFile", &reference, &data), S_OK);
  EXPECT_EQ(reference.vt, VT_BYREF | VT_BSTR);
  EXPECT_EQ(reference.pbstrVal, &record_.sFile);
  EXPECT_EQ(data, &record_.sFile);
  EXPECT_EQ(info_->GetFieldNoCopy(&record_, u"lSize", &reference, nullptr), S_OK);
  EXPECT_EQ(reference.vt, VT_BYREF | VT_I4);
  EXPECT_EQ(reference.byref, &record_.lSize);
  for (const OLECHAR* name : {u"", u"sFil", u"sFiles", u"Size"}) {
    EXPECT_EQ(info_->GetField(&record_, name, value.Receive()), TYPE_E_ELEMENTNOTFOUND);
    EXPECT_EQ(info_->GetFieldNoCopy(&record_, name, &reference, &data), TYPE_E_ELEMENTNOTFOUND);
  }
  EXPECT_EQ(info_->GetField(nullptr, u"sFile", value.Receive()), E_INVALIDARG);
  EXPECT_EQ(info_->GetField(&record_, nullptr, value.Receive()), E_INVALIDARG);
  EXPECT_EQ(info_->GetField(&record_, u"sFile", nullptr), E_INVALIDARG);
  EXPECT_EQ(info_->GetFieldNoCopy(nullptr, u"sFile", &reference, &data), E_INVALIDARG);
  EXPECT_EQ(info_->GetFieldNoCopy(&record_, nullptr, &reference, &data), E_INVALIDARG);
  EXPECT_EQ(info_->GetFieldNoCopy(&record_, u"sFile", nullptr, &data), E_INVALIDARG);
}

TEST_F(RecordInfoTest, FieldsAreWrittenByName) {
  Fill();
  Variant text(u"23");
  EXPECT_EQ(info_->PutField(INVOKE_PROPERTYPUT, &record_, u"lSize", text.Address()), S_OK);
  EXPECT_EQ(record_.lSize, 23);
  EXPECT_EQ(info_->PutField(INVOKE_PROPERTYPUTREF, &record_, u"sfile", text.Address()), S_OK);
  EXPECT_EQ(ViewOf(record_.sFile), u"23");
  EXPECT_NE(record_.sFile, text.get().bstrVal);
  Variant date = Variant::Date(2.25);
  EXPECT_EQ(info_->PutField(INVOKE_PROPERTYPUT, &record_, u"dDate", date.Address()), S_OK);
  EXPECT_EQ(record_.dDate, 2.25);
  // Without a copy: a text changes hands, other values are copied.
  const BSTR given = text.get().bstrVal;
  EXPECT_EQ(info_->PutFieldNoCopy(INVOKE_PROPERTYPUT, &record_, u"sPath", text.Address()), S_OK);
  EXPECT_EQ(record_.sPath, given);
  EXPECT_EQ(text.get().vt, VT_EMPTY);
  Variant number(LONG{5});
  EXPECT_EQ(info_->PutFieldNoCopy(INVOKE_PROPERTYPUT, &record_, u"sPath", number.Address()), S_OK);
  EXPECT_EQ(ViewOf(record_.sPath), u"5");
  EXPECT_EQ(number.get().lVal, 5);
  // Refusals leave the field.
  Variant word(u"many");
  EXPECT_EQ(info_->PutField(INVOKE_PROPERTYPUT, &record_, u"lSize", word.Address()), DISP_E_TYPEMISMATCH);
  EXPECT_EQ(info_->PutFieldNoCopy(INVOKE_PROPERTYPUT, &record_, u"lSize", word.Address()), DISP_E_TYPEMISMATCH);
  EXPECT_EQ(record_.lSize, 23);
  const auto both = [&](ULONG flags, void* record, const OLECHAR* name, VARIANT* value, HRESULT expected) {
    EXPECT_EQ(info_->PutField(flags, record, name, value), expected);
    EXPECT_EQ(info_->PutFieldNoCopy(flags, record, name, value), expected);
  };
  both(INVOKE_FUNC, &record_, u"sFile", word.Address(), E_INVALIDARG);
  both(INVOKE_PROPERTYPUT, nullptr, u"sFile", word.Address(), E_INVALIDARG);
  both(INVOKE_PROPERTYPUT, &record_, nullptr, word.Address(), E_INVALIDARG);
  both(INVOKE_PROPERTYPUT, &record_, u"sFile", nullptr, E_INVALIDARG);
  both(INVOKE_PROPERTYPUT, &record_, u"nothing", word.Address(), TYPE_E_ELEMENTNOTFOUND);
  EXPECT_EQ(ViewOf(record_.sFile), u"23");
  EXPECT_EQ(ViewOf(word.get().bstrVal), u"many");
}

TEST_F(RecordInfoTest, NamesItsFields) {
  ULONG count = 0;
  EXPECT_EQ(info_->GetFieldNames(&count, nullptr), S_OK);
  EXPECT_EQ(count, 6u);
  BSTR names[8] = {};
  count = 8;
  EXPECT_EQ(info_->GetFieldNames(&count, names), S_OK);
  EXPECT_EQ(count, 6u);
  const TextView expected[] = {u"sCompleteFilename", u"sFile", u"sPath", u"sExtension", u"lSize", u"dDate"};
  for (std::size_t i = 0; i < 6; ++i) {
    EXPECT_EQ(ViewOf(names[i]), expected[i]);
    SysFreeString(names[i]);
  }
  EXPECT_EQ(names[6], nullptr);
  BSTR two[3] = {};
  count = 2;
  EXPECT_EQ(info_->GetFieldNames(&count, two), S_OK);
  EXPECT_EQ(count, 2u);
  EXPECT_EQ(ViewOf(two[1]), u"sFile");
  EXPECT_EQ(two[2], nullptr);
  for (BSTR name : two) SysFreeString(name);
  EXPECT_EQ(info_->GetFieldNames(nullptr, names), E_INVALIDARG);
}

TEST_F(RecordInfoTest, MakesAndDestroysRecords) {
  EXPECT_NE(info_->IsMatchingType(info_.get()), 0);
  EXPECT_EQ(info_->IsMatchingType(nullptr), 0);
  auto* made = static_cast<FileType*>(info_->RecordCreate());
  ASSERT_NE(made, nullptr);
  EXPECT_EQ(made->sFile, nullptr);
  EXPECT_EQ(made->lSize, 0);
  EXPECT_EQ(info_->RecordDestroy(made), S_OK);
  Fill();
  void* copy = nullptr;
  ASSERT_EQ(info_->RecordCreateCopy(&record_, &copy), S_OK);
  ASSERT_NE(copy, &record_);
  EXPECT_EQ(ViewOf(static_cast<FileType*>(copy)->sFile), u"b.c");
  EXPECT_NE(static_cast<FileType*>(copy)->sFile, record_.sFile);
  EXPECT_EQ(static_cast<FileType*>(copy)->dDate, 36526.5);
  EXPECT_EQ(info_->RecordDestroy(copy), S_OK);
  EXPECT_EQ(info_->RecordCreateCopy(nullptr, &copy), E_INVALIDARG);
  EXPECT_EQ(info_->RecordCreateCopy(&record_, nullptr), E_INVALIDARG);
  EXPECT_EQ(info_->RecordDestroy(nullptr), E_INVALIDARG);
}

// References keep the component loaded.
TEST(RecordInfo, CountsForTheServer) {
  ASSERT_EQ(DllCanUnloadNow(), S_OK);
  auto info = ComPtr<IRecordInfo>::Adopt(component::FileTypeRecordInfo());
  EXPECT_EQ(DllCanUnloadNow(), S_FALSE);
  auto again = info;
  info = nullptr;
  EXPECT_EQ(DllCanUnloadNow(), S_FALSE);
  again = nullptr;
  EXPECT_EQ(DllCanUnloadNow(), S_OK);
}

}  // namespace
}  // namespace Orvix::testing
