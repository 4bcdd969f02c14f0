// Storage of the text buffer: sizing, the whole value, appending, copying.
#include <algorithm>
#include <cstring>
#include <limits>

#include "containers/prepared_search.h"
#include "containers/size_keeper.h"
#include "containers/string_object.h"
#include "frame/ansi_text.h"
#include "frame/modErrorCodes.h"
#include "frame/object_call.h"

namespace Orvix::component {

namespace {

constexpr LONG kFirstSize = 256;

[[noreturn]] void RaiseInvalidLength() { RaiseLibraryError(kInvalidArgument, u"classString", u"Invalid length"); }

std::size_t SizeOf(LONG count) { return static_cast<std::size_t>(count); }

}  // namespace

// ---- Other objects -----------------------------------------------------------------

LONG LengthOf(_classString* object) {
  LONG other_length = 0;
  CallObject(object, &_classString::get_Length, &other_length);
  return other_length;
}

const BYTE* AddressOf(_classString* object) {
  LONG address = 0;
  CallObject(object, &_classString::StrPtr, &address);
  return BytesAt(address);
}

const BYTE* BytesAt(LONG address) {
  if (address == 0) RaiseRuntimeError(kInvalidArgument);
  return reinterpret_cast<const BYTE*>(  // NOLINT(performance-no-int-to-ptr)
      static_cast<std::uintptr_t>(static_cast<ULONG>(address)));
}

ComPtr<_classString> BufferIn(const VARIANT& value) {
  const VARIANT& held = Followed(value);
  IUnknown* object = nullptr;
  switch (held.vt) {
    case VT_DISPATCH:
      object = held.pdispVal;
      break;
    case VT_UNKNOWN:
      object = held.punkVal;
      break;
    case VT_BYREF | VT_DISPATCH:
      if (held.ppdispVal != nullptr) object = *held.ppdispVal;
      break;
    case VT_BYREF | VT_UNKNOWN:
      if (held.ppunkVal != nullptr) object = *held.ppunkVal;
      break;
    default:
      break;
  }
  const ComPtr<IUnknown> asked = ComPtr<IUnknown>::Share(object);
  ComPtr<_classString> buffer;
  if (asked) static_cast<void>(buffer.Ask(*asked.get(), IID__classString));
  return buffer;
}

// ---- Storage -----------------------------------------------------------------------

classString::classString() {
  if (!buffer.Resize(SizeOf(kFirstSize) + 1)) throw std::bad_alloc();
  bufferSize = kFirstSize;
  FillBytes(0, kFirstSize + 1, 0);
}

classString::~classString() = default;

void classString::FillBytes(LONG from, LONG end, BYTE value) {
  if (from < end) std::memset(buffer.data() + from, value, SizeOf(end - from));
}

void classString::CheckIndex(LONG index) const {
  if (index > bufferSize) RaiseRuntimeError(kSubscriptOutOfRange);
}

std::string_view classString::Content() const {
  CheckIndex(length - 1);
  return {reinterpret_cast<const char*>(buffer.data()), SizeOf(length)};
}

// The upper index becomes `new_size` (not negative), bytes of the common range
// are kept, added ones are zero. False, nothing changed, when memory is exhausted.
bool classString::TryRedimension(LONG new_size, bool will_grow_again) noexcept {
  const std::size_t bytes = SizeOf(new_size) + 1;
  if (!(will_grow_again ? buffer.Extend(bytes) : buffer.Resize(bytes))) return false;
  const LONG old_size = bufferSize;
  bufferSize = new_size;
  FillBytes(old_size + 1, new_size + 1, 0);
  return true;
}

void classString::Redimension(LONG new_size, bool will_grow_again) {
  if (!TryRedimension(new_size, will_grow_again)) throw std::bad_alloc();
}

void classString::SetBufferSize(LONG new_size, OptionalBool clear_it) {
  if (new_size < 0) RaiseRuntimeError(kSubscriptOutOfRange);
  Redimension(new_size);
  if (clear_it && length == 0) FillBytes(0, new_size + 1, 0);
}

LONG classString::StrPtr() {
  CheckIndex(length);
  buffer.data()[length] = 0;
  return static_cast<LONG>(reinterpret_cast<std::uintptr_t>(buffer.data()));
}

// ---- The whole value ---------------------------------------------------------------

BstrHandle classString::Value() const { return Widened(Content()); }

void classString::SetValue(TextReference new_value) {
  const TextView text = new_value.View();
  const auto size = static_cast<LONG>(text.size());
  // Room for everything comes first, so that a lack of it changes nothing.
  std::string bytes(text.size(), '\0');
  BstrHandle round_trip;
  const bool exact = Narrow(text, reinterpret_cast<BYTE*>(bytes.data()));
  if (!exact) round_trip = Widened(bytes);
  if (size > bufferSize) Redimension(size);
  if (size > 0) std::memcpy(buffer.data(), bytes.data(), bytes.size());
  length = size;
  if (!exact) new_value.Take(std::move(round_trip));
}

LONG classString::Length() const { return length; }

void classString::SetLength(LONG new_value) {
  if (new_value < 0) RaiseInvalidLength();
  if (new_value > bufferSize) Redimension(new_value);
  FillBytes(length, new_value, ' ');
  length = new_value;
}

void classString::Clear() { length = 0; }

LONG classString::TrimToNull() {
  // The first byte is never looked at, and the length is one less than the
  // index of the NUL. Callers rely on both.
  const BYTE* const bytes = buffer.data();
  const void* const found = bufferSize == 0 ? nullptr : std::memchr(bytes + 1, 0, SizeOf(bufferSize));
  length = found == nullptr ? bufferSize : static_cast<LONG>(static_cast<const BYTE*>(found) - bytes) - 1;
  return length;
}

void classString::SetFromPointer(const BYTE* address, LONG count) {
  if (count < 0) RaiseInvalidLength();
  if (count > bufferSize) Redimension(count);
  if (count > 0) std::memmove(buffer.data(), address, SizeOf(count));
  length = count;
}

ComPtr<_classString> classString::Copy() {
  ComPtr<_classString> copy = NewObject<_classString>();
  const BYTE* const bytes = BytesAt(StrPtr());
  static_cast<StringObject*>(copy.get())->plain().SetFromPointer(bytes, length);
  return copy;
}

// ---- Appending ---------------------------------------------------------------------

classString::SizeKeeper::~SizeKeeper() {
  if (string_.bufferSize > size_) static_cast<void>(string_.TryRedimension(size_, false));
}

Self classString::Append(const VARIANT& value) {
  if (value.vt == VT_BSTR) {
    AppendText(ViewOf(value.bstrVal));
  } else if (const ComPtr<_classString> other = BufferIn(value)) {
    AppendBuffer(other.get());
  } else {
    AppendText(ArgumentText(value).View());
  }
  return {};
}

void classString::AppendText(TextView text) {
  const auto count = static_cast<LONG>(text.size());
  if (count == 0) return;
  if (count > std::numeric_limits<LONG>::max() - length) throw std::bad_alloc();
  const LONG new_length = length + count;
  if (new_length > bufferSize) Redimension(new_length, true);
  Narrow(text, buffer.data() + length);
  length = new_length;
}

void classString::AppendBuffer(_classString* other) {
  const LONG count = LengthOf(other);
  if (count < 0) RaiseInvalidLength();
  if (count == 0) return;
  if (count > std::numeric_limits<LONG>::max() - length) throw std::bad_alloc();
  const LONG start = length;
  const LONG new_length = start + count;
  SizeKeeper keeper(*this);
  if (new_length > bufferSize) Redimension(new_length, true);
  // Asked for now, since growing moves the bytes of a buffer that is appended to
  // itself.
  const BYTE* const bytes = AddressOf(other);
  CheckIndex(new_length);  // the other object may have reached back to this one
  std::memmove(buffer.data() + start, bytes, SizeOf(count));
  length = new_length;
  keeper.Dismiss();
}

}  // namespace Orvix::component
