// A ring of the latest lossy conversions of each thread. A conversion and the
// service that gets its bytes run on one thread, one soon after the other.
#include "platform/names/lost_characters.h"

#include <algorithm>
#include <cstdint>
#include <functional>

namespace Orvix {

namespace {

struct Note {
  const char* start;  // null: unused
  std::size_t length;
  std::size_t first_lost;
  std::uint64_t content;  // of the bytes up to and with the first substitute
};

constexpr std::size_t kNotes = 16;
constinit thread_local Note notes[kNotes] = {};
constinit thread_local std::size_t next_note = 0;
constinit thread_local bool any_note = false;  // most threads never lose anything

std::uint64_t ContentOf(std::string_view bytes) noexcept {
  std::uint64_t hash = 0xCBF29CE484222325;
  for (const char byte : bytes) hash = (hash ^ static_cast<unsigned char>(byte)) * 0x100000001B3;
  return hash;
}

}  // namespace

void ForgetLostCharacters(std::string_view bytes) noexcept {
  if (!any_note) return;
  for (Note& note : notes) {
    if (note.start != nullptr && note.start < bytes.data() + bytes.size() && bytes.data() < note.start + note.length) {
      note.start = nullptr;
    }
  }
}

void NoteLostCharacters(std::string_view bytes, std::size_t first_lost) noexcept {
  ForgetLostCharacters(bytes);
  any_note = true;
  notes[next_note] = {bytes.data(), bytes.size(), first_lost, ContentOf(bytes.substr(0, first_lost + 1))};
  next_note = (next_note + 1) % kNotes;
}

bool LostCharacters(std::string_view bytes) noexcept {
  if (!any_note) return false;
  const std::less_equal<> at_or_before;
  return std::any_of(std::begin(notes), std::end(notes), [&](const Note& note) {
    if (note.start == nullptr || !at_or_before(bytes.data(), note.start)) return false;
    if (!at_or_before(note.start + note.first_lost + 1, bytes.data() + bytes.size())) return false;
    return note.content == ContentOf({note.start, note.first_lost + 1});
  });
}

}  // namespace Orvix
