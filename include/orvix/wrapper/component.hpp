// Where objects come from: the registered component, a library loaded by path
// or found beside the run-time, or entry points linked into the program.
#ifndef ORVIX_WRAPPER_COMPONENT_HPP
#define ORVIX_WRAPPER_COMPONENT_HPP

#include <dlfcn.h>

#include <atomic>
#include <string>

#include "orvix/orvix.h"
#include "orvix/wrapper/error.hpp"

namespace Orvix {

class Component {
 public:
  using EntryPoint = HRESULT(ORVIX_CALL*)(REFCLSID, REFIID, void**);

  // The component as the registry names it. Creation fails with error 429 when
  // it is not registered.
  [[nodiscard]] static Component Registered() noexcept { return Component(nullptr, nullptr); }
  // The library at `path`; without one, liborvix.so beside the run-time, in the
  // folder orvix there, or where the loader looks. Error 48 when it cannot be loaded. It stays loaded.
  [[nodiscard]] static Component Load(const std::string& path = {}) {
    void* library = nullptr;
    if (!path.empty()) {
      library = Open(path);
    } else {
      // Installed it lies in a folder of its own, in a build tree beside the run-time.
      const std::string folder = RuntimeFolder();
      if (!folder.empty()) library = Open(folder + "liborvix.so");
      if (library == nullptr && !folder.empty()) library = Open(folder + "orvix/liborvix.so");
      if (library == nullptr) library = Open("liborvix.so");
    }
    if (library == nullptr) ThrowLoading();
    const auto entry = reinterpret_cast<EntryPoint>(dlsym(library, "DllGetClassObject"));
    if (entry == nullptr) ThrowLoading();
    return Component(entry, library);
  }
  // The entry points that the program itself links.
  [[nodiscard]] static Component Linked() noexcept { return Component(&DllGetClassObject, nullptr); }
  // What objects are made from when nothing else is said: registered, and if the
  // class is not, loaded.
  [[nodiscard]] static Component Default() noexcept {
    Component component(nullptr, nullptr);
    component.load_when_unregistered_ = true;
    return component;
  }

  // A new object of the class. The platform's codes become errors: 429 not
  // registered or no such class, 430 no such interface.
  template <class Interface>
  [[nodiscard]] Pointer<Interface> Create(REFCLSID clsid) const {
    Pointer<Interface> object;
    if (entry_ == nullptr) {
      const HRESULT made =
          CoCreateInstance(clsid, nullptr, CLSCTX_INPROC_SERVER, kIidOf<Interface>, object.ReceiveVoid());
      if (made == REGDB_E_CLASSNOTREG && load_when_unregistered_) return Loaded().Create<Interface>(clsid);
      Check(made);
      return object;
    }
    // Class objects are asked for once and kept: the library stays loaded. Most
    // interfaces belong to one class, so the chain is short.
    static std::atomic<const ClassObject*> kept{nullptr};
    const ClassObject* const first = kept.load(std::memory_order_acquire);
    const ClassObject* known = first;
    while (known != nullptr && (known->entry != entry_ || known->clsid != clsid)) known = known->next;
    if (known == nullptr) {
      Pointer<IClassFactory> factory;
      Check(entry_(clsid, IID_IClassFactory, factory.ReceiveVoid()));
      auto* const added = new ClassObject{entry_, clsid, factory.operator->(), first};
      static_cast<void>(factory.Detach());
      while (!kept.compare_exchange_weak(added->next, added, std::memory_order_acq_rel)) {
      }
      known = added;
    }
    Check(known->factory->CreateInstance(nullptr, kIidOf<Interface>, object.ReceiveVoid()));
    return object;
  }

  // The description of every class, member, enumeration and record.
  [[nodiscard]] Pointer<ITypeLib> TypeLibrary() const {
    Pointer<ITypeLib> library;
    if (entry_ != nullptr) {
      Check(entry_(LIBID_Orvix, IID_ITypeLib, library.ReceiveVoid()));
      return library;
    }
    const HRESULT found = LoadRegTypeLib(LIBID_Orvix, kLibraryMajor, kLibraryMinor, 0, library.Receive());
    if (FAILED(found) && load_when_unregistered_) return Loaded().TypeLibrary();
    Check(found);
    return library;
  }

  // Writes the classes into the registry, or takes them out. Error 48 unless the
  // component was loaded from a library.
  void Register() const { CallEntry("DllRegisterServer"); }
  void Unregister() const { CallEntry("DllUnregisterServer"); }

 private:
  struct ClassObject {
    EntryPoint entry;
    CLSID clsid;
    IClassFactory* factory;
    const ClassObject* next;
  };

  Component(EntryPoint entry, void* library) noexcept : entry_(entry), library_(library) {}

  static const Component& Loaded() {
    static const Component component = Load();
    return component;
  }
  static void* Open(const std::string& path) { return dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL); }
  static std::string RuntimeFolder() {
    Dl_info place{};
    if (dladdr(reinterpret_cast<const void*>(&OxErrorNumber), &place) == 0 || place.dli_fname == nullptr) return {};
    const std::string runtime = place.dli_fname;
    const std::size_t slash = runtime.rfind('/');
    return slash == std::string::npos ? std::string() : runtime.substr(0, slash + 1);
  }
  [[noreturn]] static void ThrowLoading() {
    const char* reason = dlerror();
    throw Error(MakeResult(0x800A0030), 48, u"Orvix.Component",
                FromUtf8(std::string("Error in loading DLL: ") + (reason == nullptr ? "not a component" : reason)));
  }
  void CallEntry(const char* name) const {
    const auto entry = library_ == nullptr ? nullptr : reinterpret_cast<HRESULT(ORVIX_CALL*)()>(dlsym(library_, name));
    if (entry == nullptr) ThrowLoading();
    Check(entry());
  }

  EntryPoint entry_;
  void* library_;
  bool load_when_unregistered_ = false;
};

}  // namespace Orvix

#endif
