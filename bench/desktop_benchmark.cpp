// Selecting an entry of a combo box against the bare Invoke calls that it takes.
#include <benchmark/benchmark.h>

#include <vector>

#include "frame/com_ptr.h"

namespace {

using namespace Orvix;             // NOLINT(google-build-using-namespace)
using namespace Orvix::component;  // NOLINT(google-build-using-namespace)

constexpr DISPID kListCount = 1;
constexpr DISPID kList = 2;
constexpr DISPID kListIndex = 3;

// A combo box as a toolkit's automation layer brings it.
class Combo final : public IDispatch {
 public:
  explicit Combo(LONG count) {
    for (LONG i = 0; i < count; ++i) {
      entries_.push_back(FromUtf8("entry number " + std::to_string(i)));
    }
  }
  LONG selected = -1;

  HRESULT QueryInterface(REFIID, void**) override { return E_NOINTERFACE; }
  ULONG AddRef() override { return ++references_; }
  ULONG Release() override { return --references_; }
  HRESULT GetTypeInfoCount(UINT*) override { return E_NOTIMPL; }
  HRESULT GetTypeInfo(UINT, LCID, ITypeInfo**) override { return E_NOTIMPL; }
  HRESULT GetIDsOfNames(REFIID, OLECHAR** names, UINT, LCID, DISPID* ids) override {
    const TextView name = names[0];
    *ids = name == u"ListCount" ? kListCount : name == u"List" ? kList : kListIndex;
    return S_OK;
  }
  HRESULT Invoke(DISPID id, REFIID, LCID, WORD, DISPPARAMS* params, VARIANT* result, EXCEPINFO*, UINT*) override {
    if (id == kListIndex) {
      selected = params->rgvarg[0].lVal;
      return S_OK;
    }
    *result = id == kListCount ? Variant(static_cast<LONG>(entries_.size())).Detach()
                               : Variant(TextView(entries_[static_cast<std::size_t>(params->rgvarg[0].lVal)])).Detach();
    return S_OK;
  }

 private:
  std::vector<Text> entries_;
  ULONG references_ = 1;
};

void BareInvokeCalls(benchmark::State& state) {
  Combo combo(static_cast<LONG>(state.range(0)));
  for (auto _ : state) {
    for (LONG i = 0; i < state.range(0); ++i) {
      VARIANT index = Variant(i).Detach();
      DISPPARAMS params{&index, nullptr, 1, 0};
      Variant entry;
      combo.Invoke(kList, IID_NULL, 0, DISPATCH_PROPERTYGET, &params, entry.Address(), nullptr, nullptr);
      benchmark::DoNotOptimize(entry.get().bstrVal);
    }
  }
  state.SetComplexityN(state.range(0));
}
BENCHMARK(BareInvokeCalls)->Arg(1000)->Arg(10000)->Complexity(benchmark::oN);

void SelectTheLastEntry(benchmark::State& state) {
  Combo combo(static_cast<LONG>(state.range(0)));
  ComPtr<IClassFactory> factory;
  DllGetClassObject(CLSID_classOrvix, IID_IClassFactory, factory.ReceiveVoid());
  ComPtr<_classOrvix> orvix;
  factory->CreateInstance(nullptr, IID__classOrvix, orvix.ReceiveVoid());
  const BstrHandle text(FromUtf8("entry number " + std::to_string(state.range(0) - 1)));
  BSTR wanted = text.get();
  IDispatch* object = &combo;
  for (auto _ : state) {
    combo.selected = -1;
    orvix->SetComboElement(&object, &wanted);
    if (combo.selected != state.range(0) - 1) state.SkipWithError("wrong entry");
  }
  state.SetComplexityN(state.range(0));
}
BENCHMARK(SelectTheLastEntry)->Arg(1000)->Arg(10000)->Complexity(benchmark::oN);

}  // namespace
