// orvixctl trash: deleted, seen and brought back.
#include <gtest/gtest.h>

#include <fstream>

#include "orvix/orvix.hpp"
#include "support/run_program.h"

namespace Orvix {
namespace {

namespace fs = std::filesystem;
using testing_support::ProgramResult;
using testing_support::ReadWhole;
using testing_support::RunProgram;

class OrvixctlTrashTest : public ::testing::Test {
 protected:
  OrvixctlTrashTest() { setenv("XDG_DATA_HOME", (home_.Path() / "data").c_str(), 1); }
  ~OrvixctlTrashTest() override { unsetenv("XDG_DATA_HOME"); }

  std::string Put(const std::string& name, const std::string& content) const {
    const fs::path path = home_.Path() / name;
    fs::create_directories(path.parent_path());
    std::ofstream(path, std::ios::binary) << content;
    return path;
  }
  static void Trash(const std::string& native) {
    String name;
    Check(OxPlatformName(native.c_str(), name.Receive()));
    FileOperation operation;
    operation.SetAllowUndo(true);
    operation.SetConfirmOperation(false);
    operation.AddSourceFile(name);
    EXPECT_TRUE(operation.DeleteFiles()) << native;
    EXPECT_FALSE(fs::exists(native));
  }
  static std::string Out(std::vector<std::string> words) {
    words.insert(words.begin(), "trash");
    const ProgramResult result = RunProgram("orvixctl", words);
    return result.status == 0 ? result.out : std::to_string(result.status) + " " + result.err;
  }

  testing_support::ScratchDirectory home_;
};

TEST_F(OrvixctlTrashTest, ItemsComeBackWhereTheyWere) {
  const std::string one = Put("a b%\n\xE6\x97\xA5.txt", "one");
  const std::string file = Put("deep/er/file", "two");
  const std::string id = (home_.Path() / "data/Trash/files/file").string();
  Trash(one);
  Trash((home_.Path() / "deep").string());
  EXPECT_EQ(Out({"restore", one}), one + " is back.\n");
  EXPECT_EQ(ReadWhole(one), "one");
  EXPECT_EQ(Out({"restore", (home_.Path() / "deep").string()}), (home_.Path() / "deep").string() + " is back.\n");
  EXPECT_EQ(ReadWhole(file), "two");
  EXPECT_EQ(Out({"list"}), "");
  // Directories above that went meanwhile are made again; what came meanwhile stays.
  Trash(file);
  fs::remove_all(home_.Path() / "deep");
  EXPECT_EQ(Out({"restore", id}), id + " is back.\n");
  EXPECT_EQ(ReadWhole(file), "two");
  Trash(file);
  EXPECT_EQ(Put("deep/er/file", "new"), file);
  EXPECT_EQ(Out({"restore", file}), "1 orvixctl: " + file + ": something has its place.\n");
  EXPECT_EQ(ReadWhole(file), "new");
  EXPECT_EQ(ReadWhole(id), "two");
  EXPECT_EQ(Out({"restore", "nothing"}), "1 orvixctl: nothing: this is not in the trash.\n");
}

// As another program writes it; what is no item is left out.
TEST_F(OrvixctlTrashTest, WhatOthersPutThereIsSeen) {
  const std::string trash = (home_.Path() / "data/Trash").string();
  Put("data/Trash/files/x", "content");
  Put("data/Trash/info/x.trashinfo",
      "[Trash Info]\nPath=" + home_.Path().string() + "/with%20blank\nDeletionDate=2020-01-02T03:04:05\n");
  Put("data/Trash/files/up", "");
  Put("data/Trash/info/up.trashinfo", "[Trash Info]\nPath=/tmp/../../etc/x\n");
  Put("data/Trash/info/orphan.trashinfo", "[Trash Info]\nPath=/tmp/x\n");
  Put("data/Trash/info/rubbish.trashinfo", std::string(100000, 'x'));
  EXPECT_EQ(Out({"list"}), "2020-01-02T03:04:05  " + home_.Path().string() + "/with blank  " + trash + "/files/x\n");
  EXPECT_EQ(Out({"list", "--json"}), "[{\"id\":\"" + trash + "/files/x\",\"name\":\"" + home_.Path().string() +
                                         "/with blank\",\"deleted\":\"2020-01-02T03:04:05\"}]\n");
  EXPECT_EQ(Out({"empty", trash + "/files/x"}), trash + "/files/x is erased.\n");
  Trash(Put("y", "1"));
  Trash(Put("z/z", "1"));
  EXPECT_EQ(Out({"empty"}), "The trash is empty.\n");
  EXPECT_EQ(Out({"list"}), "");
  EXPECT_FALSE(fs::exists(trash + "/files/y"));
  EXPECT_FALSE(fs::exists(trash + "/info/z.trashinfo"));
}

}  // namespace
}  // namespace Orvix
