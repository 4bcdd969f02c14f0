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
constexpr LONG kDeviceError = 57;

// The last `count` units; the whole text when it has no more.
TextView Right(TextView text, LONG count) {
  if (count < 0) RaiseRuntimeError(kInvalidArgument);
  const auto wanted = static_cast<std::size_t>(count);
  return wanted >= text.size() ? text : text.substr(text.size() - wanted);
}

// Reads `size` bytes from the start into `text`, one unit a byte. False when the
// file has by now another length.
bool ReadWhole(SHORT number, BSTR text, LONG size) {
  constexpr LONG kChunk = 1 << 18;
  std::vector<char> bytes(static_cast<std::size_t>(std::clamp(size, LONG{1}, kChunk)));
  CheckRuntime(OxSeekFile(number, 1));
  for (LONG done = 0; done < size;) {
    const LONG wanted = std::min(size - done, static_cast<LONG>(bytes.size()));
    LONG got = 0;
    CheckRuntime(OxGetFile(number, bytes.data(), wanted, &got));
    if (got < wanted) return false;
    MultiByteToWideChar(CP_ACP, 0, bytes.data(), got, text + done, got);
    done += got;
  }
  LONG beyond = 0;
  CheckRuntime(OxGetFile(number, bytes.data(), 1, &beyond));
  return beyond == 0;
}

// A text holds 2^31 - 1 bytes at most, and lengths beyond wrap: such a file still
// has bytes there.
void RefuseOversized(SHORT number) {
  constexpr LONG kLastPosition = 2147483647;
  char two[2];
  LONG got = 0;
  CheckRuntime(OxSeekFile(number, kLastPosition));
  CheckRuntime(OxGetFile(number, two, 2, &got));
  if (got == 2) RaiseRuntimeError(kOutOfMemory);
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
    SHORT number = FreeFileNumber();
    LONG size = FileSize();
    if (size < 0) RaiseRuntimeError(kOutOfMemory);
    // For reading only: a file that has gone since the test is a failure, and is not
    // made again.
    OpenUnder(number, CompleteFilename(), kSharedBinaryRead);
    RefuseOversized(number);
    // A file that changes under the reading is read again, whole, a few times.
    for (int attempt = 0; attempt < 4; ++attempt) {
      BstrHandle text;
      *text.Receive() = SysAllocStringLen(nullptr, static_cast<UINT>(size));
      if (text.get() == nullptr) throw std::bad_alloc();
      if (ReadWhole(number, text.get(), size)) {
        CheckRuntime(OxCloseFile(number));
        return text;
      }
      CheckRuntime(OxFileLength(number, &size));
      if (size < 0) RaiseRuntimeError(kOutOfMemory);
    }
    RaiseRuntimeError(kDeviceError);
  });
}

void classFilename::CreateFile(OptionalText data) {
  TranslateTo(errFileAccess, kGetFileSource, [&] {
    if (Exists()) return;
    Utility().MakeDir(Path());
    SHORT number = FreeFileNumber();
    OpenUnder(number, CompleteFilename(), kTextOutput);
    if (!data.value.empty()) {
      const BstrHandle text(data.value);
      CheckRuntime(OxPrintFile(number, text.get()));
    }
    CheckRuntime(OxCloseFile(number));
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
  const LONG room = WrapSubtract(max_length, Length(name_));
  if (room <= Length(drive) + 4) return drive + u"\\..\\" + name_;
  return ShortenPath(std::max(room, LONG{0})) + name_;
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
  SHORT number = FreeFileNumber();  // running out of numbers is the caller's to know
  return FallBackSilently(false, [&] {
    if (!Exists()) return false;
    OpenUnder(number, CompleteFilename(), opening);
    CheckRuntime(OxCloseFile(number));
    return true;
  });
}

bool classFilename::CanOpenForRead() { return CanOpen(kBinaryRead); }
bool classFilename::CanOpenForWrite() { return CanOpen(kBinaryWrite); }
bool classFilename::HasReadPermission() { return CanOpenForRead(); }
bool classFilename::HasWritePersmission() { return CanOpenForWrite(); }

}  // namespace Orvix::component
