// The random numbers of the process: one sequence, whichever thread draws.
#include <atomic>

#include "orvix/runtime.h"

namespace {

// SplitMix64: the state is a plain counter, so that drawing is one atomic
// addition and no two draws see the same state.
constexpr std::uint64_t kStep = 0x9E3779B97F4A7C15;
constexpr std::uint64_t kDefaultSeed = 0x4F72766978;
constinit std::atomic<std::uint64_t> state = kDefaultSeed;

std::uint64_t Mixed(std::uint64_t bits) {
  bits = (bits ^ bits >> 30) * 0xBF58476D1CE4E5B9;
  bits = (bits ^ bits >> 27) * 0x94D049BB133111EB;
  return bits ^ bits >> 31;
}

}  // namespace

HRESULT ORVIX_CALL OxRandom(double* number) {
  if (number == nullptr) return E_POINTER;
  const std::uint64_t bits = Mixed(state.fetch_add(kStep, std::memory_order_relaxed) + kStep);
  *number = static_cast<double>(bits >> 11) * 0x1p-53;
  return S_OK;
}
