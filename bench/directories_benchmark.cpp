// Files in directories of any size: storing many, looking for names that are
// there and that are not, and making deep paths. The limit beside each is a plain
// program with the same system calls.
#include <benchmark/benchmark.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <memory>
#include <string>

#include "orvix/orvix.hpp"

namespace {

using namespace Orvix;  // NOLINT(google-build-using-namespace)

class Directory {
 public:
  explicit Directory(int files = 0) {
    std::string pattern = (std::filesystem::temp_directory_path() / "orvix-XXXXXX").string();
    native_ = mkdtemp(pattern.data());
    for (int i = 0; i < files; ++i) std::ofstream(native_ + "/name " + std::to_string(i) + ".txt");
  }
  Directory(const Directory&) = delete;
  Directory& operator=(const Directory&) = delete;
  ~Directory() { std::filesystem::remove_all(native_); }

  [[nodiscard]] const std::string& Native() const { return native_; }
  [[nodiscard]] Text Name(const std::string& rest) const {
    BSTR name = nullptr;
    OxPlatformName((native_ + rest).c_str(), &name);
    Text text(ViewOf(name));
    SysFreeString(name);
    return text;
  }

 private:
  std::string native_;
};

constexpr int kFiles = 4000;
const std::string kContent(100, 'x');

void StorePlain(const std::string& path) {
  struct stat facts {};
  benchmark::DoNotOptimize(stat(path.substr(0, path.rfind('/') + 1).c_str(), &facts));
  const int file = open(path.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0666);
  benchmark::DoNotOptimize(write(file, kContent.data(), kContent.size()));
  close(file);
}

// Argument: 0 a plain program, 1 the member.
void StoreFiles(benchmark::State& state) {
  const Text content(kContent.begin(), kContent.end());
  for (auto _ : state) {
    state.PauseTiming();
    auto directory = std::make_unique<Directory>();
    state.ResumeTiming();
    for (int i = 0; i < kFiles; ++i) {
      const std::string rest = "/file " + std::to_string(i);
      if (state.range(0) == 0) {
        StorePlain(directory->Native() + rest);
      } else {
        Global().StoreData(Filename(directory->Name(rest)), content);
      }
    }
    state.PauseTiming();
    directory.reset();
    state.ResumeTiming();
  }
  state.SetItemsProcessed(state.iterations() * kFiles);
}
BENCHMARK(StoreFiles)->ArgName("member")->Arg(0)->Arg(1)->UseRealTime()->Unit(benchmark::kMillisecond);

// Arguments: entries of the directory; whether the name is there.
void FileExists(benchmark::State& state) {
  const Directory directory(static_cast<int>(state.range(0)));
  const Text name = directory.Name(state.range(1) != 0 ? "/name 7.txt" : "/missing.txt");
  benchmark::DoNotOptimize(Global().FileExists(name));
  for (auto _ : state) benchmark::DoNotOptimize(Global().FileExists(name));
}
BENCHMARK(FileExists)->ArgNames({"entries", "there"})->ArgsProduct({{100, 50000}, {1, 0}});

// 100 files, each with a target name of its own, into a directory of 10^5 entries,
// which grows: file systems are slow to use again what was just deleted.
// Argument: 0 a plain program, 1 the service.
void CopyInto(benchmark::State& state) {
  constexpr int kCopied = 100;
  const Directory from(kCopied);
  const Directory to(100'000);
  int round = 0;
  const auto target = [&](int i) { return "/copy " + std::to_string(round) + " " + std::to_string(i); };
  const auto source = [](int i) { return "/name " + std::to_string(i) + ".txt"; };
  for (auto _ : state) {
    ++round;
    if (state.range(0) == 0) {
      for (int i = 0; i < kCopied; ++i) {
        std::filesystem::copy_file(from.Native() + source(i), to.Native() + target(i));
      }
    } else {
      FileOperation operation;
      operation.SetSilentMode(true);
      operation.SetConfirmOperation(false);
      for (int i = 0; i < kCopied; ++i) {
        operation.AddSourceFile(from.Name(source(i)));
        operation.AddDestFile(to.Name(target(i)));
      }
      if (!operation.CopyFiles()) state.SkipWithError("not copied");
    }
  }
}
BENCHMARK(CopyInto)->ArgName("service")->Arg(0)->Arg(1)->UseRealTime()->Iterations(200)->Unit(benchmark::kMillisecond);

// Argument: levels of a path that is made.
void MakeLevels(benchmark::State& state) {
  std::string rest;
  for (int i = 0; i < state.range(0); ++i) rest += "/d" + std::to_string(i);
  for (auto _ : state) {
    state.PauseTiming();
    auto directory = std::make_unique<Directory>();
    const Text name = directory->Name(rest);
    state.ResumeTiming();
    Global().MakeDir(name);
    state.PauseTiming();
    directory.reset();
    state.ResumeTiming();
  }
  state.SetComplexityN(state.range(0));
}
BENCHMARK(MakeLevels)
    ->ArgName("levels")
    ->RangeMultiplier(2)
    ->Range(25, 400)
    ->Complexity()
    ->Unit(benchmark::kMillisecond);

}  // namespace
