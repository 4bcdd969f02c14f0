// The descriptions that type information hands out, each in one block with all
// that it points to.
#ifndef ORVIX_FRAME_TYPE_DESCRIPTIONS_H
#define ORVIX_FRAME_TYPE_DESCRIPTIONS_H

#include "frame/type_library.h"

namespace Orvix::component {

// Null when memory is exhausted. Each is given back to its Free function.
[[nodiscard]] FUNCDESC* NewFunctionDescription(const InterfaceTable& table, std::size_t row) noexcept;
void FreeFunctionDescription(FUNCDESC* description) noexcept;
[[nodiscard]] VARDESC* NewItemDescription(const TypeEntry& entry, std::size_t item) noexcept;
void FreeItemDescription(VARDESC* description) noexcept;

// The identifier of an enumeration's constant or a record's field.
[[nodiscard]] constexpr MEMBERID ItemId(std::size_t item) { return static_cast<MEMBERID>(0x40000000 + item); }

}  // namespace Orvix::component

#endif
