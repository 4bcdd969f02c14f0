// Patterns of a directory search against names.
#include "attack/fuzz/fuzz.h"
#include "frame/runtime/name_pattern.h"
#include "platform/names/case_fold.h"

using namespace Orvix;  // NOLINT(google-build-using-namespace)

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  fuzz::Input input(data, size);
  const Text pattern = FoldName(input.Words());
  const Text name = FoldName(input.Words());
  NamePattern made(pattern);
  const bool matches = made.Matches(name);
  if (matches != made.Matches(name)) __builtin_trap();
  NamePattern itself(name);
  if (name.find_first_of(u"*?.") == Text::npos && !itself.Matches(name)) __builtin_trap();
  return 0;
}
