#include "html/index_page.h"

#include <gtest/gtest.h>

#include <sys/resource.h>
#include <unistd.h>

#include <csignal>
#include <filesystem>
#include <map>
#include <string>
#include <vector>

#include "analysis/declaration.h"
#include "driver/settings.h"
#include "tests/support/capture.h"
#include "tests/support/file_list.h"
#include "tests/support/open_files.h"
#include "tests/support/page_test.h"
#include "tests/support/page_text.h"

namespace fs = std::filesystem;

namespace {

const std::vector<std::string> pages = {"a1751050.html", "b1756053.html",
                                        "c1761056.html"};

struct Shown {
  std::size_t file;
  std::string name;
  int index;
};

// The mark-up of the units of one kind.
struct Entries {
  Entries() = default;
  Entries(std::initializer_list<Shown> units) {
    for (const Shown& unit : units) add(unit);
  }

  void add(const Shown& unit) {
    const std::string number = std::to_string(unit.index);
    const std::string address =
        pages[unit.file] + "#" + unit.name + "-" + number;
    menu += "<a href=\"" + address + "\"><small>" + unit.name +
            "</small></a><br/>\n";
    if (unit.index == 1) list += "\n<LI>";
    if (unit.index == 2) list += " [1]";
    list += " <a HREF=\"" + address + "\"><b>" +
            (unit.index == 1 ? unit.name : "[" + number + "]") + "</b></a>";
  }

  std::string menu;
  std::string list;
};

// A whole index page; kinds without entries may be left out.
std::string index_page(std::map<std::string, Entries> entries) {
  std::string navigation;
  std::string lists;
  for (const std::string& kind : unit_kinds) {
    navigation += index_menu(kind, entries[kind].menu);
    lists += index_list(kind, entries[kind].list);
  }
  return page_head() +
         "<TITLE>Hyperlinked Fortran Source Tree by Qumbra</TITLE>\n\n" +
         navigation + "<hr>\n" + lists + page_tail(date_time);
}

class PrintTree : public PageTest {
 protected:
  void declare(DecType kind, const std::string& name, std::size_t file = 0) {
    new Declaration(kind, name.c_str(), files.slot(file), 1);
  }

  std::string page() {
    print_tree("index");
    return content_of("HTML/index.html");
  }

  FileList files{{"a.f90", "b.f90", "c.f90"}};
};

TEST_F(PrintTree, WritesEmptyMenusAndListsForAnEmptyRegistry) {
  EXPECT_EQ(index_page({}), page());
}

TEST_F(PrintTree, ListsUnitsByKindAndNameWithTheirDefinitionIndex) {
  struct Unit {
    DecType kind;
    const char* name;
    std::size_t file;
  };
  const struct {
    std::vector<Unit> declared;
    std::map<std::string, Entries> shown;
  } cases[] = {
      {{{DT_TYPE, "Point", 1},
        {DT_INTERFACE, ".cross.", 1},
        {DT_FUNCTION, "norm", 1},
        {DT_SUBROUTINE, "Solve", 2},
        {DT_MODULE, "geometry", 1},
        {DT_PROGRAM, "main", 0}},
       {{"PROGRAM", {{0, "main", 1}}},
        {"MODULE", {{1, "geometry", 1}}},
        {"SUBROUTINE", {{2, "Solve", 1}}},
        {"FUNCTION", {{1, "norm", 1}}},
        {"INTERFACE", {{1, ".cross.", 1}}},
        {"TYPE", {{1, "Point", 1}}}}},
      // Sorted by the names in upper case.
      {{{DT_FUNCTION, "Beta", 0},
        {DT_FUNCTION, "alpha", 0},
        {DT_FUNCTION, "ALPHA2", 0}},
       {{"FUNCTION", {{0, "alpha", 1}, {0, "ALPHA2", 1}, {0, "Beta", 1}}}}},
      // All definitions of a name share a bullet.
      {{{DT_SUBROUTINE, "Solve", 0},
        {DT_SUBROUTINE, "SOLVE", 1},
        {DT_SUBROUTINE, "zero", 0}},
       {{"SUBROUTINE", {{0, "Solve", 1}, {1, "SOLVE", 2}, {0, "zero", 1}}}}},
      {{{DT_MODULE, "m", 0},
        {DT_MODULE, "m", 1},
        {DT_MODULE, "m", 2},
        {DT_MODULE, "m", 0}},
       {{"MODULE", {{0, "m", 1}, {1, "m", 2}, {2, "m", 3}, {0, "m", 4}}}}},
      // They are counted across kinds, so a number may precede all bullets.
      {{{DT_SUBROUTINE, "area", 0},
        {DT_SUBROUTINE, "swap", 0},
        {DT_INTERFACE, "swap", 1},
        {DT_TYPE, "swap", 2},
        {DT_INTERFACE, "apply", 1}},
       {{"SUBROUTINE", {{0, "area", 1}, {0, "swap", 1}}},
        {"INTERFACE", {{1, "apply", 1}, {1, "swap", 2}}},
        {"TYPE", {{2, "swap", 3}}}}},
      // The last name of one list is the first of the next.
      {{{DT_TYPE, "x", 0}}, {{"TYPE", {{0, "x", 1}}}}},
      // No name, and a name that looks like a format and mark-up.
      {{{DT_INTERFACE, "", 0},
        {DT_INTERFACE, "", 1},
        {DT_INTERFACE, ".%s%n<&>.", 0}},
       {{"INTERFACE", {{0, "", 1}, {1, "", 2}, {0, ".%s%n<&>.", 1}}}}},
  };
  for (const auto& c : cases) {
    Declaration::forget_all();
    for (const Unit& unit : c.declared)
      declare(unit.kind, unit.name, unit.file);
    EXPECT_EQ(index_page(c.shown), page());
  }
}

TEST_F(PrintTree, StartsAMenuColumnAfterEvery25Entries) {
  for (const int n : {25, 26, 50, 51, 75}) {
    Declaration::forget_all();
    declare(DT_MODULE, "a");
    Entries subroutines;
    for (int i = 0; i < n; ++i) {
      const std::string name = "s" + std::to_string(100 + i);
      declare(DT_SUBROUTINE, name);
      if (i == 25 || i == 50) subroutines.menu += new_column;
      subroutines.add({0, name, 1});
    }
    declare(DT_TYPE, "z");
    EXPECT_EQ(index_page({{"MODULE", {{0, "a", 1}}},
                          {"SUBROUTINE", subroutines},
                          {"TYPE", {{0, "z", 1}}}}),
              page())
        << n;
  }
}

// The path has a "/" whatever the separator.
TEST_F(PrintTree, WritesThePageWithTheGivenNameIntoTheOutputDirectory) {
  html_dir = "100%s%n";
  slash = '\\';
  write_file("100%s%n/50%d.html", std::string(10000, 'x'));
  print_tree("50%d");
  EXPECT_EQ(index_page({}), content_of("100%s%n/50%d.html"));
}

TEST_F(PrintTree, TakesTheTitleFromTheSettings) {
  const std::string title = index_title;
  index_title = "100%s <b>";
  const std::string start = page().substr(page_head().size(), 30);
  index_title = title;
  EXPECT_EQ("<TITLE>100%s <b></TITLE>\n\n&nbs", start);
}

TEST_F(PrintTree, ReportsTheIndexInVerboseMode) {
  for (const int level : {-1, 0, 1, 5}) {
    verbose = level;
    EXPECT_EQ(level > 0 ? "Generating HTML index..\nDone!\n" : "", printed([&] {
                print_tree("index");
                EXPECT_EQ(level > 0 ? 30 : 0, bytes_printed());
              }));
  }
}

TEST_F(PrintTree, LeavesNoFileOpen) {
  const auto before = open_files();
  print_tree("index");
  EXPECT_EQ(before, open_files());
}

TEST_F(PrintTree, SilentlySkipsAPageThatCannotBeOpened) {
  verbose = 1;
  fs::create_directory("HTML/index.html");
  for (const char* directory : {"nowhere", "HTML"}) {
    html_dir = directory;
    EXPECT_EQ("", printed([] { print_tree("index"); }));
  }
  EXPECT_FALSE(fs::exists("nowhere"));
}

using PrintTreeDeathTest = PrintTree;

// A limit on the size of files ends the process while it writes the lists.
TEST_F(PrintTreeDeathTest, FlushesItsReportBeforeWritingTheLists) {
  verbose = 1;
  for (int i = 0; i < 1000; ++i) declare(DT_TYPE, "name");
  EXPECT_EXIT(
      {
        dup2(STDERR_FILENO, STDOUT_FILENO);
        rlimit limit;
        limit.rlim_cur = limit.rlim_max = page_head().size() + 20000;
        setrlimit(RLIMIT_FSIZE, &limit);
        print_tree("index");
      },
      testing::KilledBySignal(SIGXFSZ), "Generating HTML index\\.\\.$");
}

}  // namespace
