// Temporary names begin with ".orvix-": hidden, and known for what they are if a
// kill leaves one behind.
#include "platform/shell/staged.h"

#include <stdio.h>
#include <sys/random.h>

#include <atomic>

namespace Orvix::Shell {

namespace {

std::string NextTemporaryName() {
  static std::atomic<std::uint64_t> next = [] {
    std::uint64_t start = 0;
    if (getrandom(&start, sizeof start, GRND_NONBLOCK) != sizeof start) start = static_cast<std::uint64_t>(getpid());
    return start;
  }();
  char name[32];
  std::snprintf(name, sizeof name, ".orvix-%016llx", static_cast<unsigned long long>(next.fetch_add(1)));
  return name;
}

}  // namespace

int RenameToFreeName(int from, const char* name, int to, const char* to_name) noexcept {
  if (renameat2(from, name, to, to_name, RENAME_NOREPLACE) == 0) return 0;
  if (errno != EINVAL && errno != ENOSYS) return errno;
  // A file system without that call. A second name is never given to what is
  // taken, so making one and dropping the first replaces nothing either.
  if (linkat(from, name, to, to_name, 0) == 0) {
    if (unlinkat(from, name, 0) == 0) return 0;
    const int error = errno;
    unlinkat(to, to_name, 0);
    return error;
  }
  if (errno == EEXIST) return EEXIST;
  // Directories, and file systems without links: look first.
  struct stat there;
  if (fstatat(to, to_name, &there, AT_SYMLINK_NOFOLLOW) == 0) return EEXIST;
  return renameat(from, name, to, to_name) == 0 ? 0 : errno;
}

Staged::~Staged() {
  if (!name_.empty()) unlinkat(directory_, name_.c_str(), 0);
}

template <class Make>
void Staged::Create(Make&& make) {
  for (;;) {
    const std::string name = NextTemporaryName();
    if (make(name.c_str())) {
      name_ = name;
      return;
    }
    if (errno != EEXIST) Fail(errno, Side::kTarget);
  }
}

Descriptor Staged::MakeFile(mode_t mode) {
  Descriptor file;
  Create([&](const char* name) {
    file = Descriptor(openat(directory_, name, O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, mode));
    return file.ok();
  });
  return file;
}

void Staged::MakeLink(const char* content) {
  Create([&](const char* name) { return symlinkat(content, directory_, name) == 0; });
}

void Staged::MakeSpecial(mode_t mode, dev_t device) {
  Create([&](const char* name) { return mknodat(directory_, name, mode, device) == 0; });
}

bool Staged::Commit(const char* name, bool replace) {
  int error = 0;
  if (replace) {
    error = renameat(directory_, name_.c_str(), directory_, name) == 0 ? 0 : errno;
  } else {
    error = RenameToFreeName(directory_, name_.c_str(), directory_, name);
    if (error == EEXIST) return false;
  }
  if (error != 0) Fail(error, Side::kTarget);
  name_.clear();
  return true;
}

}  // namespace Orvix::Shell
