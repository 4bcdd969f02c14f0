// The plain class behind `classString`: a growable buffer of 8-bit text.
#ifndef ORVIX_CONTAINERS_CLASS_STRING_H
#define ORVIX_CONTAINERS_CLASS_STRING_H

#include <memory>
#include <string>

#include "containers/byte_scan.h"
#include "frame/argument_types.h"
#include "frame/low_bytes.h"

namespace Orvix::component {

// Positions count from 1, indexes of bytes from 0. Below, "error 9" is what a
// member fails with, nothing changed, when it needs a byte above `bufferSize`:
// SetBufferSize may cut the buffer below the length.
class classString {
 public:
  static constexpr std::string_view kClassName = "classString";

  // 256 as size, so 257 bytes, all zero; no content.
  classString();
  classString(classString&&) = delete;
  ~classString();

  // The upper index of the buffer. Error 9 for a negative one. The length stays,
  // and so does the content: clearing is done for an empty buffer only.
  void SetBufferSize(LONG new_size, OptionalBool clear_it);
  [[nodiscard]] BstrHandle Value() const;
  // The caller's text becomes what the code page made of it.
  void SetValue(TextReference new_value);
  // Address of the first byte; ends the content with a NUL. Valid until the
  // buffer is next re-dimensioned.
  LONG StrPtr();
  [[nodiscard]] LONG Length() const;
  // New bytes of the content are spaces. Error 5 for a negative length.
  void SetLength(LONG new_value);
  void Clear();
  ComPtr<_classString> Copy();

  // The parts are new objects; overwriting never changes the length. Error 5 for
  // a negative count or start, 91 for no object.
  ComPtr<_classString> Left(LONG count);
  void SetLeft(LONG count, const VARIANT& value);
  void SetLeftFrom(LONG count, _classString* value);
  ComPtr<_classString> Right(LONG count);
  void SetRight(LONG count, const VARIANT& value);
  void SetRightFrom(LONG count, _classString* value);
  // At a start of 0 the byte before the first one is absent.
  ComPtr<_classString> Mid(LONG start, OptionalVariant count);
  void SetMid(LONG start, OptionalVariant count, const VARIANT& value);
  void SetMidFrom(LONG start, OptionalVariant count, _classString* value);

  // The first byte, -1 when there is none.
  [[nodiscard]] SHORT Asc() const;
  // Any byte of the buffer, past the content too; error 9 outside.
  [[nodiscard]] BYTE Char(LONG index) const;
  void SetChar(LONG index, BYTE value);

  // Position or 0; `start` for an empty text. Another buffer may be searched for.
  LONG Instr(const VARIANT& search, LongOr<1> start);
  Self UCase();
  Self LCase();
  Self ReverseStr();
  // Adds a text, or the content of another buffer.
  Self Append(const VARIANT& value);
  // Position or 0; 0 for an empty text. What the search needs is kept for the
  // next one with the same text.
  LONG Find(TextView search, LongOr<1> start);

  // A record: the length in 4 bytes if so wished, the content and one byte more.
  void WriteToFile(SHORT file_number, OptionalBool prefix_length);
  void ReadFromFile(SHORT file_number, OptionalBool prefix_length);
  // The length by the first NUL after the first byte; one less than its index.
  LONG TrimToNull();

  // The content as a separated list. Failures are reported.
  BstrHandle GetElement(LONG index, TextView separator);
  LONG LengthList(TextView separator);

  // Takes over `count` bytes of any place, inside the buffer too. Error 5 for a
  // negative count.
  void SetFromPointer(const BYTE* address, LONG count);

 private:
  // What Left, Right and Mid select.
  struct Selection {
    enum class Kind : BYTE { kLeft, kRight, kMid } kind;
    LONG start;
    LONG count;
  };
  struct PreparedSearch;
  class SizeKeeper;

  // string_buffer.cpp
  [[nodiscard]] std::string_view Content() const;  // error 9
  void CheckIndex(LONG index) const;               // error 9
  [[nodiscard]] bool TryRedimension(LONG new_size, bool will_grow_again) noexcept;
  void Redimension(LONG new_size, bool will_grow_again = false);
  void FillBytes(LONG from, LONG end, BYTE value);
  void AppendText(TextView text);
  void AppendBuffer(_classString* other);

  // string_slices.cpp
  [[nodiscard]] LONG CountOf(const Selection& selection) const;
  [[nodiscard]] LONG FirstOf(const Selection& selection, LONG count) const;
  [[nodiscard]] ComPtr<_classString> Part(const Selection& selection);
  void Overwrite(const Selection& selection, const VARIANT& value);
  void OverwriteFrom(const Selection& selection, _classString* value);
  template <class Writer>
  void Place(const Selection& selection, LONG at_most, Writer&& write);

  // string_search.cpp
  [[nodiscard]] std::string_view Present() const;  // the bytes of the content that are there
  [[nodiscard]] LONG Search(const BytePattern& pattern, LONG start) const;
  [[nodiscard]] LONG SearchBySkips(std::string_view pattern, LONG start) const;
  struct SeparatorWalk;
  [[nodiscard]] SeparatorWalk WalkSeparators(const BytePattern& separator, LONG searches) const;

  LowBytes buffer;  // bytes 0 to bufferSize
  LONG length = 0;
  LONG bufferSize = 0;
  std::unique_ptr<PreparedSearch> lastSearch;  // made by the first Find
};

// What another object says, through its interface alone: error 5 for an address
// that cannot be one, or what the object raises.
[[nodiscard]] LONG LengthOf(_classString* object);
[[nodiscard]] const BYTE* AddressOf(_classString* object);
[[nodiscard]] const BYTE* BytesAt(LONG address);
// The buffer in an argument, null when it holds no such object.
[[nodiscard]] ComPtr<_classString> BufferIn(const VARIANT& value);

}  // namespace Orvix::component

#endif
