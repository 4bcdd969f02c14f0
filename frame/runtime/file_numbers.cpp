// File numbers: one table for the process. Its mutex guards the table alone;
// transfers hold the mutex of their own file, so that one number never waits for
// another.
#include <algorithm>
#include <array>
#include <memory>
#include <mutex>
#include <utility>

#include "frame/runtime/file_service.h"
#include "frame/runtime/never_destroyed.h"
#include "frame/runtime/runtime_error.h"

using namespace Orvix;

namespace {

constexpr LONG kInvalidCall = 5;
constexpr LONG kBadNumber = 52;
constexpr LONG kBadMode = 54;
constexpr LONG kAlreadyOpen = 55;
constexpr LONG kBadPosition = 63;
constexpr LONG kTooManyFiles = 67;

constexpr std::size_t kPrintPiece = 16384;  // units

constexpr SHORT kLastNumber = 511;
constexpr SHORT kLastFreeNumber = 255;

// A file under a number. Whoever works with it shares it, so that closing the
// number meanwhile takes nothing away under their hands.
class NumberedFile {
 public:
  NumberedFile(std::unique_ptr<OpenedFile> file, LONG mode) : file_(std::move(file)), mode_(mode) {}

  // Runs `body` with the file; `mode` 0 stands for any.
  template <class Body>
  void Use(LONG mode, Body&& body) {
    const std::lock_guard guard(mutex_);
    if (file_ == nullptr) throw RuntimeError{kBadNumber};  // closed since it was looked up
    const bool takes_both = mode_ == kOxModeStore || mode_ == kOxModeNew;
    if (mode != 0 && mode != mode_ && !takes_both) throw RuntimeError{kBadMode};
    body(*file_);
  }

  void Close() {
    const std::lock_guard guard(mutex_);
    if (const std::unique_ptr<OpenedFile> file = std::move(file_); file != nullptr) file->Close();
  }

 private:
  std::mutex mutex_;
  std::unique_ptr<OpenedFile> file_;
  LONG mode_;
};

class FileTable {
 public:
  SHORT LowestUnused() {
    const std::lock_guard guard(mutex_);
    return LowestUnusedNow();
  }

  // The number (the lowest unused one for 0) is taken before the file is opened,
  // outside the mutex.
  SHORT Open(TextView name, SHORT number, const OpenRequest& request) {
    if (number != 0 && !IsNumber(number)) throw RuntimeError{kBadNumber};
    {
      const std::lock_guard guard(mutex_);
      if (number == 0) number = LowestUnusedNow();
      if (std::exchange(SlotOf(number).taken, true)) throw RuntimeError{kAlreadyOpen};
    }
    std::shared_ptr<NumberedFile> file;
    try {
      file = std::make_shared<NumberedFile>(NativeFiles().Open(name, request), request.mode);
    } catch (...) {
      const std::lock_guard guard(mutex_);
      SlotOf(number).taken = false;
      throw;
    }
    const std::lock_guard guard(mutex_);
    SlotOf(number).file = std::move(file);
    return number;
  }

  std::shared_ptr<NumberedFile> At(SHORT number) {
    std::shared_ptr<NumberedFile> file;
    if (IsNumber(number)) {
      const std::lock_guard guard(mutex_);
      file = SlotOf(number).file;
    }
    if (file == nullptr) throw RuntimeError{kBadNumber};
    return file;
  }

  void Close(SHORT number) {
    if (!IsNumber(number)) return;
    std::shared_ptr<NumberedFile> file;
    {
      const std::lock_guard guard(mutex_);
      file = SlotOf(number).file;
    }
    if (file == nullptr) return;
    // The number is free again when the file is closed, whether or not the last
    // writes reached the disk.
    const Release release{*this, number, file};
    file->Close();
  }

 private:
  struct Slot {
    bool taken = false;  // also while its file is being opened
    std::shared_ptr<NumberedFile> file;
  };

  struct Release {
    FileTable& table;
    SHORT number;
    const std::shared_ptr<NumberedFile>& file;
    ~Release() {
      const std::lock_guard guard(table.mutex_);
      Slot& slot = table.SlotOf(number);
      if (slot.file == file) slot = Slot{};  // else another thread was first
    }
  };

  SHORT LowestUnusedNow() {
    for (SHORT number = 1; number <= kLastFreeNumber; ++number) {
      if (!SlotOf(number).taken) return number;
    }
    throw RuntimeError{kTooManyFiles};
  }

  static bool IsNumber(SHORT number) { return number >= 1 && number <= kLastNumber; }
  Slot& SlotOf(SHORT number) { return slots_[static_cast<std::size_t>(number)]; }

  std::mutex mutex_;
  std::array<Slot, kLastNumber + 1> slots_;  // 0 stays unused
};

FileTable& TheTable() {
  static NeverDestroyed<FileTable> table;
  return *table;
}

SHORT OpenUnder(const OLECHAR* name, SHORT number, LONG mode, LONG access, LONG share) {
  const bool known = mode == kOxModeOutput || mode == kOxModeBinary || mode == kOxModeStore || mode == kOxModeNew;
  if (!known) throw RuntimeError{kInvalidCall};
  if (access < kOxAccessDefault || access > kOxAccessReadWrite) throw RuntimeError{kInvalidCall};
  if (mode != kOxModeBinary && access == kOxAccessRead) throw RuntimeError{kInvalidCall};
  if (share != kOxShareDefault && share != kOxShareShared) throw RuntimeError{kInvalidCall};
  const TextView text = name == nullptr ? TextView{} : TextView{name};
  return TheTable().Open(text, number, {mode, access, share == kOxShareShared});
}

}  // namespace

HRESULT ORVIX_CALL OxFreeFile(SHORT* number) {
  if (number == nullptr) return E_POINTER;
  *number = 0;
  return AtRuntimeEdge([&] { *number = TheTable().LowestUnused(); });
}

// A null name is the empty one.
HRESULT ORVIX_CALL OxOpenFile(const OLECHAR* name, SHORT number, LONG mode, LONG access, LONG share) {
  return AtRuntimeEdge([&] {
    if (number == 0) throw RuntimeError{kBadNumber};
    OpenUnder(name, number, mode, access, share);
  });
}

HRESULT ORVIX_CALL OxOpenFreeFile(const OLECHAR* name, SHORT* number, LONG mode, LONG access, LONG share) {
  if (number == nullptr) return E_POINTER;
  *number = 0;
  return AtRuntimeEdge([&] { *number = OpenUnder(name, 0, mode, access, share); });
}

HRESULT ORVIX_CALL OxCloseFile(SHORT number) {
  return AtRuntimeEdge([&] { TheTable().Close(number); });
}

HRESULT ORVIX_CALL OxPutFile(SHORT number, const void* bytes, LONG count) {
  if (bytes == nullptr && count > 0) return E_POINTER;
  return AtRuntimeEdge([&] {
    TheTable().At(number)->Use(kOxModeBinary, [&](OpenedFile& file) {
      if (count < 0) throw RuntimeError{kInvalidCall};
      file.Write(bytes, static_cast<std::size_t>(count));
    });
  });
}

HRESULT ORVIX_CALL OxGetFile(SHORT number, void* bytes, LONG count, LONG* got) {
  if (got == nullptr) return E_POINTER;
  *got = 0;
  if (bytes == nullptr && count > 0) return E_POINTER;
  return AtRuntimeEdge([&] {
    TheTable().At(number)->Use(kOxModeBinary, [&](OpenedFile& file) {
      if (count < 0) throw RuntimeError{kInvalidCall};
      *got = static_cast<LONG>(file.Read(bytes, static_cast<std::size_t>(count)));
    });
  });
}

HRESULT ORVIX_CALL OxSeekFile(SHORT number, LONG position) {
  return AtRuntimeEdge([&] {
    TheTable().At(number)->Use(0, [&](OpenedFile& file) {
      if (position < 1) throw RuntimeError{kBadPosition};
      file.SeekTo(static_cast<std::uint64_t>(position) - 1);
    });
  });
}

// Wraps to 32 bits.
HRESULT ORVIX_CALL OxFileLength(SHORT number, LONG* length) {
  if (length == nullptr) return E_POINTER;
  *length = 0;
  return AtRuntimeEdge(
      [&] { TheTable().At(number)->Use(0, [&](OpenedFile& file) { *length = static_cast<LONG>(file.Length()); }); });
}

HRESULT ORVIX_CALL OxPrintFile(SHORT number, BSTR text) {
  return AtRuntimeEdge([&] {
    TheTable().At(number)->Use(kOxModeOutput, [&](OpenedFile& file) {
      // In pieces that stay in the processor's cache.
      std::array<char, kPrintPiece * FileService::kMostBytes> bytes;
      for (TextView rest = ViewOf(text); !rest.empty();) {
        TextView piece = rest.substr(0, kPrintPiece);
        // A pair of surrogates stays together.
        if (piece.size() < rest.size() && text_detail::IsHigh(piece.back())) piece.remove_suffix(1);
        file.Write(bytes.data(), NativeFiles().Encode(piece, bytes.data()));
        rest.remove_prefix(piece.size());
      }
    });
  });
}
