// Name lookup. Invoke is in invoke.cpp.
#include "frame/dispatch.h"

#include <bit>

namespace Orvix::component {

namespace {

constexpr char16_t FoldAscii(char16_t unit) {
  return static_cast<char16_t>(unit - u'A') < 26 ? static_cast<char16_t>(unit | 0x20) : unit;
}

template <class Units>
std::uint32_t HashOf(Units name) {
  std::uint32_t hash = 2166136261U;  // FNV-1a
  for (const auto unit : name) hash = (hash ^ FoldAscii(static_cast<char16_t>(unit))) * 16777619U;
  return hash;
}

bool SameName(TextView left, std::string_view right) {
  if (left.size() != right.size()) return false;
  for (std::size_t i = 0; i < left.size(); ++i) {
    if (FoldAscii(left[i]) != FoldAscii(static_cast<unsigned char>(right[i]))) return false;
  }
  return true;
}

int KindIndex(INVOKEKIND kind) {
  switch (kind) {
    case INVOKE_FUNC:
      return 0;
    case INVOKE_PROPERTYGET:
      return 1;
    case INVOKE_PROPERTYPUT:
      return 2;
    case INVOKE_PROPERTYPUTREF:
      return 3;
  }
  return 0;
}

}  // namespace

DISPID DispatchIdOf(const InterfaceTable& table, std::size_t index) {
  DISPID next = 0;
  for (std::size_t i = 0; i < table.rows.size(); ++i) {
    const MemberRow& row = table.rows[i];
    std::size_t first = 0;
    while (table.rows[first].name != row.name) ++first;
    if (first == i) ++next;
    if (i != index) continue;
    if (row.is_default) return DISPID_VALUE;
    return first == i ? next : DispatchIdOf(table, first);
  }
  return DISPID_UNKNOWN;
}

DispatchIndex::DispatchIndex(const InterfaceTable& table)
    : table_(&table), accessors_(table.rows.size() + 1), names_(std::bit_ceil(table.rows.size() * 4)) {
  for (std::size_t i = 0; i < table.rows.size(); ++i) {
    const MemberRow& row = table.rows[i];
    const DISPID id = DispatchIdOf(table, i);
    accessors_[static_cast<std::size_t>(id)].of_kind[KindIndex(row.kind)] = &row;
    std::size_t at = HashOf(row.name) & (names_.size() - 1);
    while (!names_[at].name.empty() && names_[at].name != row.name) at = (at + 1) & (names_.size() - 1);
    names_[at] = {row.name, id};
  }
}

DISPID DispatchIndex::IdOf(TextView name) const {
  std::size_t at = HashOf(name) & (names_.size() - 1);
  while (!names_[at].name.empty()) {
    if (SameName(name, names_[at].name)) return names_[at].id;
    at = (at + 1) & (names_.size() - 1);
  }
  return DISPID_UNKNOWN;
}

const MemberRow* DispatchIndex::RowOf(DISPID id, WORD flags, bool put_object) const {
  if (id < 0 || static_cast<std::size_t>(id) >= accessors_.size()) return nullptr;
  const Accessors& accessors = accessors_[static_cast<std::size_t>(id)];
  if ((flags & DISPATCH_METHOD) != 0 && accessors.of_kind[0] != nullptr) return accessors.of_kind[0];
  if ((flags & DISPATCH_PROPERTYGET) != 0 && accessors.of_kind[1] != nullptr) return accessors.of_kind[1];
  const bool put = (flags & DISPATCH_PROPERTYPUT) != 0 && accessors.of_kind[2] != nullptr;
  const bool putref = (flags & DISPATCH_PROPERTYPUTREF) != 0 && accessors.of_kind[3] != nullptr;
  if (putref && (put_object || !put)) return accessors.of_kind[3];
  return put ? accessors.of_kind[2] : nullptr;
}

const MemberRow* DispatchIndex::AnyRowOf(DISPID id) const {
  if (id < 0 || static_cast<std::size_t>(id) >= accessors_.size()) return nullptr;
  const MemberRow* longest = nullptr;
  for (const MemberRow* row : accessors_[static_cast<std::size_t>(id)].of_kind) {
    if (row != nullptr && (longest == nullptr || row->count > longest->count)) longest = row;
  }
  return longest;
}

HRESULT LookUpNames(const DispatchIndex& index, REFIID riid, OLECHAR** names, UINT count, DISPID* ids) noexcept {
  if (riid != IID_NULL) return DISP_E_UNKNOWNINTERFACE;
  if (names == nullptr || ids == nullptr || count == 0) return E_INVALIDARG;
  const auto view = [&](UINT i) { return names[i] == nullptr ? TextView{} : TextView(names[i]); };
  ids[0] = index.IdOf(view(0));
  HRESULT result = ids[0] == DISPID_UNKNOWN ? DISP_E_UNKNOWNNAME : S_OK;
  const MemberRow* row = index.AnyRowOf(ids[0]);
  for (UINT i = 1; i < count; ++i) {
    ids[i] = DISPID_UNKNOWN;
    for (std::size_t p = 0; row != nullptr && p < row->count; ++p) {
      if (SameName(view(i), row->names[p])) ids[i] = static_cast<DISPID>(p);
    }
    if (ids[i] == DISPID_UNKNOWN) result = DISP_E_UNKNOWNNAME;
  }
  return result;
}

}  // namespace Orvix::component
