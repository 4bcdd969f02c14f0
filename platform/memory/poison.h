// Marks memory as not to be touched, for the address sanitizer. Without it all
// of this is nothing.
#ifndef ORVIX_PLATFORM_MEMORY_POISON_H
#define ORVIX_PLATFORM_MEMORY_POISON_H

#include <cstddef>

#if defined(__SANITIZE_ADDRESS__)
#define ORVIX_ADDRESS_SANITIZER 1
#elif defined(__has_feature)
#if __has_feature(address_sanitizer)
#define ORVIX_ADDRESS_SANITIZER 1
#endif
#endif

#if defined(ORVIX_ADDRESS_SANITIZER)
#include <sanitizer/asan_interface.h>
#endif

namespace Orvix {

#if defined(ORVIX_ADDRESS_SANITIZER)
inline constexpr bool kPoisons = true;
inline void Poison(const void* from, std::size_t bytes) noexcept { __asan_poison_memory_region(from, bytes); }
inline void Unpoison(const void* from, std::size_t bytes) noexcept { __asan_unpoison_memory_region(from, bytes); }
#else
inline constexpr bool kPoisons = false;
inline void Poison(const void*, std::size_t) noexcept {}
inline void Unpoison(const void*, std::size_t) noexcept {}
#endif

}  // namespace Orvix

#endif
