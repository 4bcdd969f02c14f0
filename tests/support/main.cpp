// Every test program starts here: the registry and the user's data live in a
// fresh directory of their own, which goes away at the end.
#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>

int main(int argc, char** argv) {
  char directory[] = "/tmp/orvix-test-XXXXXX";
  if (mkdtemp(directory) == nullptr) return 2;
  setenv("ORVIX_REGISTRY", (std::string(directory) + "/registry").c_str(), 1);
  setenv("XDG_DATA_HOME", directory, 1);
  unsetenv("ORVIX_DRIVES");
  testing::InitGoogleTest(&argc, argv);
  const int result = RUN_ALL_TESTS();
  std::filesystem::remove_all(directory);
  return result;
}
