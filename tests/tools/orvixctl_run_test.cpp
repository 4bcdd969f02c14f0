// orvixctl run: scripts, and what shells complete.
#include <gtest/gtest.h>

#include <fstream>

#include "support/run_program.h"

namespace Orvix {
namespace {

using testing_support::ProgramResult;
using testing_support::RunProgram;

struct ScriptCase {
  const char* name;
  const char* script;
  const char* out;
  int status;
  const char* err;  // behind the script's name
};
void PrintTo(const ScriptCase& one, std::ostream* out) { *out << one.name; }

class OrvixctlRunTest : public ::testing::TestWithParam<ScriptCase> {
 protected:
  ProgramResult Run(std::vector<std::string> options, const std::string& script) {
    std::ofstream((scratch_.Path() / "script").string()) << script;
    options.insert(options.begin(), "run");
    options.push_back((scratch_.Path() / "script").string());
    return RunProgram("orvixctl", options);
  }
  testing_support::ScratchDirectory scratch_;
};

TEST_P(OrvixctlRunTest, Prints) {
  const ScriptCase& one = GetParam();
  const ProgramResult result = Run({}, one.script);
  EXPECT_EQ(result.out, one.out);
  EXPECT_EQ(result.status, one.status);
  const std::string told =
      one.err[0] == '\0' ? "" : "orvixctl: " + (scratch_.Path() / "script").string() + one.err + "\n";
  EXPECT_EQ(result.err, told);
}

INSTANTIATE_TEST_SUITE_P(
    Scripts, OrvixctlRunTest,
    ::testing::Values(
        ScriptCase{"Nothing", "\n# only words\n  \t\n", "", 0, ""},
        ScriptCase{"ObjectsAndResults",
                   "s = new classString\ns.Append 'some text'\nn = s.Length\nt = $n\nprint length: $n $t\n",
                   "classString: some text\nlength: 9 9\n", 0, ""},
        ScriptCase{"PutsOnePerLine", "s = new classString\ns.Value=abc\ns.Value = 'd e'\ns.Mid=XY 2 2\nprint $s\n",
                   "classString: dXY\n", 0, ""},
        ScriptCase{"ObjectsAsArguments", "s = new classString\ns.Value=a\nk = new classStack\nk.Push $s\nk.Pop\n",
                   "classString: a\n", 0, ""},
        ScriptCase{"ResultsHaveTheirMembers", "s = new classString\ns.Value=abc\nh = s.Left 2\nh.UCase\n",
                   "classString: AB\n", 0, ""},
        ScriptCase{"WrittenArguments",
                   "SuperRTrim 'abc  ' @n\nprint $n\nn = SuperRTrim 'x ' $n\nprint $n\nm = SuperRTrim 'x ' "
                   "lTokensRemoved:=@k\n"
                   "print $k",
                   "abc\nlTokensRemoved = 2\n2\nlTokensRemoved = 1\nx\nlTokensRemoved = 1\n1\n", 0, ""},
        ScriptCase{"Quoted", R"(AddElement '_' "$n\t\"\u20ac" ,
AddElement \_ \$n ,
AddElement 'C:\a b' sElement:='@' sSeparator:=;
AddElement a'b'c "" ,)",
                   "_,$n\t\"\xE2\x82\xAC\n_,$n\nC:\\a b;@\nabc,\n", 0, ""},
        ScriptCase{"ExpectedFailure", "s = new classString\n! s.Left -1\nprint on",
                   "Error 5 (classString): Invalid length\non\n", 0, ""},
        ScriptCase{"FailureThatDoesNotCome", "! LengthList a ,", "", 1, ":1: the step was to fail, and did not."},
        ScriptCase{"FailureStops", "s = new classString\nprint 1\ns.Left -1\nprint 2", "1\n", 1,
                   ":3: error 5 from classString: Invalid length"},
        ScriptCase{"UnknownName", "s = new classString\nx.Left 1", "", 2,
                   ":2: nothing is named \"x\". Did you mean s?"},
        ScriptCase{"NoResult", "d = new classDirectory\nn = MakeDir T:\\", "", 2,
                   ":2: the call gives nothing that \"n\" could hold."},
        ScriptCase{"ClassWithoutObject", "classString.Left 1", "", 2,
                   ":1: an object is needed: type \"x = new classString\", then x.Left."},
        ScriptCase{"TextWithoutEnd", "print 'abc", "", 2, ":1: a text in '...' has no end."},
        ScriptCase{"UnknownEscape", R"(print "\q")", "", 2,
                   ":1: a text in \"...\" has no end, or an escape that JSON does not know."},
        ScriptCase{"WrongKindByReference", "n = GetElement a,b 1 ,\nSuperRTrim x $n", "", 2,
                   ":2: lTokensRemoved takes long: $n holds something else."}),
    [](const auto& one) { return one.param.name; });

TEST_F(OrvixctlRunTest, JsonIsOneLineAStep) {
  EXPECT_EQ(Run({"--json"}, "s = new classString\nprint a 'b c'\nSuperRTrim 'a ' @\n! s.Left -1").out,
            R"({"line":2,"print":["a","b c"]}
{"line":3,"step":"SuperRTrim","result":"a","outputs":{"lTokensRemoved":1}}
{"line":4,"step":"s.Left","error":{"number":5,"source":"classString","description":"Invalid length"}}
)");
}

TEST_F(OrvixctlRunTest, FileThatIsNotThere) {
  const ProgramResult result = RunProgram("orvixctl", {"run", (scratch_.Path() / "none").string()});
  EXPECT_EQ(result.status, 1);
  EXPECT_EQ(result.err,
            "orvixctl: " + (scratch_.Path() / "none").string() + " cannot be opened: No such file or directory.\n");
}

TEST(OrvixctlComplete, OffersWhatMayFollow) {
  struct Row {
    std::vector<std::string> words;
    const char* found;
  };
  const Row rows[] = {
      {{"call", "classF"}, "classFilename.\n"},
      {{"call", "classString.lef"}, "classString.Left\n"},
      {{"call", "classString.Mid", "n"}, "NumChars:=\n"},
      {{"call", "classOrvix.GetRGB", "1", "oxR"}, "oxRed\n"},
      {{"call", "classString.Value=a", ".Rig"}, ".Right\n"},
      {{"call", "classString.Value=a", ".Mid", "2", "Sta"}, "StartPos:=\n"},
      {{"describe", "enumR"}, "enumRGB\nenumRegistryConsts\n"},
      {{"describe", "getel"}, "GetElement\n"},
      {{"describe", "nothing"}, ""},
  };
  for (const Row& row : rows) {
    std::vector<std::string> words = row.words;
    words.insert(words.begin(), "complete");
    EXPECT_EQ(RunProgram("orvixctl", words).out, row.found) << row.words.back();
  }
}

}  // namespace
}  // namespace Orvix
