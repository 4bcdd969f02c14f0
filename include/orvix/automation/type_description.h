// How type information describes types, members and parameters.
#ifndef ORVIX_AUTOMATION_TYPE_DESCRIPTION_H
#define ORVIX_AUTOMATION_TYPE_DESCRIPTION_H

#include "orvix/automation/types.h"

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

#endif
