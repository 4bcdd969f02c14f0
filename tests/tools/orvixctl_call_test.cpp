// orvixctl call: arguments, outputs, properties, failures, as a person types
// them.
#include <gtest/gtest.h>

#include <fstream>

#include "support/run_program.h"

namespace Orvix {
namespace {

using testing_support::ProgramResult;
using testing_support::RunProgram;

ProgramResult Call(std::vector<std::string> words) {
  words.insert(words.begin(), "call");
  return RunProgram("orvixctl", words);
}

struct CallCase {
  std::string name;
  std::vector<std::string> words;
  std::string out;
};
void PrintTo(const CallCase& one, std::ostream* out) { *out << one.name; }

class OrvixctlCallTest : public ::testing::TestWithParam<CallCase> {};

TEST_P(OrvixctlCallTest, PrintsTheResult) {
  const ProgramResult result = Call(GetParam().words);
  EXPECT_EQ(result.out, GetParam().out);
  EXPECT_EQ(result.err, "");
  EXPECT_EQ(result.status, 0);
}

INSTANTIATE_TEST_SUITE_P(
    Calls, OrvixctlCallTest,
    ::testing::Values(
        CallCase{"Texts", {"classOrvix.GetElement", "a,b,c", "2", ","}, "b\n"},
        CallCase{"NamesIgnoreCase", {"CLASSORVIX.getelement", "a,b,c", "3", ","}, "c\n"},
        CallCase{"LibraryNameInFront", {"Orvix.classOrvix.LengthList", "a,b,c", ","}, "3\n"},
        CallCase{"ByName", {"classOrvix.GetElement", "lIndex:=1", "sSeparator:=;", "sList:=x;y"}, "x\n"},
        CallCase{"NamedBehindPositional", {"classOrvix.GetElement", "x;y", "sSeparator:=;", "lIndex:=2"}, "y\n"},
        CallCase{"NegativeNumberIsNoOption", {"classOrvix.GetElement", "a,b", "-1", ","}, "a\n"},
        CallCase{"Utf8",
                 {"classOrvix.GetElement", "\xC3\xA4\xE2\x82\xAC\xF0\x9F\x98\x80,b", "1", ","},
                 "\xC3\xA4\xE2\x82\xAC\xF0\x9F\x98\x80\n"},
        CallCase{"ChangedOutput", {"classOrvix.SuperRTrim", "abc  \t", "0"}, "abc\nlTokensRemoved = 3\n"},
        CallCase{"UnchangedArgumentIsNotShown", {"classOrvix.InsertElement", "a,b,c", "X", "2", ","}, "aX,,b,c\n"},
        CallCase{"AskedForOutput", {"classOrvix.SuperRTrim", "abc", "@"}, "abc\nlTokensRemoved = 0\n"},
        CallCase{"LeftOutOutput", {"classOrvix.SuperRTrim", "abc ", "_"}, "abc\n"},
        CallCase{"LeftOutInTheMiddle", {"classOrvix.SuperLTrim", "\n x", "_", "true"}, "x\n"},
        CallCase{"LiteralUnderscore", {"classOrvix.AddElement", "a", "\\_", ","}, "a,_\n"},
        CallCase{"LiteralPoint", {"classOrvix.AddElement", "a", "\\.txt", ","}, "a,.txt\n"},
        CallCase{"PathsKeepTheirBackslashes", {"classOrvix.GetPath", "C:\\a\\_b.txt"}, "C:\\a\\\n"},
        CallCase{"NumbersInAnArray", {"classOrvix.Max", "[3, -7, 1]"}, "3\n"},
        CallCase{"TextsInAnArray", {"classOrvix.IsInStringArray", R"(["a b", "c"])", "a b"}, "True\n"},
        CallCase{"ArrayWithoutBounds", {"classOrvix.StringArrayIsEmpty", "none"}, "True\n"},
        CallCase{"EmptyNameInAnArray", {"classOrvix.StringArrayIsEmpty", R"([""])"}, "False\n"},
        CallCase{"Enumeration", {"classOrvix.GetRGB", "&H123456", "oxgreen"}, "52\n"},
        CallCase{"EnumerationByNumber", {"classOrvix.GetRGB", "1193046", "2"}, "18\n"},
        CallCase{"Hexadecimal", {"classOrvix.GetHexColor", "&H10"}, "#100000\n"},
        CallCase{
            "PutAndGet", {"classFilename.CompleteFilename=C:\\a\\b.c.txt", ".Extension", ".Path"}, "txt\nC:\\a\\\n"},
        CallCase{"PutFirstByMethod", {"classFilename.Exists", ".CompleteFilename=x.y", ".Filename"}, "False\nx.y\n"},
        CallCase{"IndexedPut", {"classString.Value=Hello", ".Mid=XY", "2", "2", ".Value"}, "HXYlo\n"},
        CallCase{"IndexedPutLeavesOut", {"classString.Value=Hello", ".Mid=XYZ", "2", ".Value"}, "HXYZo\n"},
        CallCase{"PutOfAnObject", {"classString.Value=Hello", ".Left=classString:AB", "2", ".Value"}, "ABllo\n"},
        CallCase{"ObjectResult", {"classString.Value=Hello", ".Left", "3"}, "classString: Hel\n"},
        CallCase{"StepOnTheResult", {"classString.Value=Hello", ".Left", "3", "..Length"}, "classString: Hel\n3\n"},
        CallCase{"VariantKinds",
                 {"classStack.Push", "text:5", ".Push", "6", ".IsOnStack", "text:5", "sdEndToStart", "@"},
                 "True\nlIndex = 1\n"},
        CallCase{"DateValue", {"classStack.Push", "date:2002-11-30 10:00", ".Pop"}, "2002-11-30 10:00:00\n"},
        CallCase{"NullValue", {"classStack.Push", "null", ".Pop"}, "Null\n"},
        CallCase{
            "ObjectInAStack", {"classStackObject.Push", "classFilename:C:\\x.y", ".Pop"}, "classFilename: C:\\x.y\n"}),
    [](const auto& one) { return one.param.name; });

TEST(OrvixctlCallErrors, FailingCallTellsNumberSourceAndDescription) {
  const ProgramResult result = Call({"classDirectory.File", "1"});
  EXPECT_EQ(result.status, 1);
  EXPECT_EQ(result.out, "");
  EXPECT_EQ(result.err,
            "orvixctl: classDirectory.File failed: error 61206 from Orvix.classDirectory: Index out of range\n");
}

TEST(OrvixctlCallErrors, StepsBeforeTheFailureArePrinted) {
  const ProgramResult result = Call({"classStack.Size", ".Pop", ".Size"});
  EXPECT_EQ(result.status, 1);
  EXPECT_EQ(result.out, "0\n");
  EXPECT_EQ(result.err, "orvixctl: classStack.Pop failed: error 66000 from classStack.Pop: Stack is empty\n");
}

TEST(OrvixctlCallErrors, MessageBoxGoesToStandardErrorAndTheCallSucceeds) {
  const ProgramResult result = Call({"classOrvix.LengthList", "a", ""});
  EXPECT_EQ(result.status, 0);
  EXPECT_EQ(result.out, "0\n");
  EXPECT_EQ(result.err, "orvixctl: message from Orvix: Error LengthList. Invalid procedure call or argument\n");
}

struct UsageCase {
  std::string name;
  std::vector<std::string> words;
  std::string says;
};
void PrintTo(const UsageCase& one, std::ostream* out) { *out << one.name; }

class OrvixctlUsageTest : public ::testing::TestWithParam<UsageCase> {};

TEST_P(OrvixctlUsageTest, ExitsWithTwoAndSaysWhatToType) {
  const ProgramResult result = Call(GetParam().words);
  EXPECT_EQ(result.status, 2);
  EXPECT_EQ(result.out, "");
  EXPECT_NE(result.err.find(GetParam().says), std::string::npos) << result.err;
}

INSTANTIATE_TEST_SUITE_P(
    Calls, OrvixctlUsageTest,
    ::testing::Values(
        UsageCase{"NoMember", {"classOrvix"}, "classOrvix.GetElement"},
        UsageCase{"UnknownClass", {"classOrvx.GetTick"}, "Did you mean classOrvix?"},
        UsageCase{"UnknownMember", {"classOrvix.GetElemnt"}, "Did you mean GetElement?"},
        UsageCase{"MissingArgument", {"classOrvix.GetElement", "a", "1"}, "the argument sSeparator (BSTR) is missing"},
        UsageCase{"RequiredLeftOut", {"classOrvix.GetElement", "_", "1", ","}, "the argument sList (BSTR) is missing"},
        UsageCase{"TooMany", {"classOrvix.GetTick", "3"}, "too many arguments for classOrvix.GetTick"},
        UsageCase{"GivenTwice", {"classOrvix.GetElement", "a", "sList:=b", "1", ","}, "sList is given twice"},
        UsageCase{"NoNumber", {"classOrvix.GetElement", "a", "two", ","}, "lIndex: \"two\" is not a number"},
        UsageCase{"OutOfRange", {"classString.Char=256", "1"}, "from 0 to 255"},
        UsageCase{"NoArray", {"classOrvix.Max", "3"}, "aValues: \"3\" is not an array"},
        UsageCase{"NoConstant", {"classOrvix.GetRGB", "1", "oxGren"}, "Did you mean oxGreen?"},
        UsageCase{"PutOfReadOnly", {"classFilename.Path=x"}, "classFilename.Path cannot be put"},
        UsageCase{"StepWithoutResult", {"classStack.Reset", "..Size"}, "needs an object"}),
    [](const auto& one) { return one.param.name; });

TEST(OrvixctlCallJson, GivesResultsOutputsAndErrorsInOneDocument) {
  const ProgramResult result =
      Call({"--json", "classStack.Push", "a\"\\\x01", ".Peek", ".IsOnStack", "1", "sdEndToStart", "@", ".Peek", "9"});
  EXPECT_EQ(result.status, 1);
  EXPECT_EQ(result.out,
            R"({"class":"classStack","calls":[{"member":"Push"},{"member":"Peek","result":"a\"\\\u0001"},)"
            R"({"member":"IsOnStack","result":false,"outputs":{"lIndex":0}},{"member":"Peek","error":{"number":66001,)"
            R"("source":"classStack.Peek","description":"Offset too far"}}]})"
            "\n");
}

TEST(OrvixctlCallJson, RecordsGoByField) {
  const testing_support::ScratchDirectory scratch;
  std::ofstream(scratch.Path() / "Note.TXT") << "12345";
  const std::string folder = "Z:" + scratch.Path().string();
  const ProgramResult result = Call({"--json", "classDirectory.Init", folder + "/*.txt", ".File", "1"});
  EXPECT_EQ(result.status, 0) << result;
  EXPECT_NE(result.out.find(R"("sFile":"Note.TXT")"), std::string::npos) << result.out;
  EXPECT_NE(result.out.find(R"("sExtension":"txt","lSize":5,"dDate":"2)"), std::string::npos) << result.out;
}

TEST(OrvixctlCallErrors, WhatAMemberSwallowsIsToldAfterwards) {
  const ProgramResult result = Call({"classOrvix.MyFileCopy", "Z:\\nowhere\\a", "Z:\\nowhere\\b"});
  EXPECT_EQ(result.status, 1);
  EXPECT_EQ(result.err, "orvixctl: the file operation failed: a name is invalid or leads nowhere\n");
}

// What the environment chooses, at the start of a process.
TEST(OrvixctlCallEnvironment, CodePageAndTextInFiles) {
  const testing_support::ScratchDirectory scratch;
  const std::string file = (scratch.Path() / "file").string();
  const auto stored = [&] {
    const ProgramResult result = Call({"classOrvix.StoreData", "Z:" + file, "\xD0\x96\xC3\xA4"});
    EXPECT_EQ(result.status, 0) << result;
    return testing_support::ReadWhole(file);
  };
  EXPECT_EQ(stored(), "?\xE4");
  setenv("ORVIX_CODE_PAGE", "1251", 1);
  EXPECT_EQ(stored(), "\xC6?");
  EXPECT_EQ(Call({"classOrvix.GetElement", "\xD0\x96", "1", ","}).out, "\xD0\x96\n");
  setenv("ORVIX_CODE_PAGE", "nonsense", 1);
  EXPECT_EQ(stored(), "?\xE4");
  unsetenv("ORVIX_CODE_PAGE");
  setenv("ORVIX_FILE_TEXT", "UTF-8", 1);
  EXPECT_EQ(stored(), "\xD0\x96\xC3\xA4");
  unsetenv("ORVIX_FILE_TEXT");
}

}  // namespace
}  // namespace Orvix
