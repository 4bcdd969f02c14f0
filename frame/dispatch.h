// Late binding for every interface of the component: name lookup, and Invoke
// with conversion of arguments, named and omitted ones, and write-back.
#ifndef ORVIX_FRAME_DISPATCH_H
#define ORVIX_FRAME_DISPATCH_H

#include <cstdint>
#include <vector>

#include "frame/member_row.h"

namespace Orvix::component {

// The members of one interface by name and by dispatch identifier. Made once an
// interface, on first use.
class DispatchIndex {
 public:
  explicit DispatchIndex(const InterfaceTable& table);

  [[nodiscard]] const InterfaceTable& table() const { return *table_; }
  // Names compare without regard to case; DISPID_UNKNOWN when there is none.
  [[nodiscard]] DISPID IdOf(TextView name) const;
  // The accessor of the kinds in `flags` (DISPATCH_METHOD ...); null when there
  // is none. `put_object`: whether put and putref together mean putref.
  [[nodiscard]] const MemberRow* RowOf(DISPID id, WORD flags, bool put_object) const;
  // The accessor of a member with the most parameters, for their names.
  [[nodiscard]] const MemberRow* AnyRowOf(DISPID id) const;
  [[nodiscard]] bool Has(DISPID id) const { return AnyRowOf(id) != nullptr; }

 private:
  struct Accessors {
    const MemberRow* of_kind[4] = {};  // method, get, put, putref
  };
  struct NameSlot {
    std::string_view name;
    DISPID id = DISPID_UNKNOWN;
  };
  const InterfaceTable* table_;
  std::vector<Accessors> accessors_;  // by dispatch identifier
  std::vector<NameSlot> names_;       // open addressing, a power of two
};

// The dispatch identifier of the row at `index`: rows numbered from 1, accessors
// of a property sharing a number, 0 for the default member.
[[nodiscard]] DISPID DispatchIdOf(const InterfaceTable& table, std::size_t index);

HRESULT LookUpNames(const DispatchIndex& index, REFIID riid, OLECHAR** names, UINT count, DISPID* ids) noexcept;

HRESULT InvokeByName(const DispatchIndex& index, IDispatch* object, DISPID member, REFIID riid, WORD flags,
                     DISPPARAMS* params, VARIANT* result, EXCEPINFO* exception, UINT* argument_error) noexcept;

// The type information of one interface (type_library.cpp).
HRESULT TypeInfoOf(const InterfaceTable& table, UINT index, ITypeInfo** info) noexcept;

}  // namespace Orvix::component

#endif
