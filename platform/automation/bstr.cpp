// Texts (BSTR): one block of malloc each. The block starts with 8 bytes, the
// last 4 of them the length in bytes, so that the text itself is 8-aligned; a
// NUL unit follows the text and is not counted.
#include <cstdlib>
#include <cstring>
#include <limits>
#include <string>

#include "orvix/automation.h"

namespace {

constexpr std::size_t kHeader = 8;
// Leaves room for header and terminator in 32 bits, as callers of other word
// sizes expect.
constexpr std::size_t kMostBytes = std::numeric_limits<UINT>::max() - 16;

char* BlockOf(BSTR text) { return reinterpret_cast<char*>(text) - kHeader; }

// An odd length gets a zero byte more, so that the unit it ends in and the one
// after it are both clean.
std::size_t BlockSize(std::size_t bytes) { return kHeader + ((bytes + 1) & ~std::size_t{1}) + sizeof(OLECHAR); }

BSTR FinishBlock(char* block, std::size_t bytes) {
  const auto length = static_cast<std::uint32_t>(bytes);
  std::memcpy(block + kHeader - sizeof length, &length, sizeof length);
  std::memset(block + kHeader + bytes, 0, BlockSize(bytes) - kHeader - bytes);
  return reinterpret_cast<BSTR>(block + kHeader);
}

BSTR NewBlock(const void* from, std::size_t bytes) {
  if (bytes > kMostBytes) return nullptr;
  char* block = static_cast<char*>(std::malloc(BlockSize(bytes)));
  if (block == nullptr) return nullptr;
  if (from != nullptr && bytes != 0) std::memcpy(block + kHeader, from, bytes);
  return FinishBlock(block, bytes);
}

}  // namespace

// A copy of a NUL-terminated text, owned by the caller; null for null and when
// memory is exhausted.
BSTR SysAllocString(const OLECHAR* text) {
  if (text == nullptr) return nullptr;
  return NewBlock(text, std::char_traits<OLECHAR>::length(text) * sizeof(OLECHAR));
}

// A copy of `units` code units, NULs among them included. With a null `text`
// the units are left undefined for the caller to fill; never null for length 0.
BSTR SysAllocStringLen(const OLECHAR* text, UINT units) { return NewBlock(text, std::size_t{units} * sizeof(OLECHAR)); }

// The same with a length in bytes, which may be odd.
BSTR SysAllocStringByteLen(const char* bytes, UINT count) { return NewBlock(bytes, count); }

// Replaces `*text` by a copy of `from`, which may point into it. 1, or 0 when
// memory is exhausted, with the old text kept. A null `from` leaves null.
INT SysReAllocString(BSTR* text, const OLECHAR* from) {
  if (text == nullptr) return 0;
  BSTR copy = SysAllocString(from);
  if (copy == nullptr && from != nullptr) return 0;
  SysFreeString(*text);
  *text = copy;
  return 1;
}

// Replaces `*text` by `units` code units. With `from` null or `*text` itself
// the common beginning is kept and added units are undefined. 1, or 0 when
// memory is exhausted, with the old text kept.
INT SysReAllocStringLen(BSTR* text, const OLECHAR* from, UINT units) {
  if (text == nullptr) return 0;
  if (*text == nullptr || (from != nullptr && from != *text)) {
    BSTR copy = SysAllocStringLen(from, units);
    if (copy == nullptr) return 0;
    SysFreeString(*text);
    *text = copy;
    return 1;
  }
  const std::size_t bytes = std::size_t{units} * sizeof(OLECHAR);
  if (bytes > kMostBytes) return 0;
  char* block = static_cast<char*>(std::realloc(BlockOf(*text), BlockSize(bytes)));
  if (block == nullptr) return 0;
  *text = FinishBlock(block, bytes);
  return 1;
}

void SysFreeString(BSTR text) {
  if (text != nullptr) std::free(BlockOf(text));
}

// Length in whole code units; 0 for null.
UINT SysStringLen(BSTR text) { return SysStringByteLen(text) / static_cast<UINT>(sizeof(OLECHAR)); }

UINT SysStringByteLen(BSTR text) {
  if (text == nullptr) return 0;
  std::uint32_t length = 0;
  std::memcpy(&length, reinterpret_cast<const char*>(text) - sizeof length, sizeof length);
  return length;
}
