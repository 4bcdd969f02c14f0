// The keyed collection behind OxCreateCollection, without its IDispatch.
#ifndef ORVIX_PLATFORM_AUTOMATION_COLLECTION_H
#define ORVIX_PLATFORM_AUTOMATION_COLLECTION_H

#include <memory>
#include <unordered_map>
#include <vector>

#include "orvix/automation.h"
#include "orvix/text.h"

namespace Orvix {

// Values in order, some of them under a key. Positions count from 1. Errors are
// RuntimeErrors: 5 a key that is not there, 9 a position outside 1 to Count, 457
// a key used twice; nothing changes then.
class KeyedItems {
 public:
  KeyedItems() = default;
  KeyedItems(const KeyedItems&) = delete;
  KeyedItems& operator=(const KeyedItems&) = delete;
  ~KeyedItems();

  [[nodiscard]] LONG Count() const;
  // Stores a copy (of what a reference refers to) at `position`, or behind the
  // last item for Count + 1. A null `key` is none; letter case does not count.
  void Insert(const VARIANT& value, const TextView* key, LONG position);
  // Belongs to the collection, until the item is removed.
  [[nodiscard]] const VARIANT& At(LONG position) const;
  [[nodiscard]] const VARIANT& At(TextView key) const;
  [[nodiscard]] LONG PositionOf(TextView key) const;
  void Remove(LONG position);

 private:
  struct Item;
  [[nodiscard]] const Item& Find(TextView key) const;

  std::vector<std::unique_ptr<Item>> items_;
  std::unordered_map<Text, const Item*> keys_;  // by folded key
};

}  // namespace Orvix

#endif
