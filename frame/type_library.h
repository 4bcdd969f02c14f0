// The type library: seven classes with their interfaces, three enumerations and
// one record, made from the classes' own tables.
#ifndef ORVIX_FRAME_TYPE_LIBRARY_H
#define ORVIX_FRAME_TYPE_LIBRARY_H

#include <span>
#include <string_view>

#include "frame/classes.h"

namespace Orvix::component {

// A constant of an enumeration, or a field of a record.
struct NamedItem {
  std::string_view name;
  LONG value;               // of a constant
  std::string_view help{};  // of a constant
  VARTYPE type = VT_I4;     // of a field
  ULONG offset = 0;         // of a field
};

struct TypeEntry {
  TYPEKIND kind;
  std::string_view name;
  const GUID* guid;
  WORD flags = 0;
  std::span<const NamedItem> items{};       // enumeration, record
  const InterfaceTable* table = nullptr;    // interface
  const ClassEntry* class_entry = nullptr;  // class
};

// Every type in the library's order; a reference between types is an index here.
[[nodiscard]] std::span<const TypeEntry> TypeEntries();
// The index of a type by name.
[[nodiscard]] std::size_t TypeIndexOf(std::string_view name);

// References are the caller's to release.
HRESULT OpenTypeLibrary(REFIID riid, void** library) noexcept;
HRESULT TypeInfoAt(std::size_t index, ITypeInfo** info) noexcept;
HRESULT RecordTypeInfo(ITypeInfo** info) noexcept;

}  // namespace Orvix::component

#endif
