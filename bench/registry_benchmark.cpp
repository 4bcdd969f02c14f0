// The registry against plain SQLite with the same tables and settings: one value
// opened, read and closed, one value written, and what a second process pays for a
// store of 10^5 values.
#include <benchmark/benchmark.h>
#include <sqlite3.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <string>

#include "orvix/runtime.h"

namespace {

constexpr char kSelect[] =
    "SELECT v.type, v.data FROM keys a JOIN keys b ON b.parent = a.id JOIN vals v ON v.key = b.id"
    " WHERE a.parent = 2 AND a.folded = 'software' AND b.folded = 'bench' AND v.folded = ?";

// A store of its own, with values in HKEY_CURRENT_USER\Software\Bench.
class Filled {
 public:
  explicit Filled(int values) {
    std::string pattern = (std::filesystem::temp_directory_path() / "orvix-bench-XXXXXX").string();
    path_ = mkdtemp(pattern.data());
    setenv("ORVIX_REGISTRY", path_.c_str(), 1);
    RegCreateKeyExW(MakeRootKey(kCurrentUser), u"Software\\Bench", 0, nullptr, 0, 0, nullptr, &key_, nullptr);
    Write(1, 0);
    Connection plain(path_);
    plain.Run("BEGIN");
    for (int i = 2; i <= values; ++i) {
      const std::string name = "value" + std::to_string(i);
      plain.Run(("INSERT INTO vals SELECT key, '" + name + "', '" + name + "', type, data FROM vals LIMIT 1").c_str());
    }
    plain.Run("COMMIT");
  }
  Filled(const Filled&) = delete;
  Filled& operator=(const Filled&) = delete;
  ~Filled() {
    RegCloseKey(key_);
    std::filesystem::remove_all(path_);
  }

  class Connection {
   public:
    explicit Connection(const std::string& path) {
      sqlite3_open((path + "/registry.sqlite").c_str(), &database_);
      Run("PRAGMA synchronous = NORMAL");
    }
    Connection(const Connection&) = delete;
    Connection& operator=(const Connection&) = delete;
    ~Connection() { sqlite3_close(database_); }
    void Run(const char* words) { sqlite3_exec(database_, words, nullptr, nullptr, nullptr); }
    [[nodiscard]] sqlite3_stmt* Prepare(const char* words) {
      sqlite3_stmt* statement = nullptr;
      sqlite3_prepare_v2(database_, words, -1, &statement, nullptr);
      return statement;
    }

   private:
    sqlite3* database_ = nullptr;
  };

  void Write(int name, int data) const {
    const std::u16string wide = Name(name);
    RegSetValueExW(key_, wide.c_str(), 0, 3, reinterpret_cast<const BYTE*>(&data), sizeof data);
  }
  // Opened, read and closed.
  [[nodiscard]] static int Read(int name) {
    HKEY key = nullptr;
    RegOpenKeyExW(MakeRootKey(kCurrentUser), u"Software\\Bench", 0, 0, &key);
    int data = -1;
    DWORD size = sizeof data;
    const std::u16string wide = Name(name);
    RegQueryValueExW(key, wide.c_str(), nullptr, nullptr, reinterpret_cast<BYTE*>(&data), &size);
    RegCloseKey(key);
    return data;
  }
  static std::u16string Name(int number) {
    std::u16string name = u"VALUE";
    for (const char digit : std::to_string(number)) name += static_cast<char16_t>(digit);
    return name;
  }
  [[nodiscard]] const std::string& path() const { return path_; }

 private:
  std::string path_;
  HKEY key_ = nullptr;
};

void PlainSelect(benchmark::State& state) {
  const Filled filled(1000);
  Filled::Connection plain(filled.path());
  sqlite3_stmt* const read = plain.Prepare(kSelect);
  for (auto _ : state) {
    sqlite3_bind_text(read, 1, "value1", -1, SQLITE_TRANSIENT);
    if (sqlite3_step(read) != SQLITE_ROW || sqlite3_column_bytes(read, 1) != 4) state.SkipWithError("wrong value");
    sqlite3_reset(read);
  }
  sqlite3_finalize(read);
}
BENCHMARK(PlainSelect);

void OpenReadClose(benchmark::State& state) {
  const Filled filled(1000);
  for (auto _ : state) {
    if (Filled::Read(1) != 0) state.SkipWithError("wrong value");
  }
}
BENCHMARK(OpenReadClose);

void PlainUpdate(benchmark::State& state) {
  const Filled filled(1000);
  Filled::Connection plain(filled.path());
  sqlite3_stmt* const write = plain.Prepare(
      "INSERT INTO vals (key, folded, name, type, data) SELECT id, 'value1', 'VALUE1', 3, ? FROM keys"
      " WHERE folded = 'bench' ON CONFLICT (key, folded) DO UPDATE SET type = excluded.type, data = excluded.data");
  int data = 0;
  for (auto _ : state) {
    ++data;
    sqlite3_bind_blob(write, 1, &data, sizeof data, SQLITE_TRANSIENT);
    if (sqlite3_step(write) != SQLITE_DONE) state.SkipWithError("not written");
    sqlite3_reset(write);
  }
  sqlite3_finalize(write);
}
BENCHMARK(PlainUpdate);

void SetOne(benchmark::State& state) {
  const Filled filled(1000);
  int data = 0;
  for (auto _ : state) filled.Write(1, ++data);
  if (Filled::Read(1) != data) state.SkipWithError("wrong value");
}
BENCHMARK(SetOne);

// A process that reads one value of a store: its time from the first call on, and
// how far its memory grew.
void SecondProcess(benchmark::State& state) {
  const Filled filled(static_cast<int>(state.range(0)));
  double milliseconds = 0;
  double kilobytes = 0;
  for (auto _ : state) {
    int ends[2] = {};
    if (pipe(ends) != 0) break;
    const pid_t child = fork();
    if (child == 0) {
      const auto used = [] {
        rusage usage{};
        getrusage(RUSAGE_SELF, &usage);
        return static_cast<double>(usage.ru_maxrss);
      };
      const double before = used();
      const auto start = std::chrono::steady_clock::now();
      if (Filled::Read(1) != 0) _exit(1);
      const std::chrono::duration<double, std::milli> time = std::chrono::steady_clock::now() - start;
      const double told[] = {time.count(), used() - before};
      _exit(write(ends[1], told, sizeof told) == sizeof told ? 0 : 1);
    }
    double told[2] = {};
    if (read(ends[0], told, sizeof told) != sizeof told) state.SkipWithError("the process failed");
    waitpid(child, nullptr, 0);
    close(ends[0]);
    close(ends[1]);
    milliseconds = std::max(milliseconds, told[0]);
    kilobytes = std::max(kilobytes, told[1]);
  }
  state.counters["most_ms"] = milliseconds;
  state.counters["most_kB"] = kilobytes;
}
BENCHMARK(SecondProcess)->Arg(1000)->Arg(100'000)->Iterations(20);

}  // namespace
