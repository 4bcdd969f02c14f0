// Which byte texts lost characters when WideCharToMultiByte made them. A service
// that gives "?" a meaning of its own must tell a substitute from a "?" that the
// caller wrote, and the bytes alone do not say which it is.
#ifndef ORVIX_PLATFORM_NAMES_LOST_CHARACTERS_H
#define ORVIX_PLATFORM_NAMES_LOST_CHARACTERS_H

#include <string_view>

namespace Orvix {

// Remembers, for the calling thread, that the conversion which wrote `bytes`
// put its first substitute at the 0-based position `first_lost`. The bytes are
// known by their address and their content up to there, so whoever converts
// must convert in place. The last 16 such conversions of a thread are kept.
void NoteLostCharacters(std::string_view bytes, std::size_t first_lost) noexcept;

// A conversion without loss wrote `bytes`: what was known of the place is over.
void ForgetLostCharacters(std::string_view bytes) noexcept;

// Whether a noted conversion wrote somewhere in `bytes`, which still hold what it
// wrote as far as its first substitute. A list may have been converted whole or
// name by name.
[[nodiscard]] bool LostCharacters(std::string_view bytes) noexcept;

}  // namespace Orvix

#endif
