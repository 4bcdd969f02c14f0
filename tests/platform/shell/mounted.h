// A small file system of its own, where that is allowed.
#ifndef ORVIX_TESTS_PLATFORM_SHELL_MOUNTED_H
#define ORVIX_TESTS_PLATFORM_SHELL_MOUNTED_H

#include <sys/mount.h>

#include <filesystem>
#include <fstream>
#include <string>
#include <utility>

namespace Orvix::testing {

class Mounted {
 public:
  // With `bound`, that directory or file is shown instead.
  explicit Mounted(std::string path, const std::string& bound = "") : path_(std::move(path)) {
    if (bound.empty() || std::filesystem::is_directory(bound)) {
      std::filesystem::create_directories(path_);
    } else {
      std::ofstream(path_).close();
    }
    ok_ = bound.empty() ? mount("tmpfs", path_.c_str(), "tmpfs", 0, "size=1m,mode=777") == 0
                        : mount(bound.c_str(), path_.c_str(), nullptr, MS_BIND, nullptr) == 0;
  }
  Mounted(const Mounted&) = delete;
  Mounted& operator=(const Mounted&) = delete;
  ~Mounted() {
    if (ok_) umount2(path_.c_str(), MNT_DETACH);
  }
  [[nodiscard]] bool ok() const { return ok_; }
  // From now on nothing can be changed there.
  [[nodiscard]] bool Protect() const {
    return mount(nullptr, path_.c_str(), nullptr, MS_REMOUNT | MS_RDONLY, nullptr) == 0;
  }

 private:
  std::string path_;
  bool ok_;
};

}  // namespace Orvix::testing

#endif
