// A fresh store for each test, and the few calls that every registry test makes.
#ifndef ORVIX_TESTS_PLATFORM_REGISTRY_REGISTRY_FIXTURE_H
#define ORVIX_TESTS_PLATFORM_REGISTRY_REGISTRY_FIXTURE_H

#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <functional>
#include <iterator>
#include <string>
#include <vector>

#include "orvix/runtime.h"
#include "orvix/text.h"

namespace Orvix {

inline constexpr DWORD kGeneral = 31;
inline HKEY User() { return MakeRootKey(kCurrentUser); }

inline HKEY CreateKey(HKEY below, const char* name) {
  HKEY key = nullptr;
  EXPECT_EQ(RegCreateKeyExA(below, name, 0, nullptr, 0, kGeneral, nullptr, &key, nullptr), 0) << name;
  return key;
}
inline LONG SetBytes(HKEY key, const char* name, DWORD type, std::string_view bytes) {
  return RegSetValueExA(key, name, 0, type, reinterpret_cast<const BYTE*>(bytes.data()),
                        static_cast<DWORD>(bytes.size()));
}
// The bytes of a value, or "code N" when it cannot be read.
inline std::string GetBytes(HKEY key, const char* name) {
  std::string bytes(1 << 20, '\0');
  auto length = static_cast<DWORD>(bytes.size());
  const LONG result = RegQueryValueExA(key, name, nullptr, nullptr, reinterpret_cast<BYTE*>(bytes.data()), &length);
  if (result != 0) return "code " + std::to_string(result);
  bytes.resize(length);
  return bytes;
}

class RegistryTest : public ::testing::Test {
 protected:
  RegistryTest() {
    char made[] = "/tmp/orvix-registry-XXXXXX";
    directory_ = mkdtemp(made);
    before_ = std::getenv("ORVIX_REGISTRY");
    setenv("ORVIX_REGISTRY", Store().c_str(), 1);
  }
  ~RegistryTest() override {
    setenv("ORVIX_REGISTRY", before_.c_str(), 1);
    std::error_code ignored;
    std::filesystem::permissions(Store(), std::filesystem::perms::owner_all, ignored);
    std::filesystem::remove_all(directory_, ignored);
  }

  [[nodiscard]] std::string Store() const { return directory_ + "/store"; }
  [[nodiscard]] std::string File() const { return Store() + "/registry.sqlite"; }
  static std::string ReadFile(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
  }
  // Runs `body` in a child process; its result is the exit code.
  static int InChild(const std::function<int()>& body) {
    const pid_t child = fork();
    if (child == 0) _exit(body());
    int status = 0;
    waitpid(child, &status, 0);
    return WIFEXITED(status) ? WEXITSTATUS(status) : 1000 + WTERMSIG(status);
  }

 private:
  std::string directory_;
  std::string before_;
};

}  // namespace Orvix

#endif
