#include "frame/ansi_text.h"

#include <cstdint>
#include <cstring>

#if defined(__SSE2__) || defined(_M_X64)
#include <emmintrin.h>
#define ORVIX_ANSI_SSE2 1
#endif

namespace Orvix::component {

namespace {

constexpr std::size_t kFour = 4;

// Packs four ASCII units into four bytes; false when one is not ASCII.
inline bool PackFour(const char16_t* units, BYTE* bytes) {
  std::uint64_t four = 0;
  std::memcpy(&four, units, sizeof four);
  if ((four & 0xFF80FF80FF80FF80U) != 0) return false;
  four = (four | four >> 8) & 0x0000FFFF0000FFFFU;
  const auto packed = static_cast<std::uint32_t>(four | four >> 16);
  std::memcpy(bytes, &packed, sizeof packed);
  return true;
}

constexpr std::size_t kEight = 8;

// The same for 8 to 16 units: the first eight and the last eight, which may share
// some.
inline bool PackTwoEights(const char16_t* units, std::size_t size, BYTE* bytes) {
#if ORVIX_ANSI_SSE2
  const __m128i first = _mm_loadu_si128(reinterpret_cast<const __m128i*>(units));
  const __m128i last = _mm_loadu_si128(reinterpret_cast<const __m128i*>(units + size - kEight));
  const __m128i high = _mm_and_si128(_mm_or_si128(first, last), _mm_set1_epi16(static_cast<short>(0xFF80)));
  if (_mm_movemask_epi8(_mm_cmpeq_epi16(high, _mm_setzero_si128())) != 0xFFFF) return false;
  const __m128i packed = _mm_packus_epi16(first, last);
  _mm_storel_epi64(reinterpret_cast<__m128i*>(bytes), packed);
  _mm_storel_epi64(reinterpret_cast<__m128i*>(bytes + size - kEight), _mm_srli_si128(packed, kEight));
  return true;
#else
  return PackFour(units, bytes) && PackFour(units + kFour, bytes + kFour) &&
         PackFour(units + size - kEight, bytes + size - kEight) && PackFour(units + size - kFour, bytes + size - kFour);
#endif
}

}  // namespace

bool Narrow(TextView text, BYTE* bytes) noexcept {
  constexpr std::size_t kShort = 64;
  const std::size_t size = text.size();
  // Short ASCII, as in a text built piece by piece, is not worth a call.
  if (size >= kEight && size <= 2 * kEight && PackTwoEights(text.data(), size, bytes)) return true;
  if (size >= kFour && size <= kShort) {
    std::size_t at = 0;
    while (at + kFour <= size && PackFour(text.data() + at, bytes + at)) at += kFour;
    if (at + kFour > size && PackFour(text.data() + size - kFour, bytes + size - kFour)) return true;
  }
  if (size == 0) return true;
  BOOL substituted = 0;
  WideCharToMultiByte(CP_ACP, 0, text.data(), static_cast<INT>(size), reinterpret_cast<char*>(bytes),
                      static_cast<INT>(size), nullptr, &substituted);
  if (substituted != 0) OxNoteLostText("a text buffer");
  return substituted == 0;
}

bool NarrowForCall(TextView text, char* bytes) {
  if (text.empty()) return true;
  const auto units = static_cast<INT>(text.size());
  BOOL substituted = 0;
  WideCharToMultiByte(CP_ACP, 0, text.data(), units, bytes, units, nullptr, &substituted);
  return substituted == 0;
}

std::string Narrowed(TextView text) {
  std::string bytes(text.size(), '\0');
  NarrowForCall(text, bytes.data());
  return bytes;
}

BstrHandle Widened(std::string_view bytes) {
  BstrHandle text = BstrHandle::OfLength(bytes.size());
  const auto size = static_cast<INT>(bytes.size());
  if (size > 0) MultiByteToWideChar(CP_ACP, 0, bytes.data(), size, text.data(), size);
  return text;
}

const VARIANT& Followed(const VARIANT& value) {
  constexpr int kMostReferences = 16;
  const VARIANT* held = &value;
  for (int i = 0; i < kMostReferences && held->vt == (VT_BYREF | VT_VARIANT) && held->pvarVal != nullptr; ++i) {
    held = held->pvarVal;
  }
  return *held;
}

}  // namespace Orvix::component
