// Every test program starts here: the registry and the user's data live in a
// fresh directory of their own, which goes away at the end. ORVIX_BIN and
// ORVIX_LIB name the folders of the build's programs and libraries.
#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <string>

int main(int argc, char** argv) {
  namespace fs = std::filesystem;
  std::string directory = (fs::temp_directory_path() / "orvix-test-XXXXXX").string();
  if (mkdtemp(directory.data()) == nullptr) return 2;
  const fs::path programs = fs::read_symlink("/proc/self/exe").parent_path();
  setenv("ORVIX_BIN", programs.c_str(), 0);
  setenv("ORVIX_LIB", (programs.parent_path() / "lib").c_str(), 0);
  setenv("ORVIX_REGISTRY", (directory + "/registry").c_str(), 1);
  setenv("XDG_DATA_HOME", directory.c_str(), 1);
  unsetenv("ORVIX_DRIVES");
  // Nobody's screen is touched; tests that need one start their own.
  unsetenv("DISPLAY");
  unsetenv("WAYLAND_DISPLAY");
  setenv("TZ", "UTC0", 1);
  testing::InitGoogleTest(&argc, argv);
  const int result = RUN_ALL_TESTS();
  fs::remove_all(directory);
  return result;
}
