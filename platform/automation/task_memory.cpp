// Memory that passes between callers and the run-time: blocks of malloc, 16-byte
// aligned.
#include <cstdlib>

#include "orvix/automation.h"

// Null when memory is exhausted; no bytes give a block too.
void* ORVIX_CALL CoTaskMemAlloc(std::size_t bytes) { return std::malloc(bytes == 0 ? 1 : bytes); }

void ORVIX_CALL CoTaskMemFree(void* block) { std::free(block); }
