// Help files: compiled HTML help is shown by a viewer of this machine, the
// classic format by none.
#include <sys/stat.h>

#include <algorithm>
#include <new>

#include "frame/runtime/runtime_error.h"
#include "orvix/platform.h"
#include "platform/host/host_table.h"
#include "platform/names/path_map.h"
#include "platform/names/text_behind.h"
#include "platform/system/process.h"

namespace Orvix {
namespace {

constexpr UINT kDisplayTopic = 0;
constexpr UINT kDisplayContents = 1;
constexpr UINT kDisplayIndex = 2;
constexpr UINT kDisplaySearch = 3;
constexpr UINT kDisplayContext = 15;

// The best first.
constexpr std::string_view kViewers[] = {"kchmviewer", "uchmviewer", "xchm", "okular"};

bool IsCompiledHtml(TextView name) {
  constexpr TextView kSuffix = u".chm";
  if (name.size() < kSuffix.size()) return false;
  return std::ranges::equal(name.substr(name.size() - kSuffix.size()), kSuffix, [](char16_t unit, char16_t lower) {
    return unit == lower || (unit < 0x80 && (unit | 0x20) == lower && lower != u'.');
  });
}

// "file.chm::/topic.htm>window" names a page inside and a window as well.
TextView FilePart(TextView name) { return name.substr(0, std::min(name.find(u"::"), name.find(u'>'))); }

// Shows the file from its start; false when it is no help file, is not there or
// nothing can show it.
bool ShowFile(TextView name) {
  if (!IsCompiledHtml(name)) return false;
  std::string path;
  try {
    path = AbsolutePath(NativePath(name));
  } catch (const RuntimeError&) {
    return false;
  }
  struct stat facts {};
  if (stat(path.c_str(), &facts) != 0 || !S_ISREG(facts.st_mode)) return false;
  if (HasDisplay()) {
    for (const std::string_view viewer : kViewers) {
      const std::string program = FindProgram(viewer);
      if (program.empty()) continue;
      ChildProgram child;
      if (child.Start({program, {path}}, ChildProgram::Output::kUnheard) == 0) return true;
    }
  }
  return false;
}

bool ShowsFile(UINT command) {
  switch (command) {
    case kDisplayTopic:
    case kDisplayContents:
    case kDisplayIndex:
    case kDisplaySearch:
    case kDisplayContext:
      return true;
    default:
      // A keyword cannot be looked up from outside: no viewer tells whether it
      // found one. Callers go on to ask for the index then.
      return false;
  }
}

LONG Bits(const void* handle) { return static_cast<LONG>(reinterpret_cast<std::intptr_t>(handle)); }

// Whether a help file was shown, at the page that the viewer chooses: the data
// word is not looked at.
bool Show(const char* file, UINT command) noexcept {
  if (file == nullptr || !ShowsFile(command)) return false;
  try {
    return ShowFile(FilePart(TextBehind(file)));
  } catch (const std::bad_alloc&) {
    return false;
  }
}

}  // namespace
}  // namespace Orvix

// Nothing on this machine reads the classic format.
BOOL ORVIX_CALL WinHelpA(void* window, const char* file, UINT command, std::uintptr_t data) {
  const OxHost host = Orvix::CurrentHost();
  if (host.WinHelpA == nullptr) return 0;
  return host.WinHelpA(host.context, Orvix::Bits(window), file, static_cast<LONG>(command), static_cast<LONG>(data));
}

// Natively the handle stands for success only: the window belongs to another
// program.
void* ORVIX_CALL HtmlHelpA(void* window, const char* file, UINT command, std::uintptr_t data) {
  const OxHost host = Orvix::CurrentHost();
  const auto handle_of = [](LONG result) { return reinterpret_cast<void*>(static_cast<std::intptr_t>(result)); };
  if (host.HtmlHelpA == nullptr) return handle_of(Orvix::Show(file, command) ? 1 : 0);
  return handle_of(
      host.HtmlHelpA(host.context, Orvix::Bits(window), file, static_cast<LONG>(command), static_cast<LONG>(data)));
}
