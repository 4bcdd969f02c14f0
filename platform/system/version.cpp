#include "platform/system/version.h"

#include <sys/utsname.h>

#include <cstring>

#include "orvix/platform.h"
#include "orvix/runtime.h"
#include "platform/host/host_table.h"

namespace {

constexpr DWORD kShortForm = sizeof(OSVERSIONINFOA);
constexpr DWORD kLongForm = 156;

}  // namespace

BOOL ORVIX_CALL GetVersionExA(void* record) {
  if (record == nullptr) return 0;
  DWORD size = 0;
  std::memcpy(&size, record, sizeof size);
  if (size != kShortForm && size != kLongForm) return 0;
  const OxHost host = Orvix::CurrentHost();
  if (host.GetVersionExA != nullptr) return host.GetVersionExA(host.context, record);

  utsname system{};
  if (uname(&system) != 0) return 0;
  const auto [major, minor, build] = Orvix::NumbersOfRelease(system.release);
  OSVERSIONINFOA version{};
  version.dwOSVersionInfoSize = size;
  version.dwMajorVersion = major;
  version.dwMinorVersion = minor;
  version.dwBuildNumber = build;
  version.dwPlatformId = kPlatformUnix;
  std::memset(record, 0, size);
  std::memcpy(record, &version, sizeof version);
  return 1;
}

DWORD ORVIX_CALL OxVersion() { return ORVIX_VERSION; }
