// What stays on disk: other processes, kills, damage, repair, refusals.
#include <fcntl.h>
#include <signal.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/time.h>

#include <sqlite3.h>

#include <thread>

#include "platform/registry/registry_fixture.h"

namespace Orvix {
namespace {

class StoreTest : public RegistryTest {};
TEST_F(StoreTest, OtherProcessesSeeAChangeWhenTheCallHasReturned) {
  const HKEY key = CreateKey(User(), "A");
  EXPECT_EQ(InChild([&] { return SetBytes(key, "x", 3, "child") == 0 ? 0 : 1; }), 0);
  EXPECT_EQ(GetBytes(key, "X"), "child");
  ASSERT_EQ(SetBytes(key, "x", 3, "parent"), 0);
  EXPECT_EQ(InChild([&] { return GetBytes(key, "x") == "parent" ? 0 : 1; }), 0);
  EXPECT_EQ(InChild([&] { return RegDeleteKeyA(User(), "A") == 0 ? 0 : 1; }), 0);
  EXPECT_EQ(GetBytes(key, "x"), "code 1018");
}

TEST_F(StoreTest, ADirectoryThatWasTakenAwayStartsEmpty) {
  ASSERT_EQ(SetBytes(User(), "x", 3, "1"), 0);
  std::filesystem::remove_all(Store());
  EXPECT_EQ(GetBytes(User(), "x"), "code 2");
  ASSERT_EQ(SetBytes(User(), "y", 3, "2"), 0);
  EXPECT_EQ(GetBytes(User(), "x"), "code 2");
  EXPECT_EQ(InChild([] { return GetBytes(User(), "y") == "2" ? 0 : 1; }), 0);
}

// One writer is killed over and over in the middle of its work while another one
// writes: no value is ever anything but whole, and none of the survivor's is lost.
TEST_F(StoreTest, KilledWritersLeaveOldOrNewValues) {
  constexpr int kKills = 100;
  const auto value_of = [](char c) { return std::string(20000, c); };
  const HKEY key = CreateKey(User(), "A");
  ASSERT_EQ(SetBytes(key, "victim", 3, value_of('a')), 0);
  for (int round = 0; round < kKills; ++round) {
    int ready[2] = {};
    ASSERT_EQ(pipe(ready), 0);
    const pid_t child = fork();
    if (child == 0) {
      if (write(ready[1], "x", 1) != 1) _exit(1);
      for (char c = 'a';; c = c == 'z' ? 'a' : static_cast<char>(c + 1)) SetBytes(key, "victim", 3, value_of(c));
    }
    char byte = 0;
    ASSERT_EQ(read(ready[0], &byte, 1), 1);
    close(ready[0]);
    close(ready[1]);
    for (int i = 0; i <= round % 7; ++i) {
      const std::string name = std::to_string(round) + "." + std::to_string(i);
      ASSERT_EQ(SetBytes(key, name.c_str(), 3, name), 0);
    }
    kill(child, SIGKILL);
    waitpid(child, nullptr, 0);
    const std::string victim = GetBytes(key, "victim");
    ASSERT_EQ(victim.size(), 20000u);
    ASSERT_EQ(victim, value_of(victim[0])) << round;
  }
  EXPECT_EQ(InChild([&] {
              // Read from the start, by a process that saw nothing of it.
              setenv("ORVIX_REGISTRY", (Store() + "/.").c_str(), 1);
              HKEY fresh = nullptr;
              if (RegOpenKeyExA(User(), "A", 0, kGeneral, &fresh) != 0) return 1;
              for (int round = 0; round < kKills; ++round) {
                for (int i = 0; i <= round % 7; ++i) {
                  const std::string name = std::to_string(round) + "." + std::to_string(i);
                  if (GetBytes(fresh, name.c_str()) != name) return 2;
                }
              }
              return 0;
            }),
            0);
}

TEST_F(StoreTest, AReadOnlyStoreIsReadAndRefusesToChange) {
  const HKEY key = CreateKey(User(), "A");
  ASSERT_EQ(SetBytes(key, "x", 3, "1"), 0);
  std::filesystem::permissions(Store(), std::filesystem::perms(0555));
  std::filesystem::permissions(std::filesystem::path(Store()).parent_path(), std::filesystem::perms(0755));
  const auto check = [&] {
    if (GetBytes(key, "x") != "1") return 1;
    if (SetBytes(key, "x", 3, "2") != 5) return 2;
    HKEY made = nullptr;
    if (RegCreateKeyExA(User(), "B", 0, nullptr, 0, kGeneral, nullptr, &made, nullptr) != 5) return 3;
    if (RegDeleteKeyA(User(), "A") != 5) return 4;
    return GetBytes(key, "x") == "1" ? 0 : 5;
  };
  EXPECT_EQ(check(), 0);
  if (geteuid() != 0) return;
  // As a user with no rights here, in a process that has nothing open yet.
  for (const auto& entry : std::filesystem::directory_iterator(Store())) {
    std::filesystem::permissions(entry.path(), std::filesystem::perms(0644));
  }
  std::filesystem::permissions(Store(), std::filesystem::perms(0755));
  EXPECT_EQ(InChild([&] {
              if (setegid(65534) != 0 || seteuid(65534) != 0) return 10;
              setenv("ORVIX_REGISTRY", (Store() + "/.").c_str(), 1);
              return check();
            }),
            0);
  std::filesystem::permissions(File(), std::filesystem::perms(0600));
  EXPECT_EQ(InChild([&] {
              if (setegid(65534) != 0 || seteuid(65534) != 0) return 10;
              setenv("ORVIX_REGISTRY", (Store() + "/.").c_str(), 1);
              return GetBytes(User(), "x") == "code 5" ? 0 : 1;
            }),
            0);
}

TEST_F(StoreTest, AReadOnlyFileRefusesToChangeForEveryone) {
  ASSERT_EQ(SetBytes(User(), "x", 3, "1"), 0);
  std::filesystem::permissions(File(), std::filesystem::perms(0444));
  EXPECT_EQ(SetBytes(User(), "x", 3, "2"), 5);
  EXPECT_EQ(GetBytes(User(), "x"), "1");
  std::filesystem::permissions(File(), std::filesystem::perms(0600));
  EXPECT_EQ(SetBytes(User(), "x", 3, "2"), 0);
}

TEST_F(StoreTest, AFullDiskKeepsTheOldValue) {
  ASSERT_EQ(SetBytes(User(), "x", 3, "old"), 0);
  EXPECT_EQ(InChild([] {
              const rlimit limit{100'000, 100'000};
              if (setrlimit(RLIMIT_FSIZE, &limit) != 0) return 1;
              if (SetBytes(User(), "x", 3, std::string(500'000, 'n')) != 112) return 2;
              if (GetBytes(User(), "x") != "old") return 3;
              return SetBytes(User(), "y", 3, "fits") == 0 ? 0 : 4;
            }),
            0);
  EXPECT_EQ(GetBytes(User(), "x"), "old");
  EXPECT_EQ(GetBytes(User(), "y"), "fits");
}

// Whoever keeps the store to himself is waited for, not for ever.
TEST_F(StoreTest, ABusyStoreIsAClearResult) {
  ASSERT_EQ(SetBytes(User(), "x", 3, "old"), 0);
  sqlite3* other = nullptr;
  ASSERT_EQ(sqlite3_open(File().c_str(), &other), SQLITE_OK);
  ASSERT_EQ(sqlite3_exec(other, "BEGIN EXCLUSIVE", nullptr, nullptr, nullptr), SQLITE_OK);
  EXPECT_EQ(SetBytes(User(), "x", 3, "new"), 170);
  EXPECT_EQ(GetBytes(User(), "x"), "old");
  sqlite3_close(other);
  EXPECT_EQ(SetBytes(User(), "x", 3, "new"), 0);
}

// A program's timer does not end the waiting.
TEST_F(StoreTest, SignalsDoNotShortenTheWaiting) {
  ASSERT_EQ(SetBytes(User(), "x", 3, "old"), 0);
  sqlite3* other = nullptr;
  ASSERT_EQ(sqlite3_open(File().c_str(), &other), SQLITE_OK);
  ASSERT_EQ(sqlite3_exec(other, "BEGIN EXCLUSIVE", nullptr, nullptr, nullptr), SQLITE_OK);
  signal(SIGALRM, [](int) {});
  const itimerval often{{0, 2000}, {0, 2000}};
  const itimerval never{};
  setitimer(ITIMER_REAL, &often, nullptr);
  std::thread ends([&] {
    usleep(300'000);
    sqlite3_close(other);
  });
  EXPECT_EQ(SetBytes(User(), "x", 3, "new"), 0);
  setitimer(ITIMER_REAL, &never, nullptr);
  signal(SIGALRM, SIG_DFL);
  ends.join();
}

TEST_F(StoreTest, AHandleToARootIsOlderThanTheStore) {
  const HKEY root = CreateKey(User(), "");
  EXPECT_EQ(SetBytes(root, "x", 3, "1"), 0);
  EXPECT_EQ(GetBytes(User(), "x"), "1");
}

TEST_F(StoreTest, AFileThatIsNoStoreIsDamageAndLeftAlone) {
  const auto write = [&](const std::string& bytes) {
    std::filesystem::remove_all(Store());
    std::filesystem::create_directories(Store());
    std::ofstream(File(), std::ios::binary) << bytes;
  };
  const auto make = [&](const char* words) {
    write("");
    sqlite3* made = nullptr;
    EXPECT_EQ(sqlite3_open(File().c_str(), &made), SQLITE_OK);
    EXPECT_EQ(sqlite3_exec(made, words, nullptr, nullptr, nullptr), SQLITE_OK);
    sqlite3_close(made);
  };
  const std::function<void()> spoilers[] = {
      [&] { write(std::string(20000, 'n')); },
      [&] { make("PRAGMA user_version = 2"); },
      [&] { make("CREATE TABLE someone (x)"); },
      [&] {
        write("");
        std::filesystem::remove(File());
        std::filesystem::create_directories(File());
      },
  };
  for (const auto& spoil : spoilers) {
    spoil();
    const std::string before = std::filesystem::is_directory(File()) ? "" : ReadFile(File());
    EXPECT_EQ(GetBytes(User(), "x"), "code 1009");
    EXPECT_EQ(SetBytes(User(), "x", 3, "1"), 1009);
    if (!before.empty()) {
      EXPECT_EQ(ReadFile(File()), before);
    }
  }
  write("");  // a maker was killed: nothing is there
  EXPECT_EQ(GetBytes(User(), "x"), "code 2");
  EXPECT_EQ(SetBytes(User(), "x", 3, "1"), 0);
  EXPECT_EQ(GetBytes(User(), "x"), "1");
}

// Every page spoilt in turn: what can still be read is right, the rest is 1009.
TEST_F(StoreTest, DamageNeverGivesAnotherValue) {
  const HKEY key = CreateKey(User(), "Key");
  for (int i = 0; i < 300; ++i) {
    ASSERT_EQ(SetBytes(key, std::to_string(i).c_str(), 3, std::string(100, static_cast<char>('a' + i % 26))), 0);
  }
  sqlite3* other = nullptr;
  ASSERT_EQ(sqlite3_open(File().c_str(), &other), SQLITE_OK);
  sqlite3_exec(other, "PRAGMA wal_checkpoint(TRUNCATE)", nullptr, nullptr, nullptr);
  sqlite3_close(other);
  const std::string whole = ReadFile(File());
  int damaged = 0;
  for (std::size_t page = 0; page < whole.size(); page += 4096) {
    std::string spoilt = whole;
    spoilt.replace(page, 40, 40, '\xA5');
    const std::string moved = File() + ".new";
    std::ofstream(moved, std::ios::binary) << spoilt;
    std::filesystem::rename(moved, File());
    HKEY opened = nullptr;
    const LONG result = RegOpenKeyExA(User(), "Key", 0, kGeneral, &opened);
    EXPECT_TRUE(result == 0 || result == 1009) << result;
    for (int i = 0; result == 0 && i < 300; i += 7) {
      const std::string read = GetBytes(opened, std::to_string(i).c_str());
      EXPECT_TRUE(read == "code 1009" || read == std::string(100, static_cast<char>('a' + i % 26))) << read;
      damaged += read == "code 1009" ? 1 : 0;
    }
    damaged += result == 1009 ? 1 : 0;
    RegCloseKey(opened);
  }
  EXPECT_GT(damaged, 3);
}

TEST_F(StoreTest, ARelativePlaceStaysWhereItWasFirstMet) {
  std::filesystem::create_directories(Store());
  const std::filesystem::path before = std::filesystem::current_path();
  std::filesystem::current_path(Store());
  setenv("ORVIX_REGISTRY", "relative", 1);
  EXPECT_EQ(SetBytes(User(), "x", 3, "1"), 0);
  std::filesystem::current_path(before);
  EXPECT_EQ(GetBytes(User(), "x"), "1");
  EXPECT_TRUE(std::filesystem::exists(Store() + "/relative/registry.sqlite"));
}

TEST_F(StoreTest, ThreadsAndForksShareIt) {
  const HKEY key = CreateKey(User(), "A");
  std::vector<std::thread> threads;
  for (int t = 0; t < 3; ++t) {
    threads.emplace_back([&, t] {
      const std::string name = std::to_string(t);
      for (int i = 0; i < 50; ++i) EXPECT_EQ(SetBytes(key, name.c_str(), 3, std::to_string(i)), 0);
    });
  }
#if defined(__SANITIZE_THREAD__)
  constexpr int kChildren = 0;  // it takes the threads that a child does not have for lost
#else
  constexpr int kChildren = 10;
#endif
  for (int i = 0; i < kChildren; ++i) {
    EXPECT_EQ(InChild([&] { return SetBytes(key, "child", 3, std::to_string(i)) == 0 ? 0 : 1; }), 0);
  }
  for (std::thread& thread : threads) thread.join();
  EXPECT_EQ(GetBytes(key, "2"), "49");
  EXPECT_EQ(GetBytes(key, "child"), kChildren == 0 ? "code 2" : "9");
}

}  // namespace
}  // namespace Orvix
