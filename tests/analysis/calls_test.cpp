#include "analysis/calls.h"

#include <gtest/gtest.h>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <memory>
#include <string>
#include <thread>
#include <vector>

#include "analysis/declarations.h"
#include "analysis/words.h"
#include "tests/support/capture.h"
#include "tests/support/file_list.h"
#include "tests/support/open_files.h"
#include "tests/support/settings_guard.h"
#include "tests/support/temporary_folder.h"
#include "tests/support/wait_until.h"

using namespace std::string_literals;

using Texts = std::vector<std::string>;

class GatherCalls : public ::testing::Test {
 protected:
  // A unit that no line of the files of these tests declares.
  static Declaration* known(std::string name) {
    static char path[] = "known.f90";
    static char* slot = path;
    return new Declaration(DT_SUBROUTINE, name.data(), &slot, 1);
  }

  // The places that refer to a unit, as "file:line".
  static Texts references(const Declaration* unit) {
    Texts places;
    for (const Calling& place : unit->callers)
      places.push_back(*place.file + ":"s + std::to_string(place.line));
    return places;
  }

  // The same for every registered unit, as "name: place place".
  static Texts all_references() {
    Texts units;
    for (const auto& entry : Declaration::decs) {
      std::string text = entry.second->name + ":"s;
      for (const std::string& place : references(entry.second))
        text += " " + place;
      units.push_back(text);
    }
    return units;
  }

  // The lines of a file with this content that refer to a unit.
  static std::vector<int> referring_lines(const std::string& name,
                                          const std::string& content,
                                          bool fixed_form = false) {
    write_file("b.f90", content);
    FileList files({"b.f90"});
    const Declaration* unit = known(name);
    gather_calls(files.slot(0), fixed_form);
    std::vector<int> lines;
    for (const Calling& place : unit->callers) {
      EXPECT_EQ(files.slot(0), place.file);
      lines.push_back(place.line);
    }
    Declaration::forget_all();
    return lines;
  }

  static bool refers(const std::string& name, const std::string& line,
                     bool fixed_form = false) {
    return !referring_lines(name, line + "\n", fixed_form).empty();
  }

  // The call pass over b.f90 with this content.
  void scan(const std::string& content) {
    write_file("b.f90", content);
    listed = std::make_unique<FileList>(Texts{"b.f90"});
    gather_calls(listed->slot(0), false);
  }

  // Both passes over these files.
  void run(const Texts& paths) {
    listed = std::make_unique<FileList>(paths);
    for (std::size_t i = 0; i < paths.size(); ++i)
      gather_declarations(listed->slot(i), false);
    for (std::size_t i = 0; i < paths.size(); ++i)
      gather_calls(listed->slot(i), false);
  }

  static std::string report(int verbosity, std::string path) {
    verbose = verbosity;
    char* slot = path.data();
    std::string text = printed([&] { gather_calls(&slot, false); });
    Declaration::forget_all();
    return text;
  }

  TemporaryFolder folder;
  SettingsGuard guard;

 private:
  std::unique_ptr<FileList> listed;  // until the end of the test
};

using Lines = std::vector<int>;

TEST_F(GatherCalls, AddsAReferenceToEveryUnitOfTheName) {
  const Declaration* const first = known("solve");
  const Declaration* const second = known("SOLVE");
  const Declaration* const other = known("solver");
  scan(std::string(29, '\n') + "call solve(x)\n");
  EXPECT_EQ(Texts{"b.f90:30"}, references(first));
  EXPECT_EQ(Texts{"b.f90:30"}, references(second));
  EXPECT_EQ(Texts{}, references(other));
}

// clang-format off
static const struct { const char* name; const char* line; bool refers; }
lines[] = {
  { "solve",    "y = SOLVE(x) + 1",      true },
  { "physics",  "use physics",           true },
  { "physics",  "use Physics, only: g",  true },
  { "point",    "type(point) :: p",      true },
  { "solve",    "end subroutine solve",  true },
  { "solve",    "u%solve",               true },
  { "solve",    "solve",                 true },
  { "solve",    "solve\r",               true },
  { "solve",    "\xe9solve\xff",         true },   // above 127: separators
  { "solve",    "call sol&",             false },
  { "solve",    "solver",                false },
  { "solve",    "re_solve",              false },
  { "solve",    "solve2",                false },
  { "solve",    "a.eq.solve",            false },  // part of a longer word
  { "solve",    "a .eq. solve",          true },
  { ".cross.",  "c = a .CROSS. b",       true },
  { ".cross.",  "c = a.cross.b",         false },
  { ".cross.",  "operator (.cross.)",    true },
  { "call",     "call f",                true },   // keywords are words too
  { "if",       "end if",                true },
  { "public",   "public :: f",           true },
  { "3",        "x = 3",                 true },
  { "",         "x = ; ()",              false },  // no word is empty
  { "",         "",                      false },
};
// clang-format on

TEST_F(GatherCalls, TakesAnyWordThatIsTheNameOfAUnit) {
  for (const auto& c : lines)
    EXPECT_EQ(c.refers, refers(c.name, c.line)) << c.name << " in " << c.line;
}

TEST_F(GatherCalls, IgnoresWordsThatNameNoUnit) {
  scan("call unknown(x)\n");
  EXPECT_TRUE(Declaration::decs.empty());
}

TEST_F(GatherCalls, AddsOneRecordForALineHoweverOftenItNamesAUnit) {
  const Declaration* const first = known("solve");
  const Declaration* const second = known("solve");
  scan("call solve(a); call solve(b)\n");
  EXPECT_EQ(Texts{"b.f90:1"}, references(first));
  EXPECT_EQ(Texts{"b.f90:1"}, references(second));
}

TEST_F(GatherCalls, TakesTheDeclaringLineForNoReferenceToAnyNamesake) {
  write_file("a.f90",
             "subroutine solve(a, b)\n"
             "end subroutine solve\n"
             "\n");
  write_file("b.f90", "\ninterface SOLVE\nend\n");
  run({"a.f90", "b.f90"});
  EXPECT_EQ((Texts{"solve: a.f90:2", "SOLVE: a.f90:2"}), all_references());
}

TEST_F(GatherCalls, TakesTheOtherWordsOfADeclaringLineForReferences) {
  write_file("a.f90",
             "module grid\n"
             "type grid_type\n"
             "function area(grid) result(grid_type)\n"
             "end function area\n");
  run({"a.f90"});
  EXPECT_EQ((Texts{"area: a.f90:4", "grid: a.f90:3", "grid_type: a.f90:3"}),
            all_references());
}

TEST_F(GatherCalls, TakesTheNameRepeatedOnItsDeclaringLineForNoReference) {
  write_file("a.f90", "function f(x) result(f)\nend\n");
  run({"a.f90"});
  EXPECT_EQ(Texts{"f:"}, all_references());
}

TEST_F(GatherCalls, TakesADeclaringLineOfAnotherFileForAReference) {
  write_file("a.f90", "subroutine solve\nend\n");
  write_file("b.f90", "recursive subroutine solve\nend\n");
  run({"a.f90", "b.f90"});
  EXPECT_EQ(Texts{"solve: b.f90:1"}, all_references());
}

// Each of the two slots declares its own, so neither line is a reference.
TEST_F(GatherCalls, TakesAFileListedTwiceForTwo) {
  write_file("a.f90", "subroutine solve\ncall solve\n");
  run({"a.f90", "a.f90"});
  EXPECT_EQ((Texts{"solve: a.f90:2", "solve: a.f90:2"}), all_references());
}

TEST_F(GatherCalls, KnowsOperatorsOnTheirDeclaringLine) {
  write_file("a.f90",
             "interface operator (.cross.)\n"
             "c = a .cross. b\n"
             "end\n");
  run({"a.f90"});
  EXPECT_EQ(Texts{".cross.: a.f90:2"}, all_references());
}

// "interface operator(.x.)" declares nothing, so it is a reference.
TEST_F(GatherCalls, TakesALineThatIsNotRecordedForAReference) {
  EXPECT_TRUE(refers(".x.", "interface operator(.x.)"));
  EXPECT_TRUE(refers("swap", "module procedure swap"));
}

TEST_F(GatherCalls, FindsReferencesThatPrecedeTheirUnitInTheFileOrder) {
  write_file("a.f90", "call solve\nend\n");
  write_file("b.f90", "subroutine solve\nend\n");
  run({"a.f90", "b.f90"});
  EXPECT_EQ(Texts{"solve: a.f90:1"}, all_references());
}

TEST_F(GatherCalls, OrdersReferencesByFileNameThenByLine) {
  const Declaration* const unit = known("solve");
  write_file("b.f90", "call solve\n");
  write_file("a.f90", std::string(8, '\n') + "call solve\ncall solve\n");
  write_file("B.f90", "call solve\n");
  FileList files({"b.f90", "a.f90", "B.f90"});
  for (std::size_t i = 0; i < 3; ++i) gather_calls(files.slot(i), false);
  EXPECT_EQ((Texts{"B.f90:1", "a.f90:9", "a.f90:10", "b.f90:1"}),
            references(unit));
}

TEST_F(GatherCalls, AddsNoRecordTwice) {
  Declaration* const unit = known("solve");
  FileList files({"b.f90", "b.f90", "a.f90"});
  unit->add_calling(files.slot(0), 30);
  unit->add_calling(files.slot(0), 30);
  unit->add_calling(files.slot(1), 30);
  EXPECT_EQ(Texts{"b.f90:30"}, references(unit));
  EXPECT_EQ(files.slot(0), unit->callers.begin()->file);
  unit->add_calling(files.slot(1), 4);
  unit->add_calling(files.slot(2), 99);
  EXPECT_EQ((Texts{"a.f90:99", "b.f90:4", "b.f90:30"}), references(unit));
}

TEST_F(GatherCalls, KeepsTheReferencesThatItFinds) {
  Declaration* const unit = known("solve");
  write_file("b.f90", "call solve\n");
  FileList files({"b.f90", "a.f90"});
  unit->add_calling(files.slot(1), 7);
  gather_calls(files.slot(0), false);
  EXPECT_EQ((Texts{"a.f90:7", "b.f90:1"}), references(unit));
  EXPECT_EQ(1u, Declaration::decs.size());
}

static const char* const commented[] = {"! call solve", "x = \"solve\"",
                                        "print *, \"solve"};

TEST_F(GatherCalls, TakesCommentsAndStringsInUnlessTheyAreHidden) {
  html_style = 0xffffffffu & ~1u;
  for (const char* line : commented) EXPECT_TRUE(refers("solve", line)) << line;
}

TEST_F(GatherCalls, LeavesHiddenCommentsAndStringsOut) {
  html_style = 1;
  for (const char* line : commented)
    EXPECT_FALSE(refers("solve", line)) << line;
}

TEST_F(GatherCalls, NeverHidesApostropheStrings) {
  html_style = 1;
  EXPECT_TRUE(refers("solve", "print *, 'solve'"));
  EXPECT_FALSE(refers("solve", "print *, '!solve'"));
}

TEST_F(GatherCalls, HandsTheFixedFormRuleOn) {
  html_style = 1;
  EXPECT_FALSE(refers("solve", "call solve", true));
  EXPECT_TRUE(refers("solve", " ! solve", true));
  EXPECT_TRUE(refers("solve", " \"solve\"", true));
  html_style = 0;
  EXPECT_TRUE(refers("solve", "call solve", true));
}

TEST_F(GatherCalls, DoesNotJoinContinuedLines) {
  EXPECT_EQ((Lines{2}), referring_lines("solve", "call &\n  solve(x)\n"));
  EXPECT_EQ(Lines{}, referring_lines("solve", "call sol&\n  &ve(x)\n"));
}

TEST_F(GatherCalls, NeverExaminesALastLineWithoutLineEnd) {
  EXPECT_EQ(Lines{}, referring_lines("solve", "call solve(x)"));
  EXPECT_EQ((Lines{1}), referring_lines("solve", "solve\nsolve"));
  EXPECT_EQ((Lines{1, 2}), referring_lines("solve", "solve\nsolve\n"));
}

TEST_F(GatherCalls, ReadsDosLineEnds) {
  EXPECT_EQ((Lines{1, 3}),
            referring_lines("solve", "solve\r\n\r\ncall solve\r\n"));
}

// A line of so many characters that begins with the name, then one that is the
// name.
TEST_F(GatherCalls, CountsPiecesOf4095Characters) {
  const struct {
    std::size_t characters;
    int next_line;
  } cases[] = {{1022, 2}, {1023, 2}, {1024, 2}, {4094, 2},   {4095, 3},
               {4096, 3}, {8188, 3}, {8190, 4}, {100000, 26}};
  for (const auto& c : cases) {
    const std::string line = "solve" + std::string(c.characters - 5, ' ');
    EXPECT_EQ((Lines{1, c.next_line}),
              referring_lines("solve", line + "\nsolve\n"))
        << c.characters;
  }
}

TEST_F(GatherCalls, ExaminesALastPieceThatFillsTheBuffer) {
  const struct {
    std::size_t characters;
    Lines lines;
  } cases[] = {{1022, {}},  {1023, {}},  {1024, {}},  {4094, {}},
               {4095, {1}}, {4096, {1}}, {8189, {1}}, {8190, {1}}};
  for (const auto& c : cases)
    EXPECT_EQ(
        c.lines,
        referring_lines("solve", "solve" + std::string(c.characters - 5, ' ')))
        << c.characters;
  EXPECT_EQ((Lines{2}),
            referring_lines("solve", std::string(8185, ' ') + "solve"));
}

TEST_F(GatherCalls, FindsNoWordThatIsTornBetweenPieces) {
  EXPECT_EQ((Lines{1}),
            referring_lines("solve", std::string(4090, ' ') + "solve\n"));
  EXPECT_EQ(Lines{},
            referring_lines("solve", std::string(4091, ' ') + "solve\n"));
  EXPECT_EQ((Lines{2}),
            referring_lines("solve", std::string(4095, 'x') + "solve\n"));
}

TEST_F(GatherCalls, CountsOtherwiseThanTheDeclarationPassInLongLines) {
  write_file("a.f90", std::string(1023, ' ') + "\nsubroutine solve\nend\n");
  run({"a.f90"});
  ASSERT_EQ(1u, Declaration::decs.size());
  EXPECT_EQ(3, Declaration::decs.begin()->second->line);
  EXPECT_EQ(Texts{"solve: a.f90:2"}, all_references());
}

TEST_F(GatherCalls, AgreesWithTheDeclarationPassInShorterLines) {
  write_file("a.f90", std::string(1022, ' ') + "\nsubroutine solve\nend\n");
  run({"a.f90"});
  EXPECT_EQ(Texts{"solve:"}, all_references());
}

TEST_F(GatherCalls, SeesNothingOfALineBeyondANul) {
  EXPECT_EQ(
      (Lines{1, 3}),
      referring_lines("solve", "solve\0 x\n\0solve\nsolve\0\nx \0solve\n"s));
}

TEST_F(GatherCalls, ReadsFilesOfEveryByte) {
  std::string rising;
  for (int b = 0; b < 256; ++b) rising += static_cast<char>(b);
  const std::string falling(rising.rbegin(), rising.rend());
  // "_" stands alone, between characters of no word, on line 2 of the first
  // and on line 1 of the second.
  EXPECT_EQ((Lines{2, 3}), referring_lines("_", rising + "\n_\n"));
  EXPECT_EQ((Lines{1, 3}), referring_lines("_", falling + "\n_\n"));
  EXPECT_EQ((Lines{2}),
            referring_lines("abcdefghijklmnopqrstuvwxyz", rising + "\n"));
  EXPECT_EQ((Lines{1}),
            referring_lines("ZYXWVUTSRQPONMLKJIHGFEDCBA", falling + "\n"));
}

TEST_F(GatherCalls, KnowsLongNamesByTheirFirst255Characters) {
  const std::string name(255, 'n');
  for (const std::size_t length : {255u, 256u, 300u, 4000u})
    EXPECT_EQ((Lines{1}),
              referring_lines(name, std::string(length, 'N') + "\n"))
        << length;
  EXPECT_FALSE(refers(name, name.substr(1)));
}

TEST_F(GatherCalls, FindsUnitsOfLongNamesThatTheDeclarationPassFound) {
  for (const std::size_t length : {255u, 256u, 300u}) {
    const std::string name(length, 'n');
    const std::string dotted = "." + std::string(length - 2, 'x') + ".";
    write_file("a.f90", "subroutine " + name + "\ninterface operator (" +
                            dotted + ")\ncall " + name + "\na " + dotted +
                            " b\n");
    run({"a.f90"});
    EXPECT_EQ((Texts{dotted.substr(0, 255) + ": a.f90:4",
                     name.substr(0, 255) + ": a.f90:3"}),
              all_references())
        << length;
    Declaration::forget_all();
  }
}

TEST_F(GatherCalls, TakesTheRestOfALongWordForNoWord) {
  EXPECT_FALSE(refers("solve", std::string(255, 'n') + "solve"));
  EXPECT_FALSE(refers("solve", std::string(256, 'n') + ".solve"));
}

TEST_F(GatherCalls, TellsNamesApartThatShareAHash) {
  ASSERT_EQ(hash_of("apply_rk_0"), hash_of("cpply_rk_1"));
  ASSERT_EQ(hash_of("apply_rk_0"), hash_of("epply_rk_2"));
  const Declaration* const first = known("apply_rk_0");
  const Declaration* const second = known("cpply_rk_1");
  scan("cpply_rk_1\nAPPLY_RK_0\nepply_rk_2\ncpply_RK_1\n");
  EXPECT_EQ((Texts{"b.f90:2"}), references(first));
  EXPECT_EQ((Texts{"b.f90:1", "b.f90:4"}), references(second));
}

TEST_F(GatherCalls, SkipsAFileThatCannotBeOpenedSilently) {
  known("missing");
  EXPECT_EQ("", report(5, "missing.f90"));
}

TEST_F(GatherCalls, LeavesNoFileOpen) {
  write_file("a.f90", "call solve\n");
  write_file("empty.f90", "");
  FileList files({"a.f90", "empty.f90", ".", "missing.f90"});
  const auto before = open_files();
  for (int i = 0; i < files.count(); ++i) {
    gather_calls(files.data() + i, false);
    EXPECT_EQ(before, open_files()) << files.data()[i];
  }
}

TEST_F(GatherCalls, PrintsNothingAtVerbosityZeroOrLess) {
  write_file("src/a.f90", "call solve\n");
  for (const int verbosity : {0, -1, -2147483647 - 1})
    EXPECT_EQ("", report(verbosity, "src/a.f90")) << verbosity;
}

TEST_F(GatherCalls, ReportsTheFileInVerboseMode) {
  write_file("src/a.f90", "call solve\n");
  for (const int verbosity : {1, 4, 5, 2147483647})
    EXPECT_EQ("Generating XREF for src/a.f90...OK\n",
              report(verbosity, "src/a.f90"))
        << verbosity;
}

TEST_F(GatherCalls, ReportsEmptyFilesAndDirectoriesToo) {
  write_file("empty.f90", "");
  EXPECT_EQ("Generating XREF for empty.f90...OK\n", report(1, "empty.f90"));
  EXPECT_EQ("Generating XREF for ....OK\n", report(1, "."));
}

TEST_F(GatherCalls, TakesNoPathForAFormat) {
  write_file("%s%n.f90", "%s%n\n");
  EXPECT_EQ("Generating XREF for %s%n.f90...OK\n", report(1, "%s%n.f90"));
}

// The file is a named pipe, which is read when its writer lets it.
TEST_F(GatherCalls, ShowsItsReportBeforeItReadsAndWhenItIsDone) {
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
