#include "html/index_page.h"

#include <gtest/gtest.h>

#include <sys/resource.h>
#include <unistd.h>

#include <csignal>
#include <filesystem>
#include <map>
#include <string>

#include "analysis/declaration.h"
#include "driver/settings.h"
#include "tests/support/page_test.h"
#include "tests/support/capture.h"
#include "tests/support/file_list.h"
#include "tests/support/open_files.h"
#include "tests/support/page_text.h"

namespace fs = std::filesystem;

namespace {

// What the units of one kind add to the page.
struct Entries {
  std::string menu;
  std::string list;
};

// A whole index page, from the entries of those kinds that have any.
std::string index_page(std::map<std::string, Entries> entries) {
  std::string navigation;
  std::string lists;
  for (const std::string kind :
       {"PROGRAM", "MODULE", "SUBROUTINE", "FUNCTION", "INTERFACE", "TYPE"}) {
    navigation += "&nbsp;&nbsp;&nbsp; <a HREF=\"#" + kind + "\">" + kind +
                  "S</a>" + menu_opening + entries[kind].menu + menu_closing;
    lists += "<H2><a NAME=\"" + kind + "\">" + kind +
             " Declarations</a></H2><UL>\n" + entries[kind].list +
             "\n</UL>\n\n";
  }
  return page_head() +
         "<TITLE>Hyperlinked Fortran Source Tree by Qumbra</TITLE>\n\n" +
         navigation + "<hr>\n" + lists + page_tail(date_time);
}

// The entry of a unit in its kind's menu.
std::string item(const std::string& target, const std::string& name) {
  return "<a href=\"" + target + "\"><small>" + name + "</small></a><br/>\n";
}

// The bullet of a name.
std::string bullet(const std::string& target, const std::string& name) {
  return "\n<LI> <a HREF=\"" + target + "\"><b>" + name + "</b></a>";
}

// The link of a further definition of a name.
std::string further(const std::string& target, const std::string& label) {
  return " <a HREF=\"" + target + "\"><b>" + label + "</b></a>";
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

TEST_F(PrintTree, AnEmptyRegistryGivesEmptyMenusAndLists) {
  const std::string menu =
      "<span id=\"nav\"><span class=\"popup\"><big><big style=\"color: rgb(204,"
      " 0, 0);\">&#134;</big></big><table class=\"pane\"><tr><td style=\""
      "vertical-align:top;\">\n"
      "</td></tr></table></span></span>";
  EXPECT_EQ(
      page_head() +
          "<TITLE>Hyperlinked Fortran Source Tree by Qumbra</TITLE>\n"
          "\n"
          "&nbsp;&nbsp;&nbsp; <a HREF=\"#PROGRAM\">PROGRAMS</a>" +
          menu + "&nbsp;&nbsp;&nbsp; <a HREF=\"#MODULE\">MODULES</a>" + menu +
          "&nbsp;&nbsp;&nbsp; <a HREF=\"#SUBROUTINE\">SUBROUTINES</a>" + menu +
          "&nbsp;&nbsp;&nbsp; <a HREF=\"#FUNCTION\">FUNCTIONS</a>" + menu +
          "&nbsp;&nbsp;&nbsp; <a HREF=\"#INTERFACE\">INTERFACES</a>" + menu +
          "&nbsp;&nbsp;&nbsp; <a HREF=\"#TYPE\">TYPES</a>" + menu +
          "<hr>\n"
          "<H2><a NAME=\"PROGRAM\">PROGRAM Declarations</a></H2><UL>\n"
          "\n</UL>\n\n"
          "<H2><a NAME=\"MODULE\">MODULE Declarations</a></H2><UL>\n"
          "\n</UL>\n\n"
          "<H2><a NAME=\"SUBROUTINE\">SUBROUTINE Declarations</a></H2><UL>\n"
          "\n</UL>\n\n"
          "<H2><a NAME=\"FUNCTION\">FUNCTION Declarations</a></H2><UL>\n"
          "\n</UL>\n\n"
          "<H2><a NAME=\"INTERFACE\">INTERFACE Declarations</a></H2><UL>\n"
          "\n</UL>\n\n"
          "<H2><a NAME=\"TYPE\">TYPE Declarations</a></H2><UL>\n"
          "\n</UL>\n\n"
          "<hr><small>Generated Sun Mar  1 12:44:05 2009\n"
          " by <a href=\"https://zelkor.example/\">zelkor</a>, A CASE Tool "
          "from <a href=\"mailto:zelkor@qumbra.example\">Qumbra</a></small>"
          "</body>\n</html>\n",
      page());
}

TEST_F(PrintTree, EveryKindHasItsMenuAndItsList) {
  declare(DT_TYPE, "Point", 1);
  declare(DT_INTERFACE, ".cross.", 1);
  declare(DT_FUNCTION, "norm", 1);
  declare(DT_SUBROUTINE, "Solve", 2);
  declare(DT_MODULE, "geometry", 1);
  declare(DT_PROGRAM, "main");

  const std::string menu =
      "<span id=\"nav\"><span class=\"popup\"><big><big style=\"color: rgb(204,"
      " 0, 0);\">&#134;</big></big><table class=\"pane\"><tr><td style=\""
      "vertical-align:top;\">\n";
  const std::string menu_end = "</td></tr></table></span></span>";
  EXPECT_EQ(
      page_head() +
          "<TITLE>Hyperlinked Fortran Source Tree by Qumbra</TITLE>\n"
          "\n"
          "&nbsp;&nbsp;&nbsp; <a HREF=\"#PROGRAM\">PROGRAMS</a>" +
          menu +
          "<a href=\"a1751050.html#main-1\"><small>main</small></a><br/>\n" +
          menu_end + "&nbsp;&nbsp;&nbsp; <a HREF=\"#MODULE\">MODULES</a>" +
          menu +
          "<a href=\"b1756053.html#geometry-1\"><small>geometry</small></a>"
          "<br/>\n" +
          menu_end +
          "&nbsp;&nbsp;&nbsp; <a HREF=\"#SUBROUTINE\">SUBROUTINES</a>" + menu +
          "<a href=\"c1761056.html#Solve-1\"><small>Solve</small></a><br/>\n" +
          menu_end + "&nbsp;&nbsp;&nbsp; <a HREF=\"#FUNCTION\">FUNCTIONS</a>" +
          menu +
          "<a href=\"b1756053.html#norm-1\"><small>norm</small></a><br/>\n" +
          menu_end +
          "&nbsp;&nbsp;&nbsp; <a HREF=\"#INTERFACE\">INTERFACES</a>" + menu +
          "<a href=\"b1756053.html#.cross.-1\"><small>.cross.</small></a>"
          "<br/>\n" +
          menu_end + "&nbsp;&nbsp;&nbsp; <a HREF=\"#TYPE\">TYPES</a>" + menu +
          "<a href=\"b1756053.html#Point-1\"><small>Point</small></a><br/>\n" +
          menu_end +
          "<hr>\n"
          "<H2><a NAME=\"PROGRAM\">PROGRAM Declarations</a></H2><UL>\n"
          "\n<LI> <a HREF=\"a1751050.html#main-1\"><b>main</b></a>"
          "\n</UL>\n\n"
          "<H2><a NAME=\"MODULE\">MODULE Declarations</a></H2><UL>\n"
          "\n<LI> <a HREF=\"b1756053.html#geometry-1\"><b>geometry</b></a>"
          "\n</UL>\n\n"
          "<H2><a NAME=\"SUBROUTINE\">SUBROUTINE Declarations</a></H2><UL>\n"
          "\n<LI> <a HREF=\"c1761056.html#Solve-1\"><b>Solve</b></a>"
          "\n</UL>\n\n"
          "<H2><a NAME=\"FUNCTION\">FUNCTION Declarations</a></H2><UL>\n"
          "\n<LI> <a HREF=\"b1756053.html#norm-1\"><b>norm</b></a>"
          "\n</UL>\n\n"
          "<H2><a NAME=\"INTERFACE\">INTERFACE Declarations</a></H2><UL>\n"
          "\n<LI> <a HREF=\"b1756053.html#.cross.-1\"><b>.cross.</b></a>"
          "\n</UL>\n\n"
          "<H2><a NAME=\"TYPE\">TYPE Declarations</a></H2><UL>\n"
          "\n<LI> <a HREF=\"b1756053.html#Point-1\"><b>Point</b></a>"
          "\n</UL>\n\n" +
          page_tail(date_time),
      page());
}

TEST_F(PrintTree, NamesAreInTheOrderOfTheirUpperCaseForms) {
  for (const char* name : {"Beta", "alpha", "ALPHA2"})
    declare(DT_FUNCTION, name);
  EXPECT_EQ(index_page({{"FUNCTION",
                         {item("a1751050.html#alpha-1", "alpha") +
                              item("a1751050.html#ALPHA2-1", "ALPHA2") +
                              item("a1751050.html#Beta-1", "Beta"),
                          bullet("a1751050.html#alpha-1", "alpha") +
                              bullet("a1751050.html#ALPHA2-1", "ALPHA2") +
                              bullet("a1751050.html#Beta-1", "Beta")}}}),
            page());
}

TEST_F(PrintTree, ANameDefinedTwiceIsOneBulletWithTwoNumbers) {
  declare(DT_SUBROUTINE, "Solve");
  declare(DT_SUBROUTINE, "SOLVE", 1);
  declare(DT_SUBROUTINE, "zero");
  EXPECT_EQ(
      index_page(
          {{"SUBROUTINE",
            {item("a1751050.html#Solve-1", "Solve") +
                 item("b1756053.html#SOLVE-2", "SOLVE") +
                 item("a1751050.html#zero-1", "zero"),
             "\n<LI> <a HREF=\"a1751050.html#Solve-1\"><b>Solve</b></a>"
             " [1] <a HREF=\"b1756053.html#SOLVE-2\"><b>[2]</b></a>"
             "\n<LI> <a HREF=\"a1751050.html#zero-1\"><b>zero</b></a>"}}}),
      page());
}

TEST_F(PrintTree, EveryFurtherDefinitionAddsItsNumber) {
  for (const std::size_t file : {0u, 1u, 2u, 0u}) declare(DT_MODULE, "m", file);
  EXPECT_EQ(index_page({{"MODULE",
                         {item("a1751050.html#m-1", "m") +
                              item("b1756053.html#m-2", "m") +
                              item("c1761056.html#m-3", "m") +
                              item("a1751050.html#m-4", "m"),
                          bullet("a1751050.html#m-1", "m") + " [1]" +
                              further("b1756053.html#m-2", "[2]") +
                              further("c1761056.html#m-3", "[3]") +
                              further("a1751050.html#m-4", "[4]")}}}),
            page());
}

TEST_F(PrintTree, DefinitionsAreCountedAcrossKinds) {
  declare(DT_SUBROUTINE, "area");
  declare(DT_SUBROUTINE, "swap");
  declare(DT_INTERFACE, "swap", 1);
  declare(DT_INTERFACE, "apply", 1);
  EXPECT_EQ(index_page({{"SUBROUTINE",
                         {item("a1751050.html#area-1", "area") +
                              item("a1751050.html#swap-1", "swap"),
                          bullet("a1751050.html#area-1", "area") +
                              bullet("a1751050.html#swap-1", "swap")}},
                        {"INTERFACE",
                         {item("b1756053.html#apply-1", "apply") +
                              item("b1756053.html#swap-2", "swap"),
                          bullet("b1756053.html#apply-1", "apply") + " [1]" +
                              further("b1756053.html#swap-2", "[2]")}}}),
            page());
}

TEST_F(PrintTree, AFurtherDefinitionMayStandBeforeAnyBullet) {
  declare(DT_INTERFACE, "swap");
  declare(DT_TYPE, "swap", 1);
  declare(DT_FUNCTION, "swap", 2);
  EXPECT_EQ(
      index_page({{"INTERFACE",
                   {item("a1751050.html#swap-1", "swap"),
                    bullet("a1751050.html#swap-1", "swap")}},
                  {"TYPE",
                   {item("b1756053.html#swap-2", "swap"),
                    " [1] <a HREF=\"b1756053.html#swap-2\"><b>[2]</b></a>"}},
                  {"FUNCTION",
                   {item("c1761056.html#swap-3", "swap"),
                    " <a HREF=\"c1761056.html#swap-3\"><b>[3]</b></a>"}}}),
      page());
}

// The last name of one walk is the first of the next.
TEST_F(PrintTree, TheCountStartsAnewWithEveryWalk) {
  declare(DT_TYPE, "x");
  EXPECT_EQ(index_page({{"TYPE",
                         {item("a1751050.html#x-1", "x"),
                          bullet("a1751050.html#x-1", "x")}}}),
            page());
}

TEST_F(PrintTree, UnnamedUnitsCountFromOne) {
  declare(DT_INTERFACE, "");
  declare(DT_INTERFACE, "", 1);
  EXPECT_EQ(
      index_page({{"INTERFACE",
                   {item("a1751050.html#-1", "") + item("b1756053.html#-2", ""),
                    bullet("a1751050.html#-1", "") + " [1]" +
                        further("b1756053.html#-2", "[2]")}}}),
      page());
}

class MenuColumns : public PrintTree {
 protected:
  // The page for n subroutines s100, s101 and so on, whose menu has a column
  // break after every 25 entries.
  std::string expected_page(int n) {
    Entries entries;
    for (int i = 0; i < n; ++i) {
      const std::string name = "s" + std::to_string(100 + i);
      declare(DT_SUBROUTINE, name);
      if (i == 25 || i == 50) entries.menu += new_column;
      entries.menu += item("a1751050.html#" + name + "-1", name);
      entries.list += bullet("a1751050.html#" + name + "-1", name);
    }
    return index_page({{"SUBROUTINE", entries}});
  }
};

TEST_F(MenuColumns, HoldUpTo25Entries) {
  const std::string expected = expected_page(25);
  EXPECT_EQ(std::string::npos, expected.find(new_column));
  EXPECT_EQ(expected, page());
}

TEST_F(MenuColumns, TheTwentySixthEntryStartsASecondColumn) {
  const std::string expected = expected_page(26);
  EXPECT_EQ(expected, page());
}

TEST_F(MenuColumns, AreAsManyAsNeeded) {
  for (const int n : {50, 51, 75}) {
    Declaration::forget_all();
    const std::string expected = expected_page(n);
    EXPECT_EQ(expected, page()) << n;
  }
}

TEST_F(MenuColumns, CountTheEntriesOfTheirOwnKindOnly) {
  for (int i = 0; i < 25; ++i)
    declare(DT_MODULE, "a" + std::to_string(100 + i));
  declare(DT_TYPE, "b");
  EXPECT_EQ(std::string::npos, page().find(new_column));
}

TEST_F(PrintTree, ThePageIsNamedAfterItsBaseNameInTheOutputDirectory) {
  const std::string odd = "100%s%n";
  fs::create_directory(odd);
  html_dir = odd;
  print_tree("50%d");
  EXPECT_EQ(index_page({}), content_of("100%s%n/50%d.html"));
}

TEST_F(PrintTree, ThePathHasASlashWhateverTheSeparator) {
  slash = '\\';
  EXPECT_EQ(index_page({}), page());
}

TEST_F(PrintTree, ThePageOfAnEarlierRunIsReplaced) {
  write_file("HTML/index.html", std::string(10000, 'x'));
  EXPECT_EQ(index_page({}), page());
}

TEST_F(PrintTree, TheTitleIsTheOneOfTheSettings) {
  const std::string title = index_title;
  index_title = "100%s <b>";
  const std::string start = page().substr(page_head().size(), 30);
  index_title = title;
  EXPECT_EQ("<TITLE>100%s <b></TITLE>\n\n&nbs", start);
}

TEST_F(PrintTree, NamesAreNoFormatsAndNotEscaped) {
  declare(DT_INTERFACE, ".%s%n<&>.");
  EXPECT_EQ(index_page({{"INTERFACE",
                         {item("a1751050.html#.%s%n<&>.-1", ".%s%n<&>."),
                          bullet("a1751050.html#.%s%n<&>.-1", ".%s%n<&>.")}}}),
            page());
}

TEST_F(PrintTree, ReportsItselfWhenVerbose) {
  for (const int level : {1, 5}) {
    verbose = level;
    EXPECT_EQ("Generating HTML index..\nDone!\n", printed([] {
                print_tree("index");
                EXPECT_EQ(30, bytes_printed());
              }))
        << level;
  }
}

TEST_F(PrintTree, SaysNothingAtVerbosity0OrLess) {
  for (const int level : {0, -1}) {
    verbose = level;
    EXPECT_EQ("", printed([] { print_tree("index"); })) << level;
  }
}

TEST_F(PrintTree, LeavesNoFileOpen) {
  const auto before = open_files();
  print_tree("index");
  EXPECT_EQ(before, open_files());
}

TEST_F(PrintTree, APageThatCannotBeOpenedIsSkippedWithoutAWord) {
  verbose = 1;
  declare(DT_PROGRAM, "main");
  html_dir = "nowhere";
  EXPECT_EQ("", printed([] { print_tree("index"); }));
  EXPECT_FALSE(fs::exists("nowhere"));

  html_dir = "HTML";
  fs::create_directory("HTML/index.html");
  EXPECT_EQ("", printed([] { print_tree("index"); }));
}

using PrintTreeDeathTest = PrintTree;

// No file may grow beyond the head of the page and some of its lists, which
// ends the process there.
TEST_F(PrintTreeDeathTest, ReportsItselfBeforeItWritesTheLists) {
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
