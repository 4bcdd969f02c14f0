#include "platform/system/log.h"

#include <syslog.h>
#include <unistd.h>

#include <mutex>
#include <new>

namespace Orvix {

namespace {

constinit std::mutex mutex;

}  // namespace

void Log(int severity, const std::string& record) {
  const std::lock_guard lock(mutex);
  // The name is the process's: an application that logs under its own may have set
  // it since the last time.
  openlog("Orvix", 0, LOG_USER);
  syslog(LOG_USER | severity, "%s", record.c_str());
}

void LogOnce(std::atomic_flag& said, int severity, const char* record) noexcept {
  if (said.test_and_set()) return;
  try {
    Log(severity, record);
  } catch (const std::bad_alloc&) {  // a record that cannot be made is dropped
  }
}

bool IsLogThere() noexcept { return access("/dev/log", W_OK) == 0; }

}  // namespace Orvix
