#include "analysis/declarations.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <string>
#include <vector>

#include "tests/support/capture.h"
#include "tests/support/file_list.h"
#include "tests/support/registered.h"
#include "tests/support/settings_guard.h"
#include "tests/support/temporary_folder.h"

using namespace std::string_literals;

using Texts = std::vector<std::string>;

class GatherDeclarations : public ::testing::Test {
 protected:
  // The units that the pass registers for these files.
  static Texts gathered_from(const Texts& paths) {
    FileList files(paths);
    for (std::size_t i = 0; i < paths.size(); ++i)
      gather_declarations(files.slot(i), false);
    Texts units = registered();
    Declaration::forget_all();
    return units;
  }

  // The units that it registers for a file with this content.
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

  TemporaryFolder folder;
  SettingsGuard guard;
};

static std::string blanks(std::size_t count) { return std::string(count, ' '); }

// One character shorter than the longest name.
static const std::string n(254, 'n');

// clang-format off
static const struct {
  std::string line;
  std::string unit;  // empty: opens nothing
} unit_lines[] = {
  { "program heat",                       "program heat" },
  { "module physics",                     "module physics" },
  { "subroutine solve(a, b)",             "subroutine solve" },
  { "function f(x) result(y)",            "function f" },
  { "interface swap",                     "interface swap" },
  { "type state",                         "type state" },
  { " \tSUBROUTINE  \t Solve",            "subroutine Solve" },
  { "TyPe StAtE\r",                       "type StAtE" },
  { "subroutine solve;call f",            "subroutine solve" },
  { "subroutine a.b_1",                   "subroutine a.b_1" },
  { "function 2nd",                       "function 2nd" },
  { "subroutine d\xe9" "but",             "subroutine d" },
  { "subroutine procedure",               "subroutine procedure" },
  { "function operator (.x.)",            "function operator" },
  { "type assignment",                    "type assignment" },
  { "module procedures",                  "module procedures" },
  { "type " + n,                          "type " + n },
  { "type " + n + "a",                    "type " + n + "a" },
  { "type " + n + "ab",                   "type " + n + "a" },

  // Any separators before the name are skipped.
  { "subroutine(solve)",                  "subroutine solve" },
  { "type :: point",                      "type point" },
  { "type, public :: point",              "type public" },
  { "TYPE,EXTENDS(base) :: point",        "type EXTENDS" },

  // The keyword has to be the first word of the line.
  { "",                                   "" },
  { "   ",                                "" },
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
  { "\xef\xbb\xbfprogram heat",           "" },   // byte order mark

  // Module procedures and variables of a derived type are not units.
  { "module procedure swap_int, swap_real", "" },
  { "MODULE PROCEDURE :: swap",           "" },
  { "module procedure",                   "" },
  { "type(state) :: s",                   "" },
  { "TYPE (state) :: s",                  "" },
  { "type \t (state), pointer :: s",      "" },
  { "type(",                              "" },

  // A unit needs no name.
  { "interface",                          "interface " },
  { "interface \r",                       "interface " },
  { "program",                            "program " },
  { "module",                             "module " },
  { "subroutine ()",                      "subroutine " },
  { "function +",                         "function " },
  { "type ::",                            "type " },

  // The name of an operator includes its dots.
  { "interface assignment(=)",            "" },
  { "INTERFACE ASSIGNMENT (=)",           "" },
  { "interface assignments",              "interface assignments" },
  { "interface operator (.cross.)",       "interface .cross." },
  { "INTERFACE OPERATOR (.CROSS.)",       "interface .CROSS." },
  { "interface \t operator \t( \t.x. )",  "interface .x." },
  { "interface operator\t(.x.)",          "interface .x." },
  { "interface operator (.x.y.)",         "interface .x." },
  { "interface operator (.a b.)",         "interface .a b." },
  { "interface operator (..)",            "interface .." },
  { "interface operator (.\xe9.)",        "interface .\xe9." },
  { "interface operator-(.x.)",           "interface .x." },  // skips the "-"
  { "interface operator((.x.)",           "interface .x." },
  { "interface operators (.x.)",          "interface operators" },
  { "interface operator (+)",             "" },
  { "interface operator (==)",            "" },
  { "interface operator(.cross.)",        "" },   // skips the "("
  { "interface operator(+)",              "" },
  { "interface operator x(.x.)",          "" },
  { "interface operator (",               "" },
  { "interface operator (  ",             "" },
  { "interface operator ( \r",            "" },
  { "interface operator (x.)",            "" },
  { "interface :: operator (.x.)",        "" },   // skips only ":: operat"

  // The line ends before the "(".
  { "interface operator",                 "" },
  { "interface operator ",                "" },
  { "interface operator\0 (.x.)"s,        "" },
  { blanks(1005) + "interface operator (.x.)", "" },
  { blanks(1004) + "interface operator (.x.)", "" },
  { blanks(1003) + "interface operator (.x.)", "" },
  { blanks(1002) + "interface operator (.x.)", "interface ." },

  // Without a closing dot the name includes the rest of the line.
  { "interface operator (.cross",         "interface .cross\n" },
  { "interface operator (.cross)",        "interface .cross)\n" },
  { "interface operator (.cross) \r",     "interface .cross) \r\n" },
  { "interface operator (.",              "interface .\n" },
  { "interface operator (." + n,          "interface ." + n },
  { "interface operator (." + n + ".)",   "interface ." + n },
  { "interface operator (." + n.substr(1) + ".)",
                                          "interface ." + n.substr(1) + "." },

  // Comments and strings are hidden.
  { "! subroutine old",                   "" },
  { "print *, \"program x\"",             "" },
  { "\"\" program x",                     "" },
  { "subroutine ! solve",                 "subroutine " },
  { "subroutine \"old\" solve",           "subroutine solve" },
  { "subroutine \"open",                  "subroutine " },
  { "subroutine 'old' solve",             "subroutine old" },  // not hidden
  { "interface operator (.a!b.)",         "interface .a    \n" },
};
// clang-format on

TEST_F(GatherDeclarations, RecordsUnitsWhoseKeywordIsTheFirstWordOfALine) {
  for (const auto& c : unit_lines) EXPECT_EQ(c.unit, opened(c.line)) << c.line;
}

TEST_F(GatherDeclarations, IgnoresCommentsAndStringsWhateverTheOutputOptions) {
  for (const std::uint32_t style : {0u, 1u, 0xffffffffu}) {
    html_style = style;
    EXPECT_EQ("subroutine solve", opened("subroutine \"old\" solve")) << style;
  }
}

TEST_F(GatherDeclarations, AppliesTheFixedFormRuleWhenAskedTo) {
  EXPECT_EQ("subroutine old", opened("subroutine \"old\" solve", true));
  EXPECT_EQ("", opened("C\rsubroutine old", true));
}

TEST_F(GatherDeclarations, RecordsNamesakesInFileOrder) {
  write_file("z.f90", "\nModule Physics\nend\n");
  write_file("b.f90", "MODULE physics\nend\n");
  EXPECT_EQ((Texts{"PHYSICS: module Physics, z.f90:2",
                   "PHYSICS: module physics, b.f90:1",
                   "PHYSICS: module physics, b.f90:1"}),
            gathered_from({"z.f90", "b.f90", "b.f90"}));
}

// clang-format off
static const struct { std::string content; Texts units; } contents[] = {
  { std::string(11, '\n') + "subroutine solve(a, b)\nend\n",
    {"SOLVE: subroutine solve, a.f90:12"} },
  { "interface swap\nend interface\nsubroutine SWAP\nfunction swap\nend\n",
    {"SWAP: interface swap, a.f90:1", "SWAP: subroutine SWAP, a.f90:3",
     "SWAP: function swap, a.f90:4"} },
  { "interface\ninterface\nend\n",
    {": interface , a.f90:1", ": interface , a.f90:2"} },

  // The last line is never examined.
  { "subroutine solve\n",                 {} },
  { "subroutine solve",                   {} },
  { "type a\ntype b",                     {"A: type a, a.f90:1"} },
  { "type a\n\n",                         {"A: type a, a.f90:1"} },
  { "type a" + blanks(1017),              {} },
  { "type a" + blanks(1017) + "\n",       {"A: type a, a.f90:1"} },

  { "type a\r\n\r\ntype b\r\nend\r\n",
    {"A: type a, a.f90:1", "B: type b, a.f90:3"} },
  { "subroutine &\n  solve\nend\n",       {": subroutine , a.f90:1"} },
  { "x = \"\ntype a\nend\n",              {"A: type a, a.f90:2"} },

  // Each piece of a long line counts as a line.
  { blanks(1022) + "\ntype a\nend\n",     {"A: type a, a.f90:2"} },
  { blanks(1023) + "\ntype a\nend\n",     {"A: type a, a.f90:3"} },
  { blanks(4096) + "\ntype a\nend\n",     {"A: type a, a.f90:6"} },
  { "!" + blanks(1022) + "type a\nend\n", {"A: type a, a.f90:2"} },

  // A NUL ends its line. A line that begins with one ends the file.
  { "type \0a\ntype b\nend\n"s,
    {": type , a.f90:1", "B: type b, a.f90:2"} },
  { "type a\n\0\ntype b\nend\n"s,         {"A: type a, a.f90:1"} },
  { "\0type a\ntype b\nend\n"s,           {} },
};
// clang-format on

TEST_F(GatherDeclarations, RecordsTheLineOfEachUnit) {
  for (const auto& c : contents)
    EXPECT_EQ(c.units, gathered(c.content)) << c.content;
}

static const char* const source =
    "subroutine solve(a, b)\n"
    "\n"
    "  type State ! \"s\"\n"
    "type(state) :: s\r\n"
    "print *, \"x\"\n"
    "end subroutine\n";

static const char* const unit_report =
    "SUBROUTINE          ***\tsolve\tin src/a.f90\n"
    "TYPE                ***\tState\tin src/a.f90\n"
    "END OF FILE\n";

static const char* const line_report =
    "---subroutine solve(a, b)\n"
    "SUBROUTINE          ***\tsolve\tin src/a.f90\n"
    "---\n"
    "---  type State      \n"
    "TYPE                ***\tState\tin src/a.f90\n"
    "---type(state) :: s\r\n"
    "---print *, \" \"\n"
    "END OF FILE\n";

// clang-format off
static const struct {
  int verbosity;
  std::string path;
  std::string content;
  std::string report;
} reports[] = {
  { -2147483647 - 1, "src/a.f90", source, "" },
  { 0,               "src/a.f90", source, "" },
  { 1,               "src/a.f90", source, unit_report },
  { 4,               "src/a.f90", source, unit_report },
  { 5,               "src/a.f90", source, line_report },
  { 2147483647,      "src/a.f90", source, line_report },
  { 1, "a.f90",
    "program a\nModule B\nSUBROUTINE c\nfunction d\ninterface\n"
    "interface operator (.e.)\ntype, public :: f\nend\n",
    "PROGRAM             ***\ta\tin a.f90\n"
    "MODULE              ***\tB\tin a.f90\n"
    "SUBROUTINE          ***\tc\tin a.f90\n"
    "FUNCTION            ***\td\tin a.f90\n"
    "INTERFACE           ***\t\tin a.f90\n"
    "INTERFACE           ***\t.e.\tin a.f90\n"
    "TYPE                ***\tpublic\tin a.f90\n"
    "END OF FILE\n" },
  { 5, "a.f90", "type a\n", "END OF FILE\n" },
  // The end is not reported at a line that begins with a NUL.
  { 5, "a.f90", "type a\n\0\ntype b\nend\n"s,
    "---type a\n"
    "TYPE                ***\ta\tin a.f90\n" },
  // Pieces of lines and unclosed strings are echoed without a line end.
  { 5, "a.f90", blanks(1023) + "y\n\"z\na\0b\nend\n"s,
    "---" + blanks(1023) + "---y\n---\"  ---aEND OF FILE\n" },
  // Names and paths are not used as formats.
  { 5, "%s%n.f90", "interface operator (.%s%n.) %d\nend\n",
    "---interface operator (.%s%n.) %d\n"
    "INTERFACE           ***\t.%s%n.\tin %s%n.f90\n"
    "END OF FILE\n" },
};
// clang-format on

static std::string report_of(const std::string& path) {
  FileList files({path});
  return printed([&] { gather_declarations(files.slot(0), false); });
}

TEST_F(GatherDeclarations, ReportsUnitsFromVerbosityOneAndLinesFromFive) {
  for (const auto& c : reports) {
    write_file(c.path, c.content);
    verbose = c.verbosity;
    EXPECT_EQ(c.report, report_of(c.path)) << c.verbosity;
  }
}

TEST_F(GatherDeclarations, SilentlySkipsFilesThatCannotBeRead) {
  write_file("empty.f90", "");
  EXPECT_EQ(Texts{}, gathered_from({"missing.f90", "empty.f90", "."}));
  verbose = 5;
  for (const char* path : {"missing.f90", "empty.f90", "."})
    EXPECT_EQ("", report_of(path)) << path;
}
