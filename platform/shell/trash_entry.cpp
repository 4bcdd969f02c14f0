#include "platform/shell/trash_entry.h"

#include <sys/file.h>

#include "platform/filesystem/staged_file.h"
#include "platform/shell/entries.h"
#include "platform/shell/remove_tree.h"

namespace Orvix::Shell {

namespace {

constexpr std::string_view kInformationEnd = ".trashinfo";
constexpr int kMostNames = 100'000;
constexpr int kAlwaysLookedAt = 4;  // names that several at work at once may have left

std::string WorkName(int number) { return ".orvix-trashing-" + std::to_string(number); }
std::string CopyOf(const std::string& work_name) { return work_name + "-copy"; }

bool IsMissing(int directory, const char* name) {
  struct stat facts;
  return fstatat(directory, name, &facts, AT_SYMLINK_NOFOLLOW) != 0 && errno == ENOENT;
}

// Whether `name` still leads to the open file.
bool Leads(int directory, const char* name, const Descriptor& file, struct stat& facts) {
  struct stat there;
  return fstat(file.get(), &facts) == 0 && fstatat(directory, name, &there, AT_SYMLINK_NOFOLLOW) == 0 &&
         SameFile(facts, there);
}

// Deletes the information file that is the same as the one with `facts`, if its
// item is not there. False when that cannot be told.
bool ClearInformation(const TrashCan& can, const struct stat& facts) {
  const Descriptor information(OpenAt(can.information.get(), ".", O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  if (!information.ok()) return false;
  const Entries entries(information.get(), Side::kTarget);
  for (std::size_t i = 0; i < entries.size(); ++i) {
    const std::string name = entries.NameOf(i);
    struct stat there;
    if (!name.ends_with(kInformationEnd) || !FactsOf(information.get(), name.c_str(), Side::kTarget, there) ||
        !SameFile(there, facts)) {
      continue;
    }
    const std::string item = name.substr(0, name.size() - kInformationEnd.size());
    struct stat ignored;
    if (FactsOf(can.files.get(), item.c_str(), Side::kTarget, ignored)) return true;
    return unlinkat(information.get(), name.c_str(), 0) == 0;
  }
  return true;  // it has gone
}

// False when there is nothing of this name.
bool ClearWork(const TrashCan& can, const std::string& name) {
  const int trash = can.trash.get();
  struct stat facts;
  if (fstatat(trash, name.c_str(), &facts, AT_SYMLINK_NOFOLLOW) != 0) return errno != ENOENT;
  if (!S_ISREG(facts.st_mode) || facts.st_uid != geteuid()) return true;
  const Descriptor lock(OpenAt(trash, name.c_str(), O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC));
  // The lock, once had, keeps all others from clearing: the name stays this file's.
  if (!lock.ok() || flock(lock.get(), LOCK_EX | LOCK_NB) != 0 || !Leads(trash, name.c_str(), lock, facts)) return true;
  try {
    if (facts.st_nlink > 1 && !ClearInformation(can, facts)) return true;
  } catch (const ShellError&) {
    return true;  // for another time
  }
  if (RemoveQuietly(trash, CopyOf(name).c_str())) unlinkat(trash, name.c_str(), 0);
  return true;
}

int WriteAll(int file, std::string_view text) {
  while (!text.empty()) {
    const ssize_t written = Retried([&] { return write(file, text.data(), text.size()); });
    if (written < 0) return errno;
    text.remove_prefix(static_cast<std::size_t>(written));
  }
  return 0;
}

}  // namespace

std::string TrashInformation(std::string_view path, const struct tm& deleted) {
  constexpr char kDigits[] = "0123456789ABCDEF";
  constexpr std::string_view kPlain = "/-._~";
  std::string text = "[Trash Info]\nPath=";
  for (const char unit : path) {
    const auto byte = static_cast<unsigned char>(unit);
    const bool letter = static_cast<unsigned char>((byte | 0x20) - 'a') < 26 && byte < 0x80;
    const bool digit = byte >= '0' && byte <= '9';
    if (letter || digit || kPlain.find(unit) != std::string_view::npos) {
      text += unit;
    } else {
      text += '%';
      text += kDigits[byte >> 4];
      text += kDigits[byte & 0xF];
    }
  }
  char date[64];
  text.append(date, std::strftime(date, sizeof date, "\nDeletionDate=%Y-%m-%dT%H:%M:%S\n", &deleted));
  return text;
}

void ClearAbandoned(const TrashCan& can) {
  for (int number = 0; number < kMostNames; ++number) {
    if (!ClearWork(can, WorkName(number)) && number >= kAlwaysLookedAt) return;
  }
}

int TrashEntry::Start(std::string_view information) {
  text_ = information;
  const int trash = can_.trash.get();
  for (int number = 0; number < kMostNames; ++number) {
    std::string name = WorkName(number);
    Descriptor made(OpenAt(trash, name.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, 0600));
    if (!made.ok() && errno == EEXIST) continue;
    if (!made.ok()) return errno;
    // Where locks are not to be had, nobody else gets one either.
    flock(made.get(), LOCK_SH | LOCK_NB);
    struct stat facts;
    // Before it was locked somebody may have cleared it. A copy that could not be
    // cleared is in the way.
    if (!Leads(trash, name.c_str(), made, facts)) continue;
    std::string copy_name = CopyOf(name);
    if (!IsMissing(trash, copy_name.c_str())) {
      unlinkat(trash, name.c_str(), 0);
      continue;
    }
    name_ = std::move(name);
    copy_name_ = std::move(copy_name);
    lock_ = std::move(made);
    const int error = WriteAll(lock_.get(), text_);
    return error != 0 ? error : LateFailure(lock_.get());
  }
  return EEXIST;
}

int TrashEntry::Claim(const std::string& item) {
  claimed_ = item + std::string(kInformationEnd);
  int error = linkat(can_.trash.get(), name_.c_str(), can_.information.get(), claimed_.c_str(), 0) == 0 ? 0 : errno;
  if (error == EPERM || error == EOPNOTSUPP || error == ENOSYS || error == EMLINK) error = WriteClaim();
  if (error != 0) claimed_.clear();
  return error;
}

// On a file system without links.
int TrashEntry::WriteClaim() {
  const int information = can_.information.get();
  const Descriptor file(OpenAt(information, claimed_.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0600));
  if (!file.ok()) return errno;
  int error = WriteAll(file.get(), text_);
  if (error == 0) error = LateFailure(file.get());
  if (error != 0) unlinkat(information, claimed_.c_str(), 0);
  return error;
}

bool TrashEntry::GiveUp() {
  if (claimed_.empty()) return true;
  if (unlinkat(can_.information.get(), claimed_.c_str(), 0) != 0 && errno != ENOENT) return false;
  claimed_.clear();
  return true;
}

void TrashEntry::Keep() { kept_ = true; }

TrashEntry::~TrashEntry() {
  if (name_.empty()) return;
  // What cannot be taken away now keeps its name, and the next one tries again.
  if (!kept_ && !GiveUp()) return;
  if (!RemoveQuietly(can_.trash.get(), copy_name_.c_str())) return;
  unlinkat(can_.trash.get(), name_.c_str(), 0);
}

}  // namespace Orvix::Shell
