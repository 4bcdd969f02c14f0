// The base of every object that callers hold: identity, lifetime, late binding
// and error support round a plain class.
#ifndef ORVIX_FRAME_OBJECT_H
#define ORVIX_FRAME_OBJECT_H

#include <memory>
#include <new>
#include <type_traits>
#include <utility>

#include "frame/boundary.h"
#include "frame/dispatch.h"
#include "frame/lifetime.h"
#include "frame/member_row.h"
#include "frame/reference_count.h"

namespace Orvix::component {

// A plain class that holds callers' objects ends them in LetGo, as often as their
// ends bring it new ones.
template <class Plain>
concept HoldsObjects = requires(Plain& plain) {
  plain.LetGo();
};
struct EndsAlone {};

// `Plain` is the class that does the work; it names its class as kClassName.
template <class Facade, class Interface, class Plain>
class Object : public Interface,
               public ISupportErrorInfo,
               private std::conditional_t<HoldsObjects<Plain>, WaitingEnd, EndsAlone> {
 public:
  Object() = default;
  Object(Object&&) = delete;

  HRESULT ORVIX_CALL QueryInterface(REFIID riid, void** object) noexcept override {
    if (object == nullptr) return E_POINTER;
    *object = nullptr;
    if (riid == IID_IUnknown || riid == IID_IDispatch || riid == *TableOf<Interface>().iid) {
      *object = static_cast<Interface*>(this);
    } else if (riid == IID_ISupportErrorInfo) {
      *object = static_cast<ISupportErrorInfo*>(this);
    } else {
      return E_NOINTERFACE;
    }
    AddRef();
    return S_OK;
  }
  ULONG ORVIX_CALL AddRef() noexcept override { return references_.Add(); }
  ULONG ORVIX_CALL Release() noexcept override {
    const ULONG left = references_.Drop();
    if (left == 0) End();
    return left;
  }

  HRESULT ORVIX_CALL InterfaceSupportsErrorInfo(REFIID riid) noexcept override {
    return riid == *TableOf<Interface>().iid || riid == IID_IDispatch ? S_OK : S_FALSE;
  }

  HRESULT ORVIX_CALL GetTypeInfoCount(UINT* count) noexcept override {
    if (count == nullptr) return E_POINTER;
    *count = 1;
    return S_OK;
  }
  HRESULT ORVIX_CALL GetTypeInfo(UINT index, LCID, ITypeInfo** info) noexcept override {
    return TypeInfoOf(TableOf<Interface>(), index, info);
  }
  HRESULT ORVIX_CALL GetIDsOfNames(REFIID riid, OLECHAR** names, UINT count, LCID, DISPID* ids) noexcept override {
    return WithIndex([&](const DispatchIndex& index) { return LookUpNames(index, riid, names, count, ids); });
  }
  HRESULT ORVIX_CALL Invoke(DISPID member, REFIID riid, LCID, WORD flags, DISPPARAMS* params, VARIANT* result,
                            EXCEPINFO* exception, UINT* argument_error) noexcept override {
    return WithIndex([&](const DispatchIndex& index) {
      return InvokeByName(index, this, member, riid, flags, params, result, exception, argument_error);
    });
  }

  [[nodiscard]] Plain& plain() { return plain_; }

 protected:
  ~Object() = default;

  // Calls a plain member that returns something; `result` is overwritten.
  template <auto Member, class Target, class... Slots>
  HRESULT Call(Target* result, Slots... slots) noexcept {
    using Signature = row_detail::Signature<decltype(Member)>;
    using R = typename Signature::Result;
    using Traits = Result<R, Target*>;
    if (result == nullptr) return Refuse(E_POINTER);
    // Cleared after a failure only: a caller may have its result written over an
    // argument.
    const HRESULT done = Run<Member>(
        [&](auto&&... arguments) {
          if constexpr (std::is_same_v<R, Self>) {
            (plain_.*Member)(std::forward<decltype(arguments)>(arguments)...);
            AddRef();
            *result = static_cast<Interface*>(this);
          } else {
            Traits::Store(result, (plain_.*Member)(std::forward<decltype(arguments)>(arguments)...));
          }
        },
        slots...);
    if (FAILED(done)) Traits::Clear(result);
    return done;
  }
  // Calls a plain member that returns nothing.
  template <auto Member, class... Slots>
  HRESULT Do(Slots... slots) noexcept {
    return Run<Member>([&](auto&&... arguments) { (plain_.*Member)(std::forward<decltype(arguments)>(arguments)...); },
                       slots...);
  }

 private:
  void End() noexcept {
    if constexpr (HoldsObjects<Plain>) {
      // The end of an item may take and drop references to this object, and call it.
      references_.Set(kEnding);
      EndsOfThisThread().Run(this, [](WaitingEnd* entry) noexcept {
        auto* const self = static_cast<Object*>(entry);
        self->plain_.LetGo();
        delete static_cast<Facade*>(self);
      });
    } else {
      delete static_cast<Facade*>(this);
    }
  }

  // A call that never reaches the member leaves no error info behind.
  static HRESULT Refuse(HRESULT reason) noexcept {
    SetErrorInfo(0, nullptr);
    return reason;
  }

  template <auto Member, class Body, class... Slots>
  HRESULT Run(Body&& body, Slots... slots) noexcept {
    using Parameters = typename row_detail::Signature<decltype(Member)>::Parameters;
    return RunWith<Parameters>(body, std::index_sequence_for<Slots...>{}, slots...);
  }
  template <class Parameters, class Body, std::size_t... I, class... Slots>
  HRESULT RunWith(Body& body, std::index_sequence<I...>, Slots... slots) noexcept {
    HRESULT accepted = S_OK;
    ((SUCCEEDED(accepted) ? void(accepted = Argument<std::tuple_element_t<I, Parameters>, Slots>::Accept(slots))
                          : void()),
     ...);
    if (FAILED(accepted)) return Refuse(accepted);
    return AtBoundary(Plain::kClassName,
                      [&] { body(Argument<std::tuple_element_t<I, Parameters>, Slots>::Get(slots)...); });
  }

  // The index is made on first use, which may find no memory. It is never
  // destroyed: threads may still be in here when the process ends.
  template <class Body>
  static HRESULT WithIndex(Body&& body) noexcept {
    const DispatchIndex* made = nullptr;
    try {
      static const DispatchIndex& index = *std::make_unique<const DispatchIndex>(TableOf<Interface>()).release();
      made = &index;
    } catch (const std::bad_alloc&) {
      return E_OUTOFMEMORY;
    }
    return body(*made);
  }

  static constexpr ULONG kEnding = 1U << 30;  // no count of references comes near it

  ReferenceCount references_;
  LiveObject live_;
  Plain plain_;
};

// A new object as its interface, one reference held.
template <class Facade, class Interface>
ComPtr<Interface> MakeObject() {
  return ComPtr<Interface>::Adopt(new Facade);
}

}  // namespace Orvix::component

#endif
