// The Automation types, interfaces and functions, under the platform's names
// and in the platform's layouts. Everything an application needs to call a dual
// interface or IDispatch; the functions are exported by liborvixrt.so.
#ifndef ORVIX_AUTOMATION_H
#define ORVIX_AUTOMATION_H

#ifndef __cplusplus
#include "orvix/c/automation.h"
#else

#include "orvix/automation/interfaces.h"

// ---------------------------------------------------------------------------
// Texts (BSTR). A null text has length 0; freeing null is harmless.

ORVIX_API BSTR ORVIX_CALL SysAllocString(const OLECHAR* text);
ORVIX_API BSTR ORVIX_CALL SysAllocStringLen(const OLECHAR* text, UINT units);
ORVIX_API BSTR ORVIX_CALL SysAllocStringByteLen(const char* bytes, UINT count);
ORVIX_API INT ORVIX_CALL SysReAllocString(BSTR* text, const OLECHAR* from);
ORVIX_API INT ORVIX_CALL SysReAllocStringLen(BSTR* text, const OLECHAR* from, UINT units);
ORVIX_API void ORVIX_CALL SysFreeString(BSTR text);
ORVIX_API UINT ORVIX_CALL SysStringLen(BSTR text);
ORVIX_API UINT ORVIX_CALL SysStringByteLen(BSTR text);

// Values

ORVIX_API void ORVIX_CALL VariantInit(VARIANTARG* value);
ORVIX_API HRESULT ORVIX_CALL VariantClear(VARIANTARG* value);
ORVIX_API HRESULT ORVIX_CALL VariantCopy(VARIANTARG* to, const VARIANTARG* from);
ORVIX_API HRESULT ORVIX_CALL VariantCopyInd(VARIANT* to, const VARIANTARG* from);
ORVIX_API HRESULT ORVIX_CALL VariantChangeType(VARIANTARG* to, const VARIANTARG* from, USHORT flags, VARTYPE type);
ORVIX_API HRESULT ORVIX_CALL VariantChangeTypeEx(VARIANTARG* to, const VARIANTARG* from, LCID lcid, USHORT flags,
                                                 VARTYPE type);
ORVIX_API HRESULT ORVIX_CALL VarCmp(VARIANT* left, VARIANT* right, LCID lcid, ULONG flags);

// Arrays. Dimensions count from 1; an index array is in natural order.

ORVIX_API SAFEARRAY* ORVIX_CALL SafeArrayCreate(VARTYPE type, UINT dimensions, SAFEARRAYBOUND* bounds);
ORVIX_API SAFEARRAY* ORVIX_CALL SafeArrayCreateEx(VARTYPE type, UINT dimensions, SAFEARRAYBOUND* bounds, void* extra);
ORVIX_API SAFEARRAY* ORVIX_CALL SafeArrayCreateVector(VARTYPE type, LONG lowerBound, ULONG elements);
ORVIX_API HRESULT ORVIX_CALL SafeArrayDestroy(SAFEARRAY* array);
ORVIX_API HRESULT ORVIX_CALL SafeArrayCopy(SAFEARRAY* array, SAFEARRAY** copy);
ORVIX_API HRESULT ORVIX_CALL SafeArrayRedim(SAFEARRAY* array, SAFEARRAYBOUND* last);
ORVIX_API UINT ORVIX_CALL SafeArrayGetDim(SAFEARRAY* array);
ORVIX_API UINT ORVIX_CALL SafeArrayGetElemsize(SAFEARRAY* array);
ORVIX_API HRESULT ORVIX_CALL SafeArrayGetLBound(SAFEARRAY* array, UINT dimension, LONG* bound);
ORVIX_API HRESULT ORVIX_CALL SafeArrayGetUBound(SAFEARRAY* array, UINT dimension, LONG* bound);
ORVIX_API HRESULT ORVIX_CALL SafeArrayGetVartype(SAFEARRAY* array, VARTYPE* type);
ORVIX_API HRESULT ORVIX_CALL SafeArrayGetRecordInfo(SAFEARRAY* array, IRecordInfo** info);
ORVIX_API HRESULT ORVIX_CALL SafeArrayAccessData(SAFEARRAY* array, void** data);
ORVIX_API HRESULT ORVIX_CALL SafeArrayUnaccessData(SAFEARRAY* array);
ORVIX_API HRESULT ORVIX_CALL SafeArrayGetElement(SAFEARRAY* array, LONG* indices, void* value);
ORVIX_API HRESULT ORVIX_CALL SafeArrayPutElement(SAFEARRAY* array, LONG* indices, void* value);
ORVIX_API HRESULT ORVIX_CALL SafeArrayPtrOfIndex(SAFEARRAY* array, LONG* indices, void** element);
ORVIX_API HRESULT ORVIX_CALL SafeArrayLock(SAFEARRAY* array);
ORVIX_API HRESULT ORVIX_CALL SafeArrayUnlock(SAFEARRAY* array);

// Error info: one slot per thread; GetErrorInfo empties it (S_FALSE when empty).

ORVIX_API HRESULT ORVIX_CALL CreateErrorInfo(ICreateErrorInfo** info);
ORVIX_API HRESULT ORVIX_CALL SetErrorInfo(ULONG reserved, IErrorInfo* info);
ORVIX_API HRESULT ORVIX_CALL GetErrorInfo(ULONG reserved, IErrorInfo** info);

// Classes and identifiers

enum CLSCTX : DWORD { CLSCTX_INPROC_SERVER = 1, CLSCTX_LOCAL_SERVER = 4, CLSCTX_ALL = 23 };
enum REGCLS : DWORD { REGCLS_SINGLEUSE = 0, REGCLS_MULTIPLEUSE = 1 };

ORVIX_API HRESULT ORVIX_CALL CoInitialize(void* reserved);
ORVIX_API void ORVIX_CALL CoUninitialize();
ORVIX_API HRESULT ORVIX_CALL CoCreateInstance(REFCLSID clsid, IUnknown* outer, DWORD context, REFIID riid,
                                              void** object);
ORVIX_API HRESULT ORVIX_CALL CoGetClassObject(REFCLSID clsid, DWORD context, void* server, REFIID riid, void** object);
ORVIX_API HRESULT ORVIX_CALL CoRegisterClassObject(REFCLSID clsid, IUnknown* factory, DWORD context, DWORD flags,
                                                   DWORD* cookie);
ORVIX_API HRESULT ORVIX_CALL CoRevokeClassObject(DWORD cookie);
ORVIX_API HRESULT ORVIX_CALL CLSIDFromProgID(const OLECHAR* name, CLSID* clsid);
ORVIX_API HRESULT ORVIX_CALL ProgIDFromCLSID(REFCLSID clsid, OLECHAR** name);
ORVIX_API HRESULT ORVIX_CALL CLSIDFromString(const OLECHAR* text, CLSID* clsid);
ORVIX_API INT ORVIX_CALL StringFromGUID2(REFGUID guid, OLECHAR* text, INT capacity);
ORVIX_API HRESULT ORVIX_CALL CoCreateGuid(GUID* guid);
ORVIX_API void* ORVIX_CALL CoTaskMemAlloc(std::size_t bytes);
ORVIX_API void ORVIX_CALL CoTaskMemFree(void* block);

// Type libraries: LoadTypeLib takes the path of a component library.

ORVIX_API HRESULT ORVIX_CALL LoadTypeLib(const OLECHAR* file, ITypeLib** library);
ORVIX_API HRESULT ORVIX_CALL LoadRegTypeLib(REFGUID libid, WORD major, WORD minor, LCID lcid, ITypeLib** library);

#endif  // __cplusplus

#endif
