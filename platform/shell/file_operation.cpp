// The shell's file-operation service. A host may take it over as a whole, or
// answer its questions and watch it.
#include <signal.h>

#include <algorithm>
#include <iterator>
#include <new>
#include <string>

#include "frame/runtime/runtime_error.h"
#include "orvix/platform.h"
#include "platform/host/host_table.h"
#include "platform/shell/deletion.h"
#include "platform/shell/operation.h"
#include "platform/shell/plan.h"
#include "platform/shell/results.h"
#include "platform/shell/transfer.h"
#include "platform/system/per_thread.h"

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

struct LastOperation {
  OxFileOperationFacts facts{};
  std::string item;  // native
};

INT Run(const OxHost& host, void* packed) noexcept {
  LastOperation* const last = PerThread<LastOperation>::Make();
  OxFileOperationFacts facts{};
  facts.serial = last == nullptr ? 0 : last->facts.serial + 1;
  std::string item;
  facts.code = CodeOf([&] {
    Request request = Unpack(packed);
    const Progress progress(host, request);
    Operation operation{std::move(request), progress};
    const NoSizeSignal no_signal;
    const INT inner = CodeOf([&] {
      Perform(operation);
      if (!operation.progress.Aborted()) operation.progress.Finish();
    });
    facts.aborted = operation.progress.Aborted() ? 1 : 0;
    facts.itemsDone = operation.progress.items_done();
    facts.bytesDone = operation.progress.bytes_done();
    item = operation.progress.latest();
    if (inner != 0) throw ShellError{inner};
  });
  StoreAborted(packed, facts.aborted != 0);
  if (last != nullptr) *last = {facts, std::move(item)};
  return facts.code;
}

const char16_t* WordsOf(INT code) {
  struct Row {
    INT code;
    const char16_t* words;
  };
  constexpr Row kRows[] = {
      {0, u"done"},
      {kFileMissing, u"there is no such file or directory"},
      {kPathMissing, u"there is no such directory"},
      {kNoDescriptors, u"too many files are open"},
      {kDenied, u"the target may not be changed"},
      {kNoMemory, u"out of memory"},
      {kWriteProtected, u"the medium is write-protected"},
      {kWriteFault, u"writing failed"},
      {kReadFault, u"reading failed"},
      {kInUse, u"it is in use"},
      {kBadParameter, u"the request is wrong"},
      {kDiskFull, u"the disk is full"},
      {kWildcardInTarget, u"a destination has wildcards"},
      {kSameFile, u"source and destination are the same file"},
      {kManyToOne, u"several sources and one destination that is a file"},
      {kOtherDirectory, u"renaming does not move into another directory"},
      {kRootDirectory, u"a root stays"},
      {kCancelled, u"cancelled"},
      {kIntoItself, u"a directory does not go into itself"},
      {kSourceDenied, u"the source may not be read or changed"},
      {kTooDeep, u"directories are too deep"},
      {kInvalidNames, u"a name is invalid or leads nowhere"},
      {kSameDirectory, u"source and destination are the same directory"},
      {kFileInTheWay, u"a file is in the way of a directory"},
      {kDirectoryInTheWay, u"a directory is in the way of a file"},
      {kNameTooLong, u"a name is too long"},
      {kTooLarge, u"a file is too large for the destination"},
      {kTargetFailed, u"the destination failed"},
  };
  const auto* const row = std::ranges::find(kRows, code, &Row::code);
  return row == std::end(kRows) ? u"failed" : row->words;
}

}  // namespace

INT Perform(Request request) noexcept {
  return CodeOf([&] {
    const Progress progress(OxHost{}, request);
    Operation operation{std::move(request), progress};
    const NoSizeSignal no_signal;
    Perform(operation);
  });
}

}  // namespace Orvix::Shell

// 0 when everything was done, else a result code; the request's aborted flag
// tells whether the user stopped any part of it.
INT ORVIX_CALL SHFileOperationA(void* request) {
  const OxHost host = Orvix::CurrentHost();
  if (host.SHFileOperationA != nullptr) return host.SHFileOperationA(host.context, request);
  if (request == nullptr) return Orvix::Shell::kBadParameter;
  return Orvix::Shell::Run(host, request);
}

HRESULT ORVIX_CALL OxLastFileOperation(OxFileOperationFacts* facts, BSTR* item, BSTR* words) {
  using Orvix::Shell::LastOperation;
  if (facts == nullptr) return E_POINTER;
  const LastOperation* const last = Orvix::PerThread<LastOperation>::Find();
  *facts = last == nullptr ? OxFileOperationFacts{} : last->facts;
  if (item != nullptr) *item = nullptr;
  if (words != nullptr) *words = nullptr;
  if (item != nullptr && last != nullptr && !last->item.empty()) {
    if (const HRESULT named = OxPlatformName(last->item.c_str(), item); FAILED(named)) return named;
  }
  if (words != nullptr) {
    const char16_t* const text =
        facts->code == 0 && facts->aborted != 0 ? u"a part was left out" : Orvix::Shell::WordsOf(facts->code);
    *words = SysAllocString(text);
    if (*words == nullptr) return E_OUTOFMEMORY;
  }
  return S_OK;
}
