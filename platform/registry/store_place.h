// Where the store is.
#ifndef ORVIX_PLATFORM_REGISTRY_STORE_PLACE_H
#define ORVIX_PLATFORM_REGISTRY_STORE_PLACE_H

#include <string>

namespace Orvix::registry {

class StorePlace {
 public:
  // The directory that the environment names at this moment, as an absolute path;
  // empty when there is no home directory either. A relative name is counted from
  // where the process was when it was first met. A process with more rights than
  // its caller takes no word of the environment.
  [[nodiscard]] const std::string& Directory();

 private:
  const std::string& From(const char* source, const char* below);

  std::string source_;  // what `directory_` was made of
  std::string directory_;
};

// Makes a directory that is missing, with all above it, for its user alone. An
// errno value, 0 when it is there.
[[nodiscard]] int MakeStoreDirectory(const std::string& directory);

}  // namespace Orvix::registry

#endif
