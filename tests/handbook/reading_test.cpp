// The handbook's small examples of how sources are read, typed into files and
// run: what each is said to do is what the pages have to show.

#include <gtest/gtest.h>

#include <algorithm>
#include <cctype>
#include <cstdint>
#include <set>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

#include "analysis/keywords.h"
#include "driver/settings.h"
#include "tests/handbook/engine_run.h"
#include "tests/handbook/handbook.h"

namespace {

using Units = std::set<std::pair<std::string, std::string>>;

std::string upper(std::string text) {
  for (char& c : text) c = static_cast<char>(std::toupper(c));
  return text;
}

// What the handbook's words say that a line opens: "subroutine solve", "a type
// named 3, if ...", "an interface without a name", "nothing: ...".
Units units_told(const std::string& words) {
  std::istringstream stream(words.substr(0, words.find_first_of(",:")));
  std::vector<std::string> told;
  for (std::string word; stream >> word;) told.push_back(word);
  if (told == std::vector<std::string>{"nothing"}) return {};
  if (told.at(0) == "a" || told.at(0) == "an") told.erase(told.begin());
  const std::string kind = upper(told.at(0));
  if (told.at(1) == "named") return {{kind, told.at(2)}};
  if (told.at(1) == "without") return {{kind, ""}};
  return {{kind, told.at(1)}};
}

const std::string line_behind = "end\n\n";

TEST(HandbookReading, WordsOfUnits) {
  EXPECT_EQ((Units{{"SUBROUTINE", "solve"}}), units_told("subroutine solve"));
  EXPECT_EQ((Units{{"TYPE", "3"}}), units_told("a type named 3, if you"));
  EXPECT_EQ((Units{{"INTERFACE", ""}}),
            units_told("an interface without a name"));
  EXPECT_EQ(Units{}, units_told("nothing: it begins with pure"));
}

TEST(HandbookReading, LinesOpenTheUnitsThatTheTableTells) {
  for (const auto& row : table({"Line", "Opens"})) {
    const std::string line = plain(row.at(0));
    SCOPED_TRACE(line);
    const Units told = units_told(plain(row.at(1)));
    EngineRun run(line + "\n" + line_behind);
    EXPECT_EQ(told, run.units());
    for (const auto& [kind, name] : told)
      if (!name.empty()) {
        EXPECT_EQ(1, count_of("<a NAME=\"" + name + "-1\">", run.body(0)));
      }
  }
}

TEST(HandbookReading, OnlyBlanksAndTabsMayStandBeforeTheKeyword) {
  for (const char* before : {"", " ", "\t", "  \t  "})
    EXPECT_EQ((Units{{"SUBROUTINE", "s"}}),
              EngineRun(before + std::string("subroutine s\n") + line_behind)
                  .units());
  for (const char* before : {"& ", ";", "'", "(", ",", "1 "})
    EXPECT_EQ(
        Units{},
        EngineRun(before + std::string("subroutine s\n") + line_behind).units())
        << before;
}

// "yes" is one link, "yes, both" are two. The line that declares solve itself
// comes without the file in which it is declared otherwise.
TEST(HandbookReading, LinesReferToSolveAsTheTableTells) {
  for (const auto& row : table({"Line", "Refers to solve"})) {
    const std::string line = plain(row.at(0));
    const std::string told = plain(row.at(1));
    SCOPED_TRACE(line);
    const bool refers = told.find("yes") == 0;
    ASSERT_TRUE(refers || told.find("no") == 0) << told;
    const bool declares = told.find("it is the declaration") < told.size();
    const std::string declaration = "subroutine solve\n" + line_behind;

    EngineRun run(EngineRun::Sources{
        {"line.f90", line + "\n" + line_behind},
        {"solve.f90", declares ? line_behind : declaration}});
    const int links = count_of("#solve-1\"", run.body(0));
    EXPECT_EQ(!refers ? 0 : told == "yes, both" ? 2 : 1, links);
    EXPECT_EQ(declares ? 1 : 0, count_of("NAME=\"solve-1\"", run.body(0)));
    if (!declares) {
      EXPECT_EQ(refers ? 1 : 0, count_of(":&nbsp;1</a>", run.body(1)));
    }
  }
}

TEST(HandbookReading, ContinuedStringOpensAUnit) {
  std::string source;
  for (const std::string& line : block_below("Strings and comments"))
    source += line + "\n";
  EXPECT_EQ((Units{{"SUBROUTINE", "in"}}),
            EngineRun(source + line_behind).units());
  EXPECT_NE(std::string::npos,
            plain(handbook())
                .find("the second line here opens a subroutine named in,"));
}

// The lines of the example, and behind them, after a gap, what they do.
TEST(HandbookReading, ContinuationLinesAreNotJoined) {
  std::string source;
  std::vector<std::string> told;
  for (const std::string& line : block_below("Continuation lines")) {
    const std::size_t start =
        std::min(line.find_first_not_of(' '), line.size());
    const std::size_t gap = line.find("   ", start);
    source += line.substr(0, gap) + "\n";
    if (gap != std::string::npos) told.push_back(plain(line.substr(gap)));
  }
  EXPECT_EQ((std::vector<std::string>{"a subroutine without a name",
                                      "no reference to solve"}),
            told);

  EngineRun run(source + line_behind);
  EXPECT_EQ(units_told(told.at(0)), run.units());
  EngineRun with_solve(
      EngineRun::Sources{{"a.f90", source + line_behind},
                         {"solve.f90", "subroutine solve\n" + line_behind}});
  // The line that looks like the declaration is the one reference.
  EXPECT_EQ(1, count_of("#solve-1\"", with_solve.body(0)));
  EXPECT_EQ(1, count_of("solve</b></a>(a, b)", with_solve.body(0)));
}

TEST(HandbookReading, LastLineOpensNothingAndNeedsItsLineEnd) {
  EngineRun whole("x = 1\nsubroutine s\n");
  EXPECT_EQ(Units{}, whole.units());
  EXPECT_EQ(1, count_of("subroutine s", whole.body(0)));
  EngineRun cut("x = 1\nsubroutine s");
  EXPECT_EQ(Units{}, cut.units());
  EXPECT_EQ(0, count_of("subroutine s", cut.body(0)));
}

TEST(HandbookReading, LongestLineThatIsReadWholeIsTheOneNamed) {
  const auto limit = static_cast<std::size_t>(
      number_between("Lines of up to ", " characters"));
  const std::string behind = "\nsubroutine s\n" + line_behind;
  EngineRun whole(std::string(limit, '!') + behind);
  EXPECT_EQ(1, count_of("NAME=\"s-1\"", whole.body(0)));
  EngineRun longer(std::string(limit + 1, '!') + behind);
  EXPECT_EQ(0, count_of("NAME=\"s-1\"", longer.body(0)));
}

TEST(HandbookReading, NamesAreToldApartByAsManyCharactersAsIsNamed) {
  const auto limit = static_cast<std::size_t>(
      number_between("told apart by their first ", " characters"));
  const std::string name(limit - 1, 'n');
  const auto run_with = [&](const std::string& declared,
                            const std::string& used) {
    return EngineRun("subroutine " + declared + "\n" + "call " + used + "\n" +
                     line_behind);
  };
  EXPECT_EQ(0, count_of("line2", run_with(name + "a", name + "b").body(0)));
  EXPECT_EQ(2, count_of("line2", run_with(name + "aa", name + "ab").body(0)));
}

TEST(HandbookReading, LettersOutsideAsciiEndAWord) {
  EngineRun run("subroutine s\ncall s\xfc\n" + line_behind);
  EXPECT_EQ(1, count_of("#s-1\"><b>s</b></a>\xfc", run.body(0)));
}

// --- Highlighting ---

// The words of the table's rows; those of a level are of the higher ones, too.
std::vector<std::set<std::string>> words_of_levels() {
  std::vector<std::set<std::string>> levels;
  for (const auto& row : table({"Level", "Words"})) {
    std::string words = plain(row.at(1));
    std::set<std::string> level;
    if (!levels.empty()) {
      const std::string reference =
          "those of level " + std::to_string(levels.size()) + ", and ";
      EXPECT_EQ(0u, words.find(reference));
      words.erase(0, reference.size());
      level = levels.back();
    }
    for (const std::string& word : split(words, ',')) level.insert(word);
    EXPECT_EQ(std::to_string(levels.size() + 1), plain(row.at(0)));
    levels.push_back(level);
  }
  return levels;
}

TEST(HandbookLevels, WordsOfTheTableAreBoldFromTheirLevelOn) {
  const std::vector<std::set<std::string>> levels = words_of_levels();
  const std::uint32_t bits[] = {LEVEL_1, LEVEL_2, LEVEL_3};
  ASSERT_EQ(3u, levels.size());
  std::string source;
  for (const std::string& word : levels.back()) source += "x " + word + "\n";
  source += "x end\nx call\nx use\n" + line_behind;
  for (std::size_t i = 0; i < levels.size(); ++i) {
    EngineRun run(source, bits[i]);
    const std::vector<std::string> bold = pieces(run.body(0), "<b>", "</b>");
    EXPECT_EQ(levels[i], (std::set<std::string>(bold.begin(), bold.end())));
  }
}

TEST(HandbookLevels, TableHasAllWordsThatCanBeHighlighted) {
  std::set<std::string> words;
  for (const Syntax* s = Syntax::first; s != nullptr; s = s->next)
    words.insert(s->word);
  EXPECT_EQ(words, words_of_levels().back());
}

TEST(HandbookLevels, OfEndDoOnlyDoIsHighlighted) {
  EngineRun run("end do\nENDDO\n" + line_behind, LEVEL_2);
  EXPECT_EQ("end <b>do</b>\n<b>ENDDO</b>\n" + line_behind, run.body(0));
}

}  // namespace
