// One static object describes FileType; references to it keep the component
// loaded.
#include "frame/record_info.h"

#include <cstring>
#include <new>

#include "frame/com_ptr.h"
#include "frame/lifetime.h"
#include "frame/type_library.h"

namespace Orvix::component {

namespace {

struct Field {
  TextView name;
  VARTYPE type;
  std::size_t offset;
};
constexpr Field kFields[] = {
    {u"sCompleteFilename", VT_BSTR, offsetof(FileType, sCompleteFilename)},
    {u"sFile", VT_BSTR, offsetof(FileType, sFile)},
    {u"sPath", VT_BSTR, offsetof(FileType, sPath)},
    {u"sExtension", VT_BSTR, offsetof(FileType, sExtension)},
    {u"lSize", VT_I4, offsetof(FileType, lSize)},
    {u"dDate", VT_DATE, offsetof(FileType, dDate)},
};
constexpr ULONG kFieldCount = sizeof kFields / sizeof kFields[0];

constexpr char16_t Fold(char16_t unit) {
  return static_cast<char16_t>(unit - u'A') < 26 ? static_cast<char16_t>(unit | 0x20) : unit;
}

const Field* FieldOf(const OLECHAR* name) {
  if (name == nullptr) return nullptr;
  const TextView wanted(name);
  for (const Field& field : kFields) {
    if (field.name.size() != wanted.size()) continue;
    std::size_t same = 0;
    while (same < wanted.size() && Fold(wanted[same]) == Fold(field.name[same])) ++same;
    if (same == wanted.size()) return &field;
  }
  return nullptr;
}

// A VARIANT that refers to a field in place.
VARIANT ReferenceTo(const Field& field, void* record) {
  VARIANT reference;
  VariantInit(&reference);
  reference.vt = static_cast<VARTYPE>(VT_BYREF | field.type);
  reference.byref = static_cast<char*>(record) + field.offset;
  return reference;
}

class FileTypeInfo final : public IRecordInfo {
 public:
  HRESULT ORVIX_CALL QueryInterface(REFIID riid, void** object) noexcept override {
    if (object == nullptr) return E_POINTER;
    *object = nullptr;
    if (riid != IID_IUnknown && riid != IID_IRecordInfo) return E_NOINTERFACE;
    *object = static_cast<IRecordInfo*>(this);
    AddRef();
    return S_OK;
  }
  ULONG ORVIX_CALL AddRef() noexcept override {
    LockServer(true);
    return 2;
  }
  ULONG ORVIX_CALL Release() noexcept override {
    LockServer(false);
    return 1;
  }

  HRESULT ORVIX_CALL RecordInit(void* record) noexcept override {
    if (record == nullptr) return E_INVALIDARG;
    *static_cast<FileType*>(record) = FileType{};
    return S_OK;
  }
  HRESULT ORVIX_CALL RecordClear(void* record) noexcept override {
    if (record == nullptr) return E_INVALIDARG;
    auto& fields = *static_cast<FileType*>(record);
    for (BSTR text : {fields.sCompleteFilename, fields.sFile, fields.sPath, fields.sExtension}) SysFreeString(text);
    fields = FileType{};
    return S_OK;
  }
  HRESULT ORVIX_CALL RecordCopy(void* from, void* to) noexcept override {
    if (from == nullptr || to == nullptr) return E_INVALIDARG;
    if (from == to) return S_OK;
    const auto& source = *static_cast<const FileType*>(from);
    try {
      BstrHandle complete(ViewOf(source.sCompleteFilename));
      BstrHandle file(ViewOf(source.sFile));
      BstrHandle path(ViewOf(source.sPath));
      BstrHandle extension(ViewOf(source.sExtension));
      RecordClear(to);
      *static_cast<FileType*>(to) = {complete.Detach(),  file.Detach(), path.Detach(),
                                     extension.Detach(), source.lSize,  source.dDate};
      return S_OK;
    } catch (const std::bad_alloc&) {
      return E_OUTOFMEMORY;
    }
  }
  HRESULT ORVIX_CALL GetGuid(GUID* guid) noexcept override {
    if (guid == nullptr) return E_INVALIDARG;
    *guid = GUID_FileType;
    return S_OK;
  }
  HRESULT ORVIX_CALL GetName(BSTR* name) noexcept override {
    if (name == nullptr) return E_INVALIDARG;
    *name = NewBstr(u"FileType");
    return *name == nullptr ? E_OUTOFMEMORY : S_OK;
  }
  HRESULT ORVIX_CALL GetSize(ULONG* size) noexcept override {
    if (size == nullptr) return E_INVALIDARG;
    *size = sizeof(FileType);
    return S_OK;
  }
  HRESULT ORVIX_CALL GetTypeInfo(ITypeInfo** info) noexcept override { return RecordTypeInfo(info); }

  HRESULT ORVIX_CALL GetField(void* record, const OLECHAR* name, VARIANT* value) noexcept override {
    const Field* field = FieldOf(name);
    if (record == nullptr || name == nullptr || value == nullptr) return E_INVALIDARG;
    if (field == nullptr) return TYPE_E_ELEMENTNOTFOUND;
    const VARIANT reference = ReferenceTo(*field, record);
    return VariantCopyInd(value, &reference);
  }
  HRESULT ORVIX_CALL GetFieldNoCopy(void* record, const OLECHAR* name, VARIANT* value, void** data) noexcept override {
    const Field* field = FieldOf(name);
    if (record == nullptr || name == nullptr || value == nullptr) return E_INVALIDARG;
    if (field == nullptr) return TYPE_E_ELEMENTNOTFOUND;
    *value = ReferenceTo(*field, record);
    if (data != nullptr) *data = value->byref;
    return S_OK;
  }
  HRESULT ORVIX_CALL PutField(ULONG flags, void* record, const OLECHAR* name, VARIANT* value) noexcept override {
    if (record == nullptr || name == nullptr || value == nullptr) return E_INVALIDARG;
    if (flags != INVOKE_PROPERTYPUT && flags != INVOKE_PROPERTYPUTREF) return E_INVALIDARG;
    const Field* field = FieldOf(name);
    if (field == nullptr) return TYPE_E_ELEMENTNOTFOUND;
    Variant converted;
    const HRESULT result = VariantChangeType(converted.Address(), value, 0, field->type);
    if (FAILED(result)) return result;
    void* place = static_cast<char*>(record) + field->offset;
    if (field->type == VT_BSTR) {
      SysFreeString(*static_cast<BSTR*>(place));
      *static_cast<BSTR*>(place) = converted.Detach().bstrVal;
    } else {
      std::memcpy(place, &converted.get().llVal, field->type == VT_I4 ? sizeof(LONG) : sizeof(DATE));
    }
    return S_OK;
  }
  // The record takes over a text that the caller hands in.
  HRESULT ORVIX_CALL PutFieldNoCopy(ULONG flags, void* record, const OLECHAR* name, VARIANT* value) noexcept override {
    const Field* field = FieldOf(name);
    const bool text = field != nullptr && field->type == VT_BSTR && value != nullptr && value->vt == VT_BSTR;
    if (!text || record == nullptr || (flags != INVOKE_PROPERTYPUT && flags != INVOKE_PROPERTYPUTREF)) {
      return PutField(flags, record, name, value);
    }
    auto* place = reinterpret_cast<BSTR*>(static_cast<char*>(record) + field->offset);
    SysFreeString(*place);
    *place = value->bstrVal;
    VariantInit(value);
    return S_OK;
  }
  HRESULT ORVIX_CALL GetFieldNames(ULONG* count, BSTR* names) noexcept override {
    if (count == nullptr) return E_INVALIDARG;
    if (names == nullptr) {
      *count = kFieldCount;
      return S_OK;
    }
    const ULONG wanted = *count < kFieldCount ? *count : kFieldCount;
    for (ULONG i = 0; i < wanted; ++i) names[i] = NewBstr(kFields[i].name);
    *count = wanted;
    return S_OK;
  }
  BOOL ORVIX_CALL IsMatchingType(IRecordInfo* other) noexcept override {
    GUID guid{};
    return other != nullptr && SUCCEEDED(other->GetGuid(&guid)) && guid == GUID_FileType ? 1 : 0;
  }
  void* ORVIX_CALL RecordCreate() noexcept override { return new (std::nothrow) FileType{}; }
  HRESULT ORVIX_CALL RecordCreateCopy(void* source, void** copy) noexcept override {
    if (source == nullptr || copy == nullptr) return E_INVALIDARG;
    *copy = RecordCreate();
    if (*copy == nullptr) return E_OUTOFMEMORY;
    const HRESULT result = RecordCopy(source, *copy);
    if (FAILED(result)) {
      RecordDestroy(*copy);
      *copy = nullptr;
    }
    return result;
  }
  HRESULT ORVIX_CALL RecordDestroy(void* record) noexcept override {
    if (record == nullptr) return E_INVALIDARG;
    RecordClear(record);
    delete static_cast<FileType*>(record);
    return S_OK;
  }
};

}  // namespace

IRecordInfo* FileTypeRecordInfo() noexcept {
  static FileTypeInfo info;
  info.AddRef();
  return &info;
}

}  // namespace Orvix::component
