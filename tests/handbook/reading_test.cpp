// The handbook's small examples of how sources are read. The pages must show
// what the handbook says about each.

#include <gtest/gtest.h>

#include <regex>
#include <string>
#include <utility>
#include <vector>

#include "analysis/declaration.h"
#include "analysis/keywords.h"
#include "tests/handbook/handbook.h"
#include "tests/handbook/handbook_run.h"
#include "tests/support/registered.h"

namespace {

const std::string line_behind = "end\n\n";

class HandbookReading : public HandbookRun {
 protected:
  // The kind and name of each unit that a text opens; "nothing" if none.
  static std::string units_in(const std::string& text) {
    run({{"line.f90", text + "\n" + line_behind}});
    std::string units;
    for (const auto& [key, unit] : Declaration::decs)
      units += kind_name(unit->type) + " " + unit->name;
    return units.empty() ? "nothing" : units;
  }

  // The page of a text beside the file in which solve is declared.
  static std::string page_beside_solve(const std::string& text) {
    run({{"line.f90", text + "\n" + line_behind},
         {"solve.f90", "subroutine solve\n" + line_behind}});
    return page("line.f90");
  }
};

TEST_F(HandbookReading, LinesOpenTheUnitsThatTheTableLists) {
  const std::vector<std::pair<std::string, std::string>> lines = {
      {"subroutine solve(a, b)", "subroutine solve"},
      {"function flux(u) result(f)", "function flux"},
      {"pure function flux(u)", "nothing"},
      {"recursive subroutine walk(n)", "nothing"},
      {"real function area(r)", "nothing"},
      {"end subroutine solve", "nothing"},
      {"x = 1; subroutine late", "nothing"},
      {"10 subroutine late", "nothing"},
      {"type point", "type point"},
      {"type :: point", "type point"},
      {"type, public :: point", "type public"},
      {"type, extends(point) :: pixel", "type extends"},
      {"type(point) :: p", "nothing"},
      {"type is (integer)", "type is"},
      {"interface swap", "interface swap"},
      {"interface", "interface "},
      {"abstract interface", "nothing"},
      {"interface operator (.dot.)", "interface .dot."},
      {"interface operator(.dot.)", "nothing"},
      {"interface operator (+)", "nothing"},
      {"interface assignment (=)", "nothing"},
      {"module procedure swap_int", "nothing"},
      {"module function area(r)", "module function"},
      {"submodule (physics) details", "nothing"},
      {"type = 3", "type 3"},
  };
  const Rows rows = table({"Line", "Opens"});
  ASSERT_EQ(lines.size(), rows.size());
  for (std::size_t i = 0; i < rows.size(); ++i) {
    const auto& [line, opens] = lines[i];
    EXPECT_EQ(line, rows[i].at(0));
    const std::string told = rows[i].at(1);
    EXPECT_EQ(opens, std::regex_replace(
                         told.substr(0, told.find_first_of(",:")),
                         std::regex("^an? | named|without a name$"), ""));
    EXPECT_EQ(opens, units_in(line)) << line;
  }
}

TEST_F(HandbookReading, LinesReferToSolveAsTheTableSays) {
  const struct {
    std::string line;
    std::string refers;
    std::size_t links;
  } lines[] = {
      {"call SOLVE(x)", "yes", 1},
      {"end subroutine solve", "yes", 1},
      {"print *, \"solve\", 'solve'", "yes, both", 2},
      {"! see solve for this", "yes", 1},
      {"! see solve.", "no", 0},
      {"a .eq. solve", "yes", 1},
      {"a.eq.solve", "no", 0},
      {"solve_all = 1", "no", 0},
      {"subroutine solve(a)", "no: it is the declaration", 0},
  };
  const Rows rows = table({"Line", "Refers to solve"});
  ASSERT_EQ(std::size(lines), rows.size());
  for (std::size_t i = 0; i < rows.size(); ++i) {
    EXPECT_EQ(lines[i].line, rows[i].at(0));
    EXPECT_EQ(0u, rows[i].at(1).find(lines[i].refers)) << rows[i].at(1);
    EXPECT_EQ(lines[i].links,
              count_of("#solve-1\"><b>", page_beside_solve(lines[i].line)))
        << lines[i].line;
  }
}

TEST_F(HandbookReading, ContinuedStringOpensAUnit) {
  EXPECT_TRUE(handbook_says(
      "the second line here opens a subroutine named in, although it is part "
      "of a string: text = \"this happens when a & subroutine in a string "
      "begins a line\""));
  EXPECT_EQ("subroutine in",
            units_in("    text = \"this happens when a &\n"
                     "    subroutine in a string begins a line\""));
}

TEST_F(HandbookReading, ContinuationLinesAreNotJoined) {
  EXPECT_TRUE(handbook_says(
      "subroutine & solve(a, b) a subroutine without a name call sol& &ve(a, b)"
      " no reference to solve"));
  const std::string text =
      "    subroutine &\n      solve(a, b)\n\n    call sol&\n    &ve(a, b)";
  EXPECT_EQ("subroutine ", units_in(text));
  // The line that looks like the declaration is the one reference.
  EXPECT_EQ(1u, count_of("#solve-1\"><b>", page_beside_solve(text)));
}

TEST_F(HandbookReading, LongestLineThatIsReadWholeHasTheStatedLength) {
  EXPECT_TRUE(handbook_says("Lines of up to 1022 characters are read whole."));
  for (const std::size_t length : {1022u, 1023u}) {
    run({{"line.f90",
          std::string(length, '!') + "\nsubroutine s\n" + line_behind}});
    EXPECT_EQ(length == 1022 ? 1u : 0u,
              count_of("NAME=\"s-1\"", page("line.f90")));
  }
}

TEST_F(HandbookReading, NamesDifferInTheStatedNumberOfCharacters) {
  EXPECT_TRUE(handbook_says("told apart by their first 255 characters"));
  for (const std::size_t alike : {254u, 255u}) {
    const std::string name(alike, 'n');
    run({{"line.f90",
          "subroutine " + name + "a\ncall " + name + "b\n" + line_behind}});
    EXPECT_EQ(alike == 254 ? 0u : 1u,
              count_of("<a NAME=\"line2\">", page("line.f90")));
  }
}

TEST(HandbookLevels, TableHasAllWordsThatCanBeHighlighted) {
  Rows rows = {{"1", ""},
               {"2", "those of level 1, and "},
               {"3", "those of level 2, and "}};
  // The list holds the words in reverse.
  for (const Syntax* s = Syntax::first; s != nullptr; s = s->next) {
    std::string& words = rows.at(static_cast<std::size_t>(s->level) - 1).at(1);
    const std::size_t at = s->level == 1 ? 0 : 22;
    words.insert(at, s->word + std::string(words.size() == at ? "" : ", "));
  }
  EXPECT_EQ(rows, table({"Level", "Words"}));
}

}  // namespace
