// The class table: which class object serves a class identifier. First what was
// registered in this process, the last registration first; then the run-time's
// own classes; then the libraries that the registry names.
#include "platform/automation/class_table.h"

#include <algorithm>
#include <atomic>
#include <memory>
#include <mutex>
#include <new>
#include <vector>

#include "frame/runtime/never_destroyed.h"
#include "platform/automation/classes_root.h"
#include "platform/automation/component_library.h"
#include "platform/automation/guid_text.h"

namespace Orvix {

namespace {

// Owns one reference.
using ObjectReference = std::shared_ptr<IUnknown>;

ObjectReference Referenced(IUnknown* object) {
  object->AddRef();
  return {object, [](IUnknown* held) { held->Release(); }};
}

struct Registration {
  DWORD cookie;
  CLSID clsid;
  ObjectReference factory;
};

struct NativeClass {
  CLSID clsid;
  CreateNativeObject create;
};

struct Table {
  std::mutex mutex;
  std::vector<Registration> registrations;
  std::vector<NativeClass> natives;
  DWORD last_cookie = 0;
};

Table& TheTable() {
  static NeverDestroyed<Table> table;  // class objects may come from libraries that are gone at the end
  return *table;
}

#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wnon-virtual-dtor"  // ended by Release alone
class NativeFactory final : public IClassFactory {
 public:
  explicit NativeFactory(CreateNativeObject create) : create_(create) {}

  HRESULT ORVIX_CALL QueryInterface(REFIID riid, void** object) override {
    if (object == nullptr) return E_POINTER;
    *object = nullptr;
    if (riid != IID_IUnknown && riid != IID_IClassFactory) return E_NOINTERFACE;
    *object = static_cast<IClassFactory*>(this);
    AddRef();
    return S_OK;
  }
  ULONG ORVIX_CALL AddRef() override { return ++references_; }
  ULONG ORVIX_CALL Release() override {
    const ULONG left = --references_;
    if (left == 0) delete this;
    return left;
  }
  HRESULT ORVIX_CALL CreateInstance(IUnknown* outer, REFIID riid, void** object) override {
    if (object == nullptr) return E_POINTER;
    *object = nullptr;
    return outer != nullptr ? CLASS_E_NOAGGREGATION : create_(riid, object);
  }
  HRESULT ORVIX_CALL LockServer(BOOL /*lock*/) override { return S_OK; }

 private:
  ~NativeFactory() = default;
  CreateNativeObject create_;
  std::atomic<ULONG> references_{1};
};
#pragma GCC diagnostic pop

ObjectReference FindRegistered(REFCLSID clsid) {
  Table& table = TheTable();
  const std::lock_guard guard(table.mutex);
  const auto found = std::find_if(table.registrations.rbegin(), table.registrations.rend(),
                                  [&](const Registration& row) { return row.clsid == clsid; });
  return found == table.registrations.rend() ? nullptr : found->factory;
}

CreateNativeObject FindNative(REFCLSID clsid) {
  Table& table = TheTable();
  const std::lock_guard guard(table.mutex);
  const auto found = std::find_if(table.natives.begin(), table.natives.end(),
                                  [&](const NativeClass& row) { return row.clsid == clsid; });
  return found == table.natives.end() ? nullptr : found->create;
}

HRESULT GetNativeClassObject(CreateNativeObject create, REFIID riid, void** object) {
  auto* factory = new (std::nothrow) NativeFactory(create);
  if (factory == nullptr) return E_OUTOFMEMORY;
  const HRESULT result = factory->QueryInterface(riid, object);
  factory->Release();
  return result;
}

HRESULT GetLibraryClassObject(REFCLSID clsid, REFIID riid, void** object) {
  const std::optional<Text> file = ReadClassesText(u"CLSID\\" + GuidText(clsid) + u"\\InprocServer32");
  const GetClassObjectFunction get = file ? LoadComponent(*file) : nullptr;
  if (get == nullptr) return REGDB_E_CLASSNOTREG;
  const HRESULT result = get(clsid, riid, object);
  return result == CLASS_E_CLASSNOTAVAILABLE ? REGDB_E_CLASSNOTREG : result;
}

// No lock is held while a class object is called: it may come back in here.
HRESULT GetClassObject(REFCLSID clsid, DWORD context, REFIID riid, void** object) {
  if (const ObjectReference factory = FindRegistered(clsid)) return factory->QueryInterface(riid, object);
  if ((context & CLSCTX_INPROC_SERVER) == 0) return REGDB_E_CLASSNOTREG;
  if (const CreateNativeObject create = FindNative(clsid)) return GetNativeClassObject(create, riid, object);
  return GetLibraryClassObject(clsid, riid, object);
}

// How often the thread called CoInitialize. Nothing needs it: every function here
// works on any thread, as callers that never initialize expect.
thread_local LONG initializations = 0;

}  // namespace

void RegisterNativeClass(REFCLSID clsid, CreateNativeObject create) noexcept {
  try {
    Table& table = TheTable();
    const std::lock_guard guard(table.mutex);
    const auto found = std::find_if(table.natives.begin(), table.natives.end(),
                                    [&](const NativeClass& row) { return row.clsid == clsid; });
    if (found != table.natives.end()) {
      found->create = create;
    } else {
      table.natives.push_back({clsid, create});
    }
  } catch (const std::bad_alloc&) {
    return;
  }
}

}  // namespace Orvix

// S_OK the first time on a thread, S_FALSE after that; both want a CoUninitialize.
HRESULT ORVIX_CALL CoInitialize(void* reserved) {
  if (reserved != nullptr) return E_INVALIDARG;
  return Orvix::initializations++ == 0 ? S_OK : S_FALSE;
}

void ORVIX_CALL CoUninitialize() {
  if (Orvix::initializations > 0) --Orvix::initializations;
}

// REGDB_E_CLASSNOTREG when nothing serves the class, or its library cannot be
// loaded or does not have it. Classes of libraries and the run-time's own serve
// requests whose context has CLSCTX_INPROC_SERVER.
HRESULT ORVIX_CALL CoGetClassObject(REFCLSID clsid, DWORD context, void* /*server*/, REFIID riid, void** object) {
  if (object == nullptr) return E_INVALIDARG;
  *object = nullptr;
  try {
    return Orvix::GetClassObject(clsid, context, riid, object);
  } catch (const std::bad_alloc&) {
    return E_OUTOFMEMORY;
  }
}

HRESULT ORVIX_CALL CoCreateInstance(REFCLSID clsid, IUnknown* outer, DWORD context, REFIID riid, void** object) {
  if (object == nullptr) return E_POINTER;
  *object = nullptr;
  void* factory = nullptr;
  HRESULT result = CoGetClassObject(clsid, context, nullptr, IID_IClassFactory, &factory);
  if (FAILED(result)) return result;
  auto* made = static_cast<IClassFactory*>(factory);
  result = made->CreateInstance(outer, riid, object);
  made->Release();
  return result;
}

// Serves the class, for any context and as often as it is asked for, until the
// cookie is revoked. Of several registrations the last one serves.
HRESULT ORVIX_CALL CoRegisterClassObject(REFCLSID clsid, IUnknown* factory, DWORD /*context*/, DWORD /*flags*/,
                                         DWORD* cookie) {
  if (factory == nullptr || cookie == nullptr) return E_INVALIDARG;
  *cookie = 0;
  try {
    Orvix::Table& table = Orvix::TheTable();
    Orvix::ObjectReference reference = Orvix::Referenced(factory);
    const std::lock_guard guard(table.mutex);
    if (++table.last_cookie == 0) ++table.last_cookie;
    table.registrations.push_back({table.last_cookie, clsid, std::move(reference)});
    *cookie = table.last_cookie;
    return S_OK;
  } catch (const std::bad_alloc&) {
    return E_OUTOFMEMORY;
  }
}

// E_INVALIDARG for a cookie that is not registered.
HRESULT ORVIX_CALL CoRevokeClassObject(DWORD cookie) {
  Orvix::Table& table = Orvix::TheTable();
  Orvix::ObjectReference released;  // after the lock: Release may come back in here
  const std::lock_guard guard(table.mutex);
  const auto found = std::find_if(table.registrations.begin(), table.registrations.end(),
                                  [&](const Orvix::Registration& row) { return row.cookie == cookie; });
  if (found == table.registrations.end()) return E_INVALIDARG;
  released = std::move(found->factory);
  table.registrations.erase(found);
  return S_OK;
}
