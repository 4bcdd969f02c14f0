// Base of the run-time's own objects that are called by name only: reference
// count, interfaces, names without regard to case, and the order of arguments.
#ifndef ORVIX_PLATFORM_AUTOMATION_LATE_OBJECT_H
#define ORVIX_PLATFORM_AUTOMATION_LATE_OBJECT_H

#include <memory>
#include <span>
#include <utility>

#include "frame/reference_count.h"
#include "frame/waiting_end.h"
#include "orvix/automation.h"
#include "orvix/text.h"

namespace Orvix {

inline constexpr std::size_t kMostLateParameters = 4;

struct LateMember {
  DISPID id;
  TextView name;
  WORD kinds;                                  // DISPATCH_ flags that reach it
  TextView parameters[kMostLateParameters]{};  // names in order; an empty one ends the list
  std::size_t required = 0;                    // how many of them must be given
};

// The arguments of one call, references followed; they belong to the caller.
struct LateArguments {
  const VARIANT* given[kMostLateParameters]{};  // by parameter position, null where omitted
  const VARIANT* put_value = nullptr;           // the new value of a put
};

// Result codes thrown by `Call` travel as they are; RuntimeError numbers and
// std::bad_alloc become DISP_E_EXCEPTION with the standard description.
struct LateFailure {
  HRESULT code;
};

class LateObject : public IDispatch, private WaitingEnd {
 public:
  LateObject(const LateObject&) = delete;
  LateObject& operator=(const LateObject&) = delete;

  HRESULT ORVIX_CALL QueryInterface(REFIID riid, void** object) noexcept override;
  ULONG ORVIX_CALL AddRef() noexcept override;
  ULONG ORVIX_CALL Release() noexcept override;
  HRESULT ORVIX_CALL GetTypeInfoCount(UINT* count) noexcept override;
  HRESULT ORVIX_CALL GetTypeInfo(UINT index, LCID lcid, ITypeInfo** info) noexcept override;
  HRESULT ORVIX_CALL GetIDsOfNames(REFIID riid, OLECHAR** names, UINT count, LCID lcid, DISPID* ids) noexcept override;
  HRESULT ORVIX_CALL Invoke(DISPID member, REFIID riid, LCID lcid, WORD flags, DISPPARAMS* params, VARIANT* result,
                            EXCEPINFO* exception, UINT* argument_error) noexcept override;

 protected:
  LateObject() = default;
  virtual ~LateObject() = default;

  // The members, each identifier once.
  [[nodiscard]] virtual std::span<const LateMember> Members() const noexcept = 0;
  // The source of the errors that a call reports.
  [[nodiscard]] virtual TextView ClassName() const noexcept = 0;
  // Runs a member that exists, with the arguments that it requires. `result` is
  // Empty and stays so when it throws.
  virtual void Call(DISPID member, const LateArguments& arguments, VARIANT* result) = 0;

 private:
  ReferenceCount references_;
};

[[nodiscard]] EndsInTurn& EndsOfThisThread() noexcept;

struct LateRelease {
  void operator()(IUnknown* object) const noexcept { object->Release(); }
};
template <class Interface>
using LateOwner = std::unique_ptr<Interface, LateRelease>;

// A new object with one reference, which the owner holds.
template <class Object, class... Arguments>
[[nodiscard]] LateOwner<Object> MakeLateObject(Arguments&&... arguments) {
  return LateOwner<Object>(new Object(std::forward<Arguments>(arguments)...));
}

// A number argument: fractions round half to even; RuntimeError 13 or 6.
[[nodiscard]] LONG LongOfArgument(const VARIANT& argument);

}  // namespace Orvix

#endif
