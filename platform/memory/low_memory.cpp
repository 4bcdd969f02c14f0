// Low memory of the process: one heap for all threads.
#include <mutex>

#include "orvix/runtime.h"
#include "platform/memory/low_heap.h"

namespace {

// Neither has a destructor that does anything, so blocks may outlive main.
constinit std::mutex mutex;
constinit Orvix::LowHeap heap;

}  // namespace

void* ORVIX_CALL OxLowAlloc(std::size_t bytes) {
  const std::lock_guard lock(mutex);
  return heap.Allocate(bytes);
}

void* ORVIX_CALL OxLowRealloc(void* block, std::size_t bytes) {
  const std::lock_guard lock(mutex);
  return heap.Reallocate(block, bytes);
}

void ORVIX_CALL OxLowFree(void* block) {
  const std::lock_guard lock(mutex);
  heap.Free(block);
}
