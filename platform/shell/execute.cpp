#include "platform/shell/execute.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <new>
#include <string_view>

#include "frame/runtime/runtime_error.h"
#include "orvix/platform.h"
#include "platform/host/host_table.h"
#include "platform/names/case_fold.h"
#include "platform/names/path_map.h"
#include "platform/names/text_behind.h"
#include "platform/system/process.h"

namespace Orvix {
namespace {

constexpr LONG kPathNotFound = 76;

bool IsLetter(char16_t unit) { return (unit | 0x20) >= u'a' && (unit | 0x20) <= u'z'; }

// A single letter before the colon is a drive.
bool HasScheme(TextView file) {
  const auto end = std::ranges::find_if_not(file, [](char16_t unit) {
    return IsLetter(unit) || (unit >= u'0' && unit <= u'9') || unit == u'+' || unit == u'-' || unit == u'.';
  });
  return end - file.begin() >= 2 && end != file.end() && *end == u':' && IsLetter(file.front());
}

bool SameWord(TextView left, TextView lower) {
  return std::ranges::equal(left, lower,
                            [](char16_t a, char16_t b) { return a == b || (IsLetter(a) && (a | 0x20) == b); });
}

ExecuteResult ResultOfError(int error) {
  switch (error) {
    case ENOENT:
      return kExecuteFileNotFound;
    case ENOTDIR:
    case ENAMETOOLONG:
    case ELOOP:
      return kExecutePathNotFound;
    case EACCES:
    case EPERM:
      return kExecuteAccessDenied;
    case ENOEXEC:
    case ELIBBAD:
      return kExecuteBadFormat;
    case ETXTBSY:
      return kExecuteShared;
    case ENOMEM:
    case E2BIG:
      return kExecuteNoMemory;
    default:
      return kExecuteNoResources;
  }
}

// Some file systems give every file an execute bit, so the header decides too. A
// program that may be run but not read is taken at its bit's word.
bool IsExecutable(const std::string& path, const struct stat& facts) {
  if (!S_ISREG(facts.st_mode) || (facts.st_mode & 0111) == 0) return false;
  const int descriptor = open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK);
  if (descriptor < 0) return errno == EACCES;
  char header[4]{};
  const ssize_t got = read(descriptor, header, sizeof header);
  close(descriptor);
  const std::string_view seen(header, got < 0 ? 0 : static_cast<std::size_t>(got));
  return seen ==
             "\x7f"
             "ELF" ||
         seen.starts_with("#!");
}

// Resolves a name; the result when that fails.
ExecuteResult Resolve(TextView name, std::string& path, struct stat& facts) {
  try {
    NativeName native = ResolveName(name);
    if (native.parent_missing) return kExecutePathNotFound;
    path = AbsolutePath(std::move(native.path));
  } catch (const RuntimeError& error) {
    return error.number == kPathNotFound ? kExecutePathNotFound : kExecuteFileNotFound;
  }
  return stat(path.c_str(), &facts) == 0 ? kExecuteDone : ResultOfError(errno);
}

ExecuteResult Run(const std::string& path, const std::string& directory, TextView parameters) {
  ChildProgram child;
  const int error = child.Start({path, WordsOfCommandLine(parameters), directory}, ChildProgram::Output::kUnheard);
  if (error == 0) return kExecuteDone;
  // The file is there: what is missing is the interpreter that it names.
  return error == ENOENT ? kExecuteBadFormat : ResultOfError(error);
}

ExecuteResult OpenWithDesktop(const std::string& target, const std::string& directory,
                              std::chrono::milliseconds patience) {
  const std::string opener = FindProgram("xdg-open");
  if (opener.empty()) return kExecuteNoAssociation;
  ChildProgram child;
  if (const int error = child.Start({opener, {target}, directory}, ChildProgram::Output::kUnheard); error != 0) {
    return error == ENOMEM ? kExecuteNoMemory : kExecuteNoResources;
  }
  // The host goes on working meanwhile.
  constexpr std::chrono::milliseconds kBetween{25};
  std::optional<ProgramEnd> end;
  for (const auto stop = std::chrono::steady_clock::now() + patience;
       !end && std::chrono::steady_clock::now() < stop;) {
    end = child.WaitFor(std::min(kBetween, patience));
    if (!end) LetHostWork();
  }
  if (!end || end->kind == ProgramEnd::Kind::kUnknown || end->ExitedWith(0)) return kExecuteDone;
  if (end->ExitedWith(1)) return kExecuteIncomplete;
  if (end->ExitedWith(2)) return kExecuteFileNotFound;
  return kExecuteNoAssociation;
}

}  // namespace

ExecuteResult Execute(const ExecuteRequest& request) {
  const bool explores = SameWord(request.verb, u"explore");
  if (!explores && !request.verb.empty() && !SameWord(request.verb, u"open")) return kExecuteNoAssociation;
  std::string directory;
  struct stat facts {};
  if (!request.directory.empty()) {
    const ExecuteResult found = Resolve(request.directory, directory, facts);
    if (found != kExecuteDone || !S_ISDIR(facts.st_mode)) return kExecutePathNotFound;
  }
  if (!explores && HasScheme(request.file)) {
    if (request.file.find(u'\0') != Text::npos) return kExecuteFileNotFound;
    return OpenWithDesktop(ToUtf8(request.file), directory, request.patience);
  }
  if (!explores && FoldName(request.file.substr(0, 4)) == u"www." && request.file.find(u'\0') == Text::npos) {
    return OpenWithDesktop("http://" + ToUtf8(request.file), directory, request.patience);
  }
  std::string path;
  if (const ExecuteResult found = Resolve(request.file, path, facts); found != kExecuteDone) {
    // A program's bare name is looked for as a shell does.
    const bool is_bare = request.file.find_first_of(u"\\/:") == Text::npos && !explores;
    path = is_bare ? FindProgram(ToUtf8(request.file)) : "";
    if (path.empty() || stat(path.c_str(), &facts) != 0) return found;
  }
  if (explores && !S_ISDIR(facts.st_mode)) return kExecuteNoAssociation;
  if (IsExecutable(path, facts)) return Run(path, directory, request.parameters);
  return OpenWithDesktop(path, directory, request.patience);
}

}  // namespace Orvix

// The owner window and the show command mean nothing natively: programs place
// their windows themselves.
void* ORVIX_CALL ShellExecuteA(void* window, const char* verb, const char* file, const char* parameters,
                               const char* directory, INT show) {
  const auto handle_of = [](LONG result) { return reinterpret_cast<void*>(static_cast<std::intptr_t>(result)); };
  const OxHost host = Orvix::CurrentHost();
  if (host.ShellExecuteA != nullptr) {
    const auto owner = static_cast<LONG>(reinterpret_cast<std::intptr_t>(window));
    return handle_of(host.ShellExecuteA(host.context, owner, verb, file, parameters, directory, show));
  }
  try {
    const auto text_of = [](const char* ansi) { return ansi == nullptr ? Orvix::Text() : Orvix::TextBehind(ansi); };
    return handle_of(Orvix::Execute({text_of(verb), text_of(file), text_of(parameters), text_of(directory)}));
  } catch (const std::bad_alloc&) {
    return handle_of(Orvix::kExecuteNoMemory);
  }
}
