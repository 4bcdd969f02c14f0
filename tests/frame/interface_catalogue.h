// What a browser of the type library must see, written out: the record, the
// enumerations and the form of a member's line. The members of the classes stand
// in catalogue_orvix.h, catalogue_files.h and catalogue_containers.h.
#ifndef ORVIX_TESTS_FRAME_INTERFACE_CATALOGUE_H
#define ORVIX_TESTS_FRAME_INTERFACE_CATALOGUE_H

#include "orvix/orvix.h"

namespace Orvix::testing::catalogue {

// One slot. `slot` counts from 1 after the seven of IDispatch, `id` is the
// dispatch identifier. A signature gives the result, then each parameter as type,
// name, "[out]" when the caller sees a write, "?" when it may be left out, and
// "=" with the declared default.
struct Member {
  int slot;
  const char* name;
  INVOKEKIND kind;
  MEMBERID id;
  const char* signature;
  const char* help = "";
};

inline constexpr INVOKEKIND kMethod = INVOKE_FUNC;
inline constexpr INVOKEKIND kGet = INVOKE_PROPERTYGET;
inline constexpr INVOKEKIND kPut = INVOKE_PROPERTYPUT;
inline constexpr INVOKEKIND kPutRef = INVOKE_PROPERTYPUTREF;

struct Constant {
  const char* name;
  LONG value;
  const char* help = "";
};

inline constexpr Constant kColourChannels[] = {{"oxRed", 0}, {"oxGreen", 1}, {"oxBlue", 2}};

inline constexpr Constant kSearchDirections[] = {{"sdEndToStart", 0}, {"sdStartToEnd", 1}};

inline constexpr Constant kRegistryConstants[] = {
    {"oxREG_SZ", 1, "oxREG_SZ"},
    {"oxREG_DWORD", 4, "oxREG_DWORD"},
    {"oxHKEY_CLASSES_ROOT", -2147483647 - 1, "oxHKEY_CLASSES_ROOT"},
    {"oxHKEY_CURRENT_USER", -2147483647, "oxHKEY_CURRENT_USER"},
    {"oxHKEY_LOCAL_MACHINE", -2147483646, "oxHKEY_LOCAL_MACHINE"},
    {"oxKEY_QUERY_VALUE", 1, "oxKEY_QUERY_VALUE"},
    {"oxKEY_SET_VALUE", 2, "oxKEY_SET_VALUE"},
    {"oxKEY_CREATE_SUB_KEY", 4, "oxKEY_CREATE_SUB_KEY"},
    {"oxKEY_ENUMERATE_SUB_KEYS", 8, "oxKEY_ENUMERATE_SUB_KEYS"},
    {"oxKEY_NOTIFY", 16, "oxKEY_NOTIFY"},
    {"oxKEY_CREATE_LINK", 32, "oxKEY_CREATE_LINK"},
    {"oxREAD_CONTROL", 131072, "oxREAD_CONTROL"},
    {"oxHKEY_USERS", -2147483645, "oxHKEY_USERS"},
    {"oxKEY_GENERAL", 31, "oxKEY_GENERAL"},
    {"oxERROR_SUCCESS", 0, "oxERROR_SUCCESS"},
    {"oxERROR_NONE", 0, "oxERROR_NONE"},
    {"oxERROR_BADDB", 1, "oxERROR_BADDB"},
    {"oxERROR_BADKEY", 2, "oxERROR_BADKEY"},
    {"oxERROR_CANTOPEN", 3, "oxERROR_CANTOPEN"},
    {"oxERROR_CANTREAD", 4, "oxERROR_CANTREAD"},
    {"oxERROR_CANTWRITE", 5, "oxERROR_CANTWRITE"},
    {"oxERROR_OUTOFMEMORY", 6, "oxERROR_OUTOFMEMORY"},
    {"oxERROR_INVALID_PARAMETER", 7, "oxERROR_INVALID_PARAMETER"},
    {"oxERROR_ACCESS_DENIED", 8, "oxERROR_ACCESS_DENIED"},
    {"oxERROR_INVALID_PARAMETERS", 87, "oxERROR_INVALID_PARAMETERS"},
    {"oxERROR_NO_MORE_ITEMS", 259, "oxERROR_NO_MORE_ITEMS"},
    {"oxKEY_ALL_ACCESS", 63, "oxKEY_ALL_ACCESS"},
    {"oxREG_OPTION_NON_VOLATILE", 0, "oxREG_OPTION_NON_VOLATILE"},
};

// Fields of FileType; offsets of the 64-bit layout.
struct Field {
  const char* name;
  VARTYPE type;
  ULONG offset;
};
inline constexpr Field kFileType[] = {
    {"sCompleteFilename", VT_BSTR, 0}, {"sFile", VT_BSTR, 8}, {"sPath", VT_BSTR, 16},
    {"sExtension", VT_BSTR, 24},       {"lSize", VT_I4, 32},  {"dDate", VT_DATE, 40},
};

}  // namespace Orvix::testing::catalogue

#endif
