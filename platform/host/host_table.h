// The host table that is in force: what an application put in place of this
// machine's native services with OxSetHost.
#ifndef ORVIX_PLATFORM_HOST_HOST_TABLE_H
#define ORVIX_PLATFORM_HOST_HOST_TABLE_H

#include "orvix/host.h"

namespace Orvix {

// A copy of the table in force, so that a call under way keeps the table it
// started with. Members that the host did not fill in, or did not know of, are
// null: the native default. All null when no table is set. Safe from any thread.
[[nodiscard]] OxHost CurrentHost() noexcept;

// Changes with every successful OxSetHost, also when it restores the defaults.
// What was fetched from a host is stale once this differs. Never 0, so that 0
// can stand for "nothing fetched yet".
[[nodiscard]] uint64_t HostGeneration() noexcept;

// Table and generation of one moment.
struct HostState {
  OxHost table;
  uint64_t generation;
};
[[nodiscard]] HostState CurrentHostState() noexcept;

// The host's DoEvents, where a program of this machine is waited for.
void LetHostWork();

}  // namespace Orvix

#endif
