#include "platform/automation/component_library.h"

#include <dlfcn.h>

namespace Orvix {

GetClassObjectFunction LoadComponent(TextView file) {
  if (file.empty() || file.front() != u'/' || file.find(u'\0') != TextView::npos) return nullptr;
  void* library = dlopen(ToUtf8(file).c_str(), RTLD_NOW | RTLD_LOCAL);
  if (library == nullptr) return nullptr;
  void* symbol = dlsym(library, "DllGetClassObject");
  Dl_info info{};
  void* own = nullptr;
  // A symbol that a library linked to brings along is not this library's.
  if (symbol == nullptr || dladdr(symbol, &info) == 0 ||
      (own = dlopen(info.dli_fname, RTLD_NOW | RTLD_NOLOAD)) == nullptr) {
    dlclose(library);
    return nullptr;
  }
  const bool is_own = own == library;
  dlclose(own);
  if (!is_own) {
    dlclose(library);
    return nullptr;
  }
  // Objects of the library may live as long as the process. It stays loaded
  // once, however often it is asked for.
  void* again = dlopen(info.dli_fname, RTLD_NOW | RTLD_NOLOAD | RTLD_NODELETE);
  if (again != nullptr) dlclose(again);
  dlclose(library);
  return reinterpret_cast<GetClassObjectFunction>(symbol);
}

}  // namespace Orvix
