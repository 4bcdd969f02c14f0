#include "platform/registry/root_file.h"

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <ctime>

namespace Orvix::registry {

namespace {

constexpr std::string_view kFormat = "# Orvix registry ";
constexpr std::string_view kHeader =
    "# Orvix registry 1\n"
    "# One record a line: checksum, address, verb, key, name, type, data. The last one of a name holds.\n"
    "# To change a line by hand, leave out its checksum and address, so that it starts with its verb.\n";
constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";
// As much out-of-date matter as this is left alone.
constexpr off_t kSlack = 1 << 20;
// How many bytes before the known end must be unchanged for the rest to be taken
// as it was. A line ends with its data, so a rewritten file differs there.
constexpr std::size_t kCompared = 64;

bool WriteAll(int fd, std::string_view bytes) noexcept {
  while (!bytes.empty()) {
    const ssize_t written = write(fd, bytes.data(), bytes.size());
    if (written < 0) {
      if (errno == EINTR) continue;
      return false;
    }
    bytes.remove_prefix(static_cast<std::size_t>(written));
  }
  return true;
}

// Reads until `bytes` is full or the file ends, and shortens it then.
bool ReadAt(int fd, off_t at, std::string* bytes) noexcept {
  std::size_t done = 0;
  while (done < bytes->size()) {
    const ssize_t got = pread(fd, bytes->data() + done, bytes->size() - done, at + static_cast<off_t>(done));
    if (got < 0 && errno == EINTR) continue;
    if (got < 0) return false;
    if (got == 0) break;
    done += static_cast<std::size_t>(got);
  }
  bytes->resize(done);
  return true;
}

// The system's times of files advance in steps of some milliseconds, so a file
// that is edited in place right after it was written could look untouched. What is
// written here therefore gets a time of full precision with a mark at its end; a
// time without the mark that is as young as a step is not relied on.
constexpr long kMark = 777;
constexpr long kMarkUnit = 1000;
constexpr std::int64_t kStepNanoseconds = 50'000'000;
constexpr std::int64_t kPathCheckNanoseconds = 1'000'000;

// The time that was given to the file. Only its owner may give one; for others
// the file counts as young for a moment.
std::optional<timespec> StampTime(int fd) noexcept {
  timespec times[2] = {{0, UTIME_OMIT}, {}};
  if (clock_gettime(CLOCK_REALTIME, &times[1]) != 0) return std::nullopt;
  times[1].tv_nsec = times[1].tv_nsec / kMarkUnit * kMarkUnit + kMark;
  if (futimens(fd, times) != 0) return std::nullopt;
  return times[1];
}

std::int64_t MonotonicNanoseconds() noexcept {
  timespec now{};
  if (clock_gettime(CLOCK_MONOTONIC, &now) != 0) return 0;
  return static_cast<std::int64_t>(now.tv_sec) * 1'000'000'000 + now.tv_nsec;
}

bool IsYoung(const timespec& modified) noexcept {
  timespec now{};
  if (modified.tv_nsec % kMarkUnit == kMark || clock_gettime(CLOCK_REALTIME, &now) != 0) return false;
  const std::int64_t seconds = static_cast<std::int64_t>(now.tv_sec) - modified.tv_sec;
  if (seconds < -1 || seconds > 1) return false;
  const std::int64_t age = seconds * 1'000'000'000 + now.tv_nsec - modified.tv_nsec;
  return age > -kStepNanoseconds && age < kStepNanoseconds;
}

// The format of a later version, which this one must neither read nor write.
// Whatever is no number is damage, which costs nothing here.
bool IsTooNew(std::string_view first_line) {
  if (!first_line.starts_with(kFormat)) return false;
  first_line.remove_prefix(kFormat.size());
  const std::string_view number = first_line.substr(0, first_line.find_first_not_of("0123456789"));
  return !number.empty() && number != "1";
}

// A last line that lacks only its line end: a person wrote it, or the kill came
// just then. What a writer left unfinished does not fit its checksum.
bool IsWhole(std::string_view torn) { return ParseLine(torn).kind == ParsedLine::Kind::kRecord; }

}  // namespace

RootFile::RootFile(StoreLock* lock, const std::string& name)
    : lock_(lock), path_(lock->directory() + "/" + name + ".txt"), tree_(std::make_unique<KeyTree>()) {}

RootFile::State RootFile::StateOf(const struct stat& status) {
  return {status.st_dev, status.st_ino, status.st_size, status.st_mtim};
}

std::optional<RootFile::State> RootFile::QuickState() {
  if (!valid_ || !seen_ || !file_.IsOpen()) return std::nullopt;
  if (MonotonicNanoseconds() - path_checked_ > kPathCheckNanoseconds) return std::nullopt;
  struct stat status {};
  if (fstat(file_.get(), &status) != 0 || status.st_nlink == 0) return std::nullopt;
  read_only_ = (status.st_mode & 0222) == 0;
  return StateOf(status);
}

LONG RootFile::StateAtPath(std::optional<State>* state) {
  state->reset();
  path_checked_ = MonotonicNanoseconds();
  struct stat status {};
  if (stat(path_.c_str(), &status) != 0) {
    read_only_ = false;
    return errno == ENOENT || errno == ENOTDIR ? kSuccess : ResultOfErrno(errno);
  }
  // Damaged is the word for anything that is no file: it is not ours to replace.
  if (!S_ISREG(status.st_mode)) return kDamaged;
  read_only_ = (status.st_mode & 0222) == 0;
  *state = StateOf(status);
  return kSuccess;
}

LONG RootFile::Refresh() {
  std::optional<State> now = QuickState();
  if (!now) {
    const LONG result = StateAtPath(&now);
    if (result != kSuccess) return result;
    if (!now) return ReadChanges(now);
  }
  if (IsUnchanged(now)) return too_new_ ? kDamaged : kSuccess;
  return LockAndRefresh();
}

// A writer may be at it: what is read under the lock is whole.
LONG RootFile::LockAndRefresh() {
  const bool locked = lock_->LockToRead();
  std::optional<State> now;
  LONG result = StateAtPath(&now);
  if (result == kSuccess) result = ReadChanges(now);
  if (locked) lock_->Unlock();
  return result;
}

void RootFile::Clear() {
  tree_ = std::make_unique<KeyTree>();
  // Never the same for two files, so that a key of another store is stale too.
  static std::uint64_t last_generation = 0;
  generation_ = ++last_generation;
  taken_ = 0;
  last_bytes_.clear();
  torn_.clear();
  torn_taken_ = false;
  too_new_ = false;
}

LONG RootFile::ReadChanges(const std::optional<State>& now) {
  if (IsUnchanged(now)) return too_new_ ? kDamaged : kSuccess;
  const bool same_file = seen_ && now && seen_->IsSameFile(*now) && file_.IsOpen();
  const bool torn_again = seen_ == now && !torn_.empty() && !racy_;
  const bool grown = same_file && now->size > seen_->size;
  const bool goes_on = valid_ && same_file && (grown || torn_again) && !torn_taken_ && !too_new_;
  valid_ = false;
  racy_ = now && IsYoung(now->modified);
  if (!same_file) {
    file_.Close();
    exact_times_ = false;
  }
  if (!now) {
    if (seen_ || generation_ == 0) Clear();
    seen_.reset();
    valid_ = true;
    return kSuccess;
  }
  if (!file_.IsOpen()) {
    // Kept open, so that no other file can get its inode number.
    file_ = OpenFile(path_, O_RDWR | O_APPEND | O_NONBLOCK);
    writable_ = file_.IsOpen();
    if (!writable_) file_ = OpenFile(path_, O_RDONLY | O_NONBLOCK);
    if (!file_.IsOpen()) return ResultOfErrno(errno);
  }
  bool appended = goes_on;
  if (goes_on) {
    std::string before(last_bytes_.size(), '\0');
    if (!ReadAt(file_.get(), taken_ - static_cast<off_t>(before.size()), &before)) return ResultOfErrno(errno);
    appended = before == last_bytes_;
  }
  if (!appended) Clear();
  const LONG result = ReadFrom(taken_);
  if (result != kSuccess) return result;
  seen_ = now;
  valid_ = true;
  return too_new_ ? kDamaged : kSuccess;
}

LONG RootFile::ReadFrom(off_t start) {
  struct stat status {};
  if (fstat(file_.get(), &status) != 0) return ResultOfErrno(errno);
  if (status.st_size <= start) {
    torn_.clear();
    torn_taken_ = false;
    return kSuccess;
  }
  std::string bytes(static_cast<std::size_t>(status.st_size - start), '\0');
  if (!ReadAt(file_.get(), start, &bytes)) return ResultOfErrno(errno);
  TakeLines(bytes);
  return kSuccess;
}

void RootFile::TakeLines(std::string_view bytes) {
  const std::size_t end = bytes.rfind('\n') + 1;  // 0 when there is none
  torn_.clear();
  if (taken_ == 0) {
    std::string_view first = bytes.substr(0, bytes.find('\n'));
    if (first.starts_with(kByteOrderMark)) first.remove_prefix(kByteOrderMark.size());
    too_new_ = IsTooNew(first);
  }
  std::string_view lines = bytes.substr(0, end);
  if (taken_ == 0 && lines.starts_with(kByteOrderMark)) lines.remove_prefix(kByteOrderMark.size());
  while (!lines.empty() && !too_new_) {
    const std::size_t line_end = lines.find('\n');
    tree_->TakeLine(lines.substr(0, line_end));
    lines.remove_prefix(line_end + 1);
  }
  torn_ = bytes.substr(end);
  torn_taken_ = IsWhole(torn_) || (!torn_.empty() && !IsBegunRecord(torn_));
  if (torn_taken_) {
    std::string_view last = torn_;
    if (taken_ == 0 && end == 0 && last.starts_with(kByteOrderMark)) last.remove_prefix(kByteOrderMark.size());
    tree_->TakeLine(last);
  }
  taken_ += static_cast<off_t>(end);
  if (end > 0) last_bytes_ = bytes.substr(end - std::min(end, kCompared), std::min(end, kCompared));
}

RootFile::Writer::Writer(RootFile* file) : file_(file), result_(kSuccess) {
  for (;;) {
    result_ = file_->lock_->LockToWrite();
    if (result_ != kSuccess) return;
    std::optional<State> now = file_->QuickState();
    if (now && file_->IsUnchanged(now)) {
      if (file_->too_new_) result_ = kDamaged;
      return;
    }
    const std::optional<State> before = file_->seen_;
    result_ = file_->StateAtPath(&now);
    if (result_ == kSuccess) result_ = file_->ReadChanges(now);
    // A store that was taken away and made anew has another lock file.
    const bool same = before && now && before->IsSameFile(*now);
    if (same || file_->lock_->IsCurrent()) return;
    file_->lock_->Unlock();
    file_->lock_->Reset();
  }
}

RootFile::Writer::~Writer() { file_->lock_->Unlock(); }

// Makes sure that the next byte written starts a line: `start` receives what must
// be written before it.
LONG RootFile::PrepareToAppend(std::string* start) {
  if (!seen_) {
    file_ = OpenFile(path_, O_RDWR | O_APPEND | O_CREAT | O_EXCL);
    if (!file_.IsOpen()) return ResultOfErrno(errno);
    writable_ = true;
  } else if (!writable_) {
    Descriptor again = OpenFile(path_, O_RDWR | O_APPEND | O_NONBLOCK);
    if (!again.IsOpen()) return ResultOfErrno(errno);
    file_ = std::move(again);
    writable_ = true;
  }
  if (!torn_.empty()) {
    if (torn_taken_) {
      *start = "\n";
    } else if (ftruncate(file_.get(), taken_) != 0) {
      return ResultOfErrno(errno);
    }
  }
  if (taken_ == 0 && start->empty()) *start = kHeader;
  return kSuccess;
}

LONG RootFile::WriteLine(const std::string& line) {
  std::string start;
  const LONG result = PrepareToAppend(&start);
  if (result != kSuccess) return result;
  const off_t end = taken_ + (start == "\n" ? static_cast<off_t>(torn_.size()) : 0);
  // One call, so that a kill leaves at most one torn line at the end.
  if (!WriteAll(file_.get(), start.empty() ? line : start + line)) {
    const int error = errno;
    // A full disk still shortens files. If even that fails, the torn line is cut
    // off by the next writer.
    if (ftruncate(file_.get(), end) != 0) return ResultOfErrno(error);
    return ResultOfErrno(error);
  }
  taken_ = end + static_cast<off_t>(start.size() + line.size());
  torn_.clear();
  torn_taken_ = false;
  last_bytes_ = line.substr(line.size() - std::min(line.size(), kCompared));
  const std::optional<timespec> stamp = StampTime(file_.get());
  if (stamp && exact_times_ && seen_) {
    seen_->size = taken_;
    seen_->modified = *stamp;
    racy_ = false;
    return kSuccess;
  }
  struct stat status {};
  if (fstat(file_.get(), &status) != 0) return ResultOfErrno(errno);
  seen_ = StateOf(status);
  racy_ = IsYoung(seen_->modified);
  exact_times_ = stamp && stamp->tv_sec == seen_->modified.tv_sec && stamp->tv_nsec == seen_->modified.tv_nsec;
  return kSuccess;
}

LONG RootFile::Append(Record record, std::uint32_t address) {
  if (read_only_) return kAccessDenied;
  const std::string line = FormatRecord(record, address);
  // Until the record is in memory as well, the two differ.
  valid_ = false;
  const LONG result = WriteLine(line);
  if (result != kSuccess) return result;
  tree_->TakeRecord(std::move(record), line.size());
  valid_ = true;
  RewriteIfWorthIt();
  return kSuccess;
}

void RootFile::RewriteIfWorthIt() {
  const auto live = static_cast<off_t>(tree_->live_bytes());
  if (taken_ < rewrite_at_ || taken_ - live < kSlack + live) return;
  // After a failure (the disk is full, say) the log simply goes on growing.
  rewrite_at_ = Rewrite() ? 0 : 2 * taken_;
}

bool RootFile::Rewrite() {
  const std::string beside = path_ + ".new";
  // Left behind by a writer that was killed; its lock is gone, so it is nobody's.
  unlink(beside.c_str());
  Descriptor made = OpenFile(beside, O_RDWR | O_APPEND | O_CREAT | O_EXCL);
  struct stat status {};
  if (!made.IsOpen() || fstat(file_.get(), &status) != 0) return false;
  // The file stays its owner's, whoever happens to rewrite it.
  if (fchown(made.get(), status.st_uid, status.st_gid) != 0 || fchmod(made.get(), status.st_mode & 0777) != 0) {
    unlink(beside.c_str());
    return false;
  }
  std::string bytes(kHeader);
  off_t size = 0;
  bool whole = true;
  const auto flush = [&] {
    whole = whole && WriteAll(made.get(), bytes);
    size += static_cast<off_t>(bytes.size());
    last_bytes_ = bytes.substr(bytes.size() - std::min(bytes.size(), kCompared));
    bytes.clear();
  };
  valid_ = false;
  tree_->ForEachLine([&](const std::string& line) {
    if (bytes.size() + line.size() > kSlack && !bytes.empty()) flush();
    bytes += line;
  });
  flush();
  (void)StampTime(made.get());
  whole =
      whole && fsync(made.get()) == 0 && fstat(made.get(), &status) == 0 && rename(beside.c_str(), path_.c_str()) == 0;
  if (!whole) {
    unlink(beside.c_str());
    return false;  // read from the start at the next call: `last_bytes_` is not the old file's
  }
  const Descriptor directory = OpenFile(lock_->directory(), O_RDONLY | O_DIRECTORY);
  if (directory.IsOpen()) fsync(directory.get());
  file_ = std::move(made);
  writable_ = true;
  seen_ = StateOf(status);
  racy_ = IsYoung(seen_->modified);
  taken_ = size;
  valid_ = true;
  return true;
}

}  // namespace Orvix::registry
