// Text in files: the bytes that sequential print writes and whole files are read as.
#ifndef ORVIX_PLATFORM_NAMES_FILE_TEXT_H
#define ORVIX_PLATFORM_NAMES_FILE_TEXT_H

#include <string>
#include <string_view>

#include "orvix/text.h"

namespace Orvix {

// At most so many bytes stand for a unit.
inline constexpr std::size_t kMostFileBytes = 3;

// Whether files hold UTF-8; else the ANSI code page. What OxSetFileText chose last,
// at the start what ORVIX_FILE_TEXT says.
[[nodiscard]] bool FileTextIsUtf8() noexcept;

// Writes the bytes of a text, at most kMostFileBytes for each unit; how many. In UTF-8
// a private unit U+F780 to U+F7FF is the byte that was read as it, and half of a
// surrogate pair is "?", as is what the code page lacks.
[[nodiscard]] std::size_t EncodeFileText(TextView text, char* bytes) noexcept;

// UTF-8 as text. A byte that belongs to no character is U+F700 and itself, and so are
// the bytes of these private units, so that writing gives every byte back.
[[nodiscard]] Text DecodeUtf8File(std::string_view bytes);

}  // namespace Orvix

#endif
