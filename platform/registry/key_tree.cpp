#include "platform/registry/key_tree.h"

#include <algorithm>

#include "platform/names/case_fold.h"

namespace Orvix::registry {

namespace {

// The mark of a note and nothing more: what follows was left out by a person.
bool IsBlankNote(std::string_view text) { return text.find_first_not_of("# \t") == std::string_view::npos; }

// An estimate for keys that no line of their own has made.
std::size_t KeyLineBytes(const Key& key) { return 30 + key.path.size(); }

Text Joined(TextView path, TextView component) {
  Text joined;
  joined.reserve(path.size() + 1 + component.size());
  joined.append(path);
  if (!path.empty()) joined.push_back(u'\\');
  joined.append(component);
  return joined;
}

}  // namespace

KeyTree::KeyTree() : root_(std::make_shared<Key>()) { root_->address = KeyAddress({}); }

std::shared_ptr<Key> KeyTree::Find(const std::shared_ptr<Key>& from, TextView path) const {
  const std::shared_ptr<Key>* key = &from;
  for (const TextView component : Components(path)) {
    key = (*key)->keys.Find(FoldName(component));
    if (key == nullptr) return nullptr;
  }
  return *key;
}

bool KeyTree::IsKeyLost(const Key& from, TextView path) const {
  if (lost_.empty()) return false;
  // Any key on the way that is not there may be the one that is lost.
  const Key* at = &from;
  Text folded_path = from.folded_path;
  for (const TextView component : Components(path)) {
    const Text folded = FoldName(component);
    folded_path = Joined(folded_path, folded);
    const std::shared_ptr<Key>* below = at == nullptr ? nullptr : at->keys.Find(folded);
    at = below == nullptr ? nullptr : below->get();
    if (at == nullptr && lost_.contains(KeyAddress(folded_path))) return true;
  }
  return false;
}

bool KeyTree::IsValueLost(const Key& key, TextView folded_name) const {
  return !lost_.empty() && lost_.contains(ValueAddress(key.address, folded_name));
}

void KeyTree::TakeLine(std::string_view text) {
  // No record holds a carriage return: an editor may have made it the line end.
  while (!text.empty()) {
    std::string_view line = text.substr(0, text.find('\r'));
    text.remove_prefix(std::min(text.size(), line.size() + 1));
    while (!line.empty()) {
      ParsedLine parsed = ParseLine(line);
      if (parsed.kind == ParsedLine::Kind::kRecord) {
        TakeRecord(std::move(parsed.record), line.size() + 1);
        break;
      }
      const std::size_t inside = FindRecordInside(line);
      const std::string_view first = line.substr(0, inside);
      const bool left_out = parsed.kind == ParsedLine::Kind::kNote && IsBlankNote(first);
      if (left_out || inside == std::string_view::npos) {
        if (parsed.kind == ParsedLine::Kind::kDamaged) TakeDamage(std::move(parsed), line);
        break;
      }
      // A line end was lost, or the byte before the next record stands in its
      // place.
      const bool is_whole = ParseLine(first).kind == ParsedLine::Kind::kRecord;
      TakeOne(is_whole ? first : first.substr(0, inside - 1));
      line.remove_prefix(inside);
    }
  }
}

void KeyTree::TakeOne(std::string_view line) {
  ParsedLine parsed = ParseLine(line);
  if (parsed.kind == ParsedLine::Kind::kRecord) return TakeRecord(std::move(parsed.record), line.size() + 1);
  if (parsed.kind == ParsedLine::Kind::kDamaged) TakeDamage(std::move(parsed), line);
}

void KeyTree::TakeRecord(Record record, std::size_t line_bytes) {
  if (record.verb == Verb::kDrop) return Drop(record.key);
  if (record.verb == Verb::kUnset) {
    const std::shared_ptr<Key> key = Find(root_, record.key);
    if (key == nullptr) return;
    const Text folded = FoldName(record.name);
    TakeOutMark(ValueAddress(key->address, folded));
    if (const Value* value = key->values.Find(folded)) live_bytes_ -= value->line_bytes;
    key->values.Erase(folded);
    return;
  }
  const std::shared_ptr<Key> key = Make(record.key, line_bytes);
  if (record.verb == Verb::kKey) return;
  Text folded = FoldName(record.name);
  TakeOutMark(ValueAddress(key->address, folded));
  Value* value = key->values.Find(folded);
  if (value == nullptr) {
    value = &key->values.At(std::move(folded));
    value->name = std::move(record.name);
  }
  live_bytes_ += line_bytes - value->line_bytes;
  value->line_bytes = line_bytes;
  value->type = record.type;
  value->data = std::move(record.data);
  value->damaged_line.clear();
}

// A damaged line whose verb, key and name are certain does what it says, save
// that the data of a value is lost. Otherwise its address field is held against
// what callers ask for.
void KeyTree::TakeDamage(ParsedLine parsed, std::string_view line) {
  if (parsed.named) {
    const bool loses_data = parsed.record.verb == Verb::kSet;
    const Text path = parsed.record.key;
    const Text folded = FoldName(parsed.record.name);
    TakeRecord(std::move(parsed.record), line.size() + 1);
    if (loses_data) Find(root_, path)->values.Find(folded)->damaged_line = line;
    return;
  }
  live_bytes_ += line.size() + 1;
  if (parsed.address) {
    TakeOutMark(*parsed.address);
    lost_[*parsed.address] = line;
  } else {
    unknown_.emplace_back(line);
  }
}

void KeyTree::TakeOutMark(std::uint32_t address) {
  if (lost_.empty()) return;
  const auto found = lost_.find(address);
  if (found == lost_.end()) return;
  live_bytes_ -= found->second.size() + 1;
  lost_.erase(found);
}

std::shared_ptr<Key> KeyTree::Make(TextView path, std::size_t line_bytes) {
  std::shared_ptr<Key> key = root_;
  for (const TextView component : Components(path)) {
    Text folded = FoldName(component);
    if (const std::shared_ptr<Key>* found = key->keys.Find(folded)) {
      key = *found;
      continue;
    }
    auto made = std::make_shared<Key>();
    made->name = component;
    made->path = Joined(key->path, component);
    made->folded_path = Joined(key->folded_path, folded);
    made->address = KeyAddress(made->folded_path);
    made->parent = key.get();
    made->line_bytes = std::min(line_bytes, KeyLineBytes(*made));
    TakeOutMark(made->address);
    live_bytes_ += made->line_bytes;
    key->keys.At(std::move(folded)) = made;
    key = std::move(made);
  }
  return key;
}

void KeyTree::Drop(TextView path) {
  const std::shared_ptr<Key> key = Find(root_, path);
  if (key == nullptr || key == root_) return;
  Key* parent = key->parent;
  Forget(key.get());
  parent->keys.Erase(FoldName(key->name));
}

// Handles may keep a deleted key; it must not lead back into the tree.
void KeyTree::Forget(Key* key) {
  for (const auto& [folded, below] : key->keys.all()) Forget(below.get());
  for (const auto& [folded, value] : key->values.all()) live_bytes_ -= value.line_bytes;
  live_bytes_ -= key->line_bytes;
  key->parent = nullptr;
  key->deleted = true;
}

void KeyTree::ForEachLine(const std::function<void(const std::string&)>& take) const {
  const std::function<void(const Key&)> walk = [&](const Key& key) {
    if (&key != root_.get()) take(FormatRecord({Verb::kKey, key.path, {}, 0, {}}, key.address));
    for (const auto& [folded, value] : key.values.all()) {
      if (value.IsDamaged()) {
        take(value.damaged_line + "\n");
      } else {
        take(FormatRecord({Verb::kSet, key.path, value.name, value.type, value.data},
                          ValueAddress(key.address, folded)));
      }
    }
    for (const auto& [folded, below] : key.keys.all()) walk(*below);
  };
  walk(*root_);
  // Last, as they may be about anything above.
  for (const auto& [address, line] : lost_) take(line + "\n");
  for (const std::string& line : unknown_) take(line + "\n");
}

}  // namespace Orvix::registry
