// The file of one root: notices what other processes changed, appends records,
// and writes the file anew when most of it is out of date.
#ifndef ORVIX_PLATFORM_REGISTRY_ROOT_FILE_H
#define ORVIX_PLATFORM_REGISTRY_ROOT_FILE_H

#include <optional>
#include <string>

#include "platform/registry/key_tree.h"
#include "platform/registry/store_lock.h"

namespace Orvix::registry {

class RootFile {
 public:
  // `lock` outlives this. `name` is the file's name without extension.
  RootFile(StoreLock* lock, const std::string& name);

  [[nodiscard]] KeyTree& tree() { return *tree_; }
  // Changes when `tree` was read from the start: keys found before are stale.
  [[nodiscard]] std::uint64_t generation() const { return generation_; }

  // Brings `tree` up to date. One status call when nothing changed.
  [[nodiscard]] LONG Refresh();

  // Appends one record to the file and takes it into `tree`. Only while a Writer
  // lives. On failure nothing is changed.
  [[nodiscard]] LONG Append(Record record, std::uint32_t address);

  // Holds the store's lock; `result` says whether it could be had and the file be
  // read, and `tree` is up to date then.
  class Writer {
   public:
    explicit Writer(RootFile* file);
    ~Writer();
    Writer(const Writer&) = delete;
    Writer& operator=(const Writer&) = delete;
    [[nodiscard]] LONG result() const { return result_; }

   private:
    RootFile* file_;
    LONG result_;
  };

 private:
  // What tells whether the file is as it was when it was last read.
  struct State {
    dev_t device = 0;
    ino_t inode = 0;
    off_t size = 0;
    timespec modified{};
    [[nodiscard]] bool IsSameFile(const State& other) const { return device == other.device && inode == other.inode; }
    friend bool operator==(const State& left, const State& right) {
      return left.IsSameFile(right) && left.size == right.size && left.modified.tv_sec == right.modified.tv_sec &&
             left.modified.tv_nsec == right.modified.tv_nsec;
    }
  };
  static State StateOf(const struct stat& status);

  // Whether the file is as it was read. A torn end may be replaced by another one
  // of the same length, so it is looked at again.
  [[nodiscard]] bool IsUnchanged(const std::optional<State>& now) const {
    return valid_ && !racy_ && seen_ == now && (torn_.empty() || torn_taken_);
  }
  // The state of the file as it is open here; nothing when it may not be the one
  // at the path any more, which is looked at every millisecond only.
  [[nodiscard]] std::optional<State> QuickState();
  // The file at the path: its state, nothing when it is missing.
  [[nodiscard]] LONG StateAtPath(std::optional<State>* state);
  [[nodiscard]] LONG LockAndRefresh();
  [[nodiscard]] LONG ReadChanges(const std::optional<State>& now);
  [[nodiscard]] LONG ReadFrom(off_t start);
  void Clear();
  void TakeLines(std::string_view bytes);
  [[nodiscard]] LONG PrepareToAppend(std::string* start);
  [[nodiscard]] LONG WriteLine(const std::string& line);
  void RewriteIfWorthIt();
  [[nodiscard]] bool Rewrite();

  StoreLock* lock_;
  std::string path_;
  std::unique_ptr<KeyTree> tree_;
  std::uint64_t generation_ = 0;
  Descriptor file_;
  std::int64_t path_checked_ = 0;  // when the path was last looked at
  bool exact_times_ = false;       // a time set for the file reads back as it was set
  bool writable_ = false;          // `file_` may be written to
  bool read_only_ = false;         // the file has no write bit
  std::optional<State> seen_;      // as of the last reading; nothing when there was no file
  bool racy_ = false;              // it changed so shortly before that it may change unseen
  bool valid_ = false;             // `tree_` holds what `seen_` says
  off_t taken_ = 0;                // bytes that are in `tree_`: whole lines
  std::string last_bytes_;         // the last bytes before `taken_`
  std::string torn_;               // what stands behind them, without a line end
  bool torn_taken_ = false;        // it is whole or a person's all the same, and in `tree_`
  bool too_new_ = false;           // the file has a format of a later version
  off_t rewrite_at_ = 0;           // no rewriting below this size
};

}  // namespace Orvix::registry

#endif
