// What the handbook says about the pages, with its numbers and names.

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <string>
#include <vector>

#include "tests/handbook/handbook.h"
#include "tests/handbook/handbook_run.h"

namespace fs = std::filesystem;

namespace {

using HandbookPages = HandbookRun;

TEST_F(HandbookPages, CallersHaveTheStatedNumberOfColumns) {
  EXPECT_TRUE(handbook_says(
      "the menu \"Referenced By...\" lists all lines that refer to the name, "
      "ordered by file and line. From 14 lines on it has two columns, from 24 "
      "on three."));
  const struct {
    int callers;
    std::size_t columns;
  } menus[] = {{13, 1}, {14, 2}, {23, 2}, {24, 3}, {240, 3}};
  for (const auto& menu : menus) {
    std::string source = "subroutine s\n";
    for (int i = 0; i < menu.callers; ++i) source += "call s\n";
    run({{"a.f90", source + "\n"}});
    EXPECT_EQ(menu.columns, count_of("<td", page("a.f90"))) << menu.callers;
    EXPECT_EQ(1u, count_of("Referenced By...\n", page("a.f90")));
  }
}

// The sample project of the pictures.
class HandbookSample : public HandbookRun {
 protected:
  // The files that "-r -e f90" selects.
  HandbookSample() {
    const fs::path sample = fs::path(ZELKOR_SOURCE_FOLDER) / "examples/heat";
    Sources sources;
    for (const auto& entry : fs::recursive_directory_iterator(sample))
      if (entry.path().extension() == ".f90")
        sources.emplace_back(
            "./" + entry.path().lexically_relative(sample).string(),
            content_of(entry.path()));
    std::sort(sources.begin(), sources.end());
    run(sources);
    example = page("./src/solver/cg.f90");
  }

  std::string example;
};

TEST_F(HandbookSample, PageNameMatchesTheExample) {
  EXPECT_TRUE(
      handbook_says("The page of src/solver/cg.f90 is called cg, then"));
  EXPECT_TRUE(handbook_says("such as cg1898455.html"));
  EXPECT_EQ("cg1898455.html", page_name("./src/solver/cg.f90"));
}

TEST_F(HandbookSample, AnchorsOfTheTableExist) {
  for (const auto& row : table({"Anchor", "Place"})) {
    const std::vector<std::string> address = split(row.at(0), "#");
    EXPECT_LT(0u, count_of("NAME=\"" + address.at(1) + "\"",
                           content_of("HTML/" + address.at(0))))
        << row.at(0);
  }
  EXPECT_TRUE(handbook_says("only lines with a reference have such an anchor"));
  EXPECT_EQ(0u, count_of("NAME=\"line1\"", example));
}

TEST_F(HandbookSample, MenuInThePictureHasTheStatedNumberOfEntries) {
  EXPECT_EQ(1u, count_of("subroutine solve_cg a menu is open that says "
                         "Referenced By... and lists six places",
                         handbook()));
  const std::string menu =
      pieces(example, "<a NAME=\"solve_cg-1\">", "</table>").at(0);
  EXPECT_EQ(6u, count_of("<a href=", menu));
}

TEST_F(HandbookSample, PaneInThePictureListsTheStatedDefinitions) {
  EXPECT_EQ(1u, count_of("below the word report and lists "
                         "./src/solver/cg.f90:51 and ./src/solver/sor.f90:51.",
                         handbook()));
  const std::string pane =
      pieces(example, "<b class=\"multiref\">report", "</table>").at(0);
  EXPECT_TRUE(
      handbook_says("the pane \"Definitions:\" lists all declarations"));
  EXPECT_EQ(1u, count_of("Definitions:", pane));
  EXPECT_EQ((std::vector<std::string>{"./src/solver/cg.f90:51",
                                      "./src/solver/sor.f90:51"}),
            pieces(pane, "\"><small>", "</small>"));
}

}  // namespace
