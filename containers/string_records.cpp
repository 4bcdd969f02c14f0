// The text buffer as a record of a binary file: its length in 4 bytes if so
// wished, then the content and the one byte after it.
#include <algorithm>

#include "containers/size_keeper.h"
#include "frame/modErrorCodes.h"

namespace Orvix::component {

namespace {

constexpr LONG kPrefixBytes = 4;
constexpr LONG kShortRecord = 1 << 20;

void PutBytes(SHORT file_number, const void* bytes, LONG count) { CheckRuntime(OxPutFile(file_number, bytes, count)); }

// How many bytes the file had; the rest of `bytes` stays as it was.
LONG GetBytes(SHORT file_number, void* bytes, LONG count) {
  LONG got = 0;
  CheckRuntime(OxGetFile(file_number, bytes, count, &got));
  return got;
}

// At the end of the file `count` stays as it was. Error 9 for a part of a number.
void GetPrefix(SHORT file_number, LONG& count) {
  const LONG got = GetBytes(file_number, &count, kPrefixBytes);
  if (got != 0 && got != kPrefixBytes) RaiseRuntimeError(kSubscriptOutOfRange);
}

bool FileHolds(SHORT file_number, LONG count) {
  LONG bytes = 0;
  CheckRuntime(OxFileLength(file_number, &bytes));
  return static_cast<ULONG>(bytes) > static_cast<ULONG>(count);
}

}  // namespace

void classString::WriteToFile(SHORT file_number, OptionalBool prefix_length) {
  const SizeKeeper keeper(*this);
  if (length > bufferSize) Redimension(length);
  if (prefix_length) PutBytes(file_number, &length, kPrefixBytes);
  PutBytes(file_number, buffer.data(), length + 1);
  // The bytes after the record are gone, as callers see.
  FillBytes(length + 1, bufferSize + 1, 0);
}

void classString::ReadFromFile(SHORT file_number, OptionalBool prefix_length) {
  LONG count = length;
  if (prefix_length) GetPrefix(file_number, count);
  if (count < 0) RaiseRuntimeError(kSubscriptOutOfRange);
  // A record that was cut short is read as far as it goes; a length far beyond
  // its file is none, and no memory is made ready for it.
  if (prefix_length && count > std::max(bufferSize, kShortRecord) && !FileHolds(file_number, count)) {
    RaiseRuntimeError(kSubscriptOutOfRange);
  }
  SizeKeeper keeper(*this);
  if (count > bufferSize) Redimension(count);
  GetBytes(file_number, buffer.data(), count + 1);
  length = count;
  FillBytes(length + 1, bufferSize + 1, 0);
  // Room made for a length that the record brought stays; room for a length
  // above the size that the caller had set goes again.
  if (prefix_length) keeper.Dismiss();
}

}  // namespace Orvix::component
