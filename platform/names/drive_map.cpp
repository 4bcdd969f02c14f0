// The drive map: read from the environment once, then changed by callers only.
#include "platform/names/drive_map.h"

#include <sys/stat.h>

#include <cerrno>
#include <cstdlib>
#include <map>
#include <mutex>
#include <shared_mutex>

#include "frame/runtime/never_destroyed.h"
#include "frame/runtime/runtime_error.h"
#include "platform/names/case_fold.h"
#include "platform/names/path_map.h"
#include "platform/system/user_data.h"

namespace Orvix {

namespace {

char16_t UpperLetter(char16_t letter) { return static_cast<char16_t>(letter & ~0x20); }

std::string AsRoot(std::string_view directory) {
  std::string root = AbsolutePath(std::string(directory));
  while (root.ends_with('/')) root.pop_back();
  return root;
}

struct DriveMap {
  DriveMap() {
    drives[u'Z'] = "";
    if (const std::string data = UserDataDirectory(); !data.empty()) {
      own_drive = data + "/orvix/drive_c";
      drives[u'C'] = own_drive;
    }
    if (const char* listed = secure_getenv("ORVIX_DRIVES"); listed != nullptr) ReadList(listed);
  }

  std::shared_mutex mutex;

  std::map<char16_t, std::string> drives;  // by upper-case letter
  struct Share {
    Text name;  // as it was mapped
    std::string directory;
  };
  std::map<Text, Share> shares;  // by folded name
  std::string own_drive;

 private:
  void ReadList(std::string_view list) {
    while (!list.empty()) {
      const std::string_view item = list.substr(0, list.find(';'));
      list.remove_prefix(std::min(list.size(), item.size() + 1));
      if (item.size() < 2 || item[1] != '=' || !IsDriveLetter(static_cast<unsigned char>(item[0]))) continue;
      const char16_t letter = UpperLetter(static_cast<unsigned char>(item[0]));
      if (item.size() == 2) {
        drives.erase(letter);
      } else {
        drives[letter] = AsRoot(item.substr(2));
      }
    }
  }
};

DriveMap& TheMap() {
  static NeverDestroyed<DriveMap> map;
  return *map;
}

Text ShareName(TextView server, TextView share) { return Text(u"\\\\").append(server).append(u"\\").append(share); }

void CheckDirectory(const char* directory) {
  if (directory != nullptr && *directory == '\0') throw RuntimeError{52};
}

}  // namespace

std::optional<std::string> DirectoryOfDrive(char16_t letter) {
  DriveMap& map = TheMap();
  const std::shared_lock lock(map.mutex);
  const auto found = map.drives.find(UpperLetter(letter));
  if (found == map.drives.end()) return std::nullopt;
  return found->second;
}

std::optional<std::string> DirectoryOfShare(TextView server, TextView share) {
  DriveMap& map = TheMap();
  const std::shared_lock lock(map.mutex);
  const auto found = map.shares.find(FoldName(ShareName(server, share)));
  if (found == map.shares.end()) return std::nullopt;
  return found->second.directory;
}

void MakeOwnDrive(char16_t letter) {
  if (UpperLetter(letter) != u'C') return;
  const std::string own = TheMap().own_drive;
  if (own.empty() || DirectoryOfDrive(u'C') != own) return;
  if (mkdir(own.c_str(), 0777) == 0 || errno != ENOENT) return;
  if (MakeUserDirectory(own.substr(0, own.rfind('/'))) == 0) mkdir(own.c_str(), 0777);
}

void MapDrive(char16_t letter, const char* directory) {
  if (!IsDriveLetter(letter)) throw RuntimeError{5};
  CheckDirectory(directory);
  std::string root = directory == nullptr ? "" : AsRoot(directory);
  DriveMap& map = TheMap();
  const std::unique_lock lock(map.mutex);
  if (directory == nullptr) {
    map.drives.erase(UpperLetter(letter));
  } else {
    map.drives[UpperLetter(letter)] = std::move(root);
  }
}

void MapShare(TextView server, TextView share, const char* directory) {
  CheckDirectory(directory);
  std::string root = directory == nullptr ? "" : AsRoot(directory);
  const Text name = ShareName(server, share);
  DriveMap& map = TheMap();
  const std::unique_lock lock(map.mutex);
  if (directory == nullptr) {
    map.shares.erase(FoldName(name));
  } else {
    map.shares[FoldName(name)] = {name, std::move(root)};
  }
}

std::vector<MappedRoot> MappedRoots() {
  DriveMap& map = TheMap();
  const std::shared_lock lock(map.mutex);
  std::vector<MappedRoot> roots;
  for (const auto& [letter, directory] : map.drives) roots.push_back({{letter, u':'}, directory});
  for (const auto& [folded, share] : map.shares) roots.push_back({share.name, share.directory});
  return roots;
}

}  // namespace Orvix
