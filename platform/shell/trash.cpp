// The information file comes first and claims the name; only then the item moves.
#include "platform/shell/trash.h"

#include <pwd.h>

#include <climits>
#include <cstdlib>
#include <ctime>
#include <vector>

#include "platform/shell/collision.h"
#include "platform/shell/move_tree.h"
#include "platform/shell/staged.h"

namespace Orvix::Shell {

namespace {

constexpr std::string_view kInformationEnd = ".trashinfo";
constexpr std::size_t kLongestName = 255;
constexpr int kMostNames = 1'000'000;

// The directory `name` in an open one, made when it is missing, but never
// reached through a link. None on failure, errno saying why.
Descriptor MakeAndOpen(int parent, const char* name) {
  if (mkdirat(parent, name, 0700) != 0 && errno != EEXIST) return Descriptor{};
  return Descriptor(openat(parent, name, O_PATH | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC));
}

// The user's data directory, made when it is missing.
std::string DataHome() {
  const char* const named = std::getenv("XDG_DATA_HOME");
  if (named != nullptr && named[0] == '/') return named;  // relative ones are to be ignored
  const char* home = std::getenv("HOME");
  if (home != nullptr && home[0] == '/') return std::string(home) + "/.local/share";
  passwd entry{};
  passwd* found = nullptr;
  std::vector<char> texts(16 * 1024);
  if (getpwuid_r(geteuid(), &entry, texts.data(), texts.size(), &found) != 0 || found == nullptr) {
    throw ShellError{kPathMissing};
  }
  return std::string(found->pw_dir) + "/.local/share";
}

void MakeDirectories(const std::string& path) {
  for (std::size_t end = path.find('/', 1);; end = path.find('/', end + 1)) {
    if (mkdir(path.substr(0, end).c_str(), 0700) != 0 && errno != EEXIST && errno != EISDIR) Fail(errno, Side::kTarget);
    if (end == std::string::npos) return;
  }
}

// The device that the home trash is on, or would be made on.
dev_t HomeDevice() {
  std::string path = DataHome() + "/Trash";
  struct stat facts;
  while (stat(path.c_str(), &facts) != 0) {
    const std::size_t slash = path.rfind('/');
    path.resize(slash == 0 ? 1 : slash);
  }
  return facts.st_dev;
}

// The top directory of the file system that holds an open directory.
Descriptor TopOf(int directory, const struct stat& start) {
  struct stat here = start;
  Descriptor top(openat(directory, ".", O_PATH | O_DIRECTORY | O_CLOEXEC));
  for (;;) {
    Descriptor above(openat(top.get(), "..", O_PATH | O_DIRECTORY | O_CLOEXEC));
    struct stat facts;
    if (!above.ok() || fstat(above.get(), &facts) != 0) return top;
    if (facts.st_dev != here.st_dev || facts.st_ino == here.st_ino) return top;
    here = facts;
    top = std::move(above);
  }
}

std::string PathOf(int directory) {
  const std::string link = "/proc/self/fd/" + std::to_string(directory);
  char path[PATH_MAX];
  const ssize_t length = readlink(link.c_str(), path, sizeof path);
  if (length < 0) Fail(errno, Side::kTarget);
  return {path, static_cast<std::size_t>(length)};
}

std::string RealPath(const std::string& path) {
  char real[PATH_MAX];
  return realpath(path.c_str(), real) != nullptr ? real : path;
}

// The name that the item tries for the `number`-th time, short enough for its
// information file.
std::string NameToTry(const std::string& name, int number) {
  std::string tried = name;
  if (tried.size() + kInformationEnd.size() + 16 > kLongestName) {
    std::size_t length = kLongestName - kInformationEnd.size() - 16;
    while (length > 0 && (static_cast<unsigned char>(tried[length]) & 0xC0) == 0x80) --length;
    tried.resize(length);
  }
  return number == 1 ? tried : NumberedName(tried, number, /*directory=*/false);
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

Trash::Can& Trash::HomeCan() {
  if (home_.has_value()) return *home_;
  const std::string path = DataHome() + "/Trash";
  MakeDirectories(path);
  const Descriptor trash = ReachDirectory(path, Side::kTarget);
  Can can;
  if (const int error = OpenParts(trash.get(), can); error != 0) Fail(error, Side::kTarget);
  return home_.emplace(std::move(can));
}

std::optional<Trash::Can> Trash::VolumeCan(int directory) {
  struct stat start;
  if (fstat(directory, &start) != 0) Fail(errno, Side::kSource);
  const Descriptor top = TopOf(directory, start);
  const std::string user = std::to_string(geteuid());
  Can can;
  can.top = PathOf(top.get());
  // An administrator's common directory counts when nobody can exchange what
  // others have in it.
  struct stat facts;
  if (fstatat(top.get(), ".Trash", &facts, AT_SYMLINK_NOFOLLOW) == 0 && S_ISDIR(facts.st_mode) &&
      (facts.st_mode & S_ISVTX) != 0) {
    const Descriptor common(openat(top.get(), ".Trash", O_PATH | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC));
    const Descriptor own = common.ok() ? MakeAndOpen(common.get(), user.c_str()) : Descriptor{};
    if (own.ok() && fstat(own.get(), &facts) == 0 && facts.st_uid == geteuid() && OpenParts(own.get(), can) == 0) {
      return can;
    }
  }
  const Descriptor own = MakeAndOpen(top.get(), (".Trash-" + user).c_str());
  if (!own.ok() || fstat(own.get(), &facts) != 0 || facts.st_uid != geteuid()) return std::nullopt;
  if (OpenParts(own.get(), can) != 0) return std::nullopt;
  return can;
}

int Trash::OpenParts(int trash, Can& can) {
  can.files = MakeAndOpen(trash, "files");
  if (!can.files.ok()) return errno;
  can.information = MakeAndOpen(trash, "info");
  return can.information.ok() ? 0 : errno;
}

Trash::Can& Trash::CanFor(int directory, dev_t device) {
  if (!home_device_.has_value()) home_device_ = HomeDevice();
  if (device == *home_device_) return HomeCan();
  const auto known = volumes_.find(device);
  if (known != volumes_.end()) return known->second;
  std::optional<Can> can = VolumeCan(directory);
  return can.has_value() ? volumes_.emplace(device, *std::move(can)).first->second : HomeCan();
}

int Trash::MoveInto(Can& can, int directory, const std::string& path, const std::string& name, bool by_copying) {
  std::string noted = path;
  if (!can.top.empty()) {
    // From a directory that is reached through a link the way may be another.
    const std::string top = can.top == "/" ? "/" : can.top + "/";
    if (noted.starts_with(top)) noted = noted.substr(top.size());
  }
  const std::time_t now = std::time(nullptr);
  struct tm deleted {};
  localtime_r(&now, &deleted);
  const std::string text = TrashInformation(noted, deleted);
  for (int number = 1; number <= kMostNames; ++number) {
    const std::string tried = NameToTry(name, number);
    const std::string information = tried + std::string(kInformationEnd);
    Descriptor file(openat(can.information.get(), information.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0600));
    if (!file.ok() && errno == EEXIST) continue;
    if (!file.ok()) return errno;
    int error = write(file.get(), text.data(), text.size()) == static_cast<ssize_t>(text.size()) ? 0 : ENOSPC;
    if (const int closing = file.Close(); error == 0) error = closing;
    try {
      if (error == 0 && by_copying) {
        std::string from_path = path;
        std::string to_path = tried;
        struct stat taken;
        if (FactsOf(can.files.get(), tried.c_str(), Side::kTarget, taken)) {
          error = EEXIST;
        } else {
          TreeMover(operation_)
              .MoveByCopying({directory, name.c_str(), can.files.get(), tried, false}, from_path, to_path);
        }
      } else if (error == 0) {
        error = RenameToFreeName(directory, name.c_str(), can.files.get(), tried.c_str());
      }
    } catch (const ShellError&) {
      // Half a copy without its information would be lost to the user's eyes.
      struct stat left;
      if (!FactsOf(can.files.get(), tried.c_str(), Side::kTarget, left)) {
        unlinkat(can.information.get(), information.c_str(), 0);
      }
      throw;
    }
    if (error == 0) return 0;
    unlinkat(can.information.get(), information.c_str(), 0);
    if (error != EEXIST && error != ENOTEMPTY) return error;
  }
  return EEXIST;
}

void Trash::Put(int directory, const std::string& parent, const std::string& name) {
  struct stat facts;
  if (!FactsOf(directory, name.c_str(), Side::kSource, facts)) throw ShellError{kInvalidNames};
  Can& can = CanFor(directory, facts.st_dev);
  std::string path = RealPath(parent);
  if (path.back() != '/') path += '/';
  path += name;
  int error = MoveInto(can, directory, path, name, /*by_copying=*/false);
  if (error == EXDEV) error = MoveInto(HomeCan(), directory, path, name, /*by_copying=*/true);
  if (error != 0) Fail(error, error == EACCES || error == EPERM ? Side::kSource : Side::kTarget);
  operation_.progress.ItemDone(path);
}

}  // namespace Orvix::Shell
