// Listings of directories by folded name, each watched by inotify(7): a notice is
// queued before the call that changed the directory returns, so a listing whose
// notices have been taken is the directory as it is. A watch begins before the
// directory is read, and notices of what was read already change nothing.
#include "platform/names/other_spelling.h"

#include <dirent.h>
#include <fcntl.h>
#include <linux/magic.h>
#include <sys/inotify.h>
#include <sys/stat.h>
#include <sys/vfs.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdint>
#include <list>
#include <memory>
#include <mutex>
#include <new>
#include <unordered_map>
#include <utility>

#include "frame/runtime/never_destroyed.h"
#include "platform/names/case_fold.h"

namespace Orvix {

namespace {

// A watch costs more than it gains where a reading is this short.
constexpr std::size_t kSmallDirectory = 64;
constexpr std::size_t kMostNames = 1 << 19;  // kept in all
constexpr std::size_t kMostDirectories = 64;

struct DirectoryCloser {
  void operator()(DIR* directory) const { closedir(directory); }
};
using OpenedDirectory = std::unique_ptr<DIR, DirectoryCloser>;

OpenedDirectory OpenDirectory(int parent, const char* name) {
  const int descriptor = openat(parent, name, O_RDONLY | O_DIRECTORY | O_CLOEXEC);
  DIR* const opened = descriptor < 0 ? nullptr : fdopendir(descriptor);
  if (opened == nullptr && descriptor >= 0) close(descriptor);
  return OpenedDirectory(opened);
}

// Calls `take` with each name; an errno value, 0 at the end.
template <class Take>
int ReadNames(DIR* directory, Take&& take) {
  for (;;) {
    errno = 0;
    const dirent* const entry = readdir(directory);
    if (entry == nullptr) return errno;
    const std::string_view name = entry->d_name;
    if (name != "." && name != "..") take(name);
  }
}

char LowerAscii(char byte) { return byte >= 'A' && byte <= 'Z' ? static_cast<char>(byte | 0x20) : byte; }
bool IsAscii(std::string_view bytes) {
  return std::all_of(bytes.begin(), bytes.end(), [](char byte) { return static_cast<signed char>(byte) >= 0; });
}

std::string Folded(std::string_view name) {
  if (!IsAscii(name)) return ToUtf8(FoldName(FromUtf8(name)));
  std::string folded(name);
  std::transform(folded.begin(), folded.end(), folded.begin(), LowerAscii);
  return folded;
}

// False when no other spelling of `name` can exist.
bool HasCase(std::string_view name) {
  return std::any_of(name.begin(), name.end(), [](char byte) {
    return static_cast<signed char>(byte) < 0 || (LowerAscii(byte) >= 'a' && LowerAscii(byte) <= 'z');
  });
}

// Whether every change is made through this kernel, and so noticed.
bool IsLocal(int descriptor) {
  struct statfs facts;
  if (fstatfs(descriptor, &facts) != 0) return false;
  constexpr std::int64_t kLocal[] = {EXT4_SUPER_MAGIC, BTRFS_SUPER_MAGIC, XFS_SUPER_MAGIC,   TMPFS_MAGIC,
                                     RAMFS_MAGIC,      F2FS_SUPER_MAGIC,  MSDOS_SUPER_MAGIC, OVERLAYFS_SUPER_MAGIC};
  return std::ranges::find(kLocal, std::int64_t{facts.f_type}) != std::end(kLocal);
}

struct Listing {
  dev_t device;
  ino_t inode;
  int watch;
  std::unordered_multimap<std::string, std::string> names;  // by their folded form
  std::string moved_to;                                     // by the last notice, if it was of that

  void Add(std::string_view name) {
    const std::string folded = Folded(name);
    const auto [first, last] = names.equal_range(folded);
    if (std::none_of(first, last, [&](const auto& known) { return known.second == name; })) names.emplace(folded, name);
  }
  void Remove(std::string_view name) {
    const auto [first, last] = names.equal_range(Folded(name));
    const auto known = std::find_if(first, last, [&](const auto& pair) { return pair.second == name; });
    if (known != last) names.erase(known);
  }
};

class Listings {
 public:
  // The listing of an open directory, as it is now. Null when it is not kept.
  const Listing* Find(const struct stat& directory) {
    if (!TakeNotices()) return nullptr;
    const auto known = std::find_if(listings_.begin(), listings_.end(), [&](const Listing& listing) {
      return listing.inode == directory.st_ino && listing.device == directory.st_dev;
    });
    if (known == listings_.end()) return nullptr;
    listings_.splice(listings_.begin(), listings_, known);  // the last used ones stay longest
    return &listings_.front();
  }

  // Watches a directory, then reads it. Null when that cannot be done.
  const Listing* Make(int descriptor, const struct stat& directory) {
    if (!IsLocal(descriptor) || !Start()) return nullptr;
    const std::string path = "/proc/self/fd/" + std::to_string(descriptor);
    const int watch =
        inotify_add_watch(queue_, path.c_str(),
                          IN_CREATE | IN_DELETE | IN_MOVE | IN_DELETE_SELF | IN_MOVE_SELF | IN_UNMOUNT | IN_ONLYDIR);
    if (watch < 0) return nullptr;
    Forget(watch);
    Listing made{directory.st_dev, directory.st_ino, watch, {}, {}};
    const OpenedDirectory opened = OpenDirectory(descriptor, ".");
    const bool whole = opened != nullptr && ReadNames(opened.get(), [&](std::string_view name) {
                                              if (made.names.size() <= kMostNames)
                                                made.names.emplace(Folded(name), name);
                                            }) == 0;
    if (!whole || made.names.size() > kMostNames) {
      inotify_rm_watch(queue_, watch);
      return nullptr;
    }
    listings_.push_front(std::move(made));
    MakeRoom();
    return TakeNotices() && !listings_.empty() && listings_.front().watch == watch ? &listings_.front() : nullptr;
  }

  // After a failure in here nothing that is kept can be trusted.
  void Drop() noexcept {
    listings_.clear();
    if (queue_ >= 0) close(std::exchange(queue_, -1));
  }

  std::mutex mutex;

 private:
  bool Start() {
    if (queue_ >= 0 && process_ != getpid()) Drop();  // notices go to the one that made the queue
    if (queue_ >= 0) return true;
    process_ = getpid();
    queue_ = inotify_init1(IN_NONBLOCK | IN_CLOEXEC);
    return queue_ >= 0;
  }

  // Brings the listings up to date. False when there are none to trust.
  bool TakeNotices() {
    if (queue_ < 0 || !Start()) return false;
    alignas(inotify_event) char bytes[16 * 1024];
    for (;;) {
      const ssize_t got = read(queue_, bytes, sizeof bytes);
      if (got < 0 && errno == EINTR) continue;
      if (got < 0 && errno == EAGAIN) return true;
      if (got <= 0) break;
      for (const char* at = bytes; at < bytes + got;) {
        const auto* const notice = reinterpret_cast<const inotify_event*>(at);
        at += sizeof *notice + notice->len;
        if ((notice->mask & IN_Q_OVERFLOW) != 0) {
          Drop();
          return false;
        }
        Take(*notice);
      }
    }
    Drop();
    return false;
  }

  void Take(const inotify_event& notice) {
    const auto listing = std::find_if(listings_.begin(), listings_.end(),
                                      [&](const Listing& known) { return known.watch == notice.wd; });
    if (listing == listings_.end()) return;
    // Two names that are exchanged look like two moves, the second of them from
    // where the first one led: both are there afterwards.
    const bool exchange = (notice.mask & IN_MOVED_FROM) != 0 && listing->moved_to == notice.name;
    listing->moved_to = (notice.mask & IN_MOVED_TO) != 0 ? notice.name : "";
    if ((notice.mask & (IN_CREATE | IN_MOVED_TO)) != 0) {
      listing->Add(notice.name);
    } else if (exchange) {
      inotify_rm_watch(queue_, listing->watch);
      listings_.erase(listing);
    } else if ((notice.mask & (IN_DELETE | IN_MOVED_FROM)) != 0) {
      listing->Remove(notice.name);
    } else if ((notice.mask & IN_MOVE_SELF) == 0) {
      listings_.erase(listing);  // gone, or not to be reached any more
    }
  }

  void Forget(int watch) {
    listings_.remove_if([&](const Listing& listing) { return listing.watch == watch; });
  }

  void MakeRoom() {
    std::size_t names = 0;
    for (const Listing& listing : listings_) names += listing.names.size();
    while (listings_.size() > 1 && (names > kMostNames || listings_.size() > kMostDirectories)) {
      names -= listings_.back().names.size();
      inotify_rm_watch(queue_, listings_.back().watch);
      listings_.pop_back();
    }
  }

  int queue_ = -1;
  pid_t process_ = 0;
  std::list<Listing> listings_;
};

Listings& TheListings() {
  static NeverDestroyed<Listings> listings;
  return *listings;
}

std::vector<std::string> Sorted(std::vector<std::string> spellings) {
  std::sort(spellings.begin(), spellings.end());
  return spellings;
}

std::vector<std::string> Matches(const Listing& listing, const std::string& folded, std::string_view name) {
  std::vector<std::string> found;
  const auto [first, last] = listing.names.equal_range(folded);
  for (auto known = first; known != last; ++known) {
    if (known->second != name) found.push_back(known->second);
  }
  return Sorted(std::move(found));
}

}  // namespace

std::vector<std::string> OtherSpellings(int parent, const char* directory, std::string_view name, int* unreadable) {
  int ignored = 0;
  int& error = unreadable != nullptr ? *unreadable : ignored;
  error = 0;
  struct stat facts;
  if (fstatat(parent, directory, &facts, 0) != 0) {
    error = errno;
    return {};
  }
  if (!HasCase(name)) return {};
  const std::string folded = Folded(name);
  Listings& listings = TheListings();
  const std::lock_guard guard(listings.mutex);
  try {
    if (const Listing* const known = listings.Find(facts)) return Matches(*known, folded, name);
    const OpenedDirectory opened = OpenDirectory(parent, directory);
    if (opened == nullptr || fstat(dirfd(opened.get()), &facts) != 0) {
      error = errno;
      return {};
    }
    std::vector<std::string> found;
    std::size_t count = 0;
    error = ReadNames(opened.get(), [&](std::string_view entry) {
      ++count;
      if (entry.size() == name.size() || !IsAscii(entry) || !IsAscii(name)) {
        if (entry != name && Folded(entry) == folded) found.emplace_back(entry);
      }
    });
    if (count > kSmallDirectory) {
      if (const Listing* const made = listings.Make(dirfd(opened.get()), facts)) return Matches(*made, folded, name);
    }
    return Sorted(std::move(found));
  } catch (const std::bad_alloc&) {
    listings.Drop();
    throw;
  }
}

}  // namespace Orvix
