// What the runtime's file functions need of the file system. Names are those of
// callers. Failures are a RuntimeError with the runtime's number.
#ifndef ORVIX_FRAME_RUNTIME_FILE_SERVICE_H
#define ORVIX_FRAME_RUNTIME_FILE_SERVICE_H

#include <cstdint>
#include <memory>

#include "orvix/runtime.h"
#include "orvix/text.h"

namespace Orvix {

// A file that stays open until `Close` or the end of the object. One thread at a
// time. Error 75 for a transfer that the opening does not allow.
class OpenedFile {
 public:
  OpenedFile() = default;
  OpenedFile(const OpenedFile&) = delete;
  OpenedFile& operator=(const OpenedFile&) = delete;
  virtual ~OpenedFile() = default;

  // At the current position, which advances. Reads fewer bytes only at the end
  // of the file; writes all or fails.
  virtual std::size_t Read(void* bytes, std::size_t count) = 0;
  virtual void Write(const void* bytes, std::size_t count) = 0;
  virtual void SeekTo(std::uint64_t offset) = 0;  // 0-based
  virtual std::uint64_t Length() = 0;
  // Closed whatever happens; late write failures (61, 57) show here.
  virtual void Close() = 0;
};

struct OpenRequest {
  LONG mode;    // kOxMode...
  LONG access;  // kOxAccess...
  bool shared;  // other processes may open the file too
};

enum class EntryKind { kUnknown, kDirectory, kFile };

// Receives a directory's entries: `Wants` each, then `Take` with the facts of
// those wanted that are still there.
class EntrySink {
 public:
  virtual ~EntrySink() = default;
  virtual bool Wants(TextView name, EntryKind kind) = 0;
  virtual void Take(const OxFileFacts& facts) = 0;
};

class FileService {
 public:
  virtual ~FileService() = default;

  virtual std::unique_ptr<OpenedFile> Open(TextView name, const OpenRequest& request) = 0;
  virtual OxFileFacts Facts(TextView name) = 0;
  // Facts and spelling on disk of the entry `name`; false when it is missing.
  virtual bool Find(TextView name, Text& spelling, OxFileFacts& facts) = 0;
  // The entries of a directory, "." and ".." first, others in any order. The
  // empty name is the process's directory. Error 76 when there is no directory.
  virtual void List(TextView directory, EntrySink& sink) = 0;
  virtual void MakeDirectory(TextView name) = 0;
  virtual void DeleteFile(TextView name) = 0;

  // Appends the form that all spellings of a name share, unit for unit.
  virtual void AppendFolded(TextView name, Text& folded) = 0;
  // The bytes that sequential print writes, at most kMostBytes for each unit; how many.
  static constexpr std::size_t kMostBytes = 3;
  virtual std::size_t Encode(TextView text, char* bytes) noexcept = 0;
};

// The file system of this machine.
[[nodiscard]] FileService& NativeFiles();

}  // namespace Orvix

#endif
