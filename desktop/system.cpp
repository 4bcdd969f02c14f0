// The operating system's version, and new identifiers.
#include <string_view>

#include "frame/ansi_text.h"
#include "frame/class_orvix.h"

namespace Orvix::component {

void classOrvix::GetOSVersion(LONG& major, LONG& minor, LONG& build, LONG& platform_id, TextReference extra_info) {
  OSVERSIONINFOA record{};
  record.dwOSVersionInfoSize = sizeof record;
  GetVersionExA(&record);
  major = static_cast<LONG>(record.dwMajorVersion);
  minor = static_cast<LONG>(record.dwMinorVersion);
  build = static_cast<LONG>(record.dwBuildNumber);
  platform_id = static_cast<LONG>(record.dwPlatformId);
  // The whole field, NULs included: callers cut it themselves.
  extra_info.Take(Widened({record.szCSDVersion, sizeof record.szCSDVersion}));
}

Text classOrvix::CreateGUID() {
  constexpr INT kCapacity = 40;
  GUID guid{};
  OLECHAR text[kCapacity]{};
  CoCreateGuid(&guid);
  StringFromGUID2(guid, text, kCapacity);
  const TextView whole(text, kCapacity);
  return Text(Left(whole, Find(1, whole, TextView(u"\0", 1)) - 1));
}

}  // namespace Orvix::component
