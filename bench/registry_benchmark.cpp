// The registry store against SQLite, both surviving a kill of the process and
// neither waiting for the disk: 5,000 values written and read back, and one
// value read again.
#include <benchmark/benchmark.h>
#ifdef ORVIX_HAVE_SQLITE
#include <sqlite3.h>
#endif

#include <cstdlib>
#include <filesystem>
#include <string>

#include "orvix/runtime.h"

namespace {

constexpr int kValues = 5'000;
constexpr int kInTransaction = 100;

std::string NameOf(int i) { return "value" + std::to_string(i); }
std::string DataOf(int i) { return "the data of value " + std::to_string(i); }

class Place {
 public:
  Place() {
    std::string pattern = (std::filesystem::temp_directory_path() / "orvix-bench-XXXXXX").string();
    path_ = mkdtemp(pattern.data());
  }
  Place(const Place&) = delete;
  Place& operator=(const Place&) = delete;
  ~Place() { std::filesystem::remove_all(path_); }
  [[nodiscard]] const std::string& path() const { return path_; }

 private:
  std::string path_;
};

HKEY CurrentUser() { return reinterpret_cast<HKEY>(std::intptr_t{static_cast<LONG>(0x80000001)}); }

HKEY Opened() {
  HKEY key = nullptr;
  RegCreateKeyExA(CurrentUser(), "Software\\Bench", 0, nullptr, 0, 31, nullptr, &key, nullptr);
  return key;
}

bool Reads(HKEY key, int i) {
  char data[64];
  DWORD bytes = sizeof data;
  DWORD type = 0;
  return RegQueryValueExA(key, NameOf(i).c_str(), nullptr, &type, reinterpret_cast<BYTE*>(data), &bytes) == 0 &&
         std::string(data, bytes) == DataOf(i);
}

void StoreWritesAndReads(benchmark::State& state) {
  for (auto _ : state) {
    state.PauseTiming();
    const Place place;
    setenv("ORVIX_REGISTRY", place.path().c_str(), 1);
    state.ResumeTiming();
    const HKEY key = Opened();
    for (int i = 0; i < kValues; ++i) {
      const std::string data = DataOf(i);
      RegSetValueExA(key, NameOf(i).c_str(), 0, 1, reinterpret_cast<const BYTE*>(data.data()),
                     static_cast<DWORD>(data.size()));
    }
    for (int i = 0; i < kValues; ++i) {
      if (!Reads(key, i)) state.SkipWithError("wrong value");
    }
    RegCloseKey(key);
  }
}
BENCHMARK(StoreWritesAndReads)->Unit(benchmark::kMillisecond)->MinTime(1);

void StoreReadsOne(benchmark::State& state) {
  const Place place;
  setenv("ORVIX_REGISTRY", place.path().c_str(), 1);
  const std::string data = DataOf(1);
  const HKEY made = Opened();
  RegSetValueExA(made, NameOf(1).c_str(), 0, 1, reinterpret_cast<const BYTE*>(data.data()),
                 static_cast<DWORD>(data.size()));
  RegCloseKey(made);
  for (auto _ : state) {
    HKEY key = nullptr;
    RegOpenKeyExA(CurrentUser(), "Software\\Bench", 0, 31, &key);
    if (!Reads(key, 1)) state.SkipWithError("wrong value");
    RegCloseKey(key);
  }
}
BENCHMARK(StoreReadsOne);

#ifdef ORVIX_HAVE_SQLITE
class Statement {
 public:
  Statement(sqlite3* database, const char* text) { sqlite3_prepare_v2(database, text, -1, &statement_, nullptr); }
  Statement(const Statement&) = delete;
  Statement& operator=(const Statement&) = delete;
  ~Statement() { sqlite3_finalize(statement_); }
  void Bind(int at, const std::string& text) {
    sqlite3_bind_text(statement_, at, text.data(), static_cast<int>(text.size()), SQLITE_TRANSIENT);
  }
  bool Step() { return sqlite3_step(statement_) == SQLITE_ROW; }
  void Reset() { sqlite3_reset(statement_); }
  [[nodiscard]] std::string Column() const { return reinterpret_cast<const char*>(sqlite3_column_text(statement_, 0)); }

 private:
  sqlite3_stmt* statement_ = nullptr;
};

// `reads_in_transactions`: 100 reads share one transaction too.
void SqliteWritesAndReads(benchmark::State& state, bool reads_in_transactions) {
  for (auto _ : state) {
    state.PauseTiming();
    const Place place;
    state.ResumeTiming();
    sqlite3* database = nullptr;
    sqlite3_open((place.path() + "/values.db").c_str(), &database);
    const auto run = [&](const char* text) { sqlite3_exec(database, text, nullptr, nullptr, nullptr); };
    run("PRAGMA synchronous=OFF; CREATE TABLE v(name TEXT PRIMARY KEY, data TEXT)");
    {
      Statement write(database, "INSERT OR REPLACE INTO v VALUES(?, ?)");
      for (int i = 0; i < kValues; ++i) {
        if (i % kInTransaction == 0) run("BEGIN");
        write.Bind(1, NameOf(i));
        write.Bind(2, DataOf(i));
        write.Step();
        write.Reset();
        if (i % kInTransaction == kInTransaction - 1) run("COMMIT");
      }
      Statement read(database, "SELECT data FROM v WHERE name = ?");
      for (int i = 0; i < kValues; ++i) {
        if (reads_in_transactions && i % kInTransaction == 0) run("BEGIN");
        read.Bind(1, NameOf(i));
        if (!read.Step() || read.Column() != DataOf(i)) state.SkipWithError("wrong value");
        read.Reset();
        if (reads_in_transactions && i % kInTransaction == kInTransaction - 1) run("COMMIT");
      }
    }
    sqlite3_close(database);
  }
}
BENCHMARK_CAPTURE(SqliteWritesAndReads, single_reads, false)->Unit(benchmark::kMillisecond)->MinTime(1);
BENCHMARK_CAPTURE(SqliteWritesAndReads, reads_in_transactions, true)->Unit(benchmark::kMillisecond)->MinTime(1);
#endif

}  // namespace
