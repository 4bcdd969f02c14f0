#include "platform/shell/trash_bin.h"

#include <mntent.h>

#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <memory>
#include <string_view>

#include "frame/runtime/runtime_error.h"
#include "orvix/runtime.h"
#include "platform/filesystem/errno_numbers.h"
#include "platform/filesystem/staged_file.h"
#include "platform/names/path_map.h"
#include "platform/shell/entries.h"
#include "platform/shell/operation.h"
#include "platform/shell/remove_tree.h"
#include "platform/system/user_data.h"

namespace Orvix::Shell {

namespace {

constexpr std::string_view kInformationEnd = ".trashinfo";
constexpr int kDirectoryFlags = O_PATH | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC;

std::string ReadWhole(int directory, const char* name) {
  constexpr std::size_t kMost = 16 * 1024;  // a path and a date
  const Descriptor file(OpenAt(directory, name, O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC));
  std::string text(kMost, '\0');
  const ssize_t got = file.ok() ? Retried([&] { return read(file.get(), text.data(), text.size()); }) : 0;
  text.resize(got < 0 ? 0 : static_cast<std::size_t>(got));
  return text;
}

std::string Decoded(std::string_view text) {
  const auto digit = [](char c) {
    return c >= '0' && c <= '9' ? c - '0' : (c | 0x20) >= 'a' && (c | 0x20) <= 'f' ? (c | 0x20) - 'a' + 10 : -1;
  };
  std::string bytes;
  for (std::size_t i = 0; i < text.size(); ++i) {
    const bool coded = text[i] == '%' && i + 2 < text.size() && digit(text[i + 1]) >= 0 && digit(text[i + 2]) >= 0;
    bytes += coded ? static_cast<char>(digit(text[i + 1]) << 4 | digit(text[i + 2])) : text[i];
    i += coded ? 2 : 0;
  }
  return bytes;
}

// The value of a line of an information file, empty when there is none.
std::string_view LineOf(std::string_view text, std::string_view key) {
  while (!text.empty()) {
    const std::string_view line = text.substr(0, text.find('\n'));
    text.remove_prefix(std::min(line.size() + 1, text.size()));
    if (line.starts_with(key)) return line.substr(key.size());
  }
  return {};
}

bool ClimbsUp(const std::string& path) {
  const std::filesystem::path parts(path);
  return std::ranges::find(parts, std::filesystem::path("..")) != parts.end();
}

}  // namespace

TrashBin::TrashBin() {
  if (const std::string data = UserDataDirectory(); !data.empty()) Open(data + "/Trash", "");
  const std::string user = std::to_string(geteuid());
  const std::unique_ptr<FILE, decltype(&endmntent)> mounts(setmntent("/proc/self/mounts", "re"), &endmntent);
  char texts[8192];
  for (mntent entry{}; mounts != nullptr && getmntent_r(mounts.get(), &entry, texts, sizeof texts) != nullptr;) {
    const std::string top = std::string(entry.mnt_dir) == "/" ? "" : entry.mnt_dir;
    struct stat common;
    const bool is_common =
        lstat((top + "/.Trash").c_str(), &common) == 0 && S_ISDIR(common.st_mode) && (common.st_mode & S_ISVTX) != 0;
    if (is_common) Open(top + "/.Trash/" + user, top + "/");
    Open(top + "/.Trash-" + user, top + "/");
  }
  std::ranges::stable_sort(items_, std::ranges::greater(), &TrashedItem::deleted);
}

void TrashBin::Open(const std::string& path, const std::string& top) {
  TrashCan can;
  can.top = top;
  can.trash = Descriptor(OpenAt(AT_FDCWD, path.c_str(), kDirectoryFlags));
  struct stat facts;
  if (!can.trash.ok() || fstat(can.trash.get(), &facts) != 0 || facts.st_uid != geteuid()) return;
  for (const TrashCan& known : cans_) {  // a file system may be mounted twice
    struct stat others;
    if (fstat(known.trash.get(), &others) == 0 && SameFile(facts, others)) return;
  }
  can.files = Descriptor(OpenAt(can.trash.get(), "files", kDirectoryFlags));
  can.information = Descriptor(OpenAt(can.trash.get(), "info", O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC));
  if (!can.files.ok() || !can.information.ok()) return;
  cans_.push_back(std::move(can));
  places_.push_back(path);
  Read(cans_.size() - 1);
}

void TrashBin::Read(std::size_t at) {
  const TrashCan& can = cans_[at];
  try {
    const Entries entries(can.information.get(), Side::kSource);
    for (std::size_t i = 0; i < entries.size(); ++i) {
      const std::string_view file = entries.NameOf(i);
      if (!file.ends_with(kInformationEnd)) continue;
      const std::string name(file.substr(0, file.size() - kInformationEnd.size()));
      const std::string text = ReadWhole(can.information.get(), entries.NameOf(i));
      const std::string noted = Decoded(LineOf(text, "Path="));
      struct stat facts;
      if (noted.empty() || ClimbsUp(noted) ||
          fstatat(can.files.get(), name.c_str(), &facts, AT_SYMLINK_NOFOLLOW) != 0) {
        continue;
      }
      items_.push_back({places_[at] + "/files/" + name, noted.starts_with('/') ? noted : can.top + noted,
                        std::string(LineOf(text, "DeletionDate=")), at, name});
    }
  } catch (const ShellError&) {  // what was read so far counts
  }
}

const TrashedItem* TrashBin::Find(const std::string& path) const {
  const auto by_id = std::ranges::find(items_, path, &TrashedItem::id);
  const auto found = by_id != items_.end() ? by_id : std::ranges::find(items_, path, &TrashedItem::original);
  return found == items_.end() ? nullptr : &*found;
}

int TrashBin::Restore(const TrashedItem& item) {
  const TrashCan& can = cans_[item.can];
  const std::filesystem::path target(item.original);
  std::error_code error;
  std::filesystem::create_directories(target.parent_path(), error);
  if (error) return error.value();
  const Descriptor parent(OpenAt(AT_FDCWD, target.parent_path().c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC));
  if (!parent.ok()) return errno;
  int moved = RenameToFreeName(can.files.get(), item.name.c_str(), parent.get(), target.filename().c_str());
  if (moved == EXDEV) {
    if (std::filesystem::symlink_status(target, error).type() != std::filesystem::file_type::not_found) return EEXIST;
    constexpr std::uint16_t kQuiet = kSilent | kNoConfirmation | kNoConfirmMakeDir | kRenameOnCollision;
    moved = Perform({kMove, kQuiet, {PlatformName(item.id)}, {PlatformName(item.original)}, {}}) == 0 ? 0 : EIO;
  }
  if (moved == 0) unlinkat(can.information.get(), (item.name + std::string(kInformationEnd)).c_str(), 0);
  return moved;
}

bool TrashBin::Erase(const TrashedItem& item) {
  const TrashCan& can = cans_[item.can];
  return RemoveQuietly(can.files.get(), item.name.c_str()) &&
         unlinkat(can.information.get(), (item.name + std::string(kInformationEnd)).c_str(), 0) == 0;
}

}  // namespace Orvix::Shell

namespace {

using Orvix::Shell::TrashBin;
using Orvix::Shell::TrashedItem;

constexpr LONG kNotFound = 53;
constexpr LONG kAlreadyExists = 58;

// The native path that a caller's name leads to.
std::string PathOf(const OLECHAR* name) { return Orvix::AbsolutePath(Orvix::ResolveName(name).path); }

}  // namespace

HRESULT ORVIX_CALL OxListTrash(SAFEARRAY** texts) {
  if (texts == nullptr) return E_POINTER;
  *texts = nullptr;
  return Orvix::AtRuntimeEdge([&] {
    const TrashBin bin;
    SAFEARRAY* const array = SafeArrayCreateVector(VT_BSTR, 0, static_cast<ULONG>(3 * bin.items().size()));
    if (array == nullptr) throw std::bad_alloc();
    auto* place = static_cast<BSTR*>(array->pvData);
    for (const TrashedItem& item : bin.items()) {
      const Orvix::Text row[] = {Orvix::PlatformName(item.id), Orvix::PlatformName(item.original),
                                 Orvix::FromUtf8(item.deleted)};
      for (const Orvix::Text& text : row) *place++ = Orvix::NewBstr(text);
    }
    *texts = array;
  });
}

HRESULT ORVIX_CALL OxRestoreFromTrash(const OLECHAR* nameOrId) {
  if (nameOrId == nullptr) return E_POINTER;
  return Orvix::AtRuntimeEdge([&] {
    TrashBin bin;
    const TrashedItem* const item = bin.Find(PathOf(nameOrId));
    if (item == nullptr) throw Orvix::RuntimeError{kNotFound};
    const int error = bin.Restore(*item);
    if (error == EEXIST || error == ENOTEMPTY) throw Orvix::RuntimeError{kAlreadyExists};
    if (error != 0) Orvix::FailWithErrno(error, Orvix::FileTask::kCreate);
  });
}

HRESULT ORVIX_CALL OxEraseFromTrash(const OLECHAR* nameOrId) {
  return Orvix::AtRuntimeEdge([&] {
    TrashBin bin;
    const TrashedItem* const one = nameOrId == nullptr ? nullptr : bin.Find(PathOf(nameOrId));
    if (nameOrId != nullptr && one == nullptr) throw Orvix::RuntimeError{kNotFound};
    bool whole = true;
    for (const TrashedItem& item : bin.items()) {
      if (one == nullptr || one == &item) whole = bin.Erase(item) && whole;
    }
    if (!whole) Orvix::FailWithErrno(EACCES, Orvix::FileTask::kExisting);
  });
}
