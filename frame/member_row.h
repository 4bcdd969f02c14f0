// One row per member: everything that name lookup, invocation, type information
// and the printed IDL need, deduced from the member and its slot; the words are
// written once, in the row.
#ifndef ORVIX_FRAME_MEMBER_ROW_H
#define ORVIX_FRAME_MEMBER_ROW_H

#include <array>
#include <span>
#include <string_view>
#include <tuple>
#include <utility>

#include "frame/argument_types.h"

namespace Orvix::component {

inline constexpr std::size_t kMaxParameters = 10;

struct MemberRow {
  std::string_view name;
  std::string_view help;
  INVOKEKIND kind = INVOKE_FUNC;
  bool is_default = false;     // dispatch identifier 0
  bool is_ui_default = false;  // the member a browser shows first
  std::size_t count = 0;
  std::array<std::string_view, kMaxParameters> names{};
  std::array<TypeWords, kMaxParameters> types{};
  TypeWords result{};  // VT_EMPTY when the member returns nothing
  // Calls the slot: `arguments` points at one value each (at the pointer's
  // target for by-reference ones, or null when omitted), `result` at the result.
  HRESULT (*invoke)(IDispatch* object, void* const* arguments, void* result) = nullptr;
};

// One interface and its rows, in slot order.
struct InterfaceTable {
  std::string_view name;
  const IID* iid;
  std::span<const MemberRow> rows;
};

// The table of an interface; specialised next to its rows.
template <class Interface>
const InterfaceTable& TableOf();

namespace row_detail {

template <class T>
struct Signature;
template <class C, class R, class... Ps>
struct Signature<R (C::*)(Ps...)> {
  using Class = C;
  using Result = R;
  using Parameters = std::tuple<Ps...>;
};
template <class C, class R, class... Ps>
struct Signature<R (C::*)(Ps...) const> : Signature<R (C::*)(Ps...)> {};

template <class S>
S FromStorage(void* storage) {
  if constexpr (std::is_pointer_v<S> && !std::is_same_v<S, BSTR>) {
    return static_cast<S>(storage);
  } else {
    return *static_cast<S*>(storage);
  }
}

// Parameters of the slot that are not its result.
template <class Plain, class SlotTuple, std::size_t... I>
constexpr void FillTypes(MemberRow& row, std::index_sequence<I...>) {
  using Parameters = typename Plain::Parameters;
  ((row.types[I] = Argument<std::tuple_element_t<I, Parameters>, std::tuple_element_t<I, SlotTuple>>::kWords), ...);
}

template <auto Member, auto Slot>
struct Builder {
  using Plain = Signature<decltype(Member)>;
  using SlotSignature = Signature<decltype(Slot)>;
  using SlotTuple = typename SlotSignature::Parameters;
  static constexpr std::size_t kArity = std::tuple_size_v<typename Plain::Parameters>;
  static constexpr bool kReturns = !std::is_void_v<typename Plain::Result>;
  static_assert(std::tuple_size_v<SlotTuple> == kArity + (kReturns ? 1 : 0), "member and vtable slot disagree");
  static_assert(kArity <= kMaxParameters);

  static HRESULT Invoke(IDispatch* object, void* const* arguments, void* result) {
    return InvokeWith(object, arguments, result, std::make_index_sequence<kArity>{});
  }

  static constexpr MemberRow Row(std::string_view name, std::string_view help, INVOKEKIND kind) {
    MemberRow row;
    row.name = name;
    row.help = help;
    row.kind = kind;
    row.count = kArity;
    FillTypes<Plain, SlotTuple>(row, std::make_index_sequence<kArity>{});
    if constexpr (kReturns) {
      row.result = Result<typename Plain::Result, std::tuple_element_t<kArity, SlotTuple>>::kWords;
    }
    row.invoke = &Invoke;
    return row;
  }

 private:
  template <std::size_t... I>
  static HRESULT InvokeWith(IDispatch* object, void* const* arguments, void* result, std::index_sequence<I...>) {
    auto* target = static_cast<typename SlotSignature::Class*>(object);
    if constexpr (kReturns) {
      return (target->*Slot)(FromStorage<std::tuple_element_t<I, SlotTuple>>(arguments[I])...,
                             static_cast<std::tuple_element_t<kArity, SlotTuple>>(result));
    } else {
      return (target->*Slot)(FromStorage<std::tuple_element_t<I, SlotTuple>>(arguments[I])...);
    }
  }
};

template <auto Member, auto Slot, std::size_t N>
constexpr MemberRow Named(std::string_view name, std::string_view help, INVOKEKIND kind,
                          const std::string_view (&names)[N]) {
  static_assert(N == Builder<Member, Slot>::kArity, "one name per parameter");
  MemberRow row = Builder<Member, Slot>::Row(name, help, kind);
  for (std::size_t i = 0; i < N; ++i) row.names[i] = names[i];
  return row;
}
template <auto Member, auto Slot>
constexpr MemberRow Nameless(std::string_view name, std::string_view help, INVOKEKIND kind) {
  static_assert(Builder<Member, Slot>::kArity == 0, "one name per parameter");
  return Builder<Member, Slot>::Row(name, help, kind);
}

}  // namespace row_detail

template <auto Member, auto Slot, std::size_t N>
consteval MemberRow Method(std::string_view name, std::string_view help, const std::string_view (&names)[N]) {
  return row_detail::Named<Member, Slot>(name, help, INVOKE_FUNC, names);
}
template <auto Member, auto Slot>
consteval MemberRow Method(std::string_view name, std::string_view help = {}) {
  return row_detail::Nameless<Member, Slot>(name, help, INVOKE_FUNC);
}
template <auto Member, auto Slot, std::size_t N>
consteval MemberRow PropertyGet(std::string_view name, const std::string_view (&names)[N]) {
  return row_detail::Named<Member, Slot>(name, {}, INVOKE_PROPERTYGET, names);
}
template <auto Member, auto Slot>
consteval MemberRow PropertyGet(std::string_view name) {
  return row_detail::Nameless<Member, Slot>(name, {}, INVOKE_PROPERTYGET);
}
template <auto Member, auto Slot, std::size_t N>
consteval MemberRow PropertyPut(std::string_view name, const std::string_view (&names)[N]) {
  return row_detail::Named<Member, Slot>(name, {}, INVOKE_PROPERTYPUT, names);
}
template <auto Member, auto Slot, std::size_t N>
consteval MemberRow PropertyPutRef(std::string_view name, const std::string_view (&names)[N]) {
  return row_detail::Named<Member, Slot>(name, {}, INVOKE_PROPERTYPUTREF, names);
}
// The member that stands for the object itself (dispatch identifier 0).
consteval MemberRow DefaultMember(MemberRow row) {
  row.is_default = true;
  return row;
}
// The member that a browser shows first.
consteval MemberRow UiDefault(MemberRow row) {
  row.is_ui_default = true;
  return row;
}

}  // namespace Orvix::component

#endif
