// Plain types, result codes, VARIANT and SAFEARRAY, and the arguments of a call
// by name, in the platform's layouts.
#ifndef ORVIX_AUTOMATION_TYPES_H
#define ORVIX_AUTOMATION_TYPES_H

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

#endif
