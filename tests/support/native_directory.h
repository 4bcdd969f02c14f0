// A fresh native directory for the length of a test, and the same place as
// members name it.
#ifndef ORVIX_TESTS_SUPPORT_NATIVE_DIRECTORY_H
#define ORVIX_TESTS_SUPPORT_NATIVE_DIRECTORY_H

#include <sys/stat.h>
#include <utime.h>

#include <cstdlib>
#include <ctime>
#include <filesystem>
#include <fstream>
#include <string>

#include "orvix/text.h"

namespace Orvix::testing {

class NativeDirectory {
 public:
  NativeDirectory() {
    std::string pattern = (std::filesystem::temp_directory_path() / "orvix-files-XXXXXX").string();
    path_ = mkdtemp(pattern.data());
  }
  NativeDirectory(const NativeDirectory&) = delete;
  NativeDirectory& operator=(const NativeDirectory&) = delete;
  ~NativeDirectory() {
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
  }

  [[nodiscard]] std::string Native(const std::string& name) const { return path_ + "/" + name; }
  // The drive-qualified name of something inside, e.g. Name(u"\\a.txt").
  [[nodiscard]] Text Name(TextView rest) const {
    Text name = u"Z:" + FromUtf8(path_) + Text(rest);
    for (char16_t& unit : name) {
      if (unit == u'/') unit = u'\\';
    }
    return name;
  }
  void Write(const std::string& name, const std::string& content) const {
    std::ofstream(Native(name), std::ios::binary) << content;
  }
  [[nodiscard]] std::string Read(const std::string& name) const {
    std::ifstream file(Native(name), std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
  }
  void MakeDirectory(const std::string& name) const { std::filesystem::create_directories(Native(name)); }
  [[nodiscard]] bool Has(const std::string& name) const { return std::filesystem::exists(Native(name)); }
  // Sets the local modification time of a file.
  void Touch(const std::string& name, int year, int month, int day, int hour, int minute, int second) const {
    std::tm parts{};
    parts.tm_year = year - 1900;
    parts.tm_mon = month - 1;
    parts.tm_mday = day;
    parts.tm_hour = hour;
    parts.tm_min = minute;
    parts.tm_sec = second;
    parts.tm_isdst = -1;
    const std::time_t when = std::mktime(&parts);
    const utimbuf times{when, when};
    utime(Native(name).c_str(), &times);
  }

 private:
  std::string path_;
};

}  // namespace Orvix::testing

#endif
