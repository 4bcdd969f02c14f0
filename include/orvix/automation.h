// The Automation types, interfaces and functions, under the platform's names
// and in the platform's layouts. Everything an application needs to call a dual
// interface or IDispatch; the functions are exported by liborvixrt.so.
#ifndef ORVIX_AUTOMATION_H
#define ORVIX_AUTOMATION_H

#include <cstddef>
#include <cstdint>

// Calling convention of every interface member and platform function, and the
// mark of a function that a library exports.
#if defined(_WIN32)
#define ORVIX_CALL __stdcall
#define ORVIX_API extern "C" __declspec(dllimport)
#else
#define ORVIX_CALL
#define ORVIX_API extern "C" __attribute__((visibility("default")))
#endif

// ---------------------------------------------------------------------------
// Plain types

using BYTE = std::uint8_t;
using CHAR = std::int8_t;
using SHORT = std::int16_t;
using USHORT = std::uint16_t;
using WORD = std::uint16_t;
using LONG = std::int32_t;
using ULONG = std::uint32_t;
using DWORD = std::uint32_t;
using UINT = std::uint32_t;
using INT = std::int32_t;
using BOOL = std::int32_t;
using LONGLONG = std::int64_t;
using ULONGLONG = std::uint64_t;
using HRESULT = std::int32_t;
using SCODE = std::int32_t;
using LCID = std::uint32_t;
using DISPID = std::int32_t;
using MEMBERID = DISPID;
using HREFTYPE = std::uint32_t;
using VARTYPE = std::uint16_t;
using VARIANT_BOOL = std::int16_t;
using DATE = double;
using OLECHAR = char16_t;
// Points at the first code unit; 4 bytes of byte length stand before it and a
// NUL unit after the text. Null is the empty text.
using BSTR = OLECHAR*;

inline constexpr VARIANT_BOOL VARIANT_TRUE = -1;
inline constexpr VARIANT_BOOL VARIANT_FALSE = 0;

struct GUID {
  std::uint32_t Data1;
  std::uint16_t Data2;
  std::uint16_t Data3;
  std::uint8_t Data4[8];
  friend constexpr bool operator==(const GUID&, const GUID&) = default;
};
using IID = GUID;
using CLSID = GUID;
using REFIID = const IID&;
using REFCLSID = const CLSID&;
using REFGUID = const GUID&;

namespace Orvix {

// A GUID from its text form without braces, checked at compile time:
// "BD495FF1-92A6-4A31-A1A1-A38A28B57C24"_guid.
inline namespace literals {
consteval GUID operator""_guid(const char* text, std::size_t length) {
  if (length != 36) throw "a GUID has 36 characters";
  std::uint8_t bytes[16] = {};
  std::size_t digits = 0;
  for (std::size_t i = 0; i < length; ++i) {
    const char c = text[i];
    if (i == 8 || i == 13 || i == 18 || i == 23) {
      if (c != '-') throw "a hyphen is missing";
      continue;
    }
    int digit = 0;
    if (c >= '0' && c <= '9') {
      digit = c - '0';
    } else if (c >= 'A' && c <= 'F') {
      digit = c - 'A' + 10;
    } else if (c >= 'a' && c <= 'f') {
      digit = c - 'a' + 10;
    } else {
      throw "not a hexadecimal digit";
    }
    bytes[digits / 2] = static_cast<std::uint8_t>(bytes[digits / 2] * 16 + digit);
    ++digits;
  }
  GUID guid{};
  guid.Data1 = static_cast<std::uint32_t>(bytes[0]) << 24 | static_cast<std::uint32_t>(bytes[1]) << 16 |
               static_cast<std::uint32_t>(bytes[2]) << 8 | bytes[3];
  guid.Data2 = static_cast<std::uint16_t>(bytes[4] << 8 | bytes[5]);
  guid.Data3 = static_cast<std::uint16_t>(bytes[6] << 8 | bytes[7]);
  for (int i = 0; i < 8; ++i) guid.Data4[i] = bytes[8 + i];
  return guid;
}
}  // namespace literals

}  // namespace Orvix

// ---------------------------------------------------------------------------
// Result codes

constexpr HRESULT MakeResult(std::uint32_t code) { return static_cast<HRESULT>(code); }
constexpr bool SUCCEEDED(HRESULT result) { return result >= 0; }
constexpr bool FAILED(HRESULT result) { return result < 0; }

inline constexpr HRESULT S_OK = 0;
inline constexpr HRESULT S_FALSE = 1;
inline constexpr HRESULT E_NOTIMPL = MakeResult(0x80004001);
inline constexpr HRESULT E_NOINTERFACE = MakeResult(0x80004002);
inline constexpr HRESULT E_POINTER = MakeResult(0x80004003);
inline constexpr HRESULT E_FAIL = MakeResult(0x80004005);
inline constexpr HRESULT E_UNEXPECTED = MakeResult(0x8000FFFF);
inline constexpr HRESULT E_ACCESSDENIED = MakeResult(0x80070005);
inline constexpr HRESULT E_OUTOFMEMORY = MakeResult(0x8007000E);
inline constexpr HRESULT E_INVALIDARG = MakeResult(0x80070057);
inline constexpr HRESULT DISP_E_UNKNOWNINTERFACE = MakeResult(0x80020001);
inline constexpr HRESULT DISP_E_MEMBERNOTFOUND = MakeResult(0x80020003);
inline constexpr HRESULT DISP_E_PARAMNOTFOUND = MakeResult(0x80020004);
inline constexpr HRESULT DISP_E_TYPEMISMATCH = MakeResult(0x80020005);
inline constexpr HRESULT DISP_E_UNKNOWNNAME = MakeResult(0x80020006);
inline constexpr HRESULT DISP_E_NONAMEDARGS = MakeResult(0x80020007);
inline constexpr HRESULT DISP_E_BADVARTYPE = MakeResult(0x80020008);
inline constexpr HRESULT DISP_E_EXCEPTION = MakeResult(0x80020009);
inline constexpr HRESULT DISP_E_OVERFLOW = MakeResult(0x8002000A);
inline constexpr HRESULT DISP_E_BADINDEX = MakeResult(0x8002000B);
inline constexpr HRESULT DISP_E_UNKNOWNLCID = MakeResult(0x8002000C);
inline constexpr HRESULT DISP_E_ARRAYISLOCKED = MakeResult(0x8002000D);
inline constexpr HRESULT DISP_E_BADPARAMCOUNT = MakeResult(0x8002000E);
inline constexpr HRESULT DISP_E_PARAMNOTOPTIONAL = MakeResult(0x8002000F);
inline constexpr HRESULT DISP_E_NOTACOLLECTION = MakeResult(0x80020011);
inline constexpr HRESULT DISP_E_DIVBYZERO = MakeResult(0x80020012);
inline constexpr HRESULT TYPE_E_TYPEMISMATCH = MakeResult(0x80028CA0);
inline constexpr HRESULT TYPE_E_OUTOFBOUNDS = MakeResult(0x80028CA1);
inline constexpr HRESULT TYPE_E_ELEMENTNOTFOUND = MakeResult(0x8002802B);
inline constexpr HRESULT TYPE_E_LIBNOTREGISTERED = MakeResult(0x8002801D);
inline constexpr HRESULT TYPE_E_CANTLOADLIBRARY = MakeResult(0x80029C4A);
inline constexpr HRESULT CLASS_E_NOAGGREGATION = MakeResult(0x80040110);
inline constexpr HRESULT CLASS_E_CLASSNOTAVAILABLE = MakeResult(0x80040111);
inline constexpr HRESULT REGDB_E_CLASSNOTREG = MakeResult(0x80040154);
inline constexpr HRESULT CO_E_CLASSSTRING = MakeResult(0x800401F3);
inline constexpr HRESULT CO_E_NOTINITIALIZED = MakeResult(0x800401F0);
inline constexpr HRESULT SELFREG_E_CLASS = MakeResult(0x80040201);

// ---------------------------------------------------------------------------
// VARIANT and SAFEARRAY

enum VARENUM : VARTYPE {
  VT_EMPTY = 0,
  VT_NULL = 1,
  VT_I2 = 2,
  VT_I4 = 3,
  VT_R4 = 4,
  VT_R8 = 5,
  VT_CY = 6,
  VT_DATE = 7,
  VT_BSTR = 8,
  VT_DISPATCH = 9,
  VT_ERROR = 10,
  VT_BOOL = 11,
  VT_VARIANT = 12,
  VT_UNKNOWN = 13,
  VT_DECIMAL = 14,
  VT_I1 = 16,
  VT_UI1 = 17,
  VT_UI2 = 18,
  VT_UI4 = 19,
  VT_I8 = 20,
  VT_UI8 = 21,
  VT_INT = 22,
  VT_UINT = 23,
  VT_VOID = 24,
  VT_HRESULT = 25,
  VT_PTR = 26,
  VT_SAFEARRAY = 27,
  VT_CARRAY = 28,
  VT_USERDEFINED = 29,
  VT_LPSTR = 30,
  VT_LPWSTR = 31,
  VT_RECORD = 36,
  VT_CLSID = 72,
  VT_VECTOR = 0x1000,
  VT_ARRAY = 0x2000,
  VT_BYREF = 0x4000,
  VT_RESERVED = 0x8000,
  VT_TYPEMASK = 0x0FFF,
};

// A fixed-point number in units of 1/10000.
union CY {
  std::int64_t int64;
};

// Value = (-1)^(sign / 0x80) * (Hi32 * 2^64 + Lo64) / 10^scale.
struct DECIMAL {
  std::uint16_t wReserved;
  std::uint8_t scale;  // 0 to 28
  std::uint8_t sign;   // 0 or 0x80
  std::uint32_t Hi32;
  std::uint64_t Lo64;
};

struct SAFEARRAYBOUND {
  std::uint32_t cElements;
  std::int32_t lLbound;
};

// rgsabound holds cDims bounds, last dimension first.
struct SAFEARRAY {
  std::uint16_t cDims;
  std::uint16_t fFeatures;
  std::uint32_t cbElements;
  std::uint32_t cLocks;
  void* pvData;
  SAFEARRAYBOUND rgsabound[1];
};

inline constexpr USHORT FADF_AUTO = 0x1;
inline constexpr USHORT FADF_STATIC = 0x2;
inline constexpr USHORT FADF_EMBEDDED = 0x4;
inline constexpr USHORT FADF_FIXEDSIZE = 0x10;
inline constexpr USHORT FADF_RECORD = 0x20;
inline constexpr USHORT FADF_HAVEIID = 0x40;
inline constexpr USHORT FADF_HAVEVARTYPE = 0x80;
inline constexpr USHORT FADF_BSTR = 0x100;
inline constexpr USHORT FADF_UNKNOWN = 0x200;
inline constexpr USHORT FADF_DISPATCH = 0x400;
inline constexpr USHORT FADF_VARIANT = 0x800;
inline constexpr USHORT FADF_CREATEVECTOR = 0x2000;

struct IUnknown;
struct IDispatch;
struct IRecordInfo;
struct ITypeInfo;
struct ITypeLib;
struct ITypeComp;
struct IErrorInfo;

#if defined(__GNUC__)
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wpedantic"  // the platform's own layout has unnamed members
#endif
struct VARIANT {
  // A DECIMAL overlays the whole VARIANT, its reserved word being vt: store the
  // number first, vt last.
  union {
    struct {
      VARTYPE vt;
      WORD wReserved1;
      WORD wReserved2;
      WORD wReserved3;
      union {
        std::int64_t llVal;
        std::int32_t lVal;
        std::uint8_t bVal;
        std::int16_t iVal;
        float fltVal;
        double dblVal;
        VARIANT_BOOL boolVal;
        SCODE scode;
        CY cyVal;
        DATE date;
        BSTR bstrVal;
        IUnknown* punkVal;
        IDispatch* pdispVal;
        SAFEARRAY* parray;
        std::uint8_t* pbVal;
        std::int16_t* piVal;
        std::int32_t* plVal;
        std::int64_t* pllVal;
        float* pfltVal;
        double* pdblVal;
        VARIANT_BOOL* pboolVal;
        SCODE* pscode;
        CY* pcyVal;
        DATE* pdate;
        BSTR* pbstrVal;
        IUnknown** ppunkVal;
        IDispatch** ppdispVal;
        SAFEARRAY** pparray;
        VARIANT* pvarVal;
        void* byref;
        std::int8_t cVal;
        std::uint16_t uiVal;
        std::uint32_t ulVal;
        std::uint64_t ullVal;
        std::int32_t intVal;
        std::uint32_t uintVal;
        DECIMAL* pdecVal;
        std::int8_t* pcVal;
        std::uint16_t* puiVal;
        std::uint32_t* pulVal;
        std::uint64_t* pullVal;
        std::int32_t* pintVal;
        std::uint32_t* puintVal;
        struct {
          void* pvRecord;
          IRecordInfo* pRecInfo;
        };
      };
    };
    DECIMAL decVal;
  };
};
#if defined(__GNUC__)
#pragma GCC diagnostic pop
#endif
using VARIANTARG = VARIANT;

inline constexpr USHORT VARIANT_NOVALUEPROP = 1;
inline constexpr USHORT VARIANT_ALPHABOOL = 2;
inline constexpr USHORT VARIANT_NOUSEROVERRIDE = 4;
inline constexpr USHORT VARIANT_LOCALBOOL = 0x10;

inline constexpr HRESULT VARCMP_LT = 0;
inline constexpr HRESULT VARCMP_EQ = 1;
inline constexpr HRESULT VARCMP_GT = 2;
inline constexpr HRESULT VARCMP_NULL = 3;

// ---------------------------------------------------------------------------
// Dispatch

// rgvarg holds the arguments last first; the first cNamedArgs of them are the
// named ones.
struct DISPPARAMS {
  VARIANTARG* rgvarg;
  DISPID* rgdispidNamedArgs;
  UINT cArgs;
  UINT cNamedArgs;
};

struct EXCEPINFO {
  WORD wCode;
  WORD wReserved;
  BSTR bstrSource;
  BSTR bstrDescription;
  BSTR bstrHelpFile;
  DWORD dwHelpContext;
  void* pvReserved;
  HRESULT(ORVIX_CALL* pfnDeferredFillIn)(EXCEPINFO*);
  SCODE scode;
};

inline constexpr WORD DISPATCH_METHOD = 1;
inline constexpr WORD DISPATCH_PROPERTYGET = 2;
inline constexpr WORD DISPATCH_PROPERTYPUT = 4;
inline constexpr WORD DISPATCH_PROPERTYPUTREF = 8;
inline constexpr DISPID DISPID_VALUE = 0;
inline constexpr DISPID DISPID_UNKNOWN = -1;
inline constexpr DISPID DISPID_PROPERTYPUT = -3;
inline constexpr DISPID DISPID_NEWENUM = -4;
inline constexpr MEMBERID MEMBERID_NIL = -1;
inline constexpr LCID LOCALE_INVARIANT = 0x7F;

// ---------------------------------------------------------------------------
// Type description

enum TYPEKIND : INT {
  TKIND_ENUM = 0,
  TKIND_RECORD = 1,
  TKIND_MODULE = 2,
  TKIND_INTERFACE = 3,
  TKIND_DISPATCH = 4,
  TKIND_COCLASS = 5,
  TKIND_ALIAS = 6,
  TKIND_UNION = 7,
};
enum FUNCKIND : INT { FUNC_VIRTUAL = 0, FUNC_PUREVIRTUAL = 1, FUNC_NONVIRTUAL = 2, FUNC_STATIC = 3, FUNC_DISPATCH = 4 };
enum INVOKEKIND : INT { INVOKE_FUNC = 1, INVOKE_PROPERTYGET = 2, INVOKE_PROPERTYPUT = 4, INVOKE_PROPERTYPUTREF = 8 };
enum CALLCONV : INT { CC_FASTCALL = 0, CC_CDECL = 1, CC_STDCALL = 4 };
enum VARKIND : INT { VAR_PERINSTANCE = 0, VAR_STATIC = 1, VAR_CONST = 2, VAR_DISPATCH = 3 };
enum SYSKIND : INT { SYS_WIN16 = 0, SYS_WIN32 = 1, SYS_MAC = 2, SYS_WIN64 = 3 };
enum DESCKIND : INT {
  DESCKIND_NONE = 0,
  DESCKIND_FUNCDESC = 1,
  DESCKIND_VARDESC = 2,
  DESCKIND_TYPECOMP = 3,
  DESCKIND_IMPLICITAPPOBJ = 4,
};

inline constexpr USHORT PARAMFLAG_NONE = 0;
inline constexpr USHORT PARAMFLAG_FIN = 1;
inline constexpr USHORT PARAMFLAG_FOUT = 2;
inline constexpr USHORT PARAMFLAG_FLCID = 4;
inline constexpr USHORT PARAMFLAG_FRETVAL = 8;
inline constexpr USHORT PARAMFLAG_FOPT = 0x10;
inline constexpr USHORT PARAMFLAG_FHASDEFAULT = 0x20;

inline constexpr USHORT TYPEFLAG_FAPPOBJECT = 1;
inline constexpr USHORT TYPEFLAG_FCANCREATE = 2;
inline constexpr USHORT TYPEFLAG_FPREDECLID = 8;
inline constexpr USHORT TYPEFLAG_FHIDDEN = 0x10;
inline constexpr USHORT TYPEFLAG_FDUAL = 0x40;
inline constexpr USHORT TYPEFLAG_FNONEXTENSIBLE = 0x80;
inline constexpr USHORT TYPEFLAG_FOLEAUTOMATION = 0x100;
inline constexpr USHORT TYPEFLAG_FDISPATCHABLE = 0x1000;

inline constexpr USHORT FUNCFLAG_FUIDEFAULT = 0x20;
inline constexpr USHORT FUNCFLAG_FHIDDEN = 0x40;

inline constexpr INT IMPLTYPEFLAG_FDEFAULT = 1;
inline constexpr USHORT LIBFLAG_NONE = 0;

struct ARRAYDESC;
struct TYPEDESC {
  union {
    TYPEDESC* lptdesc;
    ARRAYDESC* lpadesc;
    HREFTYPE hreftype;
  };
  VARTYPE vt;
};
struct ARRAYDESC {
  TYPEDESC tdescElem;
  USHORT cDims;
  SAFEARRAYBOUND rgbounds[1];
};
struct PARAMDESCEX {
  ULONG cBytes;
  VARIANTARG varDefaultValue;
};
struct PARAMDESC {
  PARAMDESCEX* pparamdescex;
  USHORT wParamFlags;
};
struct IDLDESC {
  void* dwReserved;
  USHORT wIDLFlags;
};
struct ELEMDESC {
  TYPEDESC tdesc;
  union {
    IDLDESC idldesc;
    PARAMDESC paramdesc;
  };
};
struct TYPEATTR {
  GUID guid;
  LCID lcid;
  DWORD dwReserved;
  MEMBERID memidConstructor;
  MEMBERID memidDestructor;
  OLECHAR* lpstrSchema;
  ULONG cbSizeInstance;
  TYPEKIND typekind;
  WORD cFuncs;
  WORD cVars;
  WORD cImplTypes;
  WORD cbSizeVft;
  WORD cbAlignment;
  WORD wTypeFlags;
  WORD wMajorVerNum;
  WORD wMinorVerNum;
  TYPEDESC tdescAlias;
  IDLDESC idldescType;
};
struct FUNCDESC {
  MEMBERID memid;
  SCODE* lprgscode;
  ELEMDESC* lprgelemdescParam;
  FUNCKIND funckind;
  INVOKEKIND invkind;
  CALLCONV callconv;
  SHORT cParams;
  SHORT cParamsOpt;
  SHORT oVft;
  SHORT cScodes;
  ELEMDESC elemdescFunc;
  WORD wFuncFlags;
};
struct VARDESC {
  MEMBERID memid;
  OLECHAR* lpstrSchema;
  union {
    ULONG oInst;
    VARIANT* lpvarValue;
  };
  ELEMDESC elemdescVar;
  WORD wVarFlags;
  VARKIND varkind;
};
struct TLIBATTR {
  GUID guid;
  LCID lcid;
  SYSKIND syskind;
  WORD wMajorVerNum;
  WORD wMinorVerNum;
  WORD wLibFlags;
};
union BINDPTR {
  FUNCDESC* lpfuncdesc;
  VARDESC* lpvardesc;
  ITypeComp* lptcomp;
};

static_assert(sizeof(GUID) == 16 && sizeof(CY) == 8 && sizeof(DECIMAL) == 16 && sizeof(SAFEARRAYBOUND) == 8);
static_assert(offsetof(VARIANT, llVal) == 8 && offsetof(DECIMAL, Lo64) == 8);
#if UINTPTR_MAX > 0xFFFFFFFF
static_assert(sizeof(VARIANT) == 24 && offsetof(VARIANT, pRecInfo) == 16);
static_assert(sizeof(SAFEARRAY) == 32 && offsetof(SAFEARRAY, pvData) == 16 && offsetof(SAFEARRAY, rgsabound) == 24);
static_assert(sizeof(DISPPARAMS) == 24 && offsetof(DISPPARAMS, cArgs) == 16);
static_assert(sizeof(EXCEPINFO) == 64 && offsetof(EXCEPINFO, bstrSource) == 8 && offsetof(EXCEPINFO, scode) == 56);
static_assert(sizeof(TYPEDESC) == 16 && sizeof(PARAMDESC) == 16 && sizeof(ELEMDESC) == 32);
static_assert(sizeof(PARAMDESCEX) == 32 && offsetof(PARAMDESCEX, varDefaultValue) == 8);
static_assert(sizeof(TYPEATTR) == 96 && offsetof(TYPEATTR, typekind) == 44 && offsetof(TYPEATTR, tdescAlias) == 64);
static_assert(sizeof(FUNCDESC) == 88 && offsetof(FUNCDESC, oVft) == 40 && offsetof(FUNCDESC, wFuncFlags) == 80);
static_assert(sizeof(VARDESC) == 64 && offsetof(VARDESC, varkind) == 60);
static_assert(sizeof(TLIBATTR) == 32 && offsetof(TLIBATTR, wLibFlags) == 28);
#endif

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

#endif
