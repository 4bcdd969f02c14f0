// File operations against what a user would run instead, on the same files in
// the same run: `cp -r`, std::filesystem::copy and `rm -r`. The directory is
// /dev/shm where there is one. Each benchmark checks what it made.
#include <benchmark/benchmark.h>
#include <spawn.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <string>

#include "orvix/platform.h"
#include "orvix/runtime.h"

namespace {

namespace fs = std::filesystem;

constexpr int kSmallFiles = 2'000;
constexpr int kManyFiles = 10'000;
constexpr std::uintmax_t kLargeFile = std::uintmax_t{512} << 20;

class Place {
 public:
  Place() {
    std::string pattern = std::string(fs::exists("/dev/shm") ? "/dev/shm" : "/tmp") + "/orvix-bench-XXXXXX";
    root_ = mkdtemp(pattern.data());
  }
  Place(const Place&) = delete;
  Place& operator=(const Place&) = delete;
  ~Place() { fs::remove_all(root_); }
  [[nodiscard]] fs::path operator/(const char* name) const { return root_ / name; }

 private:
  fs::path root_;
};

void MakeFiles(const fs::path& directory, int count, std::size_t bytes) {
  const std::string content(bytes, 'x');
  for (int i = 0; i < count; ++i) {
    const fs::path folder = directory / std::to_string(i / 1000);
    if (i % 1000 == 0) fs::create_directories(folder);
    std::ofstream(folder / ("file" + std::to_string(i)), std::ios::binary) << content;
  }
}

void MakeLargeFile(const fs::path& directory) {
  fs::create_directories(directory);
  std::ofstream file(directory / "large", std::ios::binary);
  const std::string piece(1 << 20, 'x');
  for (std::uintmax_t at = 0; at < kLargeFile; at += piece.size()) file << piece;
}

// The files of a tree and their lengths, in one number.
std::uintmax_t SizeOf(const fs::path& directory) {
  std::uintmax_t size = 0;
  for (const auto& entry : fs::recursive_directory_iterator(directory)) {
    if (entry.is_regular_file()) size += entry.file_size() + 1;
  }
  return size;
}

INT Request(std::uint32_t operation, const fs::path& from, const fs::path& to) {
  char* const names = static_cast<char*>(OxLowAlloc(2048));
  std::memset(names, 0, 2048);
  const std::string source = "Z:" + from.string();
  const std::string target = "Z:" + to.string();
  std::memcpy(names, source.data(), source.size());
  std::memcpy(names + 1024, target.data(), target.size());
  char packed[30] = {};
  const auto address = static_cast<std::uint32_t>(reinterpret_cast<std::uintptr_t>(names));
  const std::uint32_t addresses[] = {operation, address, address + 1024};
  std::memcpy(packed + 4, addresses, sizeof addresses);
  packed[16] = 0x14;  // silent, no questions
  const INT code = SHFileOperationA(packed);
  OxLowFree(names);
  return code;
}

int RunProgram(const char* const (&words)[5]) {
  pid_t child = 0;
  if (posix_spawnp(&child, words[0], nullptr, nullptr, const_cast<char* const*>(words), environ) != 0) return -1;
  int status = 0;
  waitpid(child, &status, 0);
  return status;
}

enum class Means { kService, kProgram, kLibrary };

bool CopyBy(Means means, const fs::path& from, const fs::path& to) {
  switch (means) {
    case Means::kService:
      return Request(2, from, to) == 0;
    case Means::kProgram:
      return RunProgram({"cp", "-r", from.c_str(), to.c_str(), nullptr}) == 0;
    case Means::kLibrary:
      fs::copy(from, to, fs::copy_options::recursive);
      return true;
  }
  return false;
}

bool RemoveBy(Means means, const fs::path& path) {
  if (means == Means::kService) return Request(3, path, {}) == 0;
  if (means == Means::kProgram) return RunProgram({"rm", "-r", "--", path.c_str(), nullptr}) == 0;
  return fs::remove_all(path) > 0;
}

void MeasureCopy(benchmark::State& state, const Place& place, Means means) {
  const std::uintmax_t expected = SizeOf(place / "from");
  for (auto _ : state) {
    const bool done = CopyBy(means, place / "from", place / "to");
    state.PauseTiming();
    if (!done || SizeOf(place / "to") != expected) state.SkipWithError("not copied");
    fs::remove_all(place / "to");
    state.ResumeTiming();
  }
}

void CopySmallFiles(benchmark::State& state, Means means) {
  const Place place;
  MakeFiles(place / "from", kSmallFiles, 4096);
  MeasureCopy(state, place, means);
}
BENCHMARK_CAPTURE(CopySmallFiles, service, Means::kService)->UseRealTime();
BENCHMARK_CAPTURE(CopySmallFiles, cp, Means::kProgram)->UseRealTime();
BENCHMARK_CAPTURE(CopySmallFiles, std_filesystem, Means::kLibrary)->UseRealTime();

void CopyLargeFile(benchmark::State& state, Means means) {
  const Place place;
  MakeLargeFile(place / "from");
  MeasureCopy(state, place, means);
}
BENCHMARK_CAPTURE(CopyLargeFile, service, Means::kService)->UseRealTime();
BENCHMARK_CAPTURE(CopyLargeFile, cp, Means::kProgram)->UseRealTime();
BENCHMARK_CAPTURE(CopyLargeFile, std_filesystem, Means::kLibrary)->UseRealTime();

void DeleteManyFiles(benchmark::State& state, Means means) {
  const Place place;
  for (auto _ : state) {
    state.PauseTiming();
    MakeFiles(place / "tree", kManyFiles, 16);
    state.ResumeTiming();
    if (!RemoveBy(means, place / "tree") || fs::exists(place / "tree")) state.SkipWithError("not deleted");
  }
}
BENCHMARK_CAPTURE(DeleteManyFiles, service, Means::kService)->UseRealTime();
BENCHMARK_CAPTURE(DeleteManyFiles, rm, Means::kProgram)->UseRealTime();
BENCHMARK_CAPTURE(DeleteManyFiles, std_filesystem, Means::kLibrary)->UseRealTime();

// One rename, however large the tree.
void MoveTree(benchmark::State& state) {
  const Place place;
  MakeFiles(place / "from", static_cast<int>(state.range(0)), 16);
  const char* names[] = {"from", "to"};
  for (auto _ : state) {
    if (Request(1, place / names[0], place / names[1]) != 0) state.SkipWithError("not moved");
    std::swap(names[0], names[1]);
  }
}
BENCHMARK(MoveTree)->Arg(1)->Arg(kManyFiles);

}  // namespace
