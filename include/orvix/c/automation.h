/* clang-format off */
/* Made by c_headers.py from orvix/automation/types.h, orvix/automation/type_description.h, orvix/automation/interfaces.h, orvix/automation.h. */
#ifndef ORVIX_C_AUTOMATION_H
#define ORVIX_C_AUTOMATION_H

#include <stddef.h>
#include <stdint.h>
#include <uchar.h>

#define ORVIX_CALL
#define ORVIX_API extern __attribute__((visibility("default")))
#define SUCCEEDED(result) ((HRESULT)(result) >= 0)
#define FAILED(result) ((HRESULT)(result) < 0)

// Plain types, result codes, VARIANT and SAFEARRAY, and the arguments of a call
/* by name, in the platform's layouts. */

/* Calling convention of every interface member and platform function, and the */
/* mark of a function that a library exports. */

/* Plain types */

typedef uint8_t BYTE;
typedef int8_t CHAR;
typedef int16_t SHORT;
typedef uint16_t USHORT;
typedef uint16_t WORD;
typedef int32_t LONG;
typedef uint32_t ULONG;
typedef uint32_t DWORD;
typedef uint32_t UINT;
typedef int32_t INT;
typedef int32_t BOOL;
typedef int64_t LONGLONG;
typedef uint64_t ULONGLONG;
typedef int32_t HRESULT;
typedef int32_t SCODE;
typedef uint32_t LCID;
typedef int32_t DISPID;
typedef DISPID MEMBERID;
typedef uint32_t HREFTYPE;
typedef uint16_t VARTYPE;
typedef int16_t VARIANT_BOOL;
typedef double DATE;
typedef char16_t OLECHAR;
/* Points at the first code unit; 4 bytes of byte length stand before it and a */
/* NUL unit after the text. Null is the empty text. */
typedef OLECHAR* BSTR;

#define VARIANT_TRUE ((VARIANT_BOOL)(-1))
#define VARIANT_FALSE ((VARIANT_BOOL)(0))

typedef struct GUID GUID;
struct GUID {
  uint32_t Data1;
  uint16_t Data2;
  uint16_t Data3;
  uint8_t Data4[8];
};
typedef GUID IID;
typedef GUID CLSID;
typedef const IID* REFIID;
typedef const CLSID* REFCLSID;
typedef const GUID* REFGUID;

/* Result codes */

#define S_OK ((HRESULT)(0))
#define S_FALSE ((HRESULT)(1))
#define E_NOTIMPL ((HRESULT)(0x80004001))
#define E_NOINTERFACE ((HRESULT)(0x80004002))
#define E_POINTER ((HRESULT)(0x80004003))
#define E_FAIL ((HRESULT)(0x80004005))
#define E_UNEXPECTED ((HRESULT)(0x8000FFFF))
#define E_ACCESSDENIED ((HRESULT)(0x80070005))
#define E_OUTOFMEMORY ((HRESULT)(0x8007000E))
#define E_INVALIDARG ((HRESULT)(0x80070057))
#define DISP_E_UNKNOWNINTERFACE ((HRESULT)(0x80020001))
#define DISP_E_MEMBERNOTFOUND ((HRESULT)(0x80020003))
#define DISP_E_PARAMNOTFOUND ((HRESULT)(0x80020004))
#define DISP_E_TYPEMISMATCH ((HRESULT)(0x80020005))
#define DISP_E_UNKNOWNNAME ((HRESULT)(0x80020006))
#define DISP_E_NONAMEDARGS ((HRESULT)(0x80020007))
#define DISP_E_BADVARTYPE ((HRESULT)(0x80020008))
#define DISP_E_EXCEPTION ((HRESULT)(0x80020009))
#define DISP_E_OVERFLOW ((HRESULT)(0x8002000A))
#define DISP_E_BADINDEX ((HRESULT)(0x8002000B))
#define DISP_E_UNKNOWNLCID ((HRESULT)(0x8002000C))
#define DISP_E_ARRAYISLOCKED ((HRESULT)(0x8002000D))
#define DISP_E_BADPARAMCOUNT ((HRESULT)(0x8002000E))
#define DISP_E_PARAMNOTOPTIONAL ((HRESULT)(0x8002000F))
#define DISP_E_NOTACOLLECTION ((HRESULT)(0x80020011))
#define DISP_E_DIVBYZERO ((HRESULT)(0x80020012))
#define TYPE_E_TYPEMISMATCH ((HRESULT)(0x80028CA0))
#define TYPE_E_OUTOFBOUNDS ((HRESULT)(0x80028CA1))
#define TYPE_E_ELEMENTNOTFOUND ((HRESULT)(0x8002802B))
#define TYPE_E_LIBNOTREGISTERED ((HRESULT)(0x8002801D))
#define TYPE_E_CANTLOADLIBRARY ((HRESULT)(0x80029C4A))
#define CLASS_E_NOAGGREGATION ((HRESULT)(0x80040110))
#define CLASS_E_CLASSNOTAVAILABLE ((HRESULT)(0x80040111))
#define REGDB_E_CLASSNOTREG ((HRESULT)(0x80040154))
#define CO_E_CLASSSTRING ((HRESULT)(0x800401F3))
#define CO_E_NOTINITIALIZED ((HRESULT)(0x800401F0))
#define SELFREG_E_CLASS ((HRESULT)(0x80040201))

/* VARIANT and SAFEARRAY */

typedef VARTYPE VARENUM;
enum {
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

/* A fixed-point number in units of 1/10000. */
typedef union CY CY;
union CY {
  int64_t int64;
};

/* Value = (-1)^(sign / 0x80) * (Hi32 * 2^64 + Lo64) / 10^scale. */
typedef struct DECIMAL DECIMAL;
struct DECIMAL {
  uint16_t wReserved;
  uint8_t scale;  /* 0 to 28 */
  uint8_t sign;   /* 0 or 0x80 */
  uint32_t Hi32;
  uint64_t Lo64;
};

typedef struct SAFEARRAYBOUND SAFEARRAYBOUND;
struct SAFEARRAYBOUND {
  uint32_t cElements;
  int32_t lLbound;
};

/* rgsabound holds cDims bounds, last dimension first. */
typedef struct SAFEARRAY SAFEARRAY;
struct SAFEARRAY {
  uint16_t cDims;
  uint16_t fFeatures;
  uint32_t cbElements;
  uint32_t cLocks;
  void* pvData;
  SAFEARRAYBOUND rgsabound[1];
};

#define FADF_AUTO ((USHORT)(0x1))
#define FADF_STATIC ((USHORT)(0x2))
#define FADF_EMBEDDED ((USHORT)(0x4))
#define FADF_FIXEDSIZE ((USHORT)(0x10))
#define FADF_RECORD ((USHORT)(0x20))
#define FADF_HAVEIID ((USHORT)(0x40))
#define FADF_HAVEVARTYPE ((USHORT)(0x80))
#define FADF_BSTR ((USHORT)(0x100))
#define FADF_UNKNOWN ((USHORT)(0x200))
#define FADF_DISPATCH ((USHORT)(0x400))
#define FADF_VARIANT ((USHORT)(0x800))
#define FADF_CREATEVECTOR ((USHORT)(0x2000))

typedef struct IUnknown IUnknown;
typedef struct IDispatch IDispatch;
typedef struct IRecordInfo IRecordInfo;
typedef struct ITypeInfo ITypeInfo;
typedef struct ITypeLib ITypeLib;
typedef struct ITypeComp ITypeComp;
typedef struct IErrorInfo IErrorInfo;

typedef struct VARIANT VARIANT;
struct VARIANT {
  /* A DECIMAL overlays the whole VARIANT, its reserved word being vt: store the */
  /* number first, vt last. */
  union {
    struct {
      VARTYPE vt;
      WORD wReserved1;
      WORD wReserved2;
      WORD wReserved3;
      union {
        int64_t llVal;
        int32_t lVal;
        uint8_t bVal;
        int16_t iVal;
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
        uint8_t* pbVal;
        int16_t* piVal;
        int32_t* plVal;
        int64_t* pllVal;
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
        int8_t cVal;
        uint16_t uiVal;
        uint32_t ulVal;
        uint64_t ullVal;
        int32_t intVal;
        uint32_t uintVal;
        DECIMAL* pdecVal;
        int8_t* pcVal;
        uint16_t* puiVal;
        uint32_t* pulVal;
        uint64_t* pullVal;
        int32_t* pintVal;
        uint32_t* puintVal;
        struct {
          void* pvRecord;
          IRecordInfo* pRecInfo;
        };
      };
    };
    DECIMAL decVal;
  };
};
typedef VARIANT VARIANTARG;

#define VARIANT_NOVALUEPROP ((USHORT)(1))
#define VARIANT_ALPHABOOL ((USHORT)(2))
#define VARIANT_NOUSEROVERRIDE ((USHORT)(4))
#define VARIANT_LOCALBOOL ((USHORT)(0x10))

#define VARCMP_LT ((HRESULT)(0))
#define VARCMP_EQ ((HRESULT)(1))
#define VARCMP_GT ((HRESULT)(2))
#define VARCMP_NULL ((HRESULT)(3))

/* Dispatch */

/* rgvarg holds the arguments last first; the first cNamedArgs of them are the */
/* named ones. */
typedef struct DISPPARAMS DISPPARAMS;
struct DISPPARAMS {
  VARIANTARG* rgvarg;
  DISPID* rgdispidNamedArgs;
  UINT cArgs;
  UINT cNamedArgs;
};

typedef struct EXCEPINFO EXCEPINFO;
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

#define DISPATCH_METHOD ((WORD)(1))
#define DISPATCH_PROPERTYGET ((WORD)(2))
#define DISPATCH_PROPERTYPUT ((WORD)(4))
#define DISPATCH_PROPERTYPUTREF ((WORD)(8))
#define DISPID_VALUE ((DISPID)(0))
#define DISPID_UNKNOWN ((DISPID)(-1))
#define DISPID_PROPERTYPUT ((DISPID)(-3))
#define DISPID_NEWENUM ((DISPID)(-4))
#define MEMBERID_NIL ((MEMBERID)(-1))
#define LOCALE_INVARIANT ((LCID)(0x7F))

/* How type information describes types, members and parameters. */

/* Type description */

typedef INT TYPEKIND;
enum {
  TKIND_ENUM = 0,
  TKIND_RECORD = 1,
  TKIND_MODULE = 2,
  TKIND_INTERFACE = 3,
  TKIND_DISPATCH = 4,
  TKIND_COCLASS = 5,
  TKIND_ALIAS = 6,
  TKIND_UNION = 7,
};
typedef INT FUNCKIND;
enum { FUNC_VIRTUAL = 0, FUNC_PUREVIRTUAL = 1, FUNC_NONVIRTUAL = 2, FUNC_STATIC = 3, FUNC_DISPATCH = 4 };
typedef INT INVOKEKIND;
enum { INVOKE_FUNC = 1, INVOKE_PROPERTYGET = 2, INVOKE_PROPERTYPUT = 4, INVOKE_PROPERTYPUTREF = 8 };
typedef INT CALLCONV;
enum { CC_FASTCALL = 0, CC_CDECL = 1, CC_STDCALL = 4 };
typedef INT VARKIND;
enum { VAR_PERINSTANCE = 0, VAR_STATIC = 1, VAR_CONST = 2, VAR_DISPATCH = 3 };
typedef INT SYSKIND;
enum { SYS_WIN16 = 0, SYS_WIN32 = 1, SYS_MAC = 2, SYS_WIN64 = 3 };
typedef INT DESCKIND;
enum {
  DESCKIND_NONE = 0,
  DESCKIND_FUNCDESC = 1,
  DESCKIND_VARDESC = 2,
  DESCKIND_TYPECOMP = 3,
  DESCKIND_IMPLICITAPPOBJ = 4,
};

#define PARAMFLAG_NONE ((USHORT)(0))
#define PARAMFLAG_FIN ((USHORT)(1))
#define PARAMFLAG_FOUT ((USHORT)(2))
#define PARAMFLAG_FLCID ((USHORT)(4))
#define PARAMFLAG_FRETVAL ((USHORT)(8))
#define PARAMFLAG_FOPT ((USHORT)(0x10))
#define PARAMFLAG_FHASDEFAULT ((USHORT)(0x20))

#define TYPEFLAG_FAPPOBJECT ((USHORT)(1))
#define TYPEFLAG_FCANCREATE ((USHORT)(2))
#define TYPEFLAG_FPREDECLID ((USHORT)(8))
#define TYPEFLAG_FHIDDEN ((USHORT)(0x10))
#define TYPEFLAG_FDUAL ((USHORT)(0x40))
#define TYPEFLAG_FNONEXTENSIBLE ((USHORT)(0x80))
#define TYPEFLAG_FOLEAUTOMATION ((USHORT)(0x100))
#define TYPEFLAG_FDISPATCHABLE ((USHORT)(0x1000))

#define FUNCFLAG_FUIDEFAULT ((USHORT)(0x20))
#define FUNCFLAG_FHIDDEN ((USHORT)(0x40))

#define IMPLTYPEFLAG_FDEFAULT ((INT)(1))
#define LIBFLAG_NONE ((USHORT)(0))

typedef struct ARRAYDESC ARRAYDESC;
typedef struct TYPEDESC TYPEDESC;
struct TYPEDESC {
  union {
    TYPEDESC* lptdesc;
    ARRAYDESC* lpadesc;
    HREFTYPE hreftype;
  };
  VARTYPE vt;
};
typedef struct ARRAYDESC ARRAYDESC;
struct ARRAYDESC {
  TYPEDESC tdescElem;
  USHORT cDims;
  SAFEARRAYBOUND rgbounds[1];
};
typedef struct PARAMDESCEX PARAMDESCEX;
struct PARAMDESCEX {
  ULONG cBytes;
  VARIANTARG varDefaultValue;
};
typedef struct PARAMDESC PARAMDESC;
struct PARAMDESC {
  PARAMDESCEX* pparamdescex;
  USHORT wParamFlags;
};
typedef struct IDLDESC IDLDESC;
struct IDLDESC {
  void* dwReserved;
  USHORT wIDLFlags;
};
typedef struct ELEMDESC ELEMDESC;
struct ELEMDESC {
  TYPEDESC tdesc;
  union {
    IDLDESC idldesc;
    PARAMDESC paramdesc;
  };
};
typedef struct TYPEATTR TYPEATTR;
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
typedef struct FUNCDESC FUNCDESC;
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
typedef struct VARDESC VARDESC;
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
typedef struct TLIBATTR TLIBATTR;
struct TLIBATTR {
  GUID guid;
  LCID lcid;
  SYSKIND syskind;
  WORD wMajorVerNum;
  WORD wMinorVerNum;
  WORD wLibFlags;
};
typedef union BINDPTR BINDPTR;
union BINDPTR {
  FUNCDESC* lpfuncdesc;
  VARDESC* lpvardesc;
  ITypeComp* lptcomp;
};

_Static_assert(sizeof(GUID) == 16 && sizeof(CY) == 8 && sizeof(DECIMAL) == 16 && sizeof(SAFEARRAYBOUND) == 8, "layout");
_Static_assert(offsetof(VARIANT, llVal) == 8 && offsetof(DECIMAL, Lo64) == 8, "layout");
#if UINTPTR_MAX > 0xFFFFFFFF
_Static_assert(sizeof(VARIANT) == 24 && offsetof(VARIANT, pRecInfo) == 16, "layout");
_Static_assert(sizeof(SAFEARRAY) == 32 && offsetof(SAFEARRAY, pvData) == 16 && offsetof(SAFEARRAY, rgsabound) == 24, "layout");
_Static_assert(sizeof(DISPPARAMS) == 24 && offsetof(DISPPARAMS, cArgs) == 16, "layout");
_Static_assert(sizeof(EXCEPINFO) == 64 && offsetof(EXCEPINFO, bstrSource) == 8 && offsetof(EXCEPINFO, scode) == 56, "layout");
_Static_assert(sizeof(TYPEDESC) == 16 && sizeof(PARAMDESC) == 16 && sizeof(ELEMDESC) == 32, "layout");
_Static_assert(sizeof(PARAMDESCEX) == 32 && offsetof(PARAMDESCEX, varDefaultValue) == 8, "layout");
_Static_assert(sizeof(TYPEATTR) == 96 && offsetof(TYPEATTR, typekind) == 44 && offsetof(TYPEATTR, tdescAlias) == 64, "layout");
_Static_assert(sizeof(FUNCDESC) == 88 && offsetof(FUNCDESC, oVft) == 40 && offsetof(FUNCDESC, wFuncFlags) == 80, "layout");
_Static_assert(sizeof(VARDESC) == 64 && offsetof(VARDESC, varkind) == 60, "layout");
_Static_assert(sizeof(TLIBATTR) == 32 && offsetof(TLIBATTR, wLibFlags) == 28, "layout");
#endif

/* The Automation interfaces, slot by slot, and their identifiers. */

/* Interfaces */

static const IID IID_NULL = {0};
static const IID IID_IUnknown = {0x00000000, 0x0000, 0x0000, {0xC0, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x46}};
static const IID IID_IClassFactory = {0x00000001, 0x0000, 0x0000, {0xC0, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x46}};
static const IID IID_IRecordInfo = {0x0000002F, 0x0000, 0x0000, {0xC0, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x46}};
static const IID IID_IDispatch = {0x00020400, 0x0000, 0x0000, {0xC0, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x46}};
static const IID IID_ITypeInfo = {0x00020401, 0x0000, 0x0000, {0xC0, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x46}};
static const IID IID_ITypeLib = {0x00020402, 0x0000, 0x0000, {0xC0, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x46}};
static const IID IID_ITypeComp = {0x00020403, 0x0000, 0x0000, {0xC0, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x46}};
static const IID IID_IEnumVARIANT = {0x00020404, 0x0000, 0x0000, {0xC0, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x46}};
static const IID IID_IErrorInfo = {0x1CF2B120, 0x547D, 0x101B, {0x8E, 0x65, 0x08, 0x00, 0x2B, 0x2B, 0xD1, 0x19}};
static const IID IID_ICreateErrorInfo = {0x22F03340, 0x547D, 0x101B, {0x8E, 0x65, 0x08, 0x00, 0x2B, 0x2B, 0xD1, 0x19}};
static const IID IID_ISupportErrorInfo = {0xDF0B3D60, 0x548F, 0x101B, {0x8E, 0x65, 0x08, 0x00, 0x2B, 0x2B, 0xD1, 0x19}};

/* Interfaces are never deleted through: Release ends an object. */

typedef struct IUnknown IUnknown;
typedef struct IUnknownVtbl {
  HRESULT (ORVIX_CALL *QueryInterface)(IUnknown* self, REFIID riid, void** object);
  ULONG (ORVIX_CALL *AddRef)(IUnknown* self);
  ULONG (ORVIX_CALL *Release)(IUnknown* self);
} IUnknownVtbl;
struct IUnknown {
  const IUnknownVtbl* lpVtbl;
};

typedef struct IClassFactory IClassFactory;
typedef struct IClassFactoryVtbl {
  HRESULT (ORVIX_CALL *QueryInterface)(IClassFactory* self, REFIID riid, void** object);
  ULONG (ORVIX_CALL *AddRef)(IClassFactory* self);
  ULONG (ORVIX_CALL *Release)(IClassFactory* self);
  HRESULT (ORVIX_CALL *CreateInstance)(IClassFactory* self, IUnknown* outer, REFIID riid, void** object);
  HRESULT (ORVIX_CALL *LockServer)(IClassFactory* self, BOOL lock);
} IClassFactoryVtbl;
struct IClassFactory {
  const IClassFactoryVtbl* lpVtbl;
};

typedef struct IDispatch IDispatch;
typedef struct IDispatchVtbl {
  HRESULT (ORVIX_CALL *QueryInterface)(IDispatch* self, REFIID riid, void** object);
  ULONG (ORVIX_CALL *AddRef)(IDispatch* self);
  ULONG (ORVIX_CALL *Release)(IDispatch* self);
  HRESULT (ORVIX_CALL *GetTypeInfoCount)(IDispatch* self, UINT* count);
  HRESULT (ORVIX_CALL *GetTypeInfo)(IDispatch* self, UINT index, LCID lcid, ITypeInfo** info);
  HRESULT (ORVIX_CALL *GetIDsOfNames)(IDispatch* self, REFIID riid, OLECHAR** names, UINT count, LCID lcid, DISPID* ids);
  HRESULT (ORVIX_CALL *Invoke)(IDispatch* self, DISPID member, REFIID riid, LCID lcid, WORD flags, DISPPARAMS* params, VARIANT* result, EXCEPINFO* exception, UINT* argumentError);
} IDispatchVtbl;
struct IDispatch {
  const IDispatchVtbl* lpVtbl;
};

typedef struct ITypeInfo ITypeInfo;
typedef struct ITypeInfoVtbl {
  HRESULT (ORVIX_CALL *QueryInterface)(ITypeInfo* self, REFIID riid, void** object);
  ULONG (ORVIX_CALL *AddRef)(ITypeInfo* self);
  ULONG (ORVIX_CALL *Release)(ITypeInfo* self);
  HRESULT (ORVIX_CALL *GetTypeAttr)(ITypeInfo* self, TYPEATTR** attributes);
  HRESULT (ORVIX_CALL *GetTypeComp)(ITypeInfo* self, ITypeComp** comp);
  HRESULT (ORVIX_CALL *GetFuncDesc)(ITypeInfo* self, UINT index, FUNCDESC** description);
  HRESULT (ORVIX_CALL *GetVarDesc)(ITypeInfo* self, UINT index, VARDESC** description);
  HRESULT (ORVIX_CALL *GetNames)(ITypeInfo* self, MEMBERID member, BSTR* names, UINT capacity, UINT* count);
  HRESULT (ORVIX_CALL *GetRefTypeOfImplType)(ITypeInfo* self, UINT index, HREFTYPE* reference);
  HRESULT (ORVIX_CALL *GetImplTypeFlags)(ITypeInfo* self, UINT index, INT* flags);
  HRESULT (ORVIX_CALL *GetIDsOfNames)(ITypeInfo* self, OLECHAR** names, UINT count, MEMBERID* ids);
  HRESULT (ORVIX_CALL *Invoke)(ITypeInfo* self, void* instance, MEMBERID member, WORD flags, DISPPARAMS* params, VARIANT* result, EXCEPINFO* exception, UINT* argumentError);
  HRESULT (ORVIX_CALL *GetDocumentation)(ITypeInfo* self, MEMBERID member, BSTR* name, BSTR* help, DWORD* context, BSTR* helpFile);
  HRESULT (ORVIX_CALL *GetDllEntry)(ITypeInfo* self, MEMBERID member, INVOKEKIND kind, BSTR* library, BSTR* name, WORD* ordinal);
  HRESULT (ORVIX_CALL *GetRefTypeInfo)(ITypeInfo* self, HREFTYPE reference, ITypeInfo** info);
  HRESULT (ORVIX_CALL *AddressOfMember)(ITypeInfo* self, MEMBERID member, INVOKEKIND kind, void** address);
  HRESULT (ORVIX_CALL *CreateInstance)(ITypeInfo* self, IUnknown* outer, REFIID riid, void** object);
  HRESULT (ORVIX_CALL *GetMops)(ITypeInfo* self, MEMBERID member, BSTR* mops);
  HRESULT (ORVIX_CALL *GetContainingTypeLib)(ITypeInfo* self, ITypeLib** library, UINT* index);
  void (ORVIX_CALL *ReleaseTypeAttr)(ITypeInfo* self, TYPEATTR* attributes);
  void (ORVIX_CALL *ReleaseFuncDesc)(ITypeInfo* self, FUNCDESC* description);
  void (ORVIX_CALL *ReleaseVarDesc)(ITypeInfo* self, VARDESC* description);
} ITypeInfoVtbl;
struct ITypeInfo {
  const ITypeInfoVtbl* lpVtbl;
};

typedef struct ITypeLib ITypeLib;
typedef struct ITypeLibVtbl {
  HRESULT (ORVIX_CALL *QueryInterface)(ITypeLib* self, REFIID riid, void** object);
  ULONG (ORVIX_CALL *AddRef)(ITypeLib* self);
  ULONG (ORVIX_CALL *Release)(ITypeLib* self);
  UINT (ORVIX_CALL *GetTypeInfoCount)(ITypeLib* self);
  HRESULT (ORVIX_CALL *GetTypeInfo)(ITypeLib* self, UINT index, ITypeInfo** info);
  HRESULT (ORVIX_CALL *GetTypeInfoType)(ITypeLib* self, UINT index, TYPEKIND* kind);
  HRESULT (ORVIX_CALL *GetTypeInfoOfGuid)(ITypeLib* self, REFGUID guid, ITypeInfo** info);
  HRESULT (ORVIX_CALL *GetLibAttr)(ITypeLib* self, TLIBATTR** attributes);
  HRESULT (ORVIX_CALL *GetTypeComp)(ITypeLib* self, ITypeComp** comp);
  HRESULT (ORVIX_CALL *GetDocumentation)(ITypeLib* self, INT index, BSTR* name, BSTR* help, DWORD* context, BSTR* helpFile);
  HRESULT (ORVIX_CALL *IsName)(ITypeLib* self, OLECHAR* name, ULONG hash, BOOL* found);
  HRESULT (ORVIX_CALL *FindName)(ITypeLib* self, OLECHAR* name, ULONG hash, ITypeInfo** infos, MEMBERID* members, USHORT* found);
  void (ORVIX_CALL *ReleaseTLibAttr)(ITypeLib* self, TLIBATTR* attributes);
} ITypeLibVtbl;
struct ITypeLib {
  const ITypeLibVtbl* lpVtbl;
};

typedef struct ITypeComp ITypeComp;
typedef struct ITypeCompVtbl {
  HRESULT (ORVIX_CALL *QueryInterface)(ITypeComp* self, REFIID riid, void** object);
  ULONG (ORVIX_CALL *AddRef)(ITypeComp* self);
  ULONG (ORVIX_CALL *Release)(ITypeComp* self);
  HRESULT (ORVIX_CALL *Bind)(ITypeComp* self, OLECHAR* name, ULONG hash, WORD flags, ITypeInfo** info, DESCKIND* kind, BINDPTR* binding);
  HRESULT (ORVIX_CALL *BindType)(ITypeComp* self, OLECHAR* name, ULONG hash, ITypeInfo** info, ITypeComp** comp);
} ITypeCompVtbl;
struct ITypeComp {
  const ITypeCompVtbl* lpVtbl;
};

typedef struct IEnumVARIANT IEnumVARIANT;
typedef struct IEnumVARIANTVtbl {
  HRESULT (ORVIX_CALL *QueryInterface)(IEnumVARIANT* self, REFIID riid, void** object);
  ULONG (ORVIX_CALL *AddRef)(IEnumVARIANT* self);
  ULONG (ORVIX_CALL *Release)(IEnumVARIANT* self);
  HRESULT (ORVIX_CALL *Next)(IEnumVARIANT* self, ULONG count, VARIANT* values, ULONG* fetched);
  HRESULT (ORVIX_CALL *Skip)(IEnumVARIANT* self, ULONG count);
  HRESULT (ORVIX_CALL *Reset)(IEnumVARIANT* self);
  HRESULT (ORVIX_CALL *Clone)(IEnumVARIANT* self, IEnumVARIANT** copy);
} IEnumVARIANTVtbl;
struct IEnumVARIANT {
  const IEnumVARIANTVtbl* lpVtbl;
};

typedef struct IErrorInfo IErrorInfo;
typedef struct IErrorInfoVtbl {
  HRESULT (ORVIX_CALL *QueryInterface)(IErrorInfo* self, REFIID riid, void** object);
  ULONG (ORVIX_CALL *AddRef)(IErrorInfo* self);
  ULONG (ORVIX_CALL *Release)(IErrorInfo* self);
  HRESULT (ORVIX_CALL *GetGUID)(IErrorInfo* self, GUID* guid);
  HRESULT (ORVIX_CALL *GetSource)(IErrorInfo* self, BSTR* source);
  HRESULT (ORVIX_CALL *GetDescription)(IErrorInfo* self, BSTR* description);
  HRESULT (ORVIX_CALL *GetHelpFile)(IErrorInfo* self, BSTR* file);
  HRESULT (ORVIX_CALL *GetHelpContext)(IErrorInfo* self, DWORD* context);
} IErrorInfoVtbl;
struct IErrorInfo {
  const IErrorInfoVtbl* lpVtbl;
};

typedef struct ICreateErrorInfo ICreateErrorInfo;
typedef struct ICreateErrorInfoVtbl {
  HRESULT (ORVIX_CALL *QueryInterface)(ICreateErrorInfo* self, REFIID riid, void** object);
  ULONG (ORVIX_CALL *AddRef)(ICreateErrorInfo* self);
  ULONG (ORVIX_CALL *Release)(ICreateErrorInfo* self);
  HRESULT (ORVIX_CALL *SetGUID)(ICreateErrorInfo* self, REFGUID guid);
  HRESULT (ORVIX_CALL *SetSource)(ICreateErrorInfo* self, OLECHAR* source);
  HRESULT (ORVIX_CALL *SetDescription)(ICreateErrorInfo* self, OLECHAR* description);
  HRESULT (ORVIX_CALL *SetHelpFile)(ICreateErrorInfo* self, OLECHAR* file);
  HRESULT (ORVIX_CALL *SetHelpContext)(ICreateErrorInfo* self, DWORD context);
} ICreateErrorInfoVtbl;
struct ICreateErrorInfo {
  const ICreateErrorInfoVtbl* lpVtbl;
};

typedef struct ISupportErrorInfo ISupportErrorInfo;
typedef struct ISupportErrorInfoVtbl {
  HRESULT (ORVIX_CALL *QueryInterface)(ISupportErrorInfo* self, REFIID riid, void** object);
  ULONG (ORVIX_CALL *AddRef)(ISupportErrorInfo* self);
  ULONG (ORVIX_CALL *Release)(ISupportErrorInfo* self);
  HRESULT (ORVIX_CALL *InterfaceSupportsErrorInfo)(ISupportErrorInfo* self, REFIID riid);
} ISupportErrorInfoVtbl;
struct ISupportErrorInfo {
  const ISupportErrorInfoVtbl* lpVtbl;
};

typedef struct IRecordInfo IRecordInfo;
typedef struct IRecordInfoVtbl {
  HRESULT (ORVIX_CALL *QueryInterface)(IRecordInfo* self, REFIID riid, void** object);
  ULONG (ORVIX_CALL *AddRef)(IRecordInfo* self);
  ULONG (ORVIX_CALL *Release)(IRecordInfo* self);
  HRESULT (ORVIX_CALL *RecordInit)(IRecordInfo* self, void* record);
  HRESULT (ORVIX_CALL *RecordClear)(IRecordInfo* self, void* record);
  HRESULT (ORVIX_CALL *RecordCopy)(IRecordInfo* self, void* from, void* to);
  HRESULT (ORVIX_CALL *GetGuid)(IRecordInfo* self, GUID* guid);
  HRESULT (ORVIX_CALL *GetName)(IRecordInfo* self, BSTR* name);
  HRESULT (ORVIX_CALL *GetSize)(IRecordInfo* self, ULONG* size);
  HRESULT (ORVIX_CALL *GetTypeInfo)(IRecordInfo* self, ITypeInfo** info);
  HRESULT (ORVIX_CALL *GetField)(IRecordInfo* self, void* record, const OLECHAR* name, VARIANT* value);
  HRESULT (ORVIX_CALL *GetFieldNoCopy)(IRecordInfo* self, void* record, const OLECHAR* name, VARIANT* value, void** data);
  HRESULT (ORVIX_CALL *PutField)(IRecordInfo* self, ULONG flags, void* record, const OLECHAR* name, VARIANT* value);
  HRESULT (ORVIX_CALL *PutFieldNoCopy)(IRecordInfo* self, ULONG flags, void* record, const OLECHAR* name, VARIANT* value);
  HRESULT (ORVIX_CALL *GetFieldNames)(IRecordInfo* self, ULONG* count, BSTR* names);
  BOOL (ORVIX_CALL *IsMatchingType)(IRecordInfo* self, IRecordInfo* other);
  void* (ORVIX_CALL *RecordCreate)(IRecordInfo* self);
  HRESULT (ORVIX_CALL *RecordCreateCopy)(IRecordInfo* self, void* source, void** copy);
  HRESULT (ORVIX_CALL *RecordDestroy)(IRecordInfo* self, void* record);
} IRecordInfoVtbl;
struct IRecordInfo {
  const IRecordInfoVtbl* lpVtbl;
};

// The Automation types, interfaces and functions, under the platform's names
/* and in the platform's layouts. Everything an application needs to call a dual */
/* interface or IDispatch; the functions are exported by liborvixrt.so. */

/* Texts (BSTR). A null text has length 0; freeing null is harmless. */

ORVIX_API BSTR ORVIX_CALL SysAllocString(const OLECHAR* text);
ORVIX_API BSTR ORVIX_CALL SysAllocStringLen(const OLECHAR* text, UINT units);
ORVIX_API BSTR ORVIX_CALL SysAllocStringByteLen(const char* bytes, UINT count);
ORVIX_API INT ORVIX_CALL SysReAllocString(BSTR* text, const OLECHAR* from);
ORVIX_API INT ORVIX_CALL SysReAllocStringLen(BSTR* text, const OLECHAR* from, UINT units);
ORVIX_API void ORVIX_CALL SysFreeString(BSTR text);
ORVIX_API UINT ORVIX_CALL SysStringLen(BSTR text);
ORVIX_API UINT ORVIX_CALL SysStringByteLen(BSTR text);

/* Values */

ORVIX_API void ORVIX_CALL VariantInit(VARIANTARG* value);
ORVIX_API HRESULT ORVIX_CALL VariantClear(VARIANTARG* value);
ORVIX_API HRESULT ORVIX_CALL VariantCopy(VARIANTARG* to, const VARIANTARG* from);
ORVIX_API HRESULT ORVIX_CALL VariantCopyInd(VARIANT* to, const VARIANTARG* from);
ORVIX_API HRESULT ORVIX_CALL VariantChangeType(VARIANTARG* to, const VARIANTARG* from, USHORT flags, VARTYPE type);
ORVIX_API HRESULT ORVIX_CALL VariantChangeTypeEx(VARIANTARG* to, const VARIANTARG* from, LCID lcid, USHORT flags,
                                                 VARTYPE type);
ORVIX_API HRESULT ORVIX_CALL VarCmp(VARIANT* left, VARIANT* right, LCID lcid, ULONG flags);

/* Arrays. Dimensions count from 1; an index array is in natural order. */

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

/* Error info: one slot per thread; GetErrorInfo empties it (S_FALSE when empty). */

ORVIX_API HRESULT ORVIX_CALL CreateErrorInfo(ICreateErrorInfo** info);
ORVIX_API HRESULT ORVIX_CALL SetErrorInfo(ULONG reserved, IErrorInfo* info);
ORVIX_API HRESULT ORVIX_CALL GetErrorInfo(ULONG reserved, IErrorInfo** info);

/* Classes and identifiers */

typedef DWORD CLSCTX;
enum { CLSCTX_INPROC_SERVER = 1, CLSCTX_LOCAL_SERVER = 4, CLSCTX_ALL = 23 };
typedef DWORD REGCLS;
enum { REGCLS_SINGLEUSE = 0, REGCLS_MULTIPLEUSE = 1 };

ORVIX_API HRESULT ORVIX_CALL CoInitialize(void* reserved);
ORVIX_API void ORVIX_CALL CoUninitialize(void);
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
ORVIX_API void* ORVIX_CALL CoTaskMemAlloc(size_t bytes);
ORVIX_API void ORVIX_CALL CoTaskMemFree(void* block);

/* Type libraries: LoadTypeLib takes the path of a component library. */

ORVIX_API HRESULT ORVIX_CALL LoadTypeLib(const OLECHAR* file, ITypeLib** library);
ORVIX_API HRESULT ORVIX_CALL LoadRegTypeLib(REFGUID libid, WORD major, WORD minor, LCID lcid, ITypeLib** library);

#endif
