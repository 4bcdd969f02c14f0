// orvixctl list, describe, idl, register and the command line itself.
#include <gtest/gtest.h>

#include "support/run_program.h"

namespace Orvix {
namespace {

using testing_support::ProgramResult;
using testing_support::RunOnFullDisk;
using testing_support::RunProgram;
using testing_support::RunWithoutReader;

bool Says(const std::string& text, const std::string& wanted) { return text.find(wanted) != std::string::npos; }

TEST(OrvixctlList, ShowsClassesEnumerationsAndRecords) {
  const ProgramResult result = RunProgram("orvixctl", {"list"});
  EXPECT_EQ(result.status, 0) << result;
  EXPECT_TRUE(Says(result.out, "  classOrvix            68 methods, 1 property, global object, creatable\n"))
      << result.out;
  EXPECT_TRUE(Says(result.out, "  classDirectory        6 methods, 2 properties, creatable\n")) << result.out;
  EXPECT_TRUE(Says(result.out, "  enumRegistryConsts    28 constants\n")) << result.out;
  EXPECT_TRUE(Says(result.out, "  FileType              6 fields\n")) << result.out;
}

TEST(OrvixctlList, NoColoursInAFile) {
  EXPECT_EQ(RunProgram("orvixctl", {"list"}).out.find('\033'), std::string::npos);
}

TEST(OrvixctlDescribe, MethodWithHelpSlotAndIdentifier) {
  const ProgramResult result = RunProgram("orvixctl", {"describe", "classorvix.getelement"});
  EXPECT_EQ(result.status, 0);
  EXPECT_EQ(result.out,
            "classOrvix.GetElement  method\n"
            "  BSTR GetElement(BSTR sList, long lIndex, BSTR sSeparator)\n"
            "  Returns the element on position Index in the list.\n"
            "    sList       BSTR, by value\n"
            "    lIndex      long, by value\n"
            "    sSeparator  BSTR, by value\n"
            "  slot 14, dispatch identifier 14\n");
}

TEST(OrvixctlDescribe, DefaultsAndOptionalArguments) {
  const std::string out = RunProgram("orvixctl", {"describe", "classOrvix.OpenFile"}).out;
  EXPECT_TRUE(Says(out, "[VARIANT_BOOL* bCenter = -1]")) << out;
  EXPECT_TRUE(Says(out, "[BSTR* sTitle = \"Open file\"]")) << out;
  EXPECT_TRUE(Says(out, "slot 29, dispatch identifier 29")) << out;
}

TEST(OrvixctlDescribe, EveryAccessorOfAProperty) {
  const std::string out = RunProgram("orvixctl", {"describe", "classString.Mid"}).out;
  EXPECT_TRUE(Says(out, "  _classString* Mid(long StartPos, [VARIANT* NumChars])\n")) << out;
  EXPECT_TRUE(Says(out, "  void Mid(long StartPos, [VARIANT* NumChars], VARIANT* newValue)\n")) << out;
  EXPECT_TRUE(Says(out, "  void Mid(long StartPos, [VARIANT* NumChars], _classString** newValue)\n")) << out;
  EXPECT_TRUE(Says(out, "slot 15,")) << out;
  EXPECT_TRUE(Says(out, "slot 17,")) << out;
}

TEST(OrvixctlDescribe, MembersOfAnyClass) {
  const std::string out = RunProgram("orvixctl", {"describe", "getelement"}).out;
  EXPECT_TRUE(out.starts_with("classOrvix.GetElement  method\n")) << out;
  EXPECT_TRUE(Says(out, "\nclassString.GetElement  method\n")) << out;
  EXPECT_TRUE(
      Says(RunProgram("orvixctl", {"list", "--json"}).out, R"("creatable":true,"global":true},{"name":"class)"));
}

TEST(OrvixctlDescribe, DefaultMembers) {
  EXPECT_TRUE(Says(RunProgram("orvixctl", {"describe", "classString.Value"}).out,
                   "slot 2, dispatch identifier 0, default member"));
  EXPECT_TRUE(Says(RunProgram("orvixctl", {"describe", "classFilename.CompleteFilename"}).out, "shown first"));
}

TEST(OrvixctlDescribe, EnumerationAndRecord) {
  EXPECT_TRUE(Says(RunProgram("orvixctl", {"describe", "enumRegistryConsts"}).out,
                   "  oxHKEY_CLASSES_ROOT        = -2147483648\n"));
  EXPECT_TRUE(Says(RunProgram("orvixctl", {"describe", "FileType"}).out, "  dDate              DATE\n"));
}

TEST(OrvixctlDescribe, JsonBehindTheName) {
  const std::string out = RunProgram("orvixctl", {"describe", "enumRGB", "--json"}).out;
  EXPECT_TRUE(Says(out, R"("guid":"{93B1B367-1667-4C9E-8A16-75A29F1E8FB6}","constants":[{"name":"oxRed","value":0)"))
      << out;
}

TEST(OrvixctlDescribe, UnknownNamesGetASuggestion) {
  const ProgramResult result = RunProgram("orvixctl", {"describe", "classStrng"});
  EXPECT_EQ(result.status, 2);
  EXPECT_TRUE(Says(result.err, "Did you mean classString?")) << result.err;
}

// Every member, parameter, default, help string, constant and field, in its order.
TEST(OrvixctlIdl, IsTheOneThatIsPublished) {
  const ProgramResult result = RunProgram("orvixctl", {"idl"});
  EXPECT_EQ(result.status, 0) << result.err;
  EXPECT_EQ(result.out, testing_support::ReadWhole(ORVIX_DOCS "/orvix.idl"));
}

TEST(OrvixctlRegister, MakesTheClassesFoundAndTakesThemAway) {
  const ProgramResult registered = RunProgram("orvixctl", {"register"});
  EXPECT_EQ(registered.status, 0) << registered;
  EXPECT_EQ(registered.out, "Orvix is registered.\n");
  const std::string key = "CLSID\\{D2237103-E00E-4031-90A7-D5300BFEB7F8}\\InprocServer32";
  // The empty name is the key's default value.
  const std::vector<std::string> read_default = {"call", "classOrvix.GetKeyValue", "oxHKEY_CLASSES_ROOT", key, "", "@"};
  EXPECT_TRUE(Says(RunProgram("orvixctl", read_default).out, "liborvix.so"));
  const ProgramResult unregistered = RunProgram("orvixctl", {"unregister"});
  EXPECT_EQ(unregistered.status, 0) << unregistered;
  EXPECT_TRUE(RunProgram("orvixctl", read_default).out.starts_with("False\n"));
}

TEST(OrvixctlCommandLine, HelpEverywhere) {
  for (const char* command : {"list", "describe", "call", "idl", "register", "unregister"}) {
    const ProgramResult behind = RunProgram("orvixctl", {command, "--help"});
    EXPECT_EQ(behind.status, 0) << command;
    EXPECT_TRUE(Says(behind.out, "\nUsage: orvixctl " + std::string(command))) << behind.out;
    EXPECT_EQ(RunProgram("orvixctl", {"help", command}).out, behind.out);
  }
  EXPECT_TRUE(Says(RunProgram("orvixctl", {"--help"}).out, "Usage: orvixctl "));
}

TEST(OrvixctlCommandLine, MistakesExitWithTwo) {
  const std::vector<std::vector<std::string>> mistakes = {{},
                                                          {"lst"},
                                                          {"--nonsense"},
                                                          {"list", "x"},
                                                          {"list", "--nonsense"},
                                                          {"describe"},
                                                          {"describe", "a", "b"},
                                                          {"idl", "--json"},
                                                          {"call"},
                                                          {"--library"}};
  for (const auto& words : mistakes) {
    const ProgramResult result = RunProgram("orvixctl", words);
    EXPECT_EQ(result.status, 2) << result;
    EXPECT_TRUE(result.err.starts_with("orvixctl: ")) << result.err;
    EXPECT_EQ(result.out, "");
  }
}

TEST(OrvixctlCommandLine, ComponentThatIsNotThereIsAFailure) {
  const ProgramResult result = RunProgram("orvixctl", {"--library", "/nonexistent/x.so", "list"});
  EXPECT_EQ(result.status, 1);
  EXPECT_TRUE(Says(result.err, "Error in loading DLL")) << result.err;
}

TEST(OrvixctlCommandLine, ClosedPipeEndsQuietly) {
  const ProgramResult result = RunWithoutReader("orvixctl", {"idl"});
  EXPECT_EQ(result.status, 0);
  EXPECT_EQ(result.err, "");
}

TEST(OrvixctlCommandLine, FullDiskIsAFailure) {
  const ProgramResult result = RunOnFullDisk("orvixctl", {"list"});
  EXPECT_EQ(result.status, 1);
  EXPECT_TRUE(Says(result.err, "cannot write the output")) << result.err;
}

}  // namespace
}  // namespace Orvix
