// The list of types, and the constants of the enumerations in their order.
#include <memory>
#include <vector>

#include "frame/type_library.h"

namespace Orvix::component {

namespace {

constexpr NamedItem kRgb[] = {{"oxRed", oxRed}, {"oxGreen", oxGreen}, {"oxBlue", oxBlue}};

constexpr NamedItem kDirections[] = {{"sdEndToStart", sdEndToStart}, {"sdStartToEnd", sdStartToEnd}};

// Every constant has its own name as help string.
constexpr NamedItem Own(std::string_view name, LONG value) { return {name, value, name}; }
constexpr NamedItem kRegistry[] = {
    Own("oxREG_SZ", oxREG_SZ),
    Own("oxREG_DWORD", oxREG_DWORD),
    Own("oxHKEY_CLASSES_ROOT", oxHKEY_CLASSES_ROOT),
    Own("oxHKEY_CURRENT_USER", oxHKEY_CURRENT_USER),
    Own("oxHKEY_LOCAL_MACHINE", oxHKEY_LOCAL_MACHINE),
    Own("oxKEY_QUERY_VALUE", oxKEY_QUERY_VALUE),
    Own("oxKEY_SET_VALUE", oxKEY_SET_VALUE),
    Own("oxKEY_CREATE_SUB_KEY", oxKEY_CREATE_SUB_KEY),
    Own("oxKEY_ENUMERATE_SUB_KEYS", oxKEY_ENUMERATE_SUB_KEYS),
    Own("oxKEY_NOTIFY", oxKEY_NOTIFY),
    Own("oxKEY_CREATE_LINK", oxKEY_CREATE_LINK),
    Own("oxREAD_CONTROL", oxREAD_CONTROL),
    Own("oxHKEY_USERS", oxHKEY_USERS),
    Own("oxKEY_GENERAL", oxKEY_GENERAL),
    Own("oxERROR_SUCCESS", oxERROR_SUCCESS),
    Own("oxERROR_NONE", oxERROR_NONE),
    Own("oxERROR_BADDB", oxERROR_BADDB),
    Own("oxERROR_BADKEY", oxERROR_BADKEY),
    Own("oxERROR_CANTOPEN", oxERROR_CANTOPEN),
    Own("oxERROR_CANTREAD", oxERROR_CANTREAD),
    Own("oxERROR_CANTWRITE", oxERROR_CANTWRITE),
    Own("oxERROR_OUTOFMEMORY", oxERROR_OUTOFMEMORY),
    Own("oxERROR_INVALID_PARAMETER", oxERROR_INVALID_PARAMETER),
    Own("oxERROR_ACCESS_DENIED", oxERROR_ACCESS_DENIED),
    Own("oxERROR_INVALID_PARAMETERS", oxERROR_INVALID_PARAMETERS),
    Own("oxERROR_NO_MORE_ITEMS", oxERROR_NO_MORE_ITEMS),
    Own("oxKEY_ALL_ACCESS", oxKEY_ALL_ACCESS),
    Own("oxREG_OPTION_NON_VOLATILE", oxREG_OPTION_NON_VOLATILE),
};
static_assert(sizeof kRegistry / sizeof kRegistry[0] == 28);

constexpr NamedItem Field(std::string_view name, VARTYPE type, std::size_t offset) {
  return {name, 0, {}, type, static_cast<ULONG>(offset)};
}
constexpr NamedItem kFileType[] = {
    Field("sCompleteFilename", VT_BSTR, offsetof(FileType, sCompleteFilename)),
    Field("sFile", VT_BSTR, offsetof(FileType, sFile)),
    Field("sPath", VT_BSTR, offsetof(FileType, sPath)),
    Field("sExtension", VT_BSTR, offsetof(FileType, sExtension)),
    Field("lSize", VT_I4, offsetof(FileType, lSize)),
    Field("dDate", VT_DATE, offsetof(FileType, dDate)),
};

std::vector<TypeEntry> MakeEntries() {
  std::vector<TypeEntry> entries = {
      {.kind = TKIND_ENUM, .name = "enumRGB", .guid = &GUID_enumRGB, .items = kRgb},
      {.kind = TKIND_ENUM, .name = "enumRegistryConsts", .guid = &GUID_enumRegistryConsts, .items = kRegistry},
      {.kind = TKIND_ENUM, .name = "StackSearchDirection", .guid = &GUID_StackSearchDirection, .items = kDirections},
      {.kind = TKIND_RECORD, .name = "FileType", .guid = &GUID_FileType, .items = kFileType},
  };
  constexpr WORD kHiddenDual =
      TYPEFLAG_FHIDDEN | TYPEFLAG_FDUAL | TYPEFLAG_FOLEAUTOMATION | TYPEFLAG_FDISPATCHABLE | TYPEFLAG_FNONEXTENSIBLE;
  for (const ClassEntry& entry : Classes()) {
    const InterfaceTable& table = entry.table();
    entries.push_back(
        {.kind = TKIND_DISPATCH, .name = table.name, .guid = table.iid, .flags = kHiddenDual, .table = &table});
    entries.push_back(
        {.kind = TKIND_COCLASS, .name = entry.name, .guid = entry.clsid, .flags = entry.flags, .class_entry = &entry});
  }
  return entries;
}

}  // namespace

std::span<const TypeEntry> TypeEntries() {
  // Never destroyed: threads may still ask when the process ends.
  static const std::vector<TypeEntry>& entries = *std::make_unique<std::vector<TypeEntry>>(MakeEntries()).release();
  return entries;
}

std::size_t TypeIndexOf(std::string_view name) {
  const std::span<const TypeEntry> entries = TypeEntries();
  std::size_t index = 0;
  while (index < entries.size() && entries[index].name != name) ++index;
  return index;
}

}  // namespace Orvix::component
