// Modules: the program and the libraries in this process. A module's handle is
// the address that it is loaded at, as on the platform, so any value can be held
// against what is loaded.
#include <dlfcn.h>
#include <link.h>
#include <unistd.h>

#include <algorithm>
#include <climits>
#include <cstdint>
#include <cstdlib>
#include <fstream>
#include <memory>
#include <new>
#include <string>

#include "orvix/runtime.h"
#include "orvix/text.h"

namespace {

constexpr DWORD kPin = 1;
constexpr DWORD kKnownFlags =
    kPin | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT | GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS;

// The module that an address lies in; a null base when there is none.
Dl_info ModuleAt(const void* address) noexcept {
  Dl_info info{};
  if (dladdr(address, &info) == 0) return {};
  return info;
}

// The first address of the program itself.
void* ProgramBase() noexcept {
  // The dynamic linker tells where the program's own headers are.
  void* base = nullptr;
  dl_iterate_phdr(
      [](dl_phdr_info* info, std::size_t, void* found) {
        // The program always comes first.
        *static_cast<void**>(found) = ModuleAt(info->dlpi_phdr).dli_fbase;
        return 1;
      },
      &base);
  return base;
}

std::string ProgramName() {
  std::string name(PATH_MAX, '\0');
  const ssize_t length = readlink("/proc/self/exe", name.data(), name.size());
  name.resize(length < 0 ? 0 : static_cast<std::size_t>(length));
  return name;
}

// A library loaded by a relative name: the mapping tells the absolute one, also
// after the process went elsewhere.
std::string MappedName(const void* address) {
  std::ifstream maps("/proc/self/maps");
  const auto wanted = reinterpret_cast<std::uintptr_t>(address);
  for (std::string line; std::getline(maps, line);) {
    char* after = nullptr;
    const std::uintptr_t start = std::strtoull(line.c_str(), &after, 16);
    if (start != wanted) continue;
    const std::size_t name = line.find('/');
    return name == std::string::npos ? std::string() : line.substr(name);
  }
  return {};
}

std::string NameOfModule(void* module) {
  if (module == nullptr || module == ProgramBase()) return ProgramName();
  const Dl_info info = ModuleAt(module);
  if (info.dli_fbase != module || info.dli_fname == nullptr) return {};
  return info.dli_fname[0] == '/' ? info.dli_fname : MappedName(module);
}

// The loaded library of this native name; null when it is not loaded.
void* ModuleNamed(const OLECHAR* name) {
  void* library = dlopen(Orvix::ToUtf8(name).c_str(), RTLD_NOW | RTLD_NOLOAD);
  if (library == nullptr) return nullptr;
  link_map* map = nullptr;
  void* base = nullptr;
  // The dynamic section lies inside the module.
  if (dlinfo(library, RTLD_DI_LINKMAP, &map) == 0) base = ModuleAt(map->l_ld).dli_fbase;
  dlclose(library);
  return base;
}

// There is no call that gives a reference back, so one that is counted keeps the
// module for good.
void KeepLoaded(void* module) {
  const Dl_info info = ModuleAt(module);
  if (info.dli_fname == nullptr || info.dli_fname[0] == '\0' || module == ProgramBase()) return;
  void* library = dlopen(info.dli_fname, RTLD_NOW | RTLD_NOLOAD | RTLD_NODELETE);
  if (library != nullptr) dlclose(library);
}

}  // namespace

// Null names the program. With FROM_ADDRESS the second argument is any address
// inside the module. 0, and a null module, when there is none; without
// UNCHANGED_REFCOUNT the module stays loaded as long as the process.
BOOL ORVIX_CALL GetModuleHandleExW(DWORD flags, const OLECHAR* moduleOrAddress, HMODULE* module) {
  if (module == nullptr) return 0;
  *module = nullptr;
  if ((flags & ~kKnownFlags) != 0) return 0;
  if ((flags & kPin) != 0 && (flags & GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT) != 0) return 0;
  try {
    if ((flags & GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS) != 0) {
      *module = ModuleAt(moduleOrAddress).dli_fbase;
    } else {
      *module = moduleOrAddress == nullptr ? ProgramBase() : ModuleNamed(moduleOrAddress);
    }
    if (*module == nullptr) return 0;
    if ((flags & GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT) == 0) KeepLoaded(*module);
    return 1;
  } catch (const std::bad_alloc&) {
    *module = nullptr;
    return 0;
  }
}

// Null names the program. 0 when the value is no module; `capacity` when the name
// was cut, and the text still ends with a NUL.
DWORD ORVIX_CALL GetModuleFileNameW(HMODULE module, OLECHAR* name, DWORD capacity) {
  if (name == nullptr || capacity == 0) return 0;
  try {
    const Orvix::Text text = Orvix::FromUtf8(NameOfModule(module));
    if (text.empty()) return 0;
    const std::size_t copied = std::min<std::size_t>(text.size(), capacity - 1);
    std::copy_n(text.data(), copied, name);
    name[copied] = u'\0';
    return text.size() < capacity ? static_cast<DWORD>(copied) : capacity;
  } catch (const std::bad_alloc&) {
    return 0;
  }
}
