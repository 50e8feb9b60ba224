// What the handbook says of the pages, with the numbers and names that it
// gives.

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <set>
#include <string>
#include <vector>

#include "tests/handbook/engine_run.h"
#include "tests/handbook/handbook.h"
#include "tests/support/alone.h"
#include "tests/support/capture.h"

namespace fs = std::filesystem;

namespace {

int columns_of(int references) {
  std::string source = "subroutine s\n";
  for (int i = 0; i < references; ++i) source += "call s\n";
  EngineRun run(source + "\n");
  const std::string menu = pieces(run.body(0), "<table", "</table>").at(0);
  EXPECT_EQ(references, count_of("<a href=", menu));
  return count_of("<td", menu);
}

TEST(HandbookPages, CallersGetColumnsFromTheNumbersOfLinesNamed) {
  const int two = number_between("From ", " lines on it has two columns");
  const int three = number_between("has two columns, from ", " on three");
  ASSERT_LT(1, two);
  ASSERT_LT(two, three);
  EXPECT_EQ(1, columns_of(two - 1));
  EXPECT_EQ(2, columns_of(two));
  EXPECT_EQ(2, columns_of(three - 1));
  EXPECT_EQ(3, columns_of(three));
  EXPECT_EQ(3, columns_of(10 * three));
}

TEST(HandbookPages, MenusHaveTheTitlesThatAreQuoted) {
  EngineRun run("subroutine s\ncall s\nsubroutine s\nend\n\n");
  for (const std::string title : {"Referenced By...", "Definitions:"}) {
    EXPECT_NE(std::string::npos, handbook().find('"' + title + '"')) << title;
    EXPECT_LT(0, count_of(title, run.body(0))) << title;
  }
}

TEST(HandbookPages, NumbersBehindANameLeadToItsOtherDeclarations) {
  EngineRun run("function f\nfunction f\ninterface g\nfunction g\nend\n\n");
  const std::string page = run.page_name(0);
  const std::vector<std::string> functions =
      pieces(pieces(run.index(), "<a NAME=\"FUNCTION\">", "</UL>").at(0),
             "<LI> ", "\n");
  // g is declared as an interface first: its number stands behind f.
  const auto entry = [&](const std::string& anchor, const std::string& text) {
    return "<a HREF=\"" + page + "#" + anchor + "\"><b>" + text + "</b></a>";
  };
  ASSERT_EQ(1u, functions.size());
  EXPECT_EQ(entry("f-1", "f") + " [1] " + entry("f-2", "[2]") + " [1] " +
                entry("g-2", "[2]"),
            functions.at(0));
}

// --- The sample project of the pictures ---

// As "-r -e f90" finds them.
EngineRun::Sources sample() {
  const fs::path folder = fs::path(ZELKOR_SOURCE_FOLDER) / "examples/heat";
  EngineRun::Sources sources;
  for (const auto& entry : fs::recursive_directory_iterator(folder))
    if (entry.path().extension() == ".f90")
      sources.emplace_back(
          "./" + entry.path().lexically_relative(folder).string(),
          content_of(entry.path()));
  std::sort(sources.begin(), sources.end());
  return sources;
}

std::size_t place_of(const std::string& path,
                     const EngineRun::Sources& sources) {
  for (std::size_t i = 0; i < sources.size(); ++i)
    if (sources[i].first == path) return i;
  ADD_FAILURE() << "no " << path;
  return 0;
}

const std::string example = "src/solver/cg.f90";

// A page number depends on what the process has asked for before.
TEST(HandbookSample, PageHasTheNameOfTheExample) {
  alone([] {
    EXPECT_NE(std::string::npos,
              plain(handbook()).find("The page of " + example + " is called"));
    const EngineRun::Sources sources = sample();
    EngineRun run(sources);
    const std::string name = run.page_name(place_of("./" + example, sources));
    const std::set<std::string> numbers = [] {
      const auto all = pieces(handbook(), "<TT>cg1", ".html");
      return std::set<std::string>(all.begin(), all.end());
    }();
    ASSERT_EQ(1u, numbers.size());
    EXPECT_EQ(name, "cg1" + *numbers.begin() + ".html");
  });
}

TEST(HandbookSample, AnchorsOfTheTableExist) {
  alone([] {
    EngineRun run(sample());
    const Rows rows = table({"Anchor", "Place"});
    for (const auto& row : rows) {
      const std::string address = plain(row.at(0));
      SCOPED_TRACE(address);
      const std::size_t mark = address.find('#');
      ASSERT_LT(mark, address.size());
      const std::string page = run.page(address.substr(0, mark));
      EXPECT_NE(std::string::npos,
                page.find("NAME=\"" + address.substr(mark + 1) + "\""));
    }
  });
}

TEST(HandbookSample, LinesWithoutReferenceHaveNoAnchor) {
  const EngineRun::Sources sources = sample();
  EngineRun run(sources);
  const std::string body = run.body(place_of("./" + example, sources));
  EXPECT_EQ(0, count_of("NAME=\"line1\"", body));
}

std::string picture_text(const std::string& picture) {
  for (const std::string& tag : pieces(handbook(), "<IMG SRC=\"", ">"))
    if (tag.substr(0, tag.find('"')) == picture)
      return pieces(tag, "ALT=\"", "\"").at(0);
  ADD_FAILURE() << "no " << picture;
  return "";
}

TEST(HandbookSample, MenuOfThePictureHasThatManyEntries) {
  const std::string text = picture_text("callers.png");
  EXPECT_NE(std::string::npos, text.find("subroutine solve_cg"));
  EXPECT_NE(std::string::npos, text.find("lists six places"));
  const EngineRun::Sources sources = sample();
  EngineRun run(sources);
  const std::string body = run.body(place_of("./" + example, sources));
  const std::string menu =
      pieces(body, "<a NAME=\"solve_cg-1\">", "</table>").at(0);
  EXPECT_EQ(6, count_of("<a href=", menu));
}

TEST(HandbookSample, PaneOfThePictureListsTheseDefinitions) {
  const std::string text = picture_text("definitions.png");
  EXPECT_NE(std::string::npos, text.find("below the word report"));
  const std::vector<std::string> listed =
      split(pieces(text, "lists ", ".]").at(0), ' ');
  ASSERT_EQ(3u, listed.size());
  EXPECT_EQ("and", listed[1]);

  const EngineRun::Sources sources = sample();
  EngineRun run(sources);
  const std::string body = run.body(place_of("./" + example, sources));
  const std::string pane =
      pieces(body, "<b class=\"multiref\">report", "</table>").at(0);
  EXPECT_EQ((std::vector<std::string>{listed[0], listed[2]}),
            pieces(pane, "\"><small>", "</small>"));
}

}  // namespace
