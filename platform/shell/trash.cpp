// The information file comes first and claims the name; only then the item moves.
#include "platform/shell/trash.h"

#include <climits>
#include <ctime>

#include "platform/shell/collision.h"
#include "platform/shell/move_tree.h"
#include "platform/shell/remove_tree.h"
#include "platform/shell/staged.h"
#include "platform/system/user_data.h"

namespace Orvix::Shell {

namespace {

constexpr std::size_t kLongestItem = 255 - std::string_view(".trashinfo").size();

// Refusals that another trash may do without; everything else ends the operation.
bool IsRefusal(int error) {
  return error == EACCES || error == EPERM || error == EROFS || error == ENOTDIR || error == ELOOP || error == ENOSPC ||
         error == EDQUOT;
}

// The directory `name` in an open one, made when it is missing, but never
// reached through a link. An errno value.
int MakeAndOpen(int parent, const char* name, Descriptor& made) {
  if (mkdirat(parent, name, 0700) != 0 && errno != EEXIST) return errno;
  made = Descriptor(OpenAt(parent, name, O_PATH | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC));
  return made.ok() ? 0 : errno;
}

std::string HomeTrash() {
  const std::string data = UserDataDirectory();
  if (data.empty()) throw ShellError{kPathMissing};
  return data + "/Trash";
}

// The device that the home trash is on, or would be made on.
dev_t HomeDevice() {
  std::string path = HomeTrash();
  struct stat facts;
  while (stat(path.c_str(), &facts) != 0) {
    if ((errno != ENOENT && errno != ENOTDIR) || path == "/") Fail(errno, Side::kTarget);
    const std::size_t slash = path.rfind('/');
    path.resize(slash == 0 ? 1 : slash);
  }
  return facts.st_dev;
}

// The top directory of the file system that holds an open directory.
Descriptor TopOf(int directory) {
  Descriptor top(OpenAt(directory, ".", O_PATH | O_DIRECTORY | O_CLOEXEC));
  struct stat here;
  if (!top.ok() || fstat(top.get(), &here) != 0) Fail(errno, Side::kSource);
  for (;;) {
    Descriptor above(OpenAt(top.get(), "..", O_PATH | O_DIRECTORY | O_CLOEXEC));
    struct stat facts;
    if (!above.ok() || fstat(above.get(), &facts) != 0) Fail(errno, Side::kSource);
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
  if (realpath(path.c_str(), real) == nullptr) Fail(errno, Side::kSource);
  return real;
}

// The name that the item tries for the `number`-th time, short enough for its
// information file.
std::string NameToTry(const std::string& name, int number) {
  std::string tried = name;
  if (tried.size() + 16 > kLongestItem) {
    std::size_t length = kLongestItem - 16;
    while (length > 0 && (static_cast<unsigned char>(tried[length]) & 0xC0) == 0x80) --length;
    tried.resize(length);
  }
  return number == 1 ? tried : NumberedName(tried, number, /*directory=*/false);
}

// Opens the parts of a trash, whose directory is open. An errno value.
int OpenParts(TrashCan& can) {
  if (const int error = MakeAndOpen(can.trash.get(), "files", can.files); error != 0) return error;
  return MakeAndOpen(can.trash.get(), "info", can.information);
}

// The user's own trash `name` in an open directory. False when it is refused.
bool OpenOwn(int parent, const std::string& name, TrashCan& can) {
  int error = MakeAndOpen(parent, name.c_str(), can.trash);
  struct stat facts;
  if (error == 0 && fstat(can.trash.get(), &facts) != 0) Fail(errno, Side::kTarget);
  if (error == 0 && facts.st_uid != geteuid()) return false;
  if (error == 0) error = OpenParts(can);
  if (error != 0 && !IsRefusal(error)) Fail(error, Side::kTarget);
  return error == 0;
}

}  // namespace

TrashCan& Trash::HomeCan() {
  if (home_.has_value()) return *home_;
  const std::string path = HomeTrash();
  if (const int error = MakeUserDirectory(path); error != 0) Fail(error, Side::kTarget);
  TrashCan can;
  can.trash = ReachDirectory(path, Side::kTarget);
  if (const int error = OpenParts(can); error != 0) Fail(error, Side::kTarget);
  ClearAbandoned(can);
  return home_.emplace(std::move(can));
}

std::optional<TrashCan> Trash::VolumeCan(int directory) {
  const Descriptor top = TopOf(directory);
  const std::string user = std::to_string(geteuid());
  TrashCan can;
  can.top = PathOf(top.get());
  // An administrator's common directory counts when nobody can exchange what
  // others have in it.
  struct stat facts;
  if (FactsOf(top.get(), ".Trash", Side::kTarget, facts) && S_ISDIR(facts.st_mode) && (facts.st_mode & S_ISVTX) != 0) {
    const Descriptor common(OpenAt(top.get(), ".Trash", O_PATH | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC));
    if (!common.ok() && !IsRefusal(errno)) Fail(errno, Side::kTarget);
    if (common.ok() && OpenOwn(common.get(), user, can)) return can;
  }
  if (!OpenOwn(top.get(), ".Trash-" + user, can)) return std::nullopt;
  return can;
}

TrashCan& Trash::CanFor(int directory, dev_t device) {
  if (!home_device_.has_value()) home_device_ = HomeDevice();
  if (device == *home_device_) return HomeCan();
  const auto known = volumes_.find(device);
  if (known != volumes_.end()) return known->second;
  std::optional<TrashCan> can = VolumeCan(directory);
  if (!can.has_value()) return HomeCan();
  ClearAbandoned(*can);
  return volumes_.emplace(device, *std::move(can)).first->second;
}

namespace {

std::string InformationFor(const TrashCan& can, const std::string& path) {
  std::string noted = path;
  if (!can.top.empty()) {
    // From a directory that is reached through a link the way may be another.
    const std::string top = can.top == "/" ? "/" : can.top + "/";
    if (noted.starts_with(top)) noted = noted.substr(top.size());
  }
  const std::time_t now = std::time(nullptr);
  struct tm deleted {};
  localtime_r(&now, &deleted);
  return TrashInformation(noted, deleted);
}

// Renames `from_name` to a free name for the item `name`, which is returned; an
// errno value in `error`.
std::string Place(TrashEntry& entry, TrashCan& can, int from, const std::string& from_name, const std::string& name,
                  int& error) {
  for (int number = 1; number <= kMostNumbers; ++number) {
    std::string tried = NameToTry(name, number);
    error = entry.Claim(tried);
    if (error == EEXIST) continue;
    if (error != 0) return {};
    error = RenameToFreeName(from, from_name.c_str(), can.files.get(), tried.c_str());
    if (error == 0) return tried;
    if (!entry.GiveUp() || (error != EEXIST && error != ENOTEMPTY)) return {};
  }
  return {};
}

// A copy among the items whose original is going. As long as that is whole, the
// copy is taken back.
class PlacedCopy {
 public:
  PlacedCopy(TrashEntry& entry, const TrashCan& can, std::string name)
      : entry_(entry), can_(can), name_(std::move(name)) {}
  PlacedCopy(const PlacedCopy&) = delete;
  PlacedCopy& operator=(const PlacedCopy&) = delete;
  ~PlacedCopy() {
    if (began || RenameToFreeName(can_.files.get(), name_.c_str(), can_.trash.get(), entry_.CopyName().c_str()) != 0) {
      entry_.Keep();
    }
  }

  bool began = false;

 private:
  TrashEntry& entry_;
  const TrashCan& can_;
  std::string name_;
};

}  // namespace

int Trash::MoveInto(TrashCan& can, const Item& item) {
  TrashEntry entry(can);
  int error = entry.Start(InformationFor(can, item.path));
  if (error != 0) return error;
  Place(entry, can, item.directory, item.name, item.name, error);
  if (error == 0) entry.Keep();
  return error;
}

// The copy comes among the items when it is whole, and only then the original
// goes. It goes whole too, or what was copied is taken back.
void Trash::CopyInto(TrashCan& can, const Item& item) {
  TrashEntry entry(can);
  int error = entry.Start(InformationFor(can, item.path));
  if (error != 0) Fail(error, Side::kTarget);
  std::string from_path = item.path;
  const std::string copy = entry.CopyName();
  std::string to_path = copy;
  CopiedTree copied;
  TreeMover(operation_)
      .CopyForMove({item.directory, item.name.c_str(), can.trash.get(), copy, true}, from_path, to_path, copied);
  std::string placed = Place(entry, can, can.trash.get(), copy, item.name, error);
  if (error != 0) Fail(error, Side::kTarget);
  PlacedCopy at_trash(entry, can, std::move(placed));
  if (!RemoveCopied(item.directory, copied, at_trash.began)) throw ShellError{kInUse};
}

void Trash::Put(int directory, const std::string& parent, const std::string& name) {
  struct stat facts;
  if (!FactsOf(directory, name.c_str(), Side::kSource, facts)) throw ShellError{kInvalidNames};
  TrashCan& can = CanFor(directory, facts.st_dev);
  std::string path = RealPath(parent);
  if (path.back() != '/') path += '/';
  path += name;
  const Item item{directory, name, path};
  const int error = MoveInto(can, item);
  if (error == EXDEV) {
    CopyInto(HomeCan(), item);
  } else if (error != 0) {
    Fail(error, error == EACCES || error == EPERM ? Side::kSource : Side::kTarget);
  }
  operation_.progress.ItemDone(path);
}

}  // namespace Orvix::Shell
