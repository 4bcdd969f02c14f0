// The program in C: the same library through plain tables of functions.
#include <gtest/gtest.h>

#include <fstream>

#include "support/run_program.h"

namespace Orvix {
namespace {

using testing_support::ProgramResult;
using testing_support::ReadWhole;
using testing_support::RunProgram;

TEST(CCaller, ShowsADirectoryAndCopiesIt) {
  const testing_support::ScratchDirectory scratch;
  const std::filesystem::path from = scratch.Path() / "from";
  std::filesystem::create_directory(from);
  std::filesystem::create_directory(scratch.Path() / "to");
  std::ofstream(from / "b.txt") << "bb";
  std::ofstream(from / "\xC4\x85\xE3\x81\x82") << "name in two scripts";
  const ProgramResult result = RunProgram("c_caller", {from, scratch.Path() / "to"});
  EXPECT_EQ(result.status, 0) << result;
  EXPECT_NE(result.out.find("         2  " + (from / "b.txt").string() + "\n"), std::string::npos) << result.out;
  EXPECT_TRUE(result.out.ends_with("copied\n")) << result.out;
  EXPECT_EQ(ReadWhole(scratch.Path() / "to" / "b.txt"), "bb");
  EXPECT_EQ(ReadWhole(scratch.Path() / "to" / "\xC4\x85\xE3\x81\x82"), "name in two scripts");
}

TEST(CCaller, MistakesExitWithTwo) { EXPECT_EQ(RunProgram("c_caller", {}).status, 2); }

}  // namespace
}  // namespace Orvix
