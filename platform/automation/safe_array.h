// Inside of the array services: sizes, the hidden bytes before a descriptor,
// and what happens to elements when they are released or copied.
#ifndef ORVIX_PLATFORM_AUTOMATION_SAFE_ARRAY_H
#define ORVIX_PLATFORM_AUTOMATION_SAFE_ARRAY_H

#include <cstddef>

#include "orvix/automation.h"

namespace Orvix {

inline constexpr std::size_t kHiddenBytes = 16;

// Memory that the caller lent to the descriptor; it is never freed here.
inline constexpr USHORT kLentMemory = FADF_AUTO | FADF_STATIC | FADF_EMBEDDED;

// A zeroed descriptor of `dimensions` dimensions with its hidden bytes; null
// when memory is exhausted.
SAFEARRAY* NewDescriptor(UINT dimensions) noexcept;
void FreeDescriptor(SAFEARRAY* array) noexcept;

// Number of elements, and whether that many fit in memory of which 32 bits
// count the bytes.
std::size_t CellCount(const SAFEARRAY& array) noexcept;
bool SizeIsPossible(const SAFEARRAY& array) noexcept;

// Zeroed memory for `bytes` bytes, never null for 0.
void* NewElements(std::size_t bytes) noexcept;

// The record info of an array of records, borrowed; null for other arrays.
IRecordInfo* RecordInfoOf(const SAFEARRAY& array) noexcept;
void SetRecordInfo(SAFEARRAY& array, IRecordInfo* info) noexcept;

// Ends the elements from `first` on and zeroes them.
void ReleaseElements(SAFEARRAY& array, std::size_t first, std::size_t count) noexcept;
// Makes the zeroed records in `data` ready for use; does nothing for arrays of
// other types.
HRESULT InitElements(const SAFEARRAY& array, void* data, std::size_t first, std::size_t count) noexcept;
// An owned copy of one element into zeroed memory; texts that are null stay so.
HRESULT CopyElement(const SAFEARRAY& array, const void* from, void* to) noexcept;

}  // namespace Orvix

#endif
