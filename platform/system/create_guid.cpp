// New identifiers: the host's, else random ones (version 4) from the system.
#include <sys/random.h>

#include <cerrno>
#include <cstring>

#include "platform/host/host_table.h"

namespace {

// Bytes asked for at once up to 256 come whole or not at all, save for signals
// before the source is ready.
bool FillRandom(void* bytes, std::size_t count) noexcept {
  ssize_t got = 0;
  do {
    got = getrandom(bytes, count, 0);
  } while (got < 0 && errno == EINTR);
  return got == static_cast<ssize_t>(count);
}

}  // namespace

// E_FAIL when the system gives no random bytes; a host's result is passed on.
HRESULT ORVIX_CALL CoCreateGuid(GUID* guid) {
  if (guid == nullptr) return E_INVALIDARG;
  const OxHost host = Orvix::CurrentHost();
  if (host.CoCreateGuid != nullptr) return host.CoCreateGuid(host.context, guid);
  GUID made{};
  if (!FillRandom(&made, sizeof made)) return E_FAIL;
  made.Data3 = static_cast<std::uint16_t>((made.Data3 & 0x0FFF) | 0x4000);
  made.Data4[0] = static_cast<std::uint8_t>((made.Data4[0] & 0x3F) | 0x80);
  *guid = made;
  return S_OK;
}
