// System calls that fail when a test wants them to. They take the place of the
// C library's for the whole program, so one test file only may include this.
#ifndef ORVIX_TESTS_PLATFORM_SHELL_FAULTY_CALLS_H
#define ORVIX_TESTS_PLATFORM_SHELL_FAULTY_CALLS_H

#include <dirent.h>
#include <fcntl.h>
#include <stdarg.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <new>
#include <string_view>

namespace Orvix::testing {

// In force in this thread as long as it lives. Calls are counted from 1.
struct Faults {
  enum class Kind {
    kOnce,    // the call number `at` fails
    kOnward,  // so do all after it
    kKill,    // the process ends there
    kTurns,   // every second call of those that a signal may interrupt fails
    kShort,   // writes take a single byte
  };
  Faults(Kind wanted_kind, int wanted_at, int wanted_error, std::string_view wanted_names = "");
  Faults(const Faults&) = delete;
  Faults& operator=(const Faults&) = delete;
  ~Faults();

  // Whether this call is to fail.
  bool Take(std::string_view name);

  Kind kind;
  int at;
  int error;
  std::string_view names;  // of the calls that count, with a blank behind each; empty: all but "new"
  int calls = 0;
  int failed = 0;
  bool endless = false;  // calls were made as if there were no end of failing
};

inline thread_local Faults* faults = nullptr;

inline Faults::Faults(Kind wanted_kind, int wanted_at, int wanted_error, std::string_view wanted_names)
    : kind(wanted_kind), at(wanted_at), error(wanted_error), names(wanted_names) {
  faults = this;
}
inline Faults::~Faults() { faults = nullptr; }

inline bool Faults::Take(std::string_view name) {
  constexpr std::string_view kInterruptible = "open openat ftruncate write pwrite getdents64 copy_file_range syncfs ";
  if (name == "new" && names != "new ") return false;
  const std::string_view counted = kind == Kind::kTurns ? kInterruptible : names;
  const std::size_t found = counted.find(name);
  if (!counted.empty() && (found == std::string_view::npos || counted[found + name.size()] != ' ')) return false;
  ++calls;
  if (kind == Kind::kKill && calls == at) _exit(9);
  const bool fails = (kind == Kind::kOnce && calls == at) || (kind == Kind::kOnward && calls >= at) ||
                     (kind == Kind::kTurns && calls % 2 == 1);
  if (!fails || endless) return false;
  endless = ++failed == 100'000;
  errno = error;
  return true;
}

inline bool Fails(std::string_view name) { return faults != nullptr && faults->Take(name); }
inline std::size_t Taken(std::size_t count) {
  return faults != nullptr && faults->kind == Faults::Kind::kShort ? std::min<std::size_t>(count, 1) : count;
}
inline int Result(long result) { return static_cast<int>(result); }

}  // namespace Orvix::testing

#define ORVIX_FAULTY(name, ...) \
  { return Orvix::testing::Fails(#name) ? -1 : Orvix::testing::Result(syscall(__VA_ARGS__)); }
#define ORVIX_MODE(flags)                       \
  mode_t mode = 0;                              \
  if (((flags) & (O_CREAT | O_TMPFILE)) != 0) { \
    va_list rest;                               \
    va_start(rest, flags);                      \
    mode = va_arg(rest, mode_t);                \
    va_end(rest);                               \
  }

extern "C" {
int open(const char* path, int flags, ...) {
  ORVIX_MODE(flags)
  ORVIX_FAULTY(open, SYS_openat, AT_FDCWD, path, flags, mode)
}
int openat(int at, const char* path, int flags, ...) {
  ORVIX_MODE(flags)
  ORVIX_FAULTY(openat, SYS_openat, at, path, flags, mode)
}
int stat(const char* path, struct stat* to) noexcept
    ORVIX_FAULTY(stat, SYS_newfstatat, AT_FDCWD, path, to, 0) int lstat(const char* path, struct stat* to) noexcept
    ORVIX_FAULTY(lstat, SYS_newfstatat, AT_FDCWD, path, to, AT_SYMLINK_NOFOLLOW) int fstat(int file,
                                                                                           struct stat* to) noexcept
    ORVIX_FAULTY(fstat, SYS_newfstatat, file, "", to, AT_EMPTY_PATH) int fstatat(int at, const char* path,
                                                                                 struct stat* to, int flags) noexcept
    ORVIX_FAULTY(fstatat, SYS_newfstatat, at, path, to, flags) int statx(int at, const char* path, int flags,
                                                                         unsigned mask, struct statx* to) noexcept
    ORVIX_FAULTY(statx, SYS_statx, at, path, flags, mask, to) int unlinkat(int at, const char* path, int flags) noexcept
    ORVIX_FAULTY(unlinkat, SYS_unlinkat, at, path, flags) int renameat(int from, const char* old, int to,
                                                                       const char* name) noexcept
    ORVIX_FAULTY(renameat, SYS_renameat2, from, old, to, name,
                 0) int renameat2(int from, const char* old, int to, const char* name, unsigned flags) noexcept
    ORVIX_FAULTY(renameat2, SYS_renameat2, from, old, to, name, flags) int mkdir(const char* path, mode_t mode) noexcept
    ORVIX_FAULTY(mkdir, SYS_mkdirat, AT_FDCWD, path, mode) int mkdirat(int at, const char* path, mode_t mode) noexcept
    ORVIX_FAULTY(mkdirat, SYS_mkdirat, at, path, mode) int linkat(int from, const char* old, int to, const char* name,
                                                                  int flags) noexcept
    ORVIX_FAULTY(linkat, SYS_linkat, from, old, to, name, flags) int symlinkat(const char* content, int at,
                                                                               const char* name) noexcept
    ORVIX_FAULTY(symlinkat, SYS_symlinkat, content, at, name) int fchmod(int file, mode_t mode) noexcept
    ORVIX_FAULTY(fchmod, SYS_fchmod, file, mode) int futimens(int file, const timespec* times) noexcept
    ORVIX_FAULTY(futimens, SYS_utimensat, file, nullptr, times, 0) int ftruncate(int file, off_t length) noexcept
    ORVIX_FAULTY(ftruncate, SYS_ftruncate, file, length) int syncfs(int file) noexcept
    ORVIX_FAULTY(syncfs, SYS_syncfs, file) int flock(int file, int how) noexcept
    ORVIX_FAULTY(flock, SYS_flock, file, how)
    // The descriptor is gone either way.
    int close(int file) {
  const bool fails = Orvix::testing::Fails("close");
  const int error = errno;
  const int result = Orvix::testing::Result(syscall(SYS_close, file));
  if (fails) errno = error;
  return fails ? -1 : result;
}
ssize_t write(int file, const void* bytes, size_t count) {
  if (Orvix::testing::Fails("write")) return -1;
  return syscall(SYS_write, file, bytes, Orvix::testing::Taken(count));
}
ssize_t pwrite(int file, const void* bytes, size_t count, off_t at) {
  if (Orvix::testing::Fails("pwrite")) return -1;
  return syscall(SYS_pwrite64, file, bytes, Orvix::testing::Taken(count), at);
}
ssize_t getdents64(int file, void* buffer, size_t size) noexcept {
  if (Orvix::testing::Fails("getdents64")) return -1;
  return syscall(SYS_getdents64, file, buffer, size);
}
ssize_t copy_file_range(int in, off64_t* from, int out, off64_t* to, size_t count, unsigned flags) {
  if (Orvix::testing::Fails("copy_file_range")) return -1;
  return syscall(SYS_copy_file_range, in, from, out, to, count, flags);
}
}  // extern "C"

void* operator new(std::size_t bytes, const std::nothrow_t&) noexcept {
  return Orvix::testing::Fails("new") ? nullptr : std::malloc(std::max<std::size_t>(bytes, 1));
}
void* operator new[](std::size_t bytes, const std::nothrow_t& none) noexcept { return operator new(bytes, none); }
void* operator new(std::size_t bytes) {
  if (void* const block = operator new(bytes, std::nothrow)) return block;
  throw std::bad_alloc();
}
void* operator new[](std::size_t bytes) { return operator new(bytes); }
void operator delete(void* block) noexcept { std::free(block); }
void operator delete[](void* block) noexcept { std::free(block); }
void operator delete(void* block, std::size_t) noexcept { std::free(block); }
void operator delete[](void* block, std::size_t) noexcept { std::free(block); }
void operator delete(void* block, const std::nothrow_t&) noexcept { std::free(block); }
void operator delete[](void* block, const std::nothrow_t&) noexcept { std::free(block); }

#undef ORVIX_FAULTY
#undef ORVIX_MODE

#endif
