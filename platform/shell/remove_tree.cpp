// Entries are unlinked from open directories, the deepest first.
#include "platform/shell/remove_tree.h"

#include "platform/shell/descriptor.h"
#include "platform/shell/entries.h"

namespace Orvix::Shell {

namespace {

void RemoveBelow(Operation& operation, int directory, const char* name, std::string& path, int depth) {
  if (depth > kDeepest) throw ShellError{kTooDeep};
  {
    const Descriptor open(openat(directory, name, O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC));
    if (!open.ok() && errno == ENOENT) return;  // gone meanwhile, as it should be
    if (!open.ok()) Fail(errno, Side::kSource);
    const Entries entries(open.get(), Side::kSource);
    for (std::size_t i = 0; i < entries.size(); ++i) {
      const char* const entry = entries.NameOf(i);
      const Step step(path, entry);
      if (entries.TypeOf(i) == DT_DIR) {
        RemoveBelow(operation, open.get(), entry, path, depth + 1);
        continue;
      }
      if (unlinkat(open.get(), entry, 0) != 0 && errno != ENOENT) Fail(errno, Side::kSource);
      operation.progress.ItemDone(path);
    }
  }
  if (unlinkat(directory, name, AT_REMOVEDIR) != 0 && errno != ENOENT) Fail(errno, Side::kSource);
  operation.progress.ItemDone(path);
}

bool IsAsItWas(const struct stat& now, const struct stat& then) {
  return SameFile(now, then) && (now.st_mode & S_IFMT) == (then.st_mode & S_IFMT) && now.st_size == then.st_size &&
         now.st_mtim.tv_sec == then.st_mtim.tv_sec && now.st_mtim.tv_nsec == then.st_mtim.tv_nsec;
}

}  // namespace

void RemoveTree(Operation& operation, int directory, const char* name, std::string& path) {
  struct stat facts;
  if (!FactsOf(directory, name, Side::kSource, facts)) throw ShellError{kInvalidNames};
  if (S_ISDIR(facts.st_mode)) return RemoveBelow(operation, directory, name, path, 0);
  if (unlinkat(directory, name, 0) != 0) Fail(errno, Side::kSource);
  operation.progress.ItemDone(path);
}

bool RemoveCopied(int directory, const CopiedEntry& copied) {
  struct stat now;
  const char* const name = copied.name.c_str();
  if (!S_ISDIR(copied.facts.st_mode)) {
    if (!copied.whole) return true;  // the user kept it
    if (!FactsOf(directory, name, Side::kSource, now)) return true;
    if (!IsAsItWas(now, copied.facts)) return false;
    if (unlinkat(directory, name, 0) != 0) Fail(errno, Side::kSource);
    return true;
  }
  bool unchanged = true;
  {
    const Descriptor open = OpenDirectory(directory, name, Side::kSource);
    if (fstat(open.get(), &now) != 0) Fail(errno, Side::kSource);
    if (!SameFile(now, copied.facts)) return false;
    for (const CopiedEntry& below : copied.below) unchanged = RemoveCopied(open.get(), below) && unchanged;
  }
  if (!copied.whole || !unchanged) return unchanged;
  if (unlinkat(directory, name, AT_REMOVEDIR) == 0) return true;
  if (errno != ENOTEMPTY && errno != EEXIST) Fail(errno, Side::kSource);
  return false;  // something came meanwhile
}

}  // namespace Orvix::Shell
