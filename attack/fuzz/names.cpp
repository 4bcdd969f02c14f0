// Names of callers to native ones and back.
#include <cstdlib>

#include "attack/fuzz/fuzz.h"

using namespace Orvix;  // NOLINT(google-build-using-namespace)

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  fuzz::Input input(data, size);
  const Text name = input.Words();
  BSTR text = NewBstr(name);
  OxFileFacts facts{};
  OxGetFileFacts(text, &facts);
  SysFreeString(text);
  BSTR platform = nullptr;
  if (OxPlatformName(input.Bytes().c_str(), &platform) == S_OK) OxGetFileFacts(platform, &facts);
  SysFreeString(platform);
  return 0;
}
