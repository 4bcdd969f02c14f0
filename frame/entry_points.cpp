// The four entry points of the component, and its class objects. Registration
// is in registration.cpp.
#include <atomic>
#include <new>

#include "frame/boundary.h"
#include "frame/classes.h"
#include "frame/error.h"
#include "frame/lifetime.h"
#include "frame/registration.h"
#include "frame/type_library.h"

namespace Orvix::component {

namespace {

class ClassObject final : public IClassFactory {
 public:
  explicit ClassObject(const ClassEntry& entry) : entry_(entry) {}
  ClassObject(const ClassObject&) = delete;
  ClassObject& operator=(const ClassObject&) = delete;

  HRESULT ORVIX_CALL QueryInterface(REFIID riid, void** object) noexcept override {
    if (object == nullptr) return E_POINTER;
    *object = nullptr;
    if (riid != IID_IUnknown && riid != IID_IClassFactory) return E_NOINTERFACE;
    *object = static_cast<IClassFactory*>(this);
    AddRef();
    return S_OK;
  }
  ULONG ORVIX_CALL AddRef() noexcept override { return ++references_; }
  ULONG ORVIX_CALL Release() noexcept override {
    const ULONG left = --references_;
    if (left == 0) delete this;
    return left;
  }

  HRESULT ORVIX_CALL CreateInstance(IUnknown* outer, REFIID riid, void** object) noexcept override {
    if (object == nullptr) return E_POINTER;
    *object = nullptr;
    if (outer != nullptr) return CLASS_E_NOAGGREGATION;
    try {
      return entry_.create()->QueryInterface(riid, object);
    } catch (...) {
      return ResultOfCurrentException(entry_.name);
    }
  }
  HRESULT ORVIX_CALL LockServer(BOOL lock) noexcept override {
    component::LockServer(lock != 0);
    return S_OK;
  }

 private:
  const ClassEntry& entry_;
  std::atomic<ULONG> references_{1};
  LiveObject live_;
};

}  // namespace

}  // namespace Orvix::component

using namespace Orvix::component;  // NOLINT(google-build-using-namespace): C entry points below

// Also hands out the type library: for its identifier and ITypeLib.
HRESULT ORVIX_CALL DllGetClassObject(REFCLSID clsid, REFIID riid, void** object) {
  if (object == nullptr) return E_POINTER;
  *object = nullptr;
  if (clsid == Orvix::LIBID_Orvix && riid == IID_ITypeLib) return OpenTypeLibrary(riid, object);
  for (const ClassEntry& entry : Classes()) {
    if (*entry.clsid != clsid) continue;
    auto* made = new (std::nothrow) ClassObject(entry);
    if (made == nullptr) return E_OUTOFMEMORY;
    const HRESULT result = made->QueryInterface(riid, object);
    made->Release();
    return result;
  }
  return CLASS_E_CLASSNOTAVAILABLE;
}

// S_OK when no object lives and no lock is held, else S_FALSE.
HRESULT ORVIX_CALL DllCanUnloadNow() { return MayUnload() ? S_OK : S_FALSE; }

// Writes the classes, their program identifiers and threading model, and the
// type library. SELFREG_E_CLASS when the registry refuses.
HRESULT ORVIX_CALL DllRegisterServer() {
  return AtBoundary("Registration", [] { RegisterComponent(); });
}

// Takes away exactly what DllRegisterServer wrote.
HRESULT ORVIX_CALL DllUnregisterServer() {
  return AtBoundary("Registration", [] { UnregisterComponent(); });
}
