// A ring of the latest lossy conversions of each thread. A conversion and the
// service that gets its bytes run on one thread, one soon after the other.
#include "platform/names/text_behind.h"

#include <functional>
#include <memory>
#include <new>

#include "platform/names/code_page.h"
#include "platform/system/per_thread.h"

namespace Orvix {

namespace {

struct Note {
  const char* start = nullptr;  // null: unused
  std::size_t length = 0;
  std::unique_ptr<char16_t[]> text;  // as many units; null when there was no memory for it
};

constexpr std::size_t kNotes = 16;
constexpr std::size_t kLongest = std::size_t{4} << 20;

struct Ring {
  Note notes[kNotes];
  std::size_t next = 0;
};

bool Overlap(const Note& note, std::string_view bytes) {
  const std::less<> before;
  return note.start != nullptr && before(note.start, bytes.data() + bytes.size()) &&
         before(bytes.data(), note.start + note.length);
}

}  // namespace

void ForgetLossyConversion(std::string_view bytes) noexcept {
  Ring* const ring = PerThread<Ring>::Find();
  if (ring == nullptr) return;
  for (Note& note : ring->notes) {
    if (Overlap(note, bytes)) note = {};
  }
}

void NoteLossyConversion(std::string_view bytes, TextView text) noexcept {
  ForgetLossyConversion(bytes);
  Ring* const ring = text.size() > kLongest ? nullptr : PerThread<Ring>::Make();
  if (ring == nullptr) return;
  Note& note = ring->notes[ring->next];
  ring->next = (ring->next + 1) % kNotes;
  note = {bytes.data(), bytes.size(), std::unique_ptr<char16_t[]>(new (std::nothrow) char16_t[text.size()])};
  if (note.text != nullptr) text.copy(note.text.get(), text.size());
}

Text TextBehind(std::string_view bytes) {
  if (const Ring* const ring = PerThread<Ring>::Find(); ring != nullptr) {
    const std::less_equal<> at_or_before;
    for (const Note& note : ring->notes) {
      if (!Overlap(note, bytes) || !at_or_before(note.start, bytes.data()) ||
          !at_or_before(bytes.data() + bytes.size(), note.start + note.length)) {
        continue;
      }
      if (note.text == nullptr) throw std::bad_alloc();
      const TextView text(note.text.get() + (bytes.data() - note.start), bytes.size());
      if (ToAnsi(text) == bytes) return Text(text);
    }
  }
  return FromAnsi(bytes);
}

}  // namespace Orvix
