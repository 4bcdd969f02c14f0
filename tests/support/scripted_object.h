// An object of the caller's environment, reached by name: its members are set
// up by the test, and every call is kept as a line.
#ifndef ORVIX_TESTS_SUPPORT_SCRIPTED_OBJECT_H
#define ORVIX_TESTS_SUPPORT_SCRIPTED_OBJECT_H

#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "frame/text_primitives.h"
#include "tests/support/component.h"

namespace Orvix::testing {

// A value as a test writes it down: "I4 5", "BOOL -1", "R8 2.5", "BSTR abc".
inline std::string Shown(const VARIANT& value) {
  switch (value.vt) {
    case VT_EMPTY:
      return "EMPTY";
    case VT_I4:
      return "I4 " + std::to_string(value.lVal);
    case VT_R8: {
      std::string digits = std::to_string(value.dblVal);
      digits.erase(digits.find_last_not_of('0') + 1);
      return "R8 " + (digits.ends_with('.') ? digits + "0" : digits);
    }
    case VT_BOOL:
      return "BOOL " + std::to_string(value.boolVal);
    case VT_BSTR:
      return "BSTR " + ToUtf8(ViewOf(value.bstrVal));
    default:
      return "type " + std::to_string(value.vt);
  }
}

// Names without regard to case; the member without a name is the default one,
// which is not looked up. Lives on the stack of its test: the count of references
// is only looked at.
class ScriptedObject final : public IDispatch {
 public:
  using Arguments = std::vector<VARIANT>;  // natural order, borrowed
  using Getter = std::function<Variant(const Arguments&)>;
  using Setter = std::function<void(const VARIANT&)>;

  // A member that fails with this number answers nothing else.
  void Fails(TextView name, LONG number) { member(name).failure = number; }
  void Gives(TextView name, Getter getter) { member(name).getter = std::move(getter); }
  void Gives(TextView name, LONG value) {
    Gives(name, [value](const Arguments&) { return Variant(value); });
  }
  void Gives(TextView name, TextView value) {
    Gives(name, [text = Text(value)](const Arguments&) { return Variant(text); });
  }
  void Gives(TextView name, IDispatch* object) {
    Gives(name, [object](const Arguments&) {
      Variant value;
      object->AddRef();
      value.Address()->vt = VT_DISPATCH;
      value.Address()->pdispVal = object;
      return value;
    });
  }
  void Takes(
      TextView name, Setter setter = [](const VARIANT&) {}) {
    member(name).setter = std::move(setter);
  }

  // "get List(I4 0)", "put Left = R8 2.5", "call SetFocus()", in order.
  std::vector<std::string> log;
  LONG references = 1;

  HRESULT QueryInterface(REFIID iid, void** object) override {
    if (iid != IID_IUnknown && iid != IID_IDispatch) return E_NOINTERFACE;
    AddRef();
    *object = static_cast<IDispatch*>(this);
    return S_OK;
  }
  ULONG AddRef() override { return static_cast<ULONG>(++references); }
  ULONG Release() override { return static_cast<ULONG>(--references); }
  HRESULT GetTypeInfoCount(UINT*) override { return E_NOTIMPL; }
  HRESULT GetTypeInfo(UINT, LCID, ITypeInfo**) override { return E_NOTIMPL; }
  HRESULT GetIDsOfNames(REFIID, OLECHAR** names, UINT, LCID, DISPID* ids) override {
    ++lookups;
    for (std::size_t i = 0; i < members_.size(); ++i) {
      if (component::Upper(members_[i].name) != component::Upper(names[0])) continue;
      *ids = static_cast<DISPID>(i) + 1;
      return S_OK;
    }
    *ids = DISPID_UNKNOWN;
    return DISP_E_UNKNOWNNAME;
  }
  HRESULT Invoke(DISPID id, REFIID, LCID, WORD kind, DISPPARAMS* params, VARIANT* result, EXCEPINFO* exception,
                 UINT*) override {
    if (id == DISPID_VALUE) id = DefaultMember();
    if (id < 1 || static_cast<std::size_t>(id) > members_.size()) return DISP_E_MEMBERNOTFOUND;
    const Member& called = members_[static_cast<std::size_t>(id) - 1];
    Arguments arguments(params->rgvarg, params->rgvarg + params->cArgs);
    std::reverse(arguments.begin(), arguments.end());
    const bool puts = (kind & DISPATCH_PROPERTYPUT) != 0;
    Note(called, kind, arguments);
    if (called.failure != 0) {
      exception->scode = static_cast<SCODE>(0x800A0000U + static_cast<ULONG>(called.failure));
      exception->bstrSource = SysAllocString(u"Scripted");
      exception->bstrDescription = SysAllocString(u"refused");
      return DISP_E_EXCEPTION;
    }
    if (puts) {
      if (!called.setter) return DISP_E_MEMBERNOTFOUND;
      called.setter(arguments.back());
      return S_OK;
    }
    if (!called.getter) return DISP_E_MEMBERNOTFOUND;
    Variant value = called.getter(arguments);
    if (result != nullptr) *result = value.Detach();
    return S_OK;
  }

  LONG lookups = 0;

 private:
  struct Member {
    Text name;
    Getter getter;
    Setter setter;
    LONG failure = 0;
  };

  // 0 without one.
  [[nodiscard]] DISPID DefaultMember() const {
    for (std::size_t i = 0; i < members_.size(); ++i) {
      if (members_[i].name.empty()) return static_cast<DISPID>(i) + 1;
    }
    return 0;
  }

  Member& member(TextView name) {
    for (Member& known : members_) {
      if (known.name == name) return known;
    }
    return members_.emplace_back(Member{Text(name), {}, {}, 0});
  }

  void Note(const Member& called, WORD kind, const Arguments& arguments) {
    if ((kind & DISPATCH_PROPERTYPUT) != 0) {
      log.push_back("put " + ToUtf8(called.name) + " = " + Shown(arguments.back()));
      return;
    }
    std::string line = (kind & DISPATCH_PROPERTYGET) != 0 ? "get " : "call ";
    line += ToUtf8(called.name);
    for (const VARIANT& argument : arguments) line += " " + Shown(argument);
    log.push_back(line);
  }

  std::vector<Member> members_;
};

}  // namespace Orvix::testing

#endif
