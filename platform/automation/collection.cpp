#include "platform/automation/collection.h"

#include <algorithm>
#include <optional>
#include <utility>

#include "frame/runtime/runtime_error.h"
#include "platform/automation/late_object.h"
#include "platform/automation/variant.h"
#include "platform/names/case_fold.h"

namespace Orvix {

struct KeyedItems::Item {
  OwnedVariant value;
  std::optional<Text> key;  // folded
};

// Each item goes when the collection is whole without it: the last release of
// an object may run code that comes back.
KeyedItems::~KeyedItems() {
  while (!items_.empty()) Remove(Count());
}

LONG KeyedItems::Count() const { return static_cast<LONG>(items_.size()); }

void KeyedItems::Insert(const VARIANT& value, const TextView* key, LONG position) {
  if (position < 1 || position - 1 > Count()) throw RuntimeError{9};
  auto item = std::make_unique<Item>();
  const HRESULT copied = VariantCopyInd(&item->value.value, &value);
  if (FAILED(copied)) throw RuntimeError{OxErrorNumber(copied)};
  // The object counted may have taken items away meanwhile.
  if (position - 1 > Count()) throw RuntimeError{9};
  if (items_.size() == items_.capacity()) items_.reserve(2 * items_.size() + 1);
  if (key != nullptr) {
    item->key = FoldName(*key);
    if (!keys_.emplace(*item->key, item.get()).second) throw RuntimeError{457};
  }
  items_.insert(items_.begin() + (position - 1), std::move(item));  // has the room: cannot fail
}

const VARIANT& KeyedItems::At(LONG position) const {
  if (position < 1 || position > Count()) throw RuntimeError{9};
  return items_[static_cast<std::size_t>(position - 1)]->value.value;
}

const VARIANT& KeyedItems::At(TextView key) const { return Find(key).value.value; }

const KeyedItems::Item& KeyedItems::Find(TextView key) const {
  const auto found = keys_.find(FoldName(key));
  if (found == keys_.end()) throw RuntimeError{5};
  return *found->second;
}

LONG KeyedItems::PositionOf(TextView key) const {
  const Item& item = Find(key);
  const auto found = std::ranges::find_if(items_, [&](const auto& other) { return other.get() == &item; });
  return static_cast<LONG>(found - items_.begin()) + 1;
}

void KeyedItems::Remove(LONG position) {
  if (position < 1 || position > Count()) throw RuntimeError{9};
  const auto place = items_.begin() + (position - 1);
  const std::unique_ptr<Item> item = std::move(*place);
  items_.erase(place);
  if (item->key.has_value()) keys_.erase(*item->key);
}

namespace {

class Collection final : public LateObject {
 public:
  [[nodiscard]] LONG ItemCount() const noexcept { return items_.Count(); }
  // For the enumerator: a copy of the item at a position, none past the end.
  bool CopyItem(LONG position, VARIANT* copy) const {
    if (position > items_.Count()) return false;
    const HRESULT copied = VariantCopy(copy, &items_.At(position));
    if (FAILED(copied)) throw RuntimeError{OxErrorNumber(copied)};
    return true;
  }

 protected:
  enum Member : DISPID { kNewEnum = DISPID_NEWENUM, kItem = DISPID_VALUE, kAdd = 1, kCount = 2, kRemove = 3 };

  [[nodiscard]] std::span<const LateMember> Members() const noexcept override {
    constexpr WORD kRead = DISPATCH_METHOD | DISPATCH_PROPERTYGET;
    static constexpr LateMember kMembers[] = {
        {kItem, u"Item", kRead, {u"Index"}, 1},
        {kAdd, u"Add", DISPATCH_METHOD, {u"Item", u"Key", u"Before", u"After"}, 1},
        {kCount, u"Count", kRead},
        {kRemove, u"Remove", DISPATCH_METHOD, {u"Index"}, 1},
        {kNewEnum, u"_NewEnum", kRead},
    };
    return kMembers;
  }
  [[nodiscard]] TextView ClassName() const noexcept override { return u"Orvix.Collection"; }

  void Call(DISPID member, const LateArguments& arguments, VARIANT* result) override {
    const VARIANT* const first = arguments.given[0];
    switch (member) {
      case kItem:
        return Get(*first, result);
      case kAdd:
        return Add(*first, arguments.given[1], arguments.given[2], arguments.given[3]);
      case kCount:
        result->lVal = items_.Count();
        result->vt = VT_I4;
        return;
      case kRemove:
        return items_.Remove(PositionOf(*first));
      default:
        return Enumerate(result);
    }
  }

 private:
  // A text is a key, also when it looks like a number; all else is a position.
  LONG PositionOf(const VARIANT& index) const {
    return index.vt == VT_BSTR ? items_.PositionOf(ViewOf(index.bstrVal)) : LongOfArgument(index);
  }

  void Get(const VARIANT& index, VARIANT* result) const {
    const VARIANT& item = index.vt == VT_BSTR ? items_.At(ViewOf(index.bstrVal)) : items_.At(LongOfArgument(index));
    const HRESULT copied = VariantCopy(result, &item);
    if (FAILED(copied)) throw RuntimeError{OxErrorNumber(copied)};
  }

  void Add(const VARIANT& item, const VARIANT* key, const VARIANT* before, const VARIANT* after) {
    if (before != nullptr && after != nullptr) throw RuntimeError{5};
    if (key != nullptr && key->vt != VT_BSTR) throw RuntimeError{13};
    LONG position = items_.Count() + 1;
    if (before != nullptr) position = ExistingPosition(*before);
    if (after != nullptr) position = ExistingPosition(*after) + 1;
    const TextView key_text = key != nullptr ? ViewOf(key->bstrVal) : TextView{};
    items_.Insert(item, key != nullptr ? &key_text : nullptr, position);
  }

  LONG ExistingPosition(const VARIANT& index) const {
    const LONG position = PositionOf(index);
    if (position < 1 || position > items_.Count()) throw RuntimeError{9};
    return position;
  }

  void Enumerate(VARIANT* result);

  KeyedItems items_;
};

// Walks the collection as it is: items added behind the place reached are still
// seen, those removed are not.
class ItemEnumerator final : public IEnumVARIANT {
 public:
  ItemEnumerator(Collection* collection, LONG next) : collection_(collection), next_(next) { collection->AddRef(); }
  ItemEnumerator(const ItemEnumerator&) = delete;
  ItemEnumerator& operator=(const ItemEnumerator&) = delete;

  HRESULT ORVIX_CALL QueryInterface(REFIID riid, void** object) noexcept override {
    if (object == nullptr) return E_POINTER;
    *object = riid == IID_IUnknown || riid == IID_IEnumVARIANT ? static_cast<IEnumVARIANT*>(this) : nullptr;
    if (*object == nullptr) return E_NOINTERFACE;
    AddRef();
    return S_OK;
  }
  ULONG ORVIX_CALL AddRef() noexcept override { return ++references_; }
  ULONG ORVIX_CALL Release() noexcept override {
    const ULONG left = --references_;
    if (left == 0) delete this;
    return left;
  }

  HRESULT ORVIX_CALL Next(ULONG count, VARIANT* values, ULONG* fetched) noexcept override {
    if (fetched != nullptr) *fetched = 0;
    if (values == nullptr && count > 0) return E_POINTER;
    ULONG done = 0;
    const HRESULT result = AtRuntimeEdge([&] {
      for (; done < count; ++done, ++next_) {
        VariantInit(&values[done]);
        if (!collection_->CopyItem(next_, &values[done])) return;
      }
    });
    if (FAILED(result)) {
      next_ -= static_cast<LONG>(done);
      while (done > 0) VariantClear(&values[--done]);
      return result;
    }
    if (fetched != nullptr) *fetched = done;
    return done == count ? S_OK : S_FALSE;
  }
  HRESULT ORVIX_CALL Skip(ULONG count) noexcept override {
    const ULONG left = static_cast<ULONG>(std::max(collection_->ItemCount() - next_ + 1, 0));
    next_ += static_cast<LONG>(std::min(count, left));
    return count <= left ? S_OK : S_FALSE;
  }
  HRESULT ORVIX_CALL Reset() noexcept override {
    next_ = 1;
    return S_OK;
  }
  HRESULT ORVIX_CALL Clone(IEnumVARIANT** copy) noexcept override {
    if (copy == nullptr) return E_POINTER;
    *copy = nullptr;
    return AtRuntimeEdge([&] { *copy = new ItemEnumerator(collection_.get(), next_); });
  }

 private:
  ~ItemEnumerator() = default;

  std::atomic<ULONG> references_ = 1;
  LateOwner<Collection> collection_;
  LONG next_;
};

void Collection::Enumerate(VARIANT* result) {
  result->punkVal = new ItemEnumerator(this, 1);
  result->vt = VT_UNKNOWN;
}

}  // namespace

}  // namespace Orvix

HRESULT ORVIX_CALL OxCreateCollection(IDispatch** collection) {
  if (collection == nullptr) return E_POINTER;
  *collection = nullptr;
  return Orvix::AtRuntimeEdge([&] { *collection = Orvix::MakeLateObject<Orvix::Collection>().release(); });
}
