#include "platform/host/host_table.h"

#include <algorithm>
#include <cstring>
#include <mutex>

#include "platform/windows/global_object.h"

namespace Orvix {
namespace {

// What every table holds at least: the size and the context.
constexpr uint32_t kSmallestTable = offsetof(OxHost, MessageBox);

// Neither has a destructor that does anything, so threads that outlive the end
// of main may still ask.
constinit std::mutex mutex;
constinit HostState state{{}, 1};

// A host compiled with an older table ends early, one compiled with a newer
// table goes on behind the members known here. A member that the end cuts
// through is as good as absent.
OxHost KnownMembersOf(const OxHost& host) {
  constexpr uint32_t kSlot = sizeof host.MessageBox;
  const std::size_t whole_slots = (host.size - kSmallestTable) / kSlot;
  OxHost table{};
  std::memcpy(&table, &host, std::min(kSmallestTable + whole_slots * kSlot, sizeof table));
  table.size = sizeof table;
  return table;
}

}  // namespace

HostState CurrentHostState() noexcept {
  const std::lock_guard lock(mutex);
  return state;
}

OxHost CurrentHost() noexcept { return CurrentHostState().table; }

void LetHostWork() {
  const OxHost host = CurrentHost();
  if (host.DoEvents != nullptr) host.DoEvents(host.context);
}

uint64_t HostGeneration() noexcept {
  const std::lock_guard lock(mutex);
  return state.generation;
}

}  // namespace Orvix

HRESULT ORVIX_CALL OxSetHost(const OxHost* host) {
  OxHost table{};
  if (host != nullptr) {
    if (host->size < Orvix::kSmallestTable) return E_INVALIDARG;
    table = Orvix::KnownMembersOf(*host);
  }
  {
    const std::lock_guard lock(Orvix::mutex);
    Orvix::state.table = table;
    ++Orvix::state.generation;
  }
  // The host that leaves may be unloaded after this: nothing of it stays with
  // this thread. Other threads notice by the generation.
  Orvix::ForgetGlobalObject();
  return S_OK;
}
