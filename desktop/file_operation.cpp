// The requests of `CSHFileOp`: its lists and options as the packed record that
// the shell's file-operation service takes.
#include "desktop/ansi_arguments.h"
#include "desktop/class_file_operation.h"

namespace Orvix::component {

namespace {

enum Operation : ULONG { kMove = 1, kCopy = 2, kDelete = 3, kRename = 4 };

enum Flag : USHORT {
  kMultipleDestinations = 0x1,
  kSilent = 0x4,
  kRenameOnCollision = 0x8,
  kNoConfirmation = 0x10,
  kAllowUndo = 0x40,
  kFilesOnly = 0x80,
  kSimpleProgress = 0x100,
  kNoConfirmMakeDir = 0x200,
};

// Every name and a NUL; the NUL that ends the list comes with the conversion.
Text ListOf(const std::vector<Text>& names) {
  Text list;
  for (const Text& name : names) {
    list += name;
    list += u'\0';
  }
  return list;
}

// The request in naturally aligned form.
struct WorkingRecord {
  LONG hwnd;
  ULONG wFunc;
  LONG pFrom;
  LONG pTo;
  USHORT fFlags;
  LONG fAnyOperationsAborted;
  LONG hNameMappings;
  LONG lpszProgressTitle;
};
static_assert(sizeof(WorkingRecord) == 32 && offsetof(WorkingRecord, fAnyOperationsAborted) == 20);

// The request as the service reads it: without padding after the flag word.
class PackedRequest {
 public:
  explicit PackedRequest(const WorkingRecord& record) {
    Put(0, record.hwnd);
    Put(4, record.wFunc);
    Put(8, record.pFrom);
    Put(12, record.pTo);
    Put(16, record.fFlags);
    Put(kAborted, record.fAnyOperationsAborted);
    Put(22, record.hNameMappings);
    Put(26, record.lpszProgressTitle);
  }
  [[nodiscard]] void* Address() { return bytes_; }
  [[nodiscard]] LONG Aborted() const {
    LONG aborted = 0;
    RtlMoveMemory(&aborted, bytes_ + kAborted, sizeof aborted);
    return aborted;
  }

 private:
  static constexpr std::size_t kAborted = 18;

  template <class Field>
  void Put(std::size_t offset, Field value) {
    RtlMoveMemory(bytes_ + offset, &value, sizeof value);
  }

  // One byte more than the service reads.
  BYTE bytes_[31]{};
};

}  // namespace

bool CSHFileOp::MoveFiles() { return DoFileOperation(kMove); }
bool CSHFileOp::CopyFiles() { return DoFileOperation(kCopy); }
bool CSHFileOp::DeleteFiles() { return DoFileOperation(kDelete); }
bool CSHFileOp::RenameFiles() { return DoFileOperation(kRename); }

void CSHFileOp::ClearSourceFiles() { sources_.clear(); }
void CSHFileOp::AddSourceFile(TextView name) { sources_.emplace_back(name); }
void CSHFileOp::ClearDestFiles() { destinations_.clear(); }
void CSHFileOp::AddDestFile(TextView name) { destinations_.emplace_back(name); }

bool CSHFileOp::DoFileOperation(ULONG operation) const {
  WorkingRecord record{};
  record.hwnd = parent_window_;
  record.wFunc = operation;

  int flags = allow_undo_ ? kAllowUndo : 0;
  if (silent_mode_) flags |= kSilent;
  if (rename_on_collision_) flags |= kRenameOnCollision;
  if (!confirm_operation_) flags |= kNoConfirmation;
  if (!confirm_make_dir_) flags |= kNoConfirmMakeDir;
  if (!include_directories_) flags |= kFilesOnly;
  if (!custom_text_.empty()) flags |= kSimpleProgress;

  if (sources_.empty()) RaiseLibraryError(errNoSourceFiles, {}, u"No source files specified file operation");
  if (destinations_.size() > 1) flags |= kMultipleDestinations;
  record.fFlags = static_cast<USHORT>(flags);

  // They live until the service has returned.
  const LowText from(ListOf(sources_));
  const LowText to(ListOf(destinations_));
  const LowText title(custom_text_);
  record.pFrom = from.Address();
  record.pTo = to.Address();
  record.lpszProgressTitle = title.Address();

  PackedRequest request(record);
  const INT result = SHFileOperationA(request.Address());
  record.fAnyOperationsAborted = request.Aborted();
  return result == 0 && record.fAnyOperationsAborted == 0;
}

}  // namespace Orvix::component
