// The texts behind narrow calls. WideCharToMultiByte puts "?" for what the code page
// lacks; the native service that gets the bytes acts by the text that they were made
// from, so that every name on disk can be reached and no substitute is a wildcard.
#ifndef ORVIX_PLATFORM_NAMES_TEXT_BEHIND_H
#define ORVIX_PLATFORM_NAMES_TEXT_BEHIND_H

#include <string_view>

#include "orvix/text.h"

namespace Orvix {

// Remembers, for the calling thread, that a conversion of `text` wrote `bytes` and
// lost characters. Known by their address, so whoever converts must convert in place.
// The last 16 such conversions of a thread are kept, texts up to 4 Mi units.
void NoteLossyConversion(std::string_view bytes, TextView text) noexcept;

// A conversion without loss wrote `bytes`: what was known of the place is over.
void ForgetLossyConversion(std::string_view bytes) noexcept;

// What `bytes` were made from, when they lie in what such a conversion wrote and are
// still what it wrote; else what they say. A list may have been converted whole or
// name by name.
[[nodiscard]] Text TextBehind(std::string_view bytes);

}  // namespace Orvix

#endif
