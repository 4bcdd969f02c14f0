// What stands in for a file while it is stored has to be like it in everything
// but content: what cannot be carried over leaves the file to be written in place.
#include "platform/filesystem/stored_file.h"

#include <fcntl.h>
#include <linux/limits.h>
#include <sys/stat.h>
#include <sys/xattr.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "frame/runtime/runtime_error.h"
#include "platform/filesystem/errno_numbers.h"
#include "platform/filesystem/opened_file.h"
#include "platform/filesystem/staged_file.h"

namespace Orvix {

namespace {

constexpr LONG kPathFileAccess = 75;
constexpr LONG kAlreadyExists = 58;
constexpr LONG kPathNotFound = 76;

struct Place {
  std::string directory;
  std::string name;
};
Place PlaceOf(const std::string& path) {
  const std::size_t slash = path.rfind('/');
  if (slash == std::string::npos) return {".", path};
  return {slash == 0 ? "/" : path.substr(0, slash), path.substr(slash + 1)};
}

struct OpenDirectory {
  int descriptor;
  ~OpenDirectory() { close(descriptor); }
};

class StoredFile : public OpenedFile {
 public:
  // Takes over the open directory.
  StoredFile(int directory, std::string name, bool replaces)
      : directory_{directory}, name_(std::move(name)), replaces_(replaces), staged_(directory) {}

  [[nodiscard]] int Make(mode_t mode) { return staged_.MakeFile(mode); }
  [[nodiscard]] int descriptor() const { return staged_.descriptor(); }
  // The file that is going to be replaced stays open, and so counts as open for output.
  void Hold(std::unique_ptr<ResolvedFile> old) { old_ = std::move(old); }

  std::size_t Read(void*, std::size_t) override { throw RuntimeError{kPathFileAccess}; }
  void Write(const void* bytes, std::size_t count) override {
    spoiled_ = true;  // a part of it is not what was to be stored
    WriteAll(descriptor(), bytes, count);
    spoiled_ = false;
  }
  void SeekTo(std::uint64_t offset) override {
    if (lseek(descriptor(), static_cast<off_t>(offset), SEEK_SET) < 0) FailWithErrno(errno, FileTask::kTransfer);
  }
  std::uint64_t Length() override {
    struct stat facts;
    if (fstat(descriptor(), &facts) != 0) FailWithErrno(errno, FileTask::kTransfer);
    return static_cast<std::uint64_t>(facts.st_size);
  }
  void Close() override {
    if (spoiled_) return;
    // Who else has the file open goes on with it.
    if (old_ != nullptr && !old_->KeepOthersOut()) return WriteInPlace();
    // Nothing stood there when it was looked for: the name is taken at once, and
    // what came in between is replaced as any other.
    int taken = old_ == nullptr ? staged_.Commit(name_.c_str(), /*replace=*/false) : EEXIST;
    if (taken == EEXIST && replaces_) taken = staged_.Commit(name_.c_str(), /*replace=*/true);
    if (taken != 0) FailWithErrno(taken, FileTask::kCreate);
    const int lost = staged_.Close();
    if (old_ != nullptr) old_->Close();
    if (lost != 0) FailWithErrno(lost, FileTask::kTransfer);
  }

 private:
  void WriteInPlace() {
    old_->Empty();
    SeekTo(0);
    char bytes[64 * 1024];
    for (;;) {
      const ssize_t got = read(descriptor(), bytes, sizeof bytes);
      if (got < 0 && errno != EINTR) FailWithErrno(errno, FileTask::kTransfer);
      if (got == 0) break;
      if (got > 0) WriteAll(old_->descriptor(), bytes, static_cast<std::size_t>(got));
    }
    old_->Close();
  }

  OpenDirectory directory_;  // outlives what is staged in it
  std::string name_;
  bool replaces_;
  StagedFile staged_;
  std::unique_ptr<ResolvedFile> old_;
  bool spoiled_ = false;
};

std::unique_ptr<StoredFile> Stage(const Place& place, bool replaces) {
  int directory = 0;
  do {
    directory = open(place.directory.c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC);
  } while (directory < 0 && errno == EINTR);
  if (directory < 0) return nullptr;
  try {
    return std::make_unique<StoredFile>(directory, place.name, replaces);
  } catch (...) {
    close(directory);
    throw;
  }
}

std::unique_ptr<OpenedFile> OpenNew(const NativeName& name, bool replaces) {
  if (name.parent_missing) throw RuntimeError{kPathNotFound};
  const Place place = PlaceOf(name.path);
  if (place.name.empty()) throw RuntimeError{kPathFileAccess};  // it asks for a directory
  std::unique_ptr<StoredFile> stored = Stage(place, replaces);
  if (stored == nullptr) FailWithErrno(errno, FileTask::kCreate);
  if (const int error = stored->Make(0666); error != 0) FailWithErrno(error, FileTask::kCreate);
  return stored;
}

std::uint64_t MountOf(const std::string& path) {
  struct statx facts {};
  if (statx(AT_FDCWD, path.c_str(), AT_SYMLINK_NOFOLLOW, STATX_MNT_ID, &facts) != 0) return 0;
  return (facts.stx_mask & STATX_MNT_ID) != 0 ? facts.stx_mnt_id : 0;
}

bool CopyAttributes(const std::string& from, int to) {
  const ssize_t size = listxattr(from.c_str(), nullptr, 0);
  if (size <= 0) return size == 0 || errno == EOPNOTSUPP;
  std::vector<char> names(static_cast<std::size_t>(size));
  if (listxattr(from.c_str(), names.data(), names.size()) != size) return false;
  std::vector<char> value(XATTR_SIZE_MAX);
  for (const char* name = names.data(); name < names.data() + size; name += std::strlen(name) + 1) {
    // A write takes these from a file that is written in place, too.
    if (std::string_view(name) == "security.capability") continue;
    const ssize_t length = getxattr(from.c_str(), name, value.data(), value.size());
    if (length < 0 || fsetxattr(to, name, value.data(), static_cast<std::size_t>(length), 0) != 0) return false;
  }
  return true;
}

// A stand-in for the plain file at `path`; null when it cannot be replaced.
std::unique_ptr<StoredFile> StandIn(const std::string& path) {
  const Place place = PlaceOf(path);
  struct stat facts;
  struct stat above;
  if (lstat(path.c_str(), &facts) != 0 || !S_ISREG(facts.st_mode) || facts.st_nlink != 1) return nullptr;
  if (stat(place.directory.c_str(), &above) != 0 || MountOf(path) != MountOf(place.directory)) return nullptr;
  const uid_t user = geteuid();
  if ((above.st_mode & S_ISVTX) != 0 && user != 0 && user != above.st_uid && user != facts.st_uid) return nullptr;
  std::unique_ptr<StoredFile> stored = Stage(place, /*replaces=*/true);
  if (stored == nullptr || stored->Make(0600) != 0) return nullptr;
  const int file = stored->descriptor();
  struct stat made;
  if (fstat(file, &made) != 0) return nullptr;
  const bool own = made.st_uid == facts.st_uid && made.st_gid == facts.st_gid;
  if (!own && fchown(file, facts.st_uid, facts.st_gid) != 0) return nullptr;
  // What the directory gave it may let in more than the old file did.
  constexpr char kRights[] = "system.posix_acl_access";
  if (getxattr(path.c_str(), kRights, nullptr, 0) < 0 && fremovexattr(file, kRights) != 0 && errno != ENODATA &&
      errno != EOPNOTSUPP) {
    return nullptr;
  }
  // Only a privileged user's write keeps all of them.
  const mode_t modes = facts.st_mode & (user == 0 ? 07777 : 01777);
  return CopyAttributes(path, file) && fchmod(file, modes) == 0 ? std::move(stored) : nullptr;
}

}  // namespace

std::unique_ptr<OpenedFile> OpenStoredFile(const NativeName& name, const OpenRequest& request) {
  const bool is_new = request.mode == kOxModeNew;
  struct stat facts;
  const bool found = lstat(name.path.c_str(), &facts) == 0;
  const bool dangling = found && S_ISLNK(facts.st_mode) && stat(name.path.c_str(), &facts) != 0;
  if (is_new && found && !dangling) throw RuntimeError{S_ISDIR(facts.st_mode) ? kPathFileAccess : kAlreadyExists};
  // What could not be looked at may be there all the same: it is never emptied.
  if (!found && (is_new || errno == ENOENT)) return OpenNew(name, /*replaces=*/!is_new);
  // A pipe's reader would take a second opening for another writer.
  if (stat(name.path.c_str(), &facts) == 0 && !S_ISREG(facts.st_mode)) return OpenResolved(name, request, true);
  std::unique_ptr<ResolvedFile> old = OpenResolved(name, request, /*empties=*/false);
  if (is_new) {
    if (old->Length() != 0) throw RuntimeError{kAlreadyExists};
    return old;  // behind a link that led nowhere
  }
  char real[PATH_MAX];
  errno = 0;
  std::unique_ptr<StoredFile> stored = realpath(name.path.c_str(), real) != nullptr ? StandIn(real) : nullptr;
  // Without memory the text would not get into the emptied file either.
  if (stored == nullptr && errno == ENOMEM) FailWithErrno(ENOMEM, FileTask::kCreate);
  if (stored != nullptr) {
    stored->Hold(std::move(old));
    return stored;
  }
  old->Empty();
  return old;
}

}  // namespace Orvix
