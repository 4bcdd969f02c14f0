// Requests to the file-operation service as tests make them, and directories
// written and read as one line of text.
#ifndef ORVIX_TESTS_PLATFORM_SHELL_FILE_REQUEST_H
#define ORVIX_TESTS_PLATFORM_SHELL_FILE_REQUEST_H

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

#include "orvix/platform.h"
#include "orvix/runtime.h"
#include "support/native_directory.h"

namespace Orvix::testing {

// Bytes at an address that fits in 32 bits.
class LowBytes {
 public:
  explicit LowBytes(const std::string& bytes) : block_(static_cast<char*>(OxLowAlloc(bytes.size() + 1))) {
    std::memcpy(block_, bytes.data(), bytes.size());
  }
  LowBytes(const LowBytes&) = delete;
  LowBytes& operator=(const LowBytes&) = delete;
  ~LowBytes() { OxLowFree(block_); }
  [[nodiscard]] char* get() const { return block_; }
  [[nodiscard]] std::uint32_t Address() const {
    return static_cast<std::uint32_t>(reinterpret_cast<std::uintptr_t>(block_));
  }

 private:
  char* block_;
};

// Each name with a NUL behind it, and one more.
inline std::string NameList(const std::vector<std::string>& names) {
  std::string list;
  for (const std::string& name : names) list += name + '\0';
  return list + '\0';
}

struct Outcome {
  INT code;
  LONG aborted;
  bool operator==(const Outcome&) const = default;
};
inline void PrintTo(const Outcome& outcome, std::ostream* stream) {
  *stream << "code 0x" << std::hex << outcome.code << " aborted " << outcome.aborted;
}

inline constexpr Outcome kDone{0, 0};

inline Outcome RunRequest(std::uint32_t operation, std::uint16_t flags, std::uint32_t from, std::uint32_t to,
                          std::uint32_t title = 0) {
  char packed[30] = {};
  std::memcpy(packed + 4, &operation, 4);
  std::memcpy(packed + 8, &from, 4);
  std::memcpy(packed + 12, &to, 4);
  std::memcpy(packed + 16, &flags, 2);
  std::memcpy(packed + 26, &title, 4);
  Outcome outcome{};
  outcome.code = SHFileOperationA(packed);
  std::memcpy(&outcome.aborted, packed + 18, 4);
  return outcome;
}

inline Outcome Perform(std::uint32_t operation, const std::vector<std::string>& from,
                       const std::vector<std::string>& to, std::uint16_t flags = 0x10, const std::string& title = "") {
  const LowBytes sources(NameList(from));
  const LowBytes targets(NameList(to));
  const LowBytes shown(title + '\0');
  return RunRequest(operation, flags, sources.Address(), targets.Address(), shown.Address());
}

inline constexpr std::uint32_t kMoving = 1;
inline constexpr std::uint32_t kCopying = 2;
inline constexpr std::uint32_t kDeleting = 3;
inline constexpr std::uint32_t kRenaming = 4;

inline std::string ContentOf(const std::filesystem::path& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

// "a=1 d/ d/b=2 l>a" for a file, a directory with a file, and a link; sorted.
// What is in a directory that may not be read is left out.
inline std::string Listing(const std::filesystem::path& root) {
  std::vector<std::string> entries;
  for (const auto& entry : std::filesystem::recursive_directory_iterator(
           root, std::filesystem::directory_options::skip_permission_denied)) {
    std::string name = entry.path().lexically_relative(root).string();
    if (entry.is_symlink()) {
      name += ">" + std::filesystem::read_symlink(entry).string();
    } else {
      name += entry.is_directory() ? "/" : "=" + ContentOf(entry);
    }
    entries.push_back(name);
  }
  std::sort(entries.begin(), entries.end());
  std::string line;
  for (const std::string& entry : entries) line += (line.empty() ? "" : " ") + entry;
  return line;
}

// The other way: "d/b=2" makes the directory too.
inline void MakeFiles(const std::filesystem::path& root, const std::string& line) {
  std::istringstream words(line);
  for (std::string word; words >> word;) {
    const std::size_t mark = word.find_first_of("=>");
    const std::filesystem::path path = root / word.substr(0, mark);
    std::filesystem::create_directories(word.back() == '/' ? path : path.parent_path());
    if (mark == std::string::npos) continue;
    if (word[mark] == '>') {
      std::filesystem::create_symlink(word.substr(mark + 1), path);
    } else {
      std::ofstream(path, std::ios::binary) << word.substr(mark + 1);
    }
  }
}

// The kernel's notices of changes in large directories come by one that is kept.
inline std::ptrdiff_t OpenDescriptors() {
  const std::filesystem::directory_iterator all("/proc/self/fd");
  return std::count_if(begin(all), end(all), [](const auto& entry) {
    std::error_code gone;
    return read_symlink(entry.path(), gone) != "anon_inode:inotify";
  });
}

// A fresh directory that is the current one. Every test leaves as many
// descriptors open as it found.
class ShellTest : public ::testing::Test {
 protected:
  ShellTest() : before_(std::filesystem::current_path()) {
    chmod(directory_.Native("").c_str(), 0777);
    std::filesystem::current_path(directory_.Native(""));
    descriptors_ = OpenDescriptors();
  }
  ~ShellTest() override {
    EXPECT_EQ(OpenDescriptors(), descriptors_);
    std::filesystem::current_path(before_);
  }
  static void Make(const std::string& line) { MakeFiles(".", line); }
  static std::string Now() { return Listing("."); }
  // The drive-qualified ANSI name of something in the directory.
  [[nodiscard]] std::string Full(const std::string& name) const {
    std::string full = "Z:" + directory_.Native(name);
    std::replace(full.begin(), full.end(), '/', '\\');
    return full;
  }

  NativeDirectory directory_;

 private:
  std::filesystem::path before_;
  std::ptrdiff_t descriptors_;
};

}  // namespace Orvix::testing

#endif
