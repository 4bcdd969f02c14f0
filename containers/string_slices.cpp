// Parts of the text buffer: taking and overwriting its left, right and middle,
// single bytes, case and order.
#include <algorithm>
#include <cstring>
#include <limits>

#include "containers/string_object.h"
#include "frame/ansi_text.h"
#include "frame/modErrorCodes.h"

namespace Orvix::component {

namespace {

[[noreturn]] void RaiseInvalid(TextView description) {
  RaiseLibraryError(kInvalidArgument, u"classString", description);
}

LONG CheckedCount(LONG count) {
  if (count < 0) RaiseInvalid(u"Invalid length");
  return count;
}

// An omitted count reaches to the end.
LONG MidCount(LONG start, OptionalVariant count) {
  if (start < 0) RaiseInvalid(u"Invalid starting position");
  if (count.value == nullptr) return std::numeric_limits<LONG>::max();
  LONG number = 0;
  CheckConversion(OxLongOf(count.value, &number));
  return CheckedCount(number);
}

constexpr BYTE kCaseDistance = 'a' - 'A';

}  // namespace

// ---- Selecting ---------------------------------------------------------------------

// Zero or negative when nothing is selected.
LONG classString::CountOf(const Selection& selection) const {
  if (selection.kind != Selection::Kind::kMid) return std::min(selection.count, length);
  const LONG to_the_end = length - selection.start + 1;
  return LONGLONG{selection.count} + selection.start > length ? to_the_end : selection.count;
}

// The position of the first of `count` selected bytes; 0 stands for the absent
// one before the first.
LONG classString::FirstOf(const Selection& selection, LONG count) const {
  switch (selection.kind) {
    case Selection::Kind::kLeft:
      return 1;
    case Selection::Kind::kRight:
      return length - count + 1;
    default:
      return selection.start;
  }
}

ComPtr<_classString> classString::Part(const Selection& selection) {
  ComPtr<_classString> part = NewObject<_classString>();
  // Ends the content with a NUL, as callers see afterwards.
  if (selection.kind == Selection::Kind::kLeft) StrPtr();
  LONG count = CountOf(selection);
  LONG first = FirstOf(selection, count);
  if (first == 0) {
    ++first;
    --count;
  }
  if (count <= 0) return part;
  CheckIndex(first - 1 + count - 1);
  static_cast<StringObject*>(part.get())->plain().SetFromPointer(buffer.data() + first - 1, count);
  return part;
}

// Hands `write` the place of the first `at_most` selected bytes: how many bytes
// of the new value to skip, where to write, and how many.
template <class Writer>
void classString::Place(const Selection& selection, LONG at_most, Writer&& write) {
  const LONG count = std::min(CountOf(selection), at_most);
  if (count <= 0) return;
  const LONG first = FirstOf(selection, count);
  const LONG skipped = first == 0 ? 1 : 0;
  if (count == skipped) return;
  const LONG index = first - 1 + skipped;
  CheckIndex(index + count - skipped - 1);
  write(static_cast<std::size_t>(skipped), buffer.data() + index, static_cast<std::size_t>(count - skipped));
}

void classString::Overwrite(const Selection& selection, const VARIANT& value) {
  // Null has no text, which nobody asks for when nothing is selected.
  if (CountOf(selection) <= 0 && Followed(value).vt == VT_NULL) return;
  const ArgumentText text(value);
  Place(selection, text.Size(),
        [&](std::size_t skipped, BYTE* to, std::size_t count) { Narrow(text.View().substr(skipped, count), to); });
}

void classString::OverwriteFrom(const Selection& selection, _classString* value) {
  if (value == nullptr) RaiseRuntimeError(kObjectNotSet);
  const ComPtr<_classString> held = ComPtr<_classString>::Share(value);
  const LONG other_length = LengthOf(value);
  if (std::min(CountOf(selection), other_length) <= 0) return;
  const BYTE* const from = AddressOf(value);
  Place(selection, other_length, [&](std::size_t skipped, BYTE* to, std::size_t count) {
    std::memmove(to, from + skipped, count);  // a buffer may be laid over itself
  });
}

// ---- Left, Right, Mid ----------------------------------------------------------------

ComPtr<_classString> classString::Left(LONG count) { return Part({Selection::Kind::kLeft, 1, CheckedCount(count)}); }

void classString::SetLeft(LONG count, const VARIANT& value) {
  Overwrite({Selection::Kind::kLeft, 1, CheckedCount(count)}, value);
}

void classString::SetLeftFrom(LONG count, _classString* value) {
  OverwriteFrom({Selection::Kind::kLeft, 1, CheckedCount(count)}, value);
}

ComPtr<_classString> classString::Right(LONG count) { return Part({Selection::Kind::kRight, 1, CheckedCount(count)}); }

void classString::SetRight(LONG count, const VARIANT& value) {
  Overwrite({Selection::Kind::kRight, 1, CheckedCount(count)}, value);
}

void classString::SetRightFrom(LONG count, _classString* value) {
  OverwriteFrom({Selection::Kind::kRight, 1, CheckedCount(count)}, value);
}

ComPtr<_classString> classString::Mid(LONG start, OptionalVariant count) {
  return Part({Selection::Kind::kMid, start, MidCount(start, count)});
}

void classString::SetMid(LONG start, OptionalVariant count, const VARIANT& value) {
  Overwrite({Selection::Kind::kMid, start, MidCount(start, count)}, value);
}

void classString::SetMidFrom(LONG start, OptionalVariant count, _classString* value) {
  OverwriteFrom({Selection::Kind::kMid, start, MidCount(start, count)}, value);
}

// ---- Single bytes, case, order ---------------------------------------------------------

SHORT classString::Asc() const { return length == 0 ? SHORT{-1} : SHORT{buffer.data()[0]}; }

// Positions are those of the buffer, not of the content: the NUL that StrPtr
// writes is read this way.
BYTE classString::Char(LONG index) const {
  if (index < 1) RaiseRuntimeError(kSubscriptOutOfRange);
  CheckIndex(index - 1);
  return buffer.data()[index - 1];
}

void classString::SetChar(LONG index, BYTE value) {
  if (index < 1) RaiseRuntimeError(kSubscriptOutOfRange);
  CheckIndex(index - 1);
  buffer.data()[index - 1] = value;
}

// Letters of the upper half of the code page are left alone.
Self classString::UCase() {
  const std::size_t size = Content().size();
  BYTE* const bytes = buffer.data();
  for (std::size_t i = 0; i < size; ++i) {
    const bool is_small = bytes[i] >= 'a' && bytes[i] <= 'z';
    bytes[i] = static_cast<BYTE>(bytes[i] - (is_small ? kCaseDistance : 0));
  }
  return {};
}

Self classString::LCase() {
  const std::size_t size = Content().size();
  BYTE* const bytes = buffer.data();
  for (std::size_t i = 0; i < size; ++i) {
    const bool is_capital = bytes[i] >= 'A' && bytes[i] <= 'Z';
    bytes[i] = static_cast<BYTE>(bytes[i] + (is_capital ? kCaseDistance : 0));
  }
  return {};
}

Self classString::ReverseStr() {
  const std::size_t size = Content().size();
  std::reverse(buffer.data(), buffer.data() + size);
  return {};
}

}  // namespace Orvix::component
