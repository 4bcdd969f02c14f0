// The shell's file-operation service. A host may take it over as a whole, or
// answer its questions and watch it; without one it works unattended, and every
// question is answered with yes.
#include <signal.h>

#include <new>

#include "frame/runtime/runtime_error.h"
#include "orvix/platform.h"
#include "platform/host/host_table.h"
#include "platform/shell/deletion.h"
#include "platform/shell/operation.h"
#include "platform/shell/plan.h"
#include "platform/shell/results.h"
#include "platform/shell/transfer.h"

namespace Orvix::Shell {
namespace {

// A file that outgrows the process's limit shall be a result code: the signal
// that the system sends besides would end the process.
class NoSizeSignal {
 public:
  NoSizeSignal() {
    sigset_t pending;
    sigpending(&pending);
    was_pending_ = sigismember(&pending, SIGXFSZ) == 1;
    sigemptyset(&signal_);
    sigaddset(&signal_, SIGXFSZ);
    pthread_sigmask(SIG_BLOCK, &signal_, &before_);
  }
  NoSizeSignal(const NoSizeSignal&) = delete;
  NoSizeSignal& operator=(const NoSizeSignal&) = delete;
  ~NoSizeSignal() {
    const timespec at_once{};
    while (!was_pending_ && sigtimedwait(&signal_, nullptr, &at_once) == SIGXFSZ) {
    }
    pthread_sigmask(SIG_SETMASK, &before_, nullptr);
  }

 private:
  sigset_t signal_{};
  sigset_t before_{};
  bool was_pending_ = false;
};

void Perform(Operation& operation) {
  const Plan plan = MakePlan(operation.request);
  if (operation.request.operation == kDelete) {
    Delete(operation, plan);
  } else {
    Transfer(operation, plan);
  }
}

// The result code of whatever `body` ends with.
template <class Body>
INT CodeOf(Body&& body) noexcept {
  try {
    body();
    return 0;
  } catch (const ShellError& error) {
    return error.code;
  } catch (const RuntimeError&) {
    return kInvalidNames;
  } catch (const std::bad_alloc&) {
    return kNoMemory;
  }
}

INT Run(const OxHost& host, void* packed) noexcept {
  bool aborted = false;
  const INT code = CodeOf([&] {
    Request request = Unpack(packed);
    const Progress progress(host, request);
    Operation operation{std::move(request), progress};
    const NoSizeSignal no_signal;
    const INT inner = CodeOf([&] { Perform(operation); });
    aborted = operation.progress.Aborted();
    if (inner != 0) throw ShellError{inner};
  });
  StoreAborted(packed, aborted);
  return code;
}

}  // namespace
}  // namespace Orvix::Shell

// 0 when everything was done, else a result code; the request's aborted flag
// tells whether the user stopped any part of it.
INT ORVIX_CALL SHFileOperationA(void* request) {
  const OxHost host = Orvix::CurrentHost();
  if (host.SHFileOperationA != nullptr) return host.SHFileOperationA(host.context, request);
  if (request == nullptr) return Orvix::Shell::kBadParameter;
  return Orvix::Shell::Run(host, request);
}
