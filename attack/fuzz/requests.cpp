// Packed requests of file operations, on names below a directory of its own.
#include <cstdlib>
#include <filesystem>
#include <fstream>

#include "attack/fuzz/fuzz.h"
#include "orvix/platform.h"

using namespace Orvix;  // NOLINT(google-build-using-namespace)

namespace {

const std::string& Directory() {
  static const std::string directory = [] {
    char pattern[] = "/tmp/orvix-fuzz-XXXXXX";
    return std::string(mkdtemp(pattern));
  }();
  return directory;
}

// A list of names, each below the directory, parted and ended as a request is.
std::string List(fuzz::Input& input) {
  std::string list;
  for (int count = input.Byte() % 4; count > 0; --count) {
    std::string name = "Z:" + Directory() + "\\";
    for (int length = input.Byte() % 8; length > 0; --length) {
      const char byte = static_cast<char>(input.Byte());
      name += byte == '/' || byte == '\0' ? '\\' : byte;
    }
    if (name.find("..") != std::string::npos) name = "Z:" + Directory() + "\\x";
    list += name + '\0';
  }
  return list + '\0';
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  fuzz::Input input(data, size);
  std::filesystem::create_directories(Directory() + "/d/e");
  for (const char* name : {"a", "b.txt", "d/c"}) std::ofstream(Directory() + "/" + name) << name;
  const std::string from = List(input);
  const std::string to = List(input);
  char record[64] = {};
  const auto put = [&](std::size_t at, auto value) { std::memcpy(record + at, &value, sizeof value); };
  void* const low_from = OxLowAlloc(from.size());
  void* const low_to = OxLowAlloc(to.size());
  std::memcpy(low_from, from.data(), from.size());
  std::memcpy(low_to, to.data(), to.size());
  put(4, std::uint32_t{input.Byte() % 6U});
  put(8, static_cast<std::uint32_t>(reinterpret_cast<std::uintptr_t>(low_from)));
  put(12, static_cast<std::uint32_t>(reinterpret_cast<std::uintptr_t>(low_to)));
  // Neither undo, which would fill the user's trash, nor questions.
  put(16, static_cast<std::uint16_t>((input.Number<std::uint16_t>() & ~0x40U) | 0x14U));
  SHFileOperationA(record);
  OxLowFree(low_from);
  OxLowFree(low_to);
  return 0;
}
