// Reading with the system's own call: one buffer for many entries, and the
// descriptor stays the caller's.
#include "platform/shell/entries.h"

#include <sys/stat.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <memory>

#include "platform/shell/descriptor.h"

namespace Orvix::Shell {

Entries::Entries(int directory, Side side) {
  constexpr std::size_t kBuffer = 32 * 1024;
  const auto buffer = std::make_unique_for_overwrite<char[]>(kBuffer);
  for (;;) {
    const ssize_t got = Retried([&] { return getdents64(directory, buffer.get(), kBuffer); });
    if (got < 0) Fail(errno, side);
    if (got == 0) return;
    for (ssize_t at = 0; at < got;) {
      const auto* const entry = reinterpret_cast<const dirent64*>(buffer.get() + at);
      Take(directory, *entry, side);
      at += entry->d_reclen;
    }
  }
}

void Entries::Take(int directory, const dirent64& entry, Side side) {
  const std::string_view name = entry.d_name;
  if (name == "." || name == "..") return;
  unsigned char type = entry.d_type;
  if (type == DT_UNKNOWN) {
    struct stat facts;
    if (!FactsOf(directory, entry.d_name, side, facts)) return;  // gone by now
    type = static_cast<unsigned char>(IFTODT(facts.st_mode));
  }
  entries_.push_back({names_.size(), type});
  names_.append(name).push_back('\0');
}

void Entries::Sort() {
  std::ranges::sort(entries_, {}, [&](const Entry& entry) { return std::string_view(names_.data() + entry.at); });
}

}  // namespace Orvix::Shell
