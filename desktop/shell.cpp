// Files opened with the program meant for them.
#include "desktop/ansi_arguments.h"
#include "frame/class_orvix.h"

namespace Orvix::component {

namespace {

constexpr LONG kNormalWindow = 1;

LONG Open(TextReference file, LONG owner, LONG show_command) {
  AnsiArgument name(file);
  const void* const result = ShellExecuteA(WindowOf(owner), "open", name.get(), nullptr, nullptr, show_command);
  name.WriteBack();
  return static_cast<LONG>(reinterpret_cast<std::intptr_t>(result));
}

}  // namespace

void classOrvix::RunFile(TextReference file, LONG owner) { Open(file, owner, kNormalWindow); }

LONG classOrvix::RunFileMore(TextReference file, LONG owner, LONG show_command) {
  return Open(file, owner, show_command);
}

}  // namespace Orvix::component
