// Threads side by side, trees that change under an operation, and files with every
// kind of damage.
#include <dlfcn.h>
#include <fcntl.h>
#include <stdio.h>
#include <sys/stat.h>
#include <unistd.h>

#include <atomic>
#include <filesystem>
#include <fstream>
#include <thread>

#include "attack/scenarios.h"

namespace Orvix::attack {

namespace {

int StoreSideBySide(const Scratch& scratch) {
  std::atomic<int> failures = 0;
  std::vector<std::thread> threads;
  for (int i = 0; i < 4; ++i) {
    threads.emplace_back([&, name = Filename(scratch.Name("file" + std::to_string(i)))] {
      for (int round = 0; round < 300; ++round) {
        const LONG number = NumberOf([&] {
          Global().StoreData(name, "content");
          if (name.GetFile() != "content") ++failures;
        });
        if (number == 0) continue;
        ++failures;
        std::printf("  a store failed: %s\n", last_error);
      }
    });
  }
  for (std::thread& thread : threads) thread.join();
  return failures == 0 ? 0 : 3;
}

// Below `from`, `victim` is a directory and a link to `outside` in turn.
int SwapLinks(Trial& trial, const Scratch& scratch) {
  scratch.Write("outside/precious", "precious");
  scratch.Write("from/victim/file", "file");
  scratch.Write("from/other", "other");
  std::filesystem::create_directories(scratch.Native("to"));
  std::filesystem::create_symlink(scratch.Native("outside"), scratch.Native("link"));
  const bool copies = trial.Chance(50);
  std::atomic<bool> stop = false;
  std::thread swapper([&] {
    const std::string victim = scratch.Native("from/victim");
    const std::string link = scratch.Native("link");
    while (!stop) renameat2(AT_FDCWD, victim.c_str(), AT_FDCWD, link.c_str(), RENAME_EXCHANGE);
  });
  for (int round = 0; round < 20; ++round) {
    FileOperation operation;
    operation.SetSilentMode(true);
    operation.SetConfirmOperation(false);
    operation.AddSourceFile(scratch.Name("from"));
    if (copies) {
      operation.AddDestFile(scratch.Name("to"));
      static_cast<void>(operation.CopyFiles());
    } else {
      static_cast<void>(operation.DeleteFiles());
      scratch.Write("from/other", "other");
      std::error_code ignored;
      std::filesystem::create_directory(scratch.Native("from/victim"), ignored);
    }
  }
  stop = true;
  swapper.join();
  if (scratch.Read("outside/precious") != "precious") return 3;
  const std::string copied = scratch.Native("to/from/victim");
  return !std::filesystem::is_symlink(copied) && std::filesystem::exists(copied + "/precious") ? 4 : 0;
}

std::string Spoilt(Trial& trial, std::string bytes) {
  if (bytes.empty()) return bytes;
  switch (trial.Pick(4)) {
    case 0:
      bytes.resize(trial.Pick(bytes.size()));
      break;
    case 1:
      for (std::size_t i = 1 + trial.Pick(8); i > 0; --i) {
        bytes[trial.Pick(bytes.size())] ^= static_cast<char>(1 << trial.Pick(8));
      }
      break;
    case 2: {
      const std::size_t at = trial.Pick(bytes.size());
      for (std::size_t i = at; i < bytes.size() && i < at + 512; ++i) bytes[i] = static_cast<char>(trial.Pick(256));
      break;
    }
    default:
      bytes.insert(trial.Pick(bytes.size()), trial.Pick(3000), '\0');
  }
  return bytes;
}

std::string Read(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

// A store of another directory, closed and spoilt: what is read is right or refused.
int SpoilRegistry(Trial& trial, const Scratch& scratch) {
  setenv("ORVIX_REGISTRY", scratch.Native("store").c_str(), 1);
  const std::string value(300, 'v');
  HKEY key = nullptr;
  RegCreateKeyExW(MakeRootKey(kCurrentUser), u"Key", 0, nullptr, 0, 31, nullptr, &key, nullptr);
  for (LONG i = 0; i < 60; ++i) {
    RegSetValueExW(key, FromUtf8(std::to_string(i)).c_str(), 0, 3, reinterpret_cast<const BYTE*>(value.data()), 300);
  }
  setenv("ORVIX_REGISTRY", scratch.Native("elsewhere").c_str(), 1);
  RegQueryValueExW(MakeRootKey(kCurrentUser), u"x", nullptr, nullptr, nullptr, nullptr);  // lets the first one go
  const std::string names[] = {"store/registry.sqlite", "store/registry.sqlite-wal"};
  const std::string& name = names[trial.Pick(2)];
  scratch.Write(name, Spoilt(trial, Read(scratch.Native(name))));
  setenv("ORVIX_REGISTRY", scratch.Native("store").c_str(), 1);
  HKEY opened = nullptr;
  if (RegOpenKeyExW(MakeRootKey(kCurrentUser), u"Key", 0, 31, &opened) == 0) {
    for (LONG i = 0; i < 60; ++i) {
      std::string got(400, '\0');
      DWORD size = 400;
      RegQueryValueExW(opened, FromUtf8(std::to_string(i)).c_str(), nullptr, nullptr,
                       reinterpret_cast<BYTE*>(got.data()), &size);
    }
    RegSetValueExW(opened, u"new", 0, 3, reinterpret_cast<const BYTE*>("x"), 1);
  }
  return 0;
}

int SpoilLibrary(Trial& trial, const Scratch& scratch, const std::string& bytes) {
  // Cut ones only: whoever writes code into a library has the process anyway.
  scratch.Write("library.so", bytes.substr(0, trial.Pick(bytes.size())));
  ITypeLib* library = nullptr;
  const HRESULT result = LoadTypeLib(FromUtf8(scratch.Native("library.so")).c_str(), &library);
  if (library != nullptr) library->Release();
  return result == TYPE_E_CANTLOADLIBRARY || result == S_OK ? 0 : 3;
}

int SpoilTrash(Trial& trial, const Scratch& scratch) {
  setenv("XDG_DATA_HOME", scratch.Native("data").c_str(), 1);
  for (int i = 0; i < 5; ++i) {
    std::string bytes = "[Trash Info]\nPath=/somewhere/else\nDeletionDate=2026-01-01T00:00:00\n";
    scratch.Write("data/Trash/info/file" + std::to_string(i) + ".trashinfo", Spoilt(trial, bytes));
  }
  scratch.Write("file0", "content");
  FileOperation operation;
  operation.SetSilentMode(true);
  operation.SetConfirmOperation(false);
  operation.SetAllowUndo(true);
  operation.AddSourceFile(scratch.Name("file0"));
  const bool done = operation.DeleteFiles();
  if (!done) return scratch.Read("file0") == "content" ? 0 : 3;
  for (const auto& entry : std::filesystem::recursive_directory_iterator(scratch.Native())) {
    if (entry.is_regular_file() && Read(entry.path().string()) == "content") return 0;
  }
  return 4;
}

}  // namespace

void Races(Trial& trial) {
  while (trial.TimeLeft()) {
    const Scratch scratch;
    const bool stores = trial.Chance(40);
    InChild(trial, 120, [&](Progress& progress) {
      std::snprintf(progress.words, sizeof progress.words, "%s", stores ? "stores side by side" : "swapped links");
      return stores ? StoreSideBySide(scratch) : SwapLinks(trial, scratch);
    });
    ++trial.runs;
  }
}

void Damage(Trial& trial) {
  Dl_info own{};
  dladdr(reinterpret_cast<void*>(&SafeArrayLock), &own);
  const std::string library = own.dli_fname == nullptr ? "" : Read(own.dli_fname);
  while (trial.TimeLeft()) {
    const Scratch scratch;
    const std::size_t kind = trial.Pick(3);
    const std::uint64_t seed = trial.Pick(1'000'000'000);
    InChild(trial, 60, [&](Progress& progress) {
      constexpr const char* kWords[] = {"registry", "library", "trash"};
      std::snprintf(progress.words, sizeof progress.words, "spoilt %s, own seed %llu", kWords[kind],
                    static_cast<unsigned long long>(seed));
      trial.Reseed(seed);
      if (kind == 0) return SpoilRegistry(trial, scratch);
      if (kind == 1) return library.empty() ? 0 : SpoilLibrary(trial, scratch, library);
      return SpoilTrash(trial, scratch);
    });
    ++trial.runs;
  }
}

}  // namespace Orvix::attack
