// The Automation interfaces, slot by slot, and their identifiers.
#ifndef ORVIX_AUTOMATION_INTERFACES_H
#define ORVIX_AUTOMATION_INTERFACES_H

#include "orvix/automation/type_description.h"

// ---------------------------------------------------------------------------
// Interfaces

inline constexpr IID IID_NULL = {};
inline constexpr IID IID_IUnknown = Orvix::operator""_guid("00000000-0000-0000-C000-000000000046", 36);
inline constexpr IID IID_IClassFactory = Orvix::operator""_guid("00000001-0000-0000-C000-000000000046", 36);
inline constexpr IID IID_IRecordInfo = Orvix::operator""_guid("0000002F-0000-0000-C000-000000000046", 36);
inline constexpr IID IID_IDispatch = Orvix::operator""_guid("00020400-0000-0000-C000-000000000046", 36);
inline constexpr IID IID_ITypeInfo = Orvix::operator""_guid("00020401-0000-0000-C000-000000000046", 36);
inline constexpr IID IID_ITypeLib = Orvix::operator""_guid("00020402-0000-0000-C000-000000000046", 36);
inline constexpr IID IID_ITypeComp = Orvix::operator""_guid("00020403-0000-0000-C000-000000000046", 36);
inline constexpr IID IID_IEnumVARIANT = Orvix::operator""_guid("00020404-0000-0000-C000-000000000046", 36);
inline constexpr IID IID_IErrorInfo = Orvix::operator""_guid("1CF2B120-547D-101B-8E65-08002B2BD119", 36);
inline constexpr IID IID_ICreateErrorInfo = Orvix::operator""_guid("22F03340-547D-101B-8E65-08002B2BD119", 36);
inline constexpr IID IID_ISupportErrorInfo = Orvix::operator""_guid("DF0B3D60-548F-101B-8E65-08002B2BD119", 36);

// Interfaces are never deleted through: Release ends an object.
#if defined(__GNUC__)
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wnon-virtual-dtor"
#endif

struct IUnknown {
  virtual HRESULT ORVIX_CALL QueryInterface(REFIID riid, void** object) = 0;
  virtual ULONG ORVIX_CALL AddRef() = 0;
  virtual ULONG ORVIX_CALL Release() = 0;
};

struct IClassFactory : IUnknown {
  virtual HRESULT ORVIX_CALL CreateInstance(IUnknown* outer, REFIID riid, void** object) = 0;
  virtual HRESULT ORVIX_CALL LockServer(BOOL lock) = 0;
};

struct IDispatch : IUnknown {
  virtual HRESULT ORVIX_CALL GetTypeInfoCount(UINT* count) = 0;
  virtual HRESULT ORVIX_CALL GetTypeInfo(UINT index, LCID lcid, ITypeInfo** info) = 0;
  virtual HRESULT ORVIX_CALL GetIDsOfNames(REFIID riid, OLECHAR** names, UINT count, LCID lcid, DISPID* ids) = 0;
  virtual HRESULT ORVIX_CALL Invoke(DISPID member, REFIID riid, LCID lcid, WORD flags, DISPPARAMS* params,
                                    VARIANT* result, EXCEPINFO* exception, UINT* argumentError) = 0;
};

struct ITypeInfo : IUnknown {
  virtual HRESULT ORVIX_CALL GetTypeAttr(TYPEATTR** attributes) = 0;
  virtual HRESULT ORVIX_CALL GetTypeComp(ITypeComp** comp) = 0;
  virtual HRESULT ORVIX_CALL GetFuncDesc(UINT index, FUNCDESC** description) = 0;
  virtual HRESULT ORVIX_CALL GetVarDesc(UINT index, VARDESC** description) = 0;
  virtual HRESULT ORVIX_CALL GetNames(MEMBERID member, BSTR* names, UINT capacity, UINT* count) = 0;
  virtual HRESULT ORVIX_CALL GetRefTypeOfImplType(UINT index, HREFTYPE* reference) = 0;
  virtual HRESULT ORVIX_CALL GetImplTypeFlags(UINT index, INT* flags) = 0;
  virtual HRESULT ORVIX_CALL GetIDsOfNames(OLECHAR** names, UINT count, MEMBERID* ids) = 0;
  virtual HRESULT ORVIX_CALL Invoke(void* instance, MEMBERID member, WORD flags, DISPPARAMS* params, VARIANT* result,
                                    EXCEPINFO* exception, UINT* argumentError) = 0;
  virtual HRESULT ORVIX_CALL GetDocumentation(MEMBERID member, BSTR* name, BSTR* help, DWORD* context,
                                              BSTR* helpFile) = 0;
  virtual HRESULT ORVIX_CALL GetDllEntry(MEMBERID member, INVOKEKIND kind, BSTR* library, BSTR* name,
                                         WORD* ordinal) = 0;
  virtual HRESULT ORVIX_CALL GetRefTypeInfo(HREFTYPE reference, ITypeInfo** info) = 0;
  virtual HRESULT ORVIX_CALL AddressOfMember(MEMBERID member, INVOKEKIND kind, void** address) = 0;
  virtual HRESULT ORVIX_CALL CreateInstance(IUnknown* outer, REFIID riid, void** object) = 0;
  virtual HRESULT ORVIX_CALL GetMops(MEMBERID member, BSTR* mops) = 0;
  virtual HRESULT ORVIX_CALL GetContainingTypeLib(ITypeLib** library, UINT* index) = 0;
  virtual void ORVIX_CALL ReleaseTypeAttr(TYPEATTR* attributes) = 0;
  virtual void ORVIX_CALL ReleaseFuncDesc(FUNCDESC* description) = 0;
  virtual void ORVIX_CALL ReleaseVarDesc(VARDESC* description) = 0;
};

struct ITypeLib : IUnknown {
  virtual UINT ORVIX_CALL GetTypeInfoCount() = 0;
  virtual HRESULT ORVIX_CALL GetTypeInfo(UINT index, ITypeInfo** info) = 0;
  virtual HRESULT ORVIX_CALL GetTypeInfoType(UINT index, TYPEKIND* kind) = 0;
  virtual HRESULT ORVIX_CALL GetTypeInfoOfGuid(REFGUID guid, ITypeInfo** info) = 0;
  virtual HRESULT ORVIX_CALL GetLibAttr(TLIBATTR** attributes) = 0;
  virtual HRESULT ORVIX_CALL GetTypeComp(ITypeComp** comp) = 0;
  virtual HRESULT ORVIX_CALL GetDocumentation(INT index, BSTR* name, BSTR* help, DWORD* context, BSTR* helpFile) = 0;
  virtual HRESULT ORVIX_CALL IsName(OLECHAR* name, ULONG hash, BOOL* found) = 0;
  virtual HRESULT ORVIX_CALL FindName(OLECHAR* name, ULONG hash, ITypeInfo** infos, MEMBERID* members,
                                      USHORT* found) = 0;
  virtual void ORVIX_CALL ReleaseTLibAttr(TLIBATTR* attributes) = 0;
};

struct ITypeComp : IUnknown {
  virtual HRESULT ORVIX_CALL Bind(OLECHAR* name, ULONG hash, WORD flags, ITypeInfo** info, DESCKIND* kind,
                                  BINDPTR* binding) = 0;
  virtual HRESULT ORVIX_CALL BindType(OLECHAR* name, ULONG hash, ITypeInfo** info, ITypeComp** comp) = 0;
};

struct IEnumVARIANT : IUnknown {
  virtual HRESULT ORVIX_CALL Next(ULONG count, VARIANT* values, ULONG* fetched) = 0;
  virtual HRESULT ORVIX_CALL Skip(ULONG count) = 0;
  virtual HRESULT ORVIX_CALL Reset() = 0;
  virtual HRESULT ORVIX_CALL Clone(IEnumVARIANT** copy) = 0;
};

struct IErrorInfo : IUnknown {
  virtual HRESULT ORVIX_CALL GetGUID(GUID* guid) = 0;
  virtual HRESULT ORVIX_CALL GetSource(BSTR* source) = 0;
  virtual HRESULT ORVIX_CALL GetDescription(BSTR* description) = 0;
  virtual HRESULT ORVIX_CALL GetHelpFile(BSTR* file) = 0;
  virtual HRESULT ORVIX_CALL GetHelpContext(DWORD* context) = 0;
};

struct ICreateErrorInfo : IUnknown {
  virtual HRESULT ORVIX_CALL SetGUID(REFGUID guid) = 0;
  virtual HRESULT ORVIX_CALL SetSource(OLECHAR* source) = 0;
  virtual HRESULT ORVIX_CALL SetDescription(OLECHAR* description) = 0;
  virtual HRESULT ORVIX_CALL SetHelpFile(OLECHAR* file) = 0;
  virtual HRESULT ORVIX_CALL SetHelpContext(DWORD context) = 0;
};

struct ISupportErrorInfo : IUnknown {
  virtual HRESULT ORVIX_CALL InterfaceSupportsErrorInfo(REFIID riid) = 0;
};

struct IRecordInfo : IUnknown {
  virtual HRESULT ORVIX_CALL RecordInit(void* record) = 0;
  virtual HRESULT ORVIX_CALL RecordClear(void* record) = 0;
  virtual HRESULT ORVIX_CALL RecordCopy(void* from, void* to) = 0;
  virtual HRESULT ORVIX_CALL GetGuid(GUID* guid) = 0;
  virtual HRESULT ORVIX_CALL GetName(BSTR* name) = 0;
  virtual HRESULT ORVIX_CALL GetSize(ULONG* size) = 0;
  virtual HRESULT ORVIX_CALL GetTypeInfo(ITypeInfo** info) = 0;
  virtual HRESULT ORVIX_CALL GetField(void* record, const OLECHAR* name, VARIANT* value) = 0;
  virtual HRESULT ORVIX_CALL GetFieldNoCopy(void* record, const OLECHAR* name, VARIANT* value, void** data) = 0;
  virtual HRESULT ORVIX_CALL PutField(ULONG flags, void* record, const OLECHAR* name, VARIANT* value) = 0;
  virtual HRESULT ORVIX_CALL PutFieldNoCopy(ULONG flags, void* record, const OLECHAR* name, VARIANT* value) = 0;
  virtual HRESULT ORVIX_CALL GetFieldNames(ULONG* count, BSTR* names) = 0;
  virtual BOOL ORVIX_CALL IsMatchingType(IRecordInfo* other) = 0;
  virtual void* ORVIX_CALL RecordCreate() = 0;
  virtual HRESULT ORVIX_CALL RecordCreateCopy(void* source, void** copy) = 0;
  virtual HRESULT ORVIX_CALL RecordDestroy(void* record) = 0;
};

#if defined(__GNUC__)
#pragma GCC diagnostic pop
#endif

#endif
