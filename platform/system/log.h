// The system log, where what nobody is there to be shown is written down.
#ifndef ORVIX_PLATFORM_SYSTEM_LOG_H
#define ORVIX_PLATFORM_SYSTEM_LOG_H

#include <atomic>
#include <string>

namespace Orvix {

// One record under the name "Orvix". `severity` is one of syslog's.
void Log(int severity, const std::string& record);

// A record that says the same each time, once in this process.
void LogOnce(std::atomic_flag& said, int severity, const char* record) noexcept;

// Whether anything takes records.
[[nodiscard]] bool IsLogThere() noexcept;

}  // namespace Orvix

#endif
