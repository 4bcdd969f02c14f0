// Copying and filling runs of bytes.
#include <cstring>

#include "orvix/platform.h"

void ORVIX_CALL RtlMoveMemory(void* to, const void* from, std::size_t bytes) {
  if (bytes > 0) std::memmove(to, from, bytes);
}

void ORVIX_CALL RtlFillMemory(void* to, std::size_t bytes, BYTE value) {
  if (bytes > 0) std::memset(to, value, bytes);
}
