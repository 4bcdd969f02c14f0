// The file behind a classFilename: existence, size, reading, creating, deleting,
// attributes, and the name shortened for display.
#include <algorithm>
#include <vector>

#include "files/class_filename.h"
#include "files/file_facts.h"
#include "files/file_numbers.h"
#include "frame/error_styles.h"

namespace Orvix::component {

namespace {

constexpr TextView kGetFileSource = u"classFile.GetFile";  // a class of that name does not exist; callers compare it
constexpr LONG kAlreadyExists = 58;

// The last `count` units; the whole text when it has no more.
TextView Right(TextView text, LONG count) {
  if (count < 0) RaiseRuntimeError(kInvalidArgument);
  const auto wanted = static_cast<std::size_t>(count);
  return wanted >= text.size() ? text : text.substr(text.size() - wanted);
}

// Reads `size` bytes from the start into `text`, one unit a byte. What the file
// does not have any more stays spaces.
void ReadInto(SHORT number, BSTR text, LONG size) {
  constexpr LONG kChunk = 1 << 18;
  std::vector<char> bytes(static_cast<std::size_t>(std::clamp(size, LONG{1}, kChunk)));
  CheckRuntime(OxSeekFile(number, 1));
  LONG done = 0;
  for (LONG got = 1; done < size && got > 0; done += got) {
    CheckRuntime(OxGetFile(number, bytes.data(), std::min(size - done, static_cast<LONG>(bytes.size())), &got));
    if (got > 0) MultiByteToWideChar(CP_ACP, 0, bytes.data(), got, text + done, got);
  }
  std::fill(text + done, text + size, u' ');
}

// The same for files that hold several bytes a character: as long as what they say.
BstrHandle ReadDecoded(SHORT number, LONG size) {
  std::vector<char> bytes(static_cast<std::size_t>(size));
  CheckRuntime(OxSeekFile(number, 1));
  LONG got = 0;
  if (size > 0) CheckRuntime(OxGetFile(number, bytes.data(), size, &got));
  BstrHandle text;
  CheckRuntime(OxTextOfFile(bytes.data(), got, text.Receive()));
  if (got == size) return text;
  return BstrHandle(Text(text.View()).append(static_cast<std::size_t>(size - got), u' '));
}

// A text holds 2^31 - 1 bytes at most, and lengths beyond wrap: such a file still
// has bytes there. Generated files, which have no such place, are not.
bool IsOversized(SHORT number) {
  constexpr LONG kLastPosition = 2147483647;
  char two[2];
  LONG got = 0;
  return SUCCEEDED(OxSeekFile(number, kLastPosition)) && SUCCEEDED(OxGetFile(number, two, 2, &got)) && got == 2;
}

}  // namespace

bool classFilename::Exists() {
  if (CompleteFilename().empty()) return false;
  return Utility().FileExists(complete_);
}

LONG classFilename::FileSize() {
  if (!Exists()) RaiseLibraryError(errFileNotFound, u"classFilename.FileSize", u"File does not exist.");
  return FactsOf(CompleteFilename()).size;
}

BstrHandle classFilename::GetFile() {
  return TranslateTo(errFileAccess, kGetFileSource, [&] {
    if (!Exists()) {
      RaiseLibraryError(errGetFileNotFound, kGetFileSource, u"File does not exist. " + CompleteFilename());
    }
    CheckFreeFileNumber();
    const LONG size = FileSize();
    if (size < 0) RaiseRuntimeError(kOutOfMemory);
    const bool decodes = OxFileText() != CP_ACP;
    BstrHandle text;
    *text.Receive() = SysAllocStringLen(nullptr, decodes ? 0 : static_cast<UINT>(size));
    if (text.get() == nullptr) throw std::bad_alloc();
    // For reading only: a file that has gone since the test is a failure, and is not
    // made again.
    const SHORT number = OpenFree(CompleteFilename(), kSharedBinaryRead);
    if (IsOversized(number)) RaiseRuntimeError(kOutOfMemory);
    if (decodes) {
      text = ReadDecoded(number, size);
    } else {
      ReadInto(number, text.get(), size);
    }
    CheckRuntime(OxCloseFile(number));
    return text;
  });
}

void classFilename::CreateFile(OptionalText data) {
  TranslateTo(errFileAccess, kGetFileSource, [&] {
    if (Exists()) return;
    Utility().MakeDir(Path());
    CheckFreeFileNumber();
    const BstrHandle text(data.value);
    try {
      const SHORT number = OpenFree(CompleteFilename(), kNewOutput);
      if (!data.value.empty()) CheckRuntime(OxPrintFile(number, text.get()));
      CheckRuntime(OxCloseFile(number));
    } catch (const Error& error) {
      // Made by somebody else since the test, or there though it could not be looked
      // at: an existing file is left alone.
      if (error.number() != kAlreadyExists) throw;
    }
  });
}

void classFilename::Delete() {
  if (!Exists()) return;
  SkipIfFails([&] {
    const BstrHandle name(complete_);
    CheckRuntime(OxDeleteFile(name.get()));
  });
}

Text classFilename::ShortenedFilename(LONG max_length) const {
  if (path_.empty() || Length(complete_) <= max_length) return complete_;
  const Text drive = Drive();
  const LONGLONG room = LONGLONG{max_length} - Length(name_);
  if (room <= Length(drive) + 4) return drive + u"\\..\\" + name_;
  return ShortenPath(static_cast<LONG>(room)) + name_;
}

// The two dots are not counted: the result has `count` + 2 characters. Callers
// rely on it.
Text classFilename::ShortenPath(LONG count) const {
  return FallBackSilently(path_, [&] {
    const LONG head = count / 3;
    return Text(Left(path_, head)).append(u"..").append(Right(path_, count - head));
  });
}

bool classFilename::IsReadOnly() const {
  bool read_only = false;
  SkipIfFails([&] { read_only = (FactsOf(complete_).attributes & kOxAttributeReadOnly) != 0; });
  return read_only;
}

Variant classFilename::DateTime() const {
  Variant time;
  SkipIfFails([&] { time = Variant::Date(FactsOf(complete_).modified); });
  return time;
}

bool classFilename::CanOpen(const Opening& opening) {
  CheckFreeFileNumber();  // running out of numbers is the caller's to know
  return FallBackSilently(false, [&] {
    if (!Exists()) return false;
    CheckRuntime(OxCloseFile(OpenFree(CompleteFilename(), opening)));
    return true;
  });
}

bool classFilename::CanOpenForRead() { return CanOpen(kBinaryRead); }
bool classFilename::CanOpenForWrite() { return CanOpen(kBinaryWrite); }
bool classFilename::HasReadPermission() { return CanOpenForRead(); }
bool classFilename::HasWritePersmission() { return CanOpenForWrite(); }

}  // namespace Orvix::component
