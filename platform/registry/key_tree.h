// The keys and values of one root in memory, built up record by record, and
// what is known to be damaged in the root's file.
#ifndef ORVIX_PLATFORM_REGISTRY_KEY_TREE_H
#define ORVIX_PLATFORM_REGISTRY_KEY_TREE_H

#include <functional>
#include <map>
#include <memory>
#include <string>
#include <unordered_map>
#include <vector>

#include "orvix/text.h"
#include "platform/registry/record.h"

namespace Orvix::registry {

struct Value {
  Text name;  // as it was first spelled
  DWORD type = 0;
  std::string data;
  // The line as it stands in the file when it is damaged; `data` means nothing then.
  std::string damaged_line;
  std::size_t line_bytes = 0;  // what it takes in the file

  [[nodiscard]] bool IsDamaged() const { return !damaged_line.empty(); }
};

// Items by folded name, and a place in their order, so that asking for the items
// 0, 1, 2 ... does not start at the beginning each time.
template <class Item>
class NameMap {
 public:
  using Map = std::map<Text, Item, std::less<>>;

  [[nodiscard]] const Item* Find(TextView folded) const {
    const auto found = map_.find(folded);
    return found == map_.end() ? nullptr : &found->second;
  }
  [[nodiscard]] Item* Find(TextView folded) {
    const auto found = map_.find(folded);
    return found == map_.end() ? nullptr : &found->second;
  }
  Item& At(Text folded) {
    place_index_ = kNoPlace;
    return map_[std::move(folded)];
  }
  void Erase(TextView folded) {
    const auto found = map_.find(folded);
    if (found == map_.end()) return;
    place_index_ = kNoPlace;
    map_.erase(found);
  }
  // The item at the 0-based `index`; null past the end.
  [[nodiscard]] Item* AtIndex(std::size_t index) {
    if (index >= map_.size()) return nullptr;
    if (place_index_ > index) {
      place_ = map_.begin();
      place_index_ = 0;
    }
    for (; place_index_ < index; ++place_index_) ++place_;
    return &place_->second;
  }
  [[nodiscard]] const Map& all() const { return map_; }
  [[nodiscard]] bool empty() const { return map_.empty(); }

 private:
  static constexpr std::size_t kNoPlace = static_cast<std::size_t>(-1);
  Map map_;
  typename Map::iterator place_;
  std::size_t place_index_ = kNoPlace;
};

struct Key {
  Text name;  // as it was first spelled
  Text path;  // from the root
  Text folded_path;
  std::uint32_t address = 0;
  NameMap<Value> values;
  NameMap<std::shared_ptr<Key>> keys;
  Key* parent = nullptr;  // null for the root, and once deleted
  bool deleted = false;   // handles outlive their key
  std::size_t line_bytes = 0;
};

class KeyTree {
 public:
  KeyTree();

  [[nodiscard]] const std::shared_ptr<Key>& root() const { return root_; }

  // The key at `path` below `from`; null when it is missing.
  [[nodiscard]] std::shared_ptr<Key> Find(const std::shared_ptr<Key>& from, TextView path) const;
  // Whether a damaged line may have been about this missing key, or about this
  // value whatever else is known of it.
  [[nodiscard]] bool IsKeyLost(const Key& from, TextView path) const;
  [[nodiscard]] bool IsValueLost(const Key& key, TextView folded_name) const;

  // Takes in one line of the file, given without its line end, and what another
  // line end, or a lost one, has put on it.
  void TakeLine(std::string_view text);
  // Takes in one intact record whose line has `line_bytes` bytes.
  void TakeRecord(Record record, std::size_t line_bytes);

  // The bytes that the file needs for what is here.
  [[nodiscard]] std::size_t live_bytes() const { return live_bytes_; }
  // Hands out a line, line end included, for everything here.
  void ForEachLine(const std::function<void(const std::string&)>& take) const;

 private:
  std::shared_ptr<Key> Make(TextView path, std::size_t line_bytes);
  void Drop(TextView path);
  void Forget(Key* key);
  void TakeOne(std::string_view line);
  void TakeDamage(ParsedLine parsed, std::string_view line);
  void TakeOutMark(std::uint32_t address);

  std::shared_ptr<Key> root_;
  // Damaged lines that say by their address what they were about, and those that
  // say nothing.
  std::unordered_map<std::uint32_t, std::string> lost_;
  std::vector<std::string> unknown_;
  std::size_t live_bytes_ = 0;
};

}  // namespace Orvix::registry

#endif
