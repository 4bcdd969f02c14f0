// The runtime's file service over this machine's file system.
#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <memory>
#include <string_view>

#include "frame/runtime/file_service.h"
#include "frame/runtime/never_destroyed.h"
#include "frame/runtime/runtime_error.h"
#include "platform/filesystem/errno_numbers.h"
#include "platform/filesystem/file_facts.h"
#include "platform/filesystem/local_time.h"
#include "platform/filesystem/open_files.h"
#include "platform/filesystem/opened_file.h"
#include "platform/names/case_fold.h"
#include "platform/names/file_text.h"
#include "platform/names/path_map.h"

namespace Orvix {

namespace {

// The last component of a native path, a trailing "/" aside.
std::string_view LastComponent(std::string_view path) {
  if (path.ends_with('/')) path.remove_suffix(1);
  return path.substr(path.rfind('/') + 1);
}

// The status of what `name` leads to; the exact spelling costs one call. An
// errno value, 0 for success; `native` is the name that was asked about last.
int StatusOf(TextView name, NativeName& native, struct stat& facts) {
  native = NameAsGiven(name);
  if (stat(native.path.c_str(), &facts) == 0) return 0;
  if (errno != ENOENT) return errno;
  native = ResolveName(name, /*looked_for=*/true);
  if (native.is_missing) return ENOENT;
  return stat(native.path.c_str(), &facts) == 0 ? 0 : errno;
}

OxFileFacts FactsOf(const NativeName& native, const struct stat& facts) {
  const std::string_view last = native.is_root ? std::string_view{} : LastComponent(native.path);
  return {AttributesOf(facts, last), SizeOf(facts), LocalDateOf(facts.st_mtim.tv_sec)};
}

[[noreturn]] void FailExisting(int error, const NativeName& native) {
  if (error == ENOENT && native.parent_missing) throw RuntimeError{76};
  FailWithErrno(error, FileTask::kExisting);
}

// `bytes` as UTF-16 into a text that is used again and again.
void AssignUtf8(Text& text, std::string_view bytes) {
  text.resize(bytes.size());
  unsigned char bits = 0;
  for (std::size_t i = 0; i < bytes.size(); ++i) {
    const auto byte = static_cast<unsigned char>(bytes[i]);
    bits = static_cast<unsigned char>(bits | byte);
    text[i] = byte;
  }
  if (bits >= 0x80) text = FromUtf8(bytes);
}

EntryKind KindOf(unsigned char type) {
  if (type == DT_DIR) return EntryKind::kDirectory;
  return type == DT_LNK || type == DT_UNKNOWN ? EntryKind::kUnknown : EntryKind::kFile;
}

struct DirectoryCloser {
  void operator()(DIR* directory) const { closedir(directory); }
};

// One directory on its way into a sink.
class Listing {
 public:
  Listing(const NativeName& directory, EntrySink& sink) : sink_(sink), is_root_(directory.is_root) {
    entries_.reset(opendir(directory.path.c_str()));  // last, so that errno is still its own
    if (entries_ == nullptr) FailWithErrno(errno, FileTask::kDirectory);
    descriptor_ = dirfd(entries_.get());
  }

  void Run() {
    Offer(".", ".", EntryKind::kDirectory);
    Offer("..", is_root_ ? "." : "..", EntryKind::kDirectory);  // nothing is above a root
    for (;;) {
      errno = 0;
      const dirent* entry = readdir(entries_.get());
      if (entry == nullptr) break;
      const std::string_view name = entry->d_name;
      // No caller can name what holds a separator, or ends like a drive.
      if (name == "." || name == ".." || name.find('\\') != std::string_view::npos || name.ends_with(':')) continue;
      Offer(name, entry->d_name, KindOf(entry->d_type));
    }
    if (errno != 0) FailWithErrno(errno, FileTask::kDirectory);
  }

 private:
  // Entries that are gone by now, and links that lead nowhere, are left out.
  void Offer(std::string_view name, const char* native, EntryKind kind) {
    AssignUtf8(name_, name);
    if (!sink_.Wants(name_, kind)) return;
    struct stat facts;
    if (fstatat(descriptor_, native, &facts, 0) != 0) {
      const int error = errno;
      if (error == ENOENT || error == ELOOP) return;
      const bool is_link = fstatat(descriptor_, native, &facts, AT_SYMLINK_NOFOLLOW) == 0 && S_ISLNK(facts.st_mode);
      if (is_link) return;
      FailWithErrno(error, FileTask::kDirectory);
    }
    sink_.Take({AttributesOf(facts, name), SizeOf(facts), dates_.DateOf(facts.st_mtim.tv_sec)});
  }

  std::unique_ptr<DIR, DirectoryCloser> entries_;
  EntrySink& sink_;
  bool is_root_;
  int descriptor_ = -1;
  LocalDates dates_;
  Text name_;
};

class NativeFileService : public FileService {
 public:
  std::unique_ptr<OpenedFile> Open(TextView name, const OpenRequest& request) override {
    return OpenNativeFile(name, request);
  }

  OxFileFacts Facts(TextView name) override {
    NativeName native;
    struct stat facts;
    if (const int error = StatusOf(name, native, facts); error != 0) FailExisting(error, native);
    return FactsOf(native, facts);
  }

  bool Find(TextView name, Text& spelling, OxFileFacts& found) override {
    NativeName native;
    struct stat facts;
    const int error = StatusOf(name, native, facts);
    if (error == ELOOP) return false;  // a link that leads nowhere
    if (error == ENOENT) return false;
    if (error != 0) FailExisting(error, native);
    // A share's root is called as the caller calls it, whatever directory that is.
    spelling = native.is_root ? Text(name.substr(name.find_last_of(u"\\/") + 1)) : FromUtf8(LastComponent(native.path));
    found = FactsOf(native, facts);
    return true;
  }

  void List(TextView directory, EntrySink& sink) override {
    const NativeName native = directory.empty() ? NativeName{".", false, false} : ResolveName(directory);
    Listing(native, sink).Run();
  }

  void MakeDirectory(TextView name) override {
    const NativeName native = ResolveName(name);
    struct stat facts;
    // The directory of a root is its mapping's business.
    if (native.is_root) throw RuntimeError{stat(native.path.c_str(), &facts) == 0 ? 75 : 76};
    if (mkdir(native.path.c_str(), 0777) != 0) FailWithErrno(errno, FileTask::kMakeDirectory);
  }

  void DeleteFile(TextView name) override {
    NativeName native;
    struct stat facts;
    if (const int error = StatusOf(name, native, facts); error != 0) FailExisting(error, native);
    if (S_ISDIR(facts.st_mode)) throw RuntimeError{53};
    if (IsOpenHere(facts)) throw RuntimeError{55};
    if ((facts.st_mode & 0222) == 0) throw RuntimeError{75};
    if (unlink(native.path.c_str()) != 0) FailWithErrno(errno == EISDIR ? ENOENT : errno, FileTask::kExisting);
  }

  void AppendFolded(TextView name, Text& folded) override { Orvix::AppendFolded(name, folded); }
  static_assert(kMostBytes == kMostFileBytes);
  std::size_t Encode(TextView text, char* bytes) noexcept override { return EncodeFileText(text, bytes); }
};

}  // namespace

FileService& NativeFiles() {
  static NeverDestroyed<NativeFileService> service;
  return *service;
}

}  // namespace Orvix
