// The text buffer as a record of a binary file: its length in 4 bytes if so
// wished, then the content and the one byte after it.
#include "containers/size_keeper.h"
#include "frame/modErrorCodes.h"

namespace Orvix::component {

namespace {

constexpr LONG kPrefixBytes = 4;

void PutBytes(SHORT file_number, const void* bytes, LONG count) { CheckRuntime(OxPutFile(file_number, bytes, count)); }

// What lies past the end of the file stays as it was.
void GetBytes(SHORT file_number, void* bytes, LONG count) {
  LONG got = 0;
  CheckRuntime(OxGetFile(file_number, bytes, count, &got));
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
  if (prefix_length) GetBytes(file_number, &count, kPrefixBytes);
  if (count < 0) RaiseRuntimeError(kSubscriptOutOfRange);
  SizeKeeper keeper(*this);
  if (count > bufferSize && !TryRedimension(count, false)) {
    // Too much for the memory, and for the file: no length at all.
    if (!FileHolds(file_number, count)) RaiseRuntimeError(kSubscriptOutOfRange);
    throw std::bad_alloc();
  }
  GetBytes(file_number, buffer.data(), count + 1);
  length = count;
  FillBytes(length + 1, bufferSize + 1, 0);
  // Room made for a length that the record brought stays; room for a length
  // above the size that the caller had set goes again.
  if (prefix_length) keeper.Dismiss();
}

}  // namespace Orvix::component
