#include "analysis/declarations.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <string>
#include <vector>

#include "analysis/words.h"
#include "tests/support/capture.h"
#include "tests/support/file_list.h"
#include "tests/support/registered.h"
#include "tests/support/settings_guard.h"
#include "tests/support/temporary_folder.h"

using namespace std::string_literals;

using Texts = std::vector<std::string>;

class GatherDeclarations : public ::testing::Test {
 protected:
  // What the pass registers for these files, in this order.
  static Texts gathered_from(const Texts& paths) {
    FileList files(paths);
    for (std::size_t i = 0; i < paths.size(); ++i)
      gather_declarations(files.slot(i), false);
    Texts units = registered();
    Declaration::forget_all();
    return units;
  }

  // What it registers for a file with this content.
  static Texts gathered(const std::string& content) {
    write_file("a.f90", content);
    return gathered_from({"a.f90"});
  }

  // The unit that a line opens, as "kind name"; empty when it opens nothing.
  static std::string opened(const std::string& line, bool fixed_form = false) {
    write_file("a.f90", line + "\nend\n");
    FileList files({"a.f90"});
    gather_declarations(files.slot(0), fixed_form);
    std::string units;
    for (const auto& entry : Declaration::decs) {
      EXPECT_EQ(1, entry.second->line) << line;
      units += kind_name(entry.second->type) + " "s + entry.second->name;
    }
    Declaration::forget_all();
    return units;
  }

  // What the pass prints for a file with this content.
  static std::string report(int verbosity, const std::string& path,
                            const std::string& content) {
    write_file(path, content);
    return report(verbosity, path);
  }

  static std::string report(int verbosity, std::string path) {
    verbose = verbosity;
    char* slot = path.data();
    std::string text = printed([&] { gather_declarations(&slot, false); });
    Declaration::forget_all();
    return text;
  }

  TemporaryFolder folder;
  SettingsGuard guard;
};

TEST_F(GatherDeclarations, RecordsAUnitWithItsLineUnderItsUpperCaseName) {
  EXPECT_EQ(Texts{"SOLVE: subroutine solve, a.f90:12"},
            gathered(std::string(11, '\n') + "subroutine solve(a, b)\nend\n"));
}

TEST_F(GatherDeclarations, RecordsNamesakesInTheOrderOfTheFiles) {
  write_file("z.f90", "\nModule Physics\nend\n");
  write_file("b.f90", "MODULE physics\nend\n");
  EXPECT_EQ((Texts{"PHYSICS: module Physics, z.f90:2",
                   "PHYSICS: module physics, b.f90:1"}),
            gathered_from({"z.f90", "b.f90"}));
}

TEST_F(GatherDeclarations, RecordsNamesakesOfOneFileInTheOrderOfTheirLines) {
  EXPECT_EQ(
      (Texts{"SWAP: interface swap, a.f90:1", "SWAP: subroutine SWAP, a.f90:3",
             "SWAP: function swap, a.f90:4"}),
      gathered("interface swap\nend interface\nsubroutine SWAP\n"
               "function swap\nend\n"));
}

TEST_F(GatherDeclarations, TakesAFileTwiceWhenItIsListedTwice) {
  write_file("b.f90", "type point\nend\n");
  EXPECT_EQ((Texts{"POINT: type point, b.f90:1", "POINT: type point, b.f90:1"}),
            gathered_from({"b.f90", "b.f90"}));
}

TEST_F(GatherDeclarations, LeavesTheRegistryAsItIs) {
  write_file("b.f90", "type point\nend\n");
  FileList files({"b.f90", "c.f90"});
  char name[] = "state";
  new Declaration(DT_TYPE, name, files.slot(1), 7);
  gather_declarations(files.slot(0), false);
  EXPECT_EQ((Texts{"POINT: type point, b.f90:1", "STATE: type state, c.f90:7"}),
            registered());
  Declaration::forget_all();
}

struct OpeningLine {
  const char* line;
  const char* unit;  // empty: opens nothing
};

// clang-format off
static const OpeningLine unit_statements[] = {
  { "program heat",                       "program heat" },
  { "module physics",                     "module physics" },
  { "subroutine solve(a, b)",             "subroutine solve" },
  { "function f(x) result(y)",            "function f" },
  { "interface swap",                     "interface swap" },
  { "type state",                         "type state" },
  { " \tSUBROUTINE  \t Solve",            "subroutine Solve" },
  { "TyPe StAtE\r",                       "type StAtE" },
  { "subroutine solve;call f",            "subroutine solve" },
  { "subroutine(solve)",                  "subroutine solve" },
  { "subroutine a.b_1",                   "subroutine a.b_1" },
  { "function 2nd",                       "function 2nd" },
  { "subroutine d\xe9" "but",             "subroutine d" },
  { "subroutine procedure",               "subroutine procedure" },
  { "function operator (.x.)",            "function operator" },
  { "type assignment",                    "type assignment" },
  { "module procedures",                  "module procedures" },
};

static const OpeningLine separators[] = {
  { "type :: point",                      "type point" },
  { "type, public :: point",              "type public" },
  { "TYPE,EXTENDS(base) :: point",        "type EXTENDS" },
  { "type = 3",                           "type 3" },
};

static const OpeningLine no_unit_statements[] = {
  { "",                                   "" },
  { "   ",                                "" },
  { "end",                                "" },
  { "end subroutine solve",               "" },
  { "endsubroutine solve",                "" },
  { "recursive subroutine walk(n)",       "" },
  { "pure function f(x)",                 "" },
  { "INTEGER FUNCTION f(x)",              "" },
  { "abstract interface",                 "" },
  { "x = type",                           "" },
  { "typedef x",                          "" },
  { "type.x y",                           "" },
  { "program_x y",                        "" },
  { "10 subroutine solve",                "" },
  { ";subroutine solve",                  "" },
  { "\xef\xbb\xbfprogram heat",           "" },   // the mark of UTF-8
};

static const OpeningLine module_procedures[] = {
  { "module procedure swap_int, swap_real", "" },
  { "MODULE PROCEDURE :: swap",           "" },
  { "module procedure",                   "" },
};

static const OpeningLine derived_type_variables[] = {
  { "type(state) :: s",                   "" },
  { "TYPE (state) :: s",                  "" },
  { "type \t (state), pointer :: s",      "" },
  { "type(",                              "" },
};

static const OpeningLine unnamed_units[] = {
  { "interface",                          "interface " },
  { "interface \r",                       "interface " },
  { "program",                            "program " },
  { "module",                             "module " },
  { "subroutine ()",                      "subroutine " },
  { "function +",                         "function " },
  { "type ::",                            "type " },
};

static const OpeningLine assignments[] = {
  { "interface assignment(=)",            "" },
  { "INTERFACE ASSIGNMENT (=)",           "" },
  { "interface assignments",              "interface assignments" },
};

static const OpeningLine operators[] = {
  { "interface operator (.cross.)",       "interface .cross." },
  { "INTERFACE OPERATOR (.CROSS.)",       "interface .CROSS." },
  { "interface \t operator \t( \t.x. )",  "interface .x." },
  { "interface operator\t(.x.)",          "interface .x." },
  { "interface operator (.x.y.)",         "interface .x." },
  { "interface operator (.a b.)",         "interface .a b." },
  { "interface operator (..)",            "interface .." },
  { "interface operator (.\xe9.)",        "interface .\xe9." },
  { "interface operator-(.x.)",           "interface .x." },  // a step of 9
  { "interface operator((.x.)",           "interface .x." },
  { "interface operators (.x.)",          "interface operators" },
};

static const OpeningLine no_user_operators[] = {
  { "interface operator (+)",             "" },
  { "interface operator (==)",            "" },
  { "interface operator(.cross.)",        "" },   // the step takes the "("
  { "interface operator(+)",              "" },
  { "interface operator",                 "" },
  { "interface operator ",                "" },
  { "interface operator x(.x.)",          "" },
  { "interface operator (",               "" },
  { "interface operator (  ",             "" },
  { "interface operator ( \r",            "" },
  { "interface operator (x.)",            "" },
  { "interface :: operator (.x.)",        "" },   // the step counts from "::"
};

// Without a closing dot the name goes on, line end included.
static const OpeningLine unclosed_operators[] = {
  { "interface operator (.cross",         "interface .cross\n" },
  { "interface operator (.cross)",        "interface .cross)\n" },
  { "interface operator (.cross) \r",     "interface .cross) \r\n" },
  { "interface operator (.",              "interface .\n" },
};

static const OpeningLine hidden[] = {
  { "! subroutine old",                   "" },
  { "!subroutine old",                    "" },
  { "print *, \"program x\"",             "" },
  { "\"\" program x",                     "" },
  { "subroutine ! solve",                 "subroutine " },
  { "subroutine \"old\" solve",           "subroutine solve" },
  { "subroutine \"open",                  "subroutine " },
  { "subroutine 'old' solve",             "subroutine old" },  // visible
  { "interface operator (.a!b.)",         "interface .a    \n" },
};
// clang-format on

template <std::size_t count>
static void expect_opened(std::string (*opened)(const std::string&, bool),
                          const OpeningLine (&lines)[count]) {
  for (const OpeningLine& c : lines)
    EXPECT_EQ(c.unit, opened(c.line, false)) << c.line;
}

TEST_F(GatherDeclarations, RecordsEachKindOfUnit) {
  expect_opened(opened, unit_statements);
}

TEST_F(GatherDeclarations, SkipsSeparatorsBeforeTheNameUnseen) {
  expect_opened(opened, separators);
}

TEST_F(GatherDeclarations, NeedsAUnitKeywordAsTheFirstWordOfTheLine) {
  expect_opened(opened, no_unit_statements);
}

TEST_F(GatherDeclarations, RecordsNothingForModuleProcedures) {
  expect_opened(opened, module_procedures);
}

TEST_F(GatherDeclarations, RecordsNothingForVariablesOfADerivedType) {
  expect_opened(opened, derived_type_variables);
}

TEST_F(GatherDeclarations, RecordsUnitsWithoutANameUnderTheEmptyKey) {
  expect_opened(opened, unnamed_units);
  EXPECT_EQ((Texts{": interface , a.f90:1", ": interface , a.f90:2"}),
            gathered("interface\ninterface\nend\n"));
}

TEST_F(GatherDeclarations, RecordsNothingForAssignmentInterfaces) {
  expect_opened(opened, assignments);
}

TEST_F(GatherDeclarations, RecordsUserDefinedOperatorsWithTheirDots) {
  expect_opened(opened, operators);
}

TEST_F(GatherDeclarations, RecordsNoOtherOperators) {
  expect_opened(opened, no_user_operators);
}

// The step past "operator" goes beyond the end of these.
TEST_F(GatherDeclarations, TakesAStepBeyondTheLineForItsEnd) {
  EXPECT_EQ("", opened("interface operator\0 (.x.)"s));
  EXPECT_EQ("", opened(std::string(1005, ' ') + "interface operator (.x.)"));
  EXPECT_EQ("", opened(std::string(1004, ' ') + "interface operator (.x.)"));
  EXPECT_EQ("", opened(std::string(1003, ' ') + "interface operator (.x.)"));
  EXPECT_EQ("interface .",
            opened(std::string(1002, ' ') + "interface operator (.x.)"));
}

TEST_F(GatherDeclarations, RecordsAnUnclosedOperatorWithTheRestOfItsLine) {
  expect_opened(opened, unclosed_operators);
}

TEST_F(GatherDeclarations, SeesNothingInCommentsAndDoubleQuotedStrings) {
  expect_opened(opened, hidden);
}

TEST_F(GatherDeclarations, HidesCommentsAndStringsWhateverTheOutputOptions) {
  for (const std::uint32_t style : {0u, 1u, 0xffffffffu}) {
    html_style = style;
    EXPECT_EQ("subroutine solve", opened("subroutine \"old\" solve")) << style;
  }
}

TEST_F(GatherDeclarations, HandsTheFixedFormRuleOn) {
  EXPECT_EQ("subroutine old", opened("subroutine \"old\" solve", true));
  EXPECT_EQ("subroutine old", opened("subroutine ! old", true));
  EXPECT_EQ("", opened("C\rsubroutine old", true));
}

// One line per byte: it belongs to the word, or it separates the keyword from
// the name.
TEST_F(GatherDeclarations, TakesAnyByteAfterAKeyword) {
  const std::string word_characters =
      "._0123456789abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ";
  for (int b = 0; b < 256; ++b) {
    const char c = static_cast<char>(b);
    std::string unit = "subroutine s";
    if (word_characters.find(c) != std::string::npos) unit = "";
    if (c == '\0' || c == '\n' || c == '!' || c == '"') unit = "subroutine ";
    EXPECT_EQ(unit, opened("subroutine"s + c + "s")) << "byte " << b;
  }
}

TEST_F(GatherDeclarations, TakesAnyByteBeforeAKeyword) {
  for (int b = 1; b < 256; ++b) {
    const char c = static_cast<char>(b);
    if (c == '\n') continue;
    const bool white_space = c == ' ' || (b >= 9 && b <= 13);
    EXPECT_EQ(white_space ? "type s" : "", opened(c + "type s"s))
        << "byte " << b;
  }
}

TEST_F(GatherDeclarations, NeverExaminesTheLastLine) {
  EXPECT_EQ(Texts{}, gathered("subroutine solve\n"));
  EXPECT_EQ(Texts{}, gathered("subroutine solve"));
  EXPECT_EQ(Texts{}, gathered("! only\n\ntype state\n"));
  EXPECT_EQ(Texts{"A: type a, a.f90:1"}, gathered("type a\ntype b"));
  EXPECT_EQ(Texts{"A: type a, a.f90:1"}, gathered("type a\n\n"));
}

TEST_F(GatherDeclarations, SkipsFilesThatCannotBeReadSilently) {
  write_file("empty.f90", "");
  EXPECT_EQ(Texts{}, gathered_from({"missing.f90", "empty.f90", "."}));
  for (const char* path : {"missing.f90", "empty.f90", "."})
    EXPECT_EQ("", report(5, path)) << path;
}

TEST_F(GatherDeclarations, ReadsDosLineEnds) {
  EXPECT_EQ((Texts{"A: type a, a.f90:1", "B: type b, a.f90:3"}),
            gathered("type a\r\n\r\ntype b\r\nend\r\n"));
}

TEST_F(GatherDeclarations, DoesNotJoinContinuedLines) {
  EXPECT_EQ(Texts{": subroutine , a.f90:1"},
            gathered("subroutine &\n  solve\nend\n"));
}

TEST_F(GatherDeclarations, CarriesNoStringIntoTheNextLine) {
  EXPECT_EQ(Texts{"A: type a, a.f90:2"}, gathered("x = \"\ntype a\nend\n"));
}

// A line of so many characters, then a unit on the next line.
TEST_F(GatherDeclarations, CountsThePiecesOfLongLines) {
  const struct {
    std::size_t characters;
    int next_line;
  } cases[] = {{1022, 2}, {1023, 3}, {1024, 3}, {2045, 3},   {2046, 4},
               {4094, 6}, {4095, 6}, {4096, 6}, {100000, 99}};
  for (const auto& c : cases)
    EXPECT_EQ(Texts{"A: type a, a.f90:" + std::to_string(c.next_line)},
              gathered(std::string(c.characters, 'x') + "\ntype a\nend\n"))
        << c.characters;
}

TEST_F(GatherDeclarations, TakesEveryPieceOfALongLineForALine) {
  EXPECT_EQ((Texts{"A: type a, a.f90:2"}),
            gathered(std::string(1023, 'x') + "type a\nend\n"));
  EXPECT_EQ((Texts{"A: type a, a.f90:2"}),
            gathered("!" + std::string(1022, 'x') + "type a\nend\n"));
}

TEST_F(GatherDeclarations, ExaminesNotTheLastPieceOfALongLastLine) {
  const std::string x(1023 - 6, ' ');
  EXPECT_EQ(Texts{}, gathered("type a" + x));
  EXPECT_EQ(Texts{"A: type a, a.f90:1"}, gathered("type a" + x + "\n"));
  EXPECT_EQ(Texts{"A: type a, a.f90:1"}, gathered("type a" + x + "x"));
}

TEST_F(GatherDeclarations, SeesNothingOfALineBeyondANul) {
  EXPECT_EQ((Texts{": type , a.f90:1", "B: type b, a.f90:2"}),
            gathered("type \0a\ntype b\nend\n"s));
  EXPECT_EQ((Texts{"A: type a, a.f90:1", "B: type b, a.f90:2"}),
            gathered("type a\0\ntype b\nend\n"s));
}

TEST_F(GatherDeclarations, EndsAtALineThatBeginsWithANul) {
  EXPECT_EQ(Texts{"A: type a, a.f90:1"},
            gathered("type a\n\0\ntype b\nend\n"s));
  EXPECT_EQ(Texts{}, gathered("\0type a\ntype b\nend\n"s));
}

TEST_F(GatherDeclarations, ReadsFilesOfEveryByte) {
  std::string rising;
  for (int b = 0; b < 256; ++b) rising += static_cast<char>(b);
  const std::string falling(rising.rbegin(), rising.rend());
  EXPECT_EQ(Texts{}, gathered(rising + "\ntype a\nend\n"));
  // The first line end ends 255 to 11; what follows begins with 9 to 1.
  EXPECT_EQ(Texts{"A: type a, a.f90:3"}, gathered(falling + "\ntype a\nend\n"));
  EXPECT_EQ(Texts{}, gathered(rising + rising + falling));
}

// A line counts once a character of the next one is there.
TEST_F(GatherDeclarations, ReadsSourcesThatEndAnywhere) {
  const std::string first = "program x\n";
  const std::string second = " type(a) :: \"b\r\n";
  const std::string third = "interface operator (.c.)\n";
  const std::string source = first + second + third + " type \0 ! d\n"s;
  for (std::size_t length = 0; length <= source.size(); ++length) {
    Texts expected;
    if (length > first.size() + second.size() + third.size())
      expected.push_back(".C.: interface .c., a.f90:3");
    if (length > first.size()) expected.push_back("X: program x, a.f90:1");
    EXPECT_EQ(expected, gathered(source.substr(0, length))) << length;
  }
}

TEST_F(GatherDeclarations, KnowsLongNamesByTheirFirst255Characters) {
  for (const std::size_t length : {254u, 255u, 256u, 300u}) {
    std::string name;
    while (name.size() < length) name += "abcdefghij_0123456789.";
    name.resize(length);
    EXPECT_EQ("subroutine " + name.substr(0, 255),
              opened("subroutine " + name + "(x)"))
        << length;
  }
}

TEST_F(GatherDeclarations, KnowsLongOperatorsByTheirFirst255Characters) {
  for (const std::size_t length : {254u, 255u, 256u, 300u}) {
    const std::string name = "." + std::string(length - 2, 'x') + ".";
    EXPECT_EQ("interface " + name.substr(0, 255),
              opened("interface operator (" + name + ")"))
        << length;
  }
  EXPECT_EQ("interface ." + std::string(254, 'x'),
            opened("interface operator (." + std::string(900, 'x')));
}

TEST_F(GatherDeclarations, MakesNamesakesOfLongNamesThatBeginAlike) {
  const std::string name(255, 'n');
  EXPECT_EQ((Texts{std::string(255, 'N') + ": type " + name + ", a.f90:1",
                   std::string(255, 'N') + ": type " + name + ", a.f90:2"}),
            gathered("type " + name + "a\ntype " + name + "b\nend\n"));
}

static const char* const reported_source =
    "subroutine solve(a, b)\n"
    "\n"
    "  type State ! \"s\"\n"
    "type(state) :: s\r\n"
    "print *, \"x\"\n"
    "end subroutine\n";

TEST_F(GatherDeclarations, PrintsNothingAtVerbosityZeroOrLess) {
  for (const int verbosity : {0, -1, -2147483647 - 1})
    EXPECT_EQ("", report(verbosity, "src/a.f90", reported_source)) << verbosity;
}

TEST_F(GatherDeclarations, ReportsEachUnitAndTheEndInVerboseMode) {
  for (const int verbosity : {1, 2, 4})
    EXPECT_EQ(
        "SUBROUTINE          ***\tsolve\tin src/a.f90\n"
        "TYPE                ***\tState\tin src/a.f90\n"
        "END OF FILE\n",
        report(verbosity, "src/a.f90", reported_source))
        << verbosity;
}

TEST_F(GatherDeclarations, EchoesEveryExaminedLineFromVerbosityFiveOn) {
  for (const int verbosity : {5, 6, 2147483647})
    EXPECT_EQ(
        "---subroutine solve(a, b)\n"
        "SUBROUTINE          ***\tsolve\tin src/a.f90\n"
        "---\n"
        "---  type State      \n"
        "TYPE                ***\tState\tin src/a.f90\n"
        "---type(state) :: s\r\n"
        "---print *, \" \"\n"
        "END OF FILE\n",
        report(verbosity, "src/a.f90", reported_source))
        << verbosity;
}

TEST_F(GatherDeclarations, PadsTheKeywordsOfItsReport) {
  EXPECT_EQ(
      "PROGRAM             ***\ta\tin a.f90\n"
      "MODULE              ***\tB\tin a.f90\n"
      "SUBROUTINE          ***\tc\tin a.f90\n"
      "FUNCTION            ***\td\tin a.f90\n"
      "INTERFACE           ***\t\tin a.f90\n"
      "INTERFACE           ***\t.e.\tin a.f90\n"
      "TYPE                ***\tpublic\tin a.f90\n"
      "END OF FILE\n",
      report(1, "a.f90",
             "program a\nModule B\nSUBROUTINE c\nfunction d\ninterface\n"
             "interface operator (.e.)\ntype, public :: f\nend\n"));
}

TEST_F(GatherDeclarations, ReportsOnlyTheEndOfAFileOfOneLine) {
  for (const int verbosity : {1, 4, 5})
    EXPECT_EQ("END OF FILE\n", report(verbosity, "a.f90", "type a\n"));
}

TEST_F(GatherDeclarations, ReportsNoEndAtALineThatBeginsWithANul) {
  EXPECT_EQ(
      "---type a\n"
      "TYPE                ***\ta\tin a.f90\n",
      report(5, "a.f90", "type a\n\0\ntype b\nend\n"s));
}

TEST_F(GatherDeclarations, EchoesPiecesAndUnclosedStringsWithoutLineEnd) {
  const std::string x(1023, 'x');
  EXPECT_EQ("---" + x + "---y\n---\"  ---a" + "END OF FILE\n",
            report(5, "a.f90", x + "y\n\"z\na\0b\nend\n"s));
}

TEST_F(GatherDeclarations, ReportsLongNamesCut) {
  EXPECT_EQ("TYPE                ***\t" + std::string(255, 'n') +
                "\tin a.f90\nEND OF FILE\n",
            report(1, "a.f90", "type " + std::string(300, 'n') + "\nend\n"));
}

TEST_F(GatherDeclarations, TakesNoTextForAFormat) {
  EXPECT_EQ(
      "---interface operator (.%s%n.) %d\n"
      "INTERFACE           ***\t.%s%n.\tin %s%n.f90\n"
      "END OF FILE\n",
      report(5, "%s%n.f90", "interface operator (.%s%n.) %d\nend\n"));
}
