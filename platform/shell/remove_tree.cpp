// Entries are unlinked from open directories, the deepest first.
#include "platform/shell/remove_tree.h"

#include <new>

#include "platform/shell/descriptor.h"
#include "platform/shell/entries.h"
#include "platform/shell/levels.h"
#include "platform/shell/tree_walk.h"

namespace Orvix::Shell {

namespace {

[[noreturn]] void Refuse(Progress* progress, const std::string& path) {
  if (progress != nullptr) progress->Stopped(path, kMountedHere);
  throw ShellError{kInUse};
}

// Whether something is mounted on an entry, which is no directory.
bool IsMountRoot(int directory, const char* name) {
  struct statx facts;
  if (statx(directory, name, AT_SYMLINK_NOFOLLOW, STATX_TYPE, &facts) != 0) return false;  // the deletion will tell
  return (facts.stx_attributes & facts.stx_attributes_mask & STATX_ATTR_MOUNT_ROOT) != 0;
}

// `progress` is null where nobody is to hear of it.
struct Remover {
  Progress* progress;
  std::string& path;

  void Enter(const Levels& levels, const Entries&) {
    if (levels.IsMountPoint()) Refuse(progress, path);
  }
  void Entry(int directory, const char* name, unsigned char) { Unlink(directory, name, 0); }
  void Leave(int directory, const char* name) { Unlink(directory, name, AT_REMOVEDIR); }

  void Unlink(int directory, const char* name, int flags) {
    if (unlinkat(directory, name, flags) != 0 && errno != ENOENT) {
      if (errno == EBUSY) Refuse(progress, path);
      Fail(errno, Side::kSource);
    }
    if (progress != nullptr) progress->ItemDone(path);
  }
};

// Asks for each entry to be taken away as what it is not: rights are looked at
// before kinds, so that what would be refused is refused, and nothing else
// happens.
struct Checker {
  Progress& progress;
  std::string& path;

  void Enter(const Levels& levels, const Entries&) {
    if (levels.IsMountPoint()) Refuse(&progress, path);
  }
  void Entry(int directory, const char* name, unsigned char) {
    if (IsMountRoot(directory, name)) Refuse(&progress, path);
    Ask(directory, name, AT_REMOVEDIR, ENOTDIR);
  }
  void Leave(int directory, const char* name) { Ask(directory, name, 0, EISDIR); }

  static void Ask(int directory, const char* name, int flags, int harmless) {
    if (unlinkat(directory, name, flags) == 0 || errno == harmless || errno == ENOENT) return;
    Fail(errno, Side::kSource);
  }
};

template <class Visitor>
void Visit(int directory, const char* name, std::string& path, Visitor&& visitor) {
  struct stat facts;
  if (!FactsOf(directory, name, Side::kSource, facts)) throw ShellError{kInvalidNames};
  if (S_ISDIR(facts.st_mode)) {
    WalkTree(directory, name, path, visitor);
  } else {
    visitor.Entry(directory, name, static_cast<unsigned char>(IFTODT(facts.st_mode)));
  }
}

bool IsAsItWas(const struct stat& now, const struct stat& then) {
  return SameFile(now, then) && (now.st_mode & S_IFMT) == (then.st_mode & S_IFMT) && now.st_size == then.st_size &&
         now.st_mtim.tv_sec == then.st_mtim.tv_sec && now.st_mtim.tv_nsec == then.st_mtim.tv_nsec;
}

class CopiedRemover {
 public:
  CopiedRemover(int directory, const CopiedTree& copied, bool& began)
      : copied_(copied), began_(began), levels_(directory, Side::kSource) {}

  bool Run() {
    for (std::size_t i = 0; i < copied_.size();) {
      while (open_.size() > copied_[i].depth) Leave();
      i = S_ISDIR(copied_[i].facts.st_mode) ? Enter(i) : Remove(i);
    }
    while (!open_.empty()) Leave();
    return unchanged_;
  }

 private:
  struct Open {
    std::size_t entry;
    bool unchanged = true;
  };

  // These give the entry to go on with.
  std::size_t Enter(std::size_t i) {
    levels_.Enter(copied_[i].name.c_str());
    struct stat now;
    if (fstat(levels_.here(), &now) != 0) Fail(errno, Side::kSource);
    if (SameFile(now, copied_[i].facts)) {
      open_.push_back({i});
      return i + 1;
    }
    levels_.Leave();
    MarkChanged();
    const std::size_t depth = copied_[i].depth;
    do ++i;
    while (i < copied_.size() && copied_[i].depth > depth);
    return i;
  }

  std::size_t Remove(std::size_t i) {
    const CopiedEntry& entry = copied_[i];
    struct stat now;
    // What the user kept is there still, what vanished is not.
    if (!entry.whole || !FactsOf(levels_.here(), entry.name.c_str(), Side::kSource, now)) return i + 1;
    if (!IsAsItWas(now, entry.facts)) {
      MarkChanged();
    } else {
      if (unlinkat(levels_.here(), entry.name.c_str(), 0) != 0) Fail(errno, Side::kSource);
      began_ = true;
    }
    return i + 1;
  }

  void Leave() {
    levels_.Leave();
    const Open left = open_.back();
    open_.pop_back();
    const CopiedEntry& entry = copied_[left.entry];
    bool unchanged = left.unchanged;
    if (entry.whole && unchanged) {
      if (unlinkat(levels_.here(), entry.name.c_str(), AT_REMOVEDIR) == 0) {
        began_ = true;
      } else if (errno == ENOTEMPTY || errno == EEXIST) {
        unchanged = false;  // something came meanwhile
      } else {
        Fail(errno, Side::kSource);
      }
    }
    if (!unchanged) MarkChanged();
  }

  void MarkChanged() { (open_.empty() ? unchanged_ : open_.back().unchanged) = false; }

  const CopiedTree& copied_;
  bool& began_;
  Levels levels_;
  std::vector<Open> open_;
  bool unchanged_ = true;
};

}  // namespace

void RemoveTree(Operation& operation, int directory, const char* name, std::string& path) {
  Visit(directory, name, path, Remover{&operation.progress, path});
}

bool RemoveQuietly(int directory, const char* name) noexcept {
  try {
    struct stat facts;
    if (!FactsOf(directory, name, Side::kSource, facts)) return true;
    std::string path;
    Visit(directory, name, path, Remover{nullptr, path});
    return true;
  } catch (const ShellError&) {
    return false;
  } catch (const std::bad_alloc&) {
    return false;
  }
}

void CheckRemovable(Operation& operation, int directory, const char* name, std::string& path) {
  const std::size_t length = path.size();
  Visit(directory, name, path, Checker{operation.progress, path});
  path.resize(length);
}

bool RemoveCopied(int directory, const CopiedTree& copied, bool& began) {
  return CopiedRemover(directory, copied, began).Run();
}

}  // namespace Orvix::Shell
