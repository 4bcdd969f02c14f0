// ITypeLib and ITypeInfo over the component's own tables. The objects live as
// long as the component; their references keep it loaded.
#include "frame/type_library.h"

#include <algorithm>
#include <memory>
#include <optional>
#include <vector>

#include "frame/boundary.h"
#include "frame/dispatch.h"
#include "frame/error.h"
#include "frame/lifetime.h"
#include "frame/type_descriptions.h"

namespace Orvix::component {

namespace {

constexpr HRESULT TYPE_E_BADMODULEKIND = MakeResult(0x800288BD);

HRESULT GiveText(std::string_view ascii, BSTR* text) {
  if (text == nullptr) return S_OK;
  *text = nullptr;
  if (ascii.empty()) return S_OK;
  *text = SysAllocStringLen(nullptr, static_cast<UINT>(ascii.size()));
  if (*text == nullptr) return E_OUTOFMEMORY;
  std::copy(ascii.begin(), ascii.end(), *text);
  return S_OK;
}

HRESULT GiveDocumentation(std::string_view name, std::string_view help, BSTR* name_out, BSTR* help_out, DWORD* context,
                          BSTR* file) {
  if (context != nullptr) *context = 0;
  if (file != nullptr) *file = nullptr;
  const HRESULT result = GiveText(name, name_out);
  return FAILED(result) ? result : GiveText(help, help_out);
}

bool SameIgnoringCase(TextView left, std::string_view right) {
  const auto fold = [](char16_t unit) {
    return static_cast<char16_t>(unit - u'A') < 26 ? static_cast<char16_t>(unit | 0x20) : unit;
  };
  return std::equal(left.begin(), left.end(), right.begin(), right.end(),
                    [&](char16_t a, char b) { return fold(a) == fold(static_cast<unsigned char>(b)); });
}

ITypeLib* Library();

// References to these objects count as locks on the component.
template <class Interface>
class Immortal : public Interface {
 public:
  ULONG ORVIX_CALL AddRef() noexcept override {
    LockServer(true);
    return 2;
  }
  ULONG ORVIX_CALL Release() noexcept override {
    LockServer(false);
    return 1;
  }

 protected:
  Immortal() = default;
  ~Immortal() = default;
  HRESULT Query(REFIID riid, const IID& own, void** object) {
    if (object == nullptr) return E_POINTER;
    *object = nullptr;
    if (riid != IID_IUnknown && riid != own) return E_NOINTERFACE;
    *object = static_cast<Interface*>(this);
    AddRef();
    return S_OK;
  }
};

class TypeInfo final : public Immortal<ITypeInfo> {
 public:
  TypeInfo(const TypeEntry& entry, std::size_t index) : entry_(entry), index_(index) {
    if (entry.table != nullptr) names_.emplace(*entry.table);
  }

  HRESULT ORVIX_CALL QueryInterface(REFIID riid, void** object) noexcept override {
    return Query(riid, IID_ITypeInfo, object);
  }

  HRESULT ORVIX_CALL GetTypeAttr(TYPEATTR** attributes) noexcept override {
    if (attributes == nullptr) return E_POINTER;
    auto* made = new (std::nothrow) TYPEATTR{};
    *attributes = made;
    if (made == nullptr) return E_OUTOFMEMORY;
    made->guid = *entry_.guid;
    made->memidConstructor = made->memidDestructor = MEMBERID_NIL;
    made->typekind = entry_.kind;
    made->cbAlignment = sizeof(void*);
    made->wTypeFlags = entry_.flags;
    made->wMajorVerNum = kLibraryMajor;
    made->wMinorVerNum = kLibraryMinor;
    if (entry_.table != nullptr) {
      made->cFuncs = static_cast<WORD>(entry_.table->rows.size());
      made->cbSizeVft = static_cast<WORD>((7 + entry_.table->rows.size()) * sizeof(void*));
    }
    made->cVars = static_cast<WORD>(entry_.items.size());
    made->cImplTypes = entry_.class_entry == nullptr ? 0 : 1;
    made->cbSizeInstance = entry_.kind == TKIND_RECORD ? sizeof(FileType)
                           : entry_.kind == TKIND_ENUM ? sizeof(LONG)
                                                       : sizeof(void*);
    return S_OK;
  }
  void ORVIX_CALL ReleaseTypeAttr(TYPEATTR* attributes) noexcept override { delete attributes; }

  HRESULT ORVIX_CALL GetTypeComp(ITypeComp** comp) noexcept override {
    if (comp == nullptr) return E_POINTER;
    *comp = nullptr;
    return E_NOTIMPL;  // binders use GetIDsOfNames
  }

  HRESULT ORVIX_CALL GetFuncDesc(UINT index, FUNCDESC** description) noexcept override {
    if (description == nullptr) return E_POINTER;
    *description = nullptr;
    if (entry_.table == nullptr || index >= entry_.table->rows.size()) return TYPE_E_ELEMENTNOTFOUND;
    *description = NewFunctionDescription(*entry_.table, index);
    return *description == nullptr ? E_OUTOFMEMORY : S_OK;
  }
  void ORVIX_CALL ReleaseFuncDesc(FUNCDESC* description) noexcept override { FreeFunctionDescription(description); }

  HRESULT ORVIX_CALL GetVarDesc(UINT index, VARDESC** description) noexcept override {
    if (description == nullptr) return E_POINTER;
    *description = nullptr;
    if (index >= entry_.items.size()) return TYPE_E_ELEMENTNOTFOUND;
    *description = NewItemDescription(entry_, index);
    return *description == nullptr ? E_OUTOFMEMORY : S_OK;
  }
  void ORVIX_CALL ReleaseVarDesc(VARDESC* description) noexcept override { FreeItemDescription(description); }

  // The member's name, then its parameters' names: of the accessor with the most
  // of them.
  HRESULT ORVIX_CALL GetNames(MEMBERID member, BSTR* names, UINT capacity, UINT* count) noexcept override {
    if (names == nullptr || count == nullptr) return E_POINTER;
    *count = 0;
    if (const NamedItem* item = ItemOf(member)) {
      if (capacity == 0) return S_OK;
      *count = 1;
      return GiveText(item->name, names);
    }
    const MemberRow* row = LongestRowOf(member);
    if (row == nullptr) return TYPE_E_ELEMENTNOTFOUND;
    const UINT wanted = std::min(capacity, static_cast<UINT>(row->count + 1));
    for (UINT i = 0; i < wanted; ++i) {
      const HRESULT result = GiveText(i == 0 ? row->name : row->names[i - 1], &names[i]);
      if (FAILED(result)) return result;
      *count = i + 1;
    }
    return S_OK;
  }

  HRESULT ORVIX_CALL GetRefTypeOfImplType(UINT index, HREFTYPE* reference) noexcept override {
    if (reference == nullptr) return E_POINTER;
    if (entry_.class_entry == nullptr || index != 0) return TYPE_E_ELEMENTNOTFOUND;
    *reference = static_cast<HREFTYPE>(TypeIndexOf(entry_.class_entry->table().name));
    return S_OK;
  }
  HRESULT ORVIX_CALL GetImplTypeFlags(UINT index, INT* flags) noexcept override {
    if (flags == nullptr) return E_POINTER;
    if (entry_.class_entry == nullptr || index != 0) return TYPE_E_ELEMENTNOTFOUND;
    *flags = IMPLTYPEFLAG_FDEFAULT;
    return S_OK;
  }

  HRESULT ORVIX_CALL GetIDsOfNames(OLECHAR** names, UINT count, MEMBERID* ids) noexcept override {
    if (names_) return LookUpNames(*names_, IID_NULL, names, count, ids);
    if (names == nullptr || ids == nullptr || count == 0) return E_INVALIDARG;
    std::fill_n(ids, count, DISPID_UNKNOWN);
    if (names[0] != nullptr) ids[0] = MemberOf(names[0]);
    return count == 1 && ids[0] != DISPID_UNKNOWN ? S_OK : DISP_E_UNKNOWNNAME;
  }
  HRESULT ORVIX_CALL Invoke(void* instance, MEMBERID member, WORD flags, DISPPARAMS* params, VARIANT* result,
                            EXCEPINFO* exception, UINT* argument_error) noexcept override {
    if (instance == nullptr) return E_POINTER;
    if (!names_) return DISP_E_MEMBERNOTFOUND;
    return InvokeByName(*names_, static_cast<IDispatch*>(instance), member, IID_NULL, flags, params, result, exception,
                        argument_error);
  }

  HRESULT ORVIX_CALL GetDocumentation(MEMBERID member, BSTR* name, BSTR* help, DWORD* context,
                                      BSTR* file) noexcept override {
    if (member == MEMBERID_NIL) return GiveDocumentation(entry_.name, {}, name, help, context, file);
    if (const NamedItem* item = ItemOf(member)) {
      return GiveDocumentation(item->name, item->help, name, help, context, file);
    }
    const MemberRow* row = LongestRowOf(member);
    if (row == nullptr) return TYPE_E_ELEMENTNOTFOUND;
    return GiveDocumentation(row->name, row->help, name, help, context, file);
  }

  HRESULT ORVIX_CALL GetDllEntry(MEMBERID, INVOKEKIND, BSTR*, BSTR*, WORD*) noexcept override {
    return TYPE_E_BADMODULEKIND;
  }
  HRESULT ORVIX_CALL AddressOfMember(MEMBERID, INVOKEKIND, void**) noexcept override { return TYPE_E_BADMODULEKIND; }
  HRESULT ORVIX_CALL GetRefTypeInfo(HREFTYPE reference, ITypeInfo** info) noexcept override {
    return TypeInfoAt(reference, info);
  }
  HRESULT ORVIX_CALL CreateInstance(IUnknown* outer, REFIID riid, void** object) noexcept override {
    if (object == nullptr) return E_POINTER;
    *object = nullptr;
    if (outer != nullptr) return CLASS_E_NOAGGREGATION;
    if (entry_.class_entry == nullptr) return TYPE_E_TYPEMISMATCH;
    try {
      return entry_.class_entry->create()->QueryInterface(riid, object);
    } catch (...) {
      return ResultOfCurrentException(entry_.name);
    }
  }
  HRESULT ORVIX_CALL GetMops(MEMBERID, BSTR* mops) noexcept override {
    if (mops == nullptr) return E_POINTER;
    *mops = nullptr;
    return S_OK;
  }
  HRESULT ORVIX_CALL GetContainingTypeLib(ITypeLib** library, UINT* index) noexcept override {
    if (library == nullptr) return E_POINTER;
    if (index != nullptr) *index = static_cast<UINT>(index_);
    *library = Library();
    (*library)->AddRef();
    return S_OK;
  }

  [[nodiscard]] const TypeEntry& entry() const { return entry_; }
  // The member of a name; DISPID_UNKNOWN when there is none.
  [[nodiscard]] MEMBERID MemberOf(TextView name) const {
    if (names_) return names_->IdOf(name);
    for (std::size_t i = 0; i < entry_.items.size(); ++i) {
      if (SameIgnoringCase(name, entry_.items[i].name)) return ItemId(i);
    }
    return DISPID_UNKNOWN;
  }

 private:
  const NamedItem* ItemOf(MEMBERID member) const {
    if (member < ItemId(0)) return nullptr;
    const auto at = static_cast<std::size_t>(member - ItemId(0));
    return at < entry_.items.size() ? &entry_.items[at] : nullptr;
  }
  const MemberRow* LongestRowOf(MEMBERID member) const { return names_ ? names_->AnyRowOf(member) : nullptr; }

  const TypeEntry& entry_;
  std::size_t index_;
  std::optional<DispatchIndex> names_;
};

const std::vector<std::unique_ptr<TypeInfo>>& TypeInfos() {
  // Never destroyed, as the entries.
  static const std::vector<std::unique_ptr<TypeInfo>>& infos = *[] {
    auto made = std::make_unique<std::vector<std::unique_ptr<TypeInfo>>>();
    for (const TypeEntry& entry : TypeEntries()) made->push_back(std::make_unique<TypeInfo>(entry, made->size()));
    return made.release();
  }();
  return infos;
}

class TypeLibrary final : public Immortal<ITypeLib> {
 public:
  HRESULT ORVIX_CALL QueryInterface(REFIID riid, void** object) noexcept override {
    return Query(riid, IID_ITypeLib, object);
  }
  UINT ORVIX_CALL GetTypeInfoCount() noexcept override { return static_cast<UINT>(TypeEntries().size()); }
  HRESULT ORVIX_CALL GetTypeInfo(UINT index, ITypeInfo** info) noexcept override { return TypeInfoAt(index, info); }
  HRESULT ORVIX_CALL GetTypeInfoType(UINT index, TYPEKIND* kind) noexcept override {
    if (kind == nullptr) return E_POINTER;
    if (index >= TypeEntries().size()) return TYPE_E_ELEMENTNOTFOUND;
    *kind = TypeEntries()[index].kind;
    return S_OK;
  }
  HRESULT ORVIX_CALL GetTypeInfoOfGuid(REFGUID guid, ITypeInfo** info) noexcept override {
    if (info == nullptr) return E_POINTER;
    *info = nullptr;
    for (std::size_t i = 0; i < TypeEntries().size(); ++i) {
      if (*TypeEntries()[i].guid == guid) return TypeInfoAt(i, info);
    }
    return TYPE_E_ELEMENTNOTFOUND;
  }
  HRESULT ORVIX_CALL GetLibAttr(TLIBATTR** attributes) noexcept override {
    if (attributes == nullptr) return E_POINTER;
    *attributes = new (std::nothrow) TLIBATTR{
        LIBID_Orvix, 0, sizeof(void*) == 8 ? SYS_WIN64 : SYS_WIN32, kLibraryMajor, kLibraryMinor, LIBFLAG_NONE};
    return *attributes == nullptr ? E_OUTOFMEMORY : S_OK;
  }
  void ORVIX_CALL ReleaseTLibAttr(TLIBATTR* attributes) noexcept override { delete attributes; }
  HRESULT ORVIX_CALL GetTypeComp(ITypeComp** comp) noexcept override {
    if (comp == nullptr) return E_POINTER;
    *comp = nullptr;
    return E_NOTIMPL;  // binders use FindName
  }
  HRESULT ORVIX_CALL GetDocumentation(INT index, BSTR* name, BSTR* help, DWORD* context, BSTR* file) noexcept override {
    if (index == -1) return GiveDocumentation("Orvix", {}, name, help, context, file);
    if (index < 0 || static_cast<std::size_t>(index) >= TypeEntries().size()) return TYPE_E_ELEMENTNOTFOUND;
    return TypeInfos()[static_cast<std::size_t>(index)]->GetDocumentation(MEMBERID_NIL, name, help, context, file);
  }
  HRESULT ORVIX_CALL IsName(OLECHAR* name, ULONG, BOOL* found) noexcept override {
    if (name == nullptr || found == nullptr) return E_POINTER;
    *found = 0;
    for (const auto& info : TypeInfos()) {
      if (SameIgnoringCase(name, info->entry().name) || info->MemberOf(name) != DISPID_UNKNOWN) *found = 1;
    }
    return S_OK;
  }
  HRESULT ORVIX_CALL FindName(OLECHAR* name, ULONG, ITypeInfo** infos, MEMBERID* members,
                              USHORT* found) noexcept override {
    if (name == nullptr || infos == nullptr || members == nullptr || found == nullptr) return E_POINTER;
    USHORT count = 0;
    for (const auto& info : TypeInfos()) {
      if (count == *found) break;
      const bool is_type = SameIgnoringCase(name, info->entry().name);
      const MEMBERID member = is_type ? MEMBERID_NIL : info->MemberOf(name);
      if (!is_type && member == DISPID_UNKNOWN) continue;
      info->AddRef();
      infos[count] = info.get();
      members[count++] = member;
    }
    *found = count;
    return S_OK;
  }
};

ITypeLib* Library() {
  static TypeLibrary library;
  return &library;
}

HRESULT TypeInfoNamed(std::string_view name, ITypeInfo** info) noexcept {
  std::size_t index = 0;
  try {
    index = TypeIndexOf(name);
  } catch (const std::bad_alloc&) {
    return E_OUTOFMEMORY;
  }
  return TypeInfoAt(index, info);
}

}  // namespace

HRESULT OpenTypeLibrary(REFIID riid, void** library) noexcept {
  try {
    TypeInfos();  // made once; what hands out types later finds them
  } catch (const std::bad_alloc&) {
    return E_OUTOFMEMORY;
  }
  return Library()->QueryInterface(riid, library);
}

HRESULT TypeInfoAt(std::size_t index, ITypeInfo** info) noexcept {
  if (info == nullptr) return E_POINTER;
  *info = nullptr;
  try {
    if (index >= TypeInfos().size()) return TYPE_E_ELEMENTNOTFOUND;
  } catch (const std::bad_alloc&) {
    return E_OUTOFMEMORY;
  }
  *info = TypeInfos()[index].get();
  (*info)->AddRef();
  return S_OK;
}

HRESULT RecordTypeInfo(ITypeInfo** info) noexcept { return TypeInfoNamed("FileType", info); }

HRESULT TypeInfoOf(const InterfaceTable& table, UINT index, ITypeInfo** info) noexcept {
  if (info == nullptr) return E_POINTER;
  *info = nullptr;
  if (index != 0) return DISP_E_BADINDEX;
  return TypeInfoNamed(table.name, info);
}

}  // namespace Orvix::component
