#include "platform/automation/component_library.h"

#include <dlfcn.h>
#include <fcntl.h>
#include <link.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstring>
#include <string>

namespace Orvix {

namespace {

// Whether the file holds all that its program headers map (System V ABI, ELF):
// the loader trusts them, and a process that touches a page beyond the end of its
// file is killed. A pipe or a device is none, and is not waited for.
bool IsWhole(const char* path) {
  const int file = open(path, O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY);
  if (file < 0) return false;
  const auto read_at = [&](void* to, std::size_t bytes, std::uint64_t offset) {
    return pread(file, to, bytes, static_cast<off_t>(offset)) == static_cast<ssize_t>(bytes);
  };
  struct stat facts {};
  ElfW(Ehdr) header{};
  bool whole = fstat(file, &facts) == 0 && S_ISREG(facts.st_mode) && read_at(&header, sizeof header, 0) &&
               std::memcmp(header.e_ident, ELFMAG, SELFMAG) == 0;
  const auto size = static_cast<std::uint64_t>(facts.st_size);
  for (unsigned i = 0; whole && i < header.e_phnum; ++i) {
    ElfW(Phdr) part{};
    whole = read_at(&part, sizeof part, header.e_phoff + std::uint64_t{i} * sizeof part) &&
            (part.p_type != PT_LOAD || (part.p_filesz <= size && part.p_offset <= size - part.p_filesz));
  }
  close(file);
  return whole;
}

}  // namespace

GetClassObjectFunction LoadComponent(TextView file) {
  if (file.empty() || file.front() != u'/' || file.find(u'\0') != TextView::npos) return nullptr;
  const std::string path = ToUtf8(file);
  if (!IsWhole(path.c_str())) return nullptr;
  void* library = dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL);
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
