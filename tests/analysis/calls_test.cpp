#include "analysis/calls.h"

#include <gtest/gtest.h>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <string>
#include <thread>
#include <utility>
#include <vector>

#include "analysis/declarations.h"
#include "tests/support/capture.h"
#include "tests/support/file_list.h"
#include "tests/support/registered.h"
#include "tests/support/settings_guard.h"
#include "tests/support/temporary_folder.h"
#include "tests/support/wait_until.h"

using namespace std::string_literals;

using Lines = std::vector<int>;
using Texts = std::vector<std::string>;

class GatherCalls : public ::testing::Test {
 protected:
  // The lines of a file with this content that refer to a unit with this name,
  // which another file declares.
  static Lines referring_lines(const std::string& name,
                               const std::string& content,
                               bool fixed_form = false) {
    write_file("b.f90", content);
    FileList files({"known.f90", "b.f90"});
    const auto* unit =
        new Declaration(DT_SUBROUTINE, name.c_str(), files.slot(0), 1);
    gather_calls(files.slot(1), fixed_form);
    Lines lines;
    for (const Calling& place : unit->callers) {
      EXPECT_EQ(files.slot(1), place.file);
      lines.push_back(place.line);
    }
    Declaration::forget_all();
    return lines;
  }

  static bool refers(const std::string& name, const std::string& line,
                     bool fixed_form = false) {
    return !referring_lines(name, line + "\n", fixed_form).empty();
  }

  TemporaryFolder folder;
  SettingsGuard guard;
};

TEST_F(GatherCalls, AddsAReferenceToEveryUnitWithTheName) {
  write_file("b.f90", std::string(29, '\n') + "call solve(x)\n");
  FileList files({"a.f90", "b.f90"});
  for (const char* name : {"solve", "SOLVE", "solver"})
    new Declaration(DT_FUNCTION, name, files.slot(0), 1);
  gather_calls(files.slot(1), false);
  std::vector<Texts> references;
  for (const auto& entry : Declaration::decs)
    references.push_back(places(entry.second->callers));
  EXPECT_EQ((std::vector<Texts>{{"b.f90:30"}, {"b.f90:30"}, {}}), references);
}

static const std::string long_name(255, 'n');

// clang-format off
static const struct { std::string name; std::string line; bool refers; }
lines[] = {
  { "solve",    "y = SOLVE(x) + 1",      true },
  { "physics",  "use physics",           true },
  { "physics",  "use Physics, only: g",  true },
  { "point",    "type(point) :: p",      true },
  { "solve",    "end subroutine solve",  true },
  { "solve",    "u%solve",               true },
  { "solve",    "solve\r",               true },
  { "solve",    "\xe9solve\xff",         true },   // only ASCII counts
  { "solve",    "solver",                false },
  { "solve",    "re_solve",              false },
  { "solve",    "a.eq.solve",            false },  // part of a longer word
  { "solve",    "a .eq. solve",          true },
  { ".cross.",  "c = a .CROSS. b",       true },
  { ".cross.",  "c = a.cross.b",         false },
  { ".cross.",  "operator (.cross.)",    true },
  { "call",     "call f",                true },   // keywords are words too
  { "public",   "public :: f",           true },
  { "3",        "x = 3",                 true },
  { "",         "x = ; ()",              false },  // no word is empty
  { "",         "",                      false },
  { ".x.",      "interface operator(.x.)", true },  // declares nothing
  { "swap",     "module procedure swap", true },
  { long_name,  long_name + "N",         true },   // 255 characters count
  { long_name,  long_name.substr(1),     false },
  { "solve",    long_name + "solve",     false },
};

// Whether a line is a reference when comments and strings are shown, when they
// are hidden, and when they are hidden by the fixed-form rule.
static const struct {
  const char* line;
  bool shown;
  bool hidden;
  bool in_fixed_form;
} hideable[] = {
  { "! call solve",     true, false, true },
  { "x = \"solve\"",    true, false, true },
  { "print *, \"solve", true, false, true },
  { "print *, 'solve'", true, true,  true },   // apostrophes hide nothing
  { "print *, '!solve'", true, false, true },
  { "call solve",       true, true,  false },
};

static const struct { std::string content; Lines lines; } contents[] = {
  { "call &\n  solve(x)\n",              {2} },     // lines are not joined
  { "call sol&\n  &ve(x)\n",             {} },
  { "call solve(x)",                     {} },      // no line end
  { "solve\nsolve",                      {1} },
  { "solve\nsolve\n",                    {1, 2} },
  { "call solve(a); call solve(b)\n",    {1} },
  { "solve\r\n\r\ncall solve\r\n",       {1, 3} },
  { "solve\0 x\n\0solve\nsolve\n"s,      {1, 3} },
  { std::string(4090, ' ') + "solve\n",  {1} },
  { std::string(4091, ' ') + "solve\n",  {} },      // split between two pieces
  { std::string(4095, 'x') + "solve\n",  {2} },
  { std::string(4090, ' ') + "solve",    {1} },     // fills the last piece
};
// clang-format on

TEST_F(GatherCalls, TreatsEveryWordThatNamesAUnitAsAReference) {
  for (const auto& c : lines)
    EXPECT_EQ(c.refers, refers(c.name, c.line)) << c.name << " in " << c.line;
}

TEST_F(GatherCalls, IgnoresHiddenCommentsAndStrings) {
  for (const auto& c : hideable) {
    html_style = 0xffffffffu & ~1u;
    EXPECT_EQ(c.shown, refers("solve", c.line)) << c.line;
    EXPECT_EQ(c.shown, refers("solve", c.line, true)) << c.line;
    html_style = 1;
    EXPECT_EQ(c.hidden, refers("solve", c.line)) << c.line;
    EXPECT_EQ(c.in_fixed_form, refers("solve", c.line, true)) << c.line;
  }
}

TEST_F(GatherCalls, AddsOneReferenceForEachPieceOfALine) {
  for (const auto& c : contents)
    EXPECT_EQ(c.lines, referring_lines("solve", c.content)) << c.content;
}

struct Tree {
  std::vector<std::pair<std::string, std::string>> files;  // paths, contents
  Texts references;                                        // to each unit
};

// clang-format off
static const Tree trees[] = {
  // A declaring line is no reference to any namesake.
  { { {"a.f90", "subroutine solve(a, b)\nend subroutine solve\n\n"},
      {"b.f90", "\ninterface SOLVE\nend\n"} },
    { "solve: a.f90:2", "SOLVE: a.f90:2" } },
  // Its other words are references.
  { { {"a.f90", "module grid\n"
                "type grid_type\n"
                "function area(grid) result(grid_type)\n"
                "end function area\n"} },
    { "area: a.f90:4", "grid: a.f90:3", "grid_type: a.f90:3" } },
  { { {"a.f90", "function f(x) result(f)\nend\n"} },
    { "f:" } },
  { { {"a.f90", "subroutine solve\nend\n"},
      {"b.f90", "recursive subroutine solve\nend\n"} },
    { "solve: b.f90:1" } },
  // Each slot of the file declares a unit.
  { { {"a.f90", "subroutine solve\ncall solve\n"},
      {"a.f90", "subroutine solve\ncall solve\n"} },
    { "solve: a.f90:2", "solve: a.f90:2" } },
  { { {"a.f90", "interface operator (.x.)\nc = a .x. b\nend\n"} },
    { ".x.: a.f90:2" } },
  // References are sorted by file name and line, and may precede their unit.
  { { {"b.f90", "call solve\n"},
      {"a.f90", std::string(8, '\n') + "call solve\ncall solve\n"},
      {"B.f90", "call solve\n"},
      {"z.f90", "subroutine solve\nend\n"} },
    { "solve: B.f90:1 a.f90:9 a.f90:10 b.f90:1" } },
  // The declaration pass splits long lines into shorter pieces.
  { { {"a.f90", std::string(1022, ' ') + "\nsubroutine solve\nend\n"} },
    { "solve:" } },
  { { {"a.f90", std::string(1023, ' ') + "\nsubroutine solve\nend\n"} },
    { "solve: a.f90:2" } },
  // Both passes compare the same characters of long names.
  { { {"a.f90", "subroutine " + long_name + "a\n"
                "interface operator (." + long_name + ".)\n"
                "call " + long_name + "b\n"
                "a ." + long_name + ". b\n"} },
    { "." + long_name.substr(1) + ": a.f90:4", long_name + ": a.f90:3" } },
};
// clang-format on

TEST_F(GatherCalls, FindsTheReferencesInSeveralFiles) {
  for (const Tree& tree : trees) {
    Texts paths;
    for (const auto& [path, content] : tree.files) {
      write_file(path, content);
      paths.push_back(path);
    }
    FileList files(paths);
    for (std::size_t i = 0; i < paths.size(); ++i)
      gather_declarations(files.slot(i), false);
    for (std::size_t i = 0; i < paths.size(); ++i)
      gather_calls(files.slot(i), false);
    Texts references;
    for (const auto& entry : Declaration::decs) {
      references.push_back(entry.second->name + ":"s);
      for (const std::string& place : places(entry.second->callers))
        references.back() += " " + place;
    }
    EXPECT_EQ(tree.references, references);
    Declaration::forget_all();
  }
}

// clang-format off
static const struct { int verbosity; const char* path; const char* report; }
reports[] = {
  { -2147483647 - 1, "src/a.f90",   "" },
  { 0,               "src/a.f90",   "" },
  { 1,               "src/a.f90",   "Generating XREF for src/a.f90...OK\n" },
  { 2147483647,      "src/a.f90",   "Generating XREF for src/a.f90...OK\n" },
  { 1,               "empty.f90",   "Generating XREF for empty.f90...OK\n" },
  { 1,               ".",           "Generating XREF for ....OK\n" },
  { 1,               "%s%n.f90",    "Generating XREF for %s%n.f90...OK\n" },
  { 5,               "missing.f90", "" },
};
// clang-format on

TEST_F(GatherCalls, ReportsEachFileInVerboseMode) {
  write_file("src/a.f90", "call solve\n");
  write_file("empty.f90", "");
  write_file("%s%n.f90", "%s%n\n");
  for (const auto& c : reports) {
    verbose = c.verbosity;
    FileList files({c.path});
    EXPECT_EQ(c.report, printed([&] { gather_calls(files.slot(0), false); }))
        << c.verbosity;
  }
}

// The file is a pipe, which can be read only once its writer has closed it.
TEST_F(GatherCalls, FlushesItsReportBeforeReadingAndAtTheEnd) {
  ASSERT_EQ(0, mkfifo("a.f90", 0600));
  verbose = 1;
  FileList files({"a.f90"});
  printed([&] {
    std::thread writer([] {
      const int pipe_end = open("a.f90", O_RDWR);
      EXPECT_TRUE(wait_until([] { return bytes_printed() == 28; }));
      close(pipe_end);
    });
    gather_calls(files.slot(0), false);
    writer.join();
    EXPECT_EQ(31, bytes_printed());
  });
}
