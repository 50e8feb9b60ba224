#include "html/source_page.h"

#include <gtest/gtest.h>

#include <sys/stat.h>

#include <csignal>
#include <filesystem>
#include <string>
#include <thread>
#include <vector>

#include "analysis/declaration.h"
#include "analysis/keywords.h"
#include "analysis/words.h"
#include "driver/settings.h"
#include "tests/support/capture.h"
#include "tests/support/file_list.h"
#include "tests/support/open_files.h"
#include "tests/support/page_test.h"
#include "tests/support/page_text.h"
#include "tests/support/process_counter.h"
#include "tests/support/wait_until.h"

namespace fs = std::filesystem;

namespace {

const std::string page_a = "a1751050.html";
const std::string page_b = "b1756053.html";
const std::string page_c = "c1761056.html";

class PrintLinks : public PageTest {
 protected:
  std::string page_of(std::size_t file, const std::string& text,
                      bool fixed_form = false) {
    write_file(*files.slot(file), text);
    print_links(files.slot(file), fixed_form);
    return content_of("HTML/" + pages[file]);
  }

  // The text between "<pre>" and "</pre>" on the page of a.f90.
  std::string content(const std::string& text, bool fixed_form = false) {
    const std::string page = page_of(0, text, fixed_form);
    const std::string empty = source_page("a.f90", "", date_time);
    const std::size_t start = empty.find("</pre>");
    if (page.size() < empty.size()) {
      ADD_FAILURE() << "no whole page: " << page;
      return "";
    }
    const std::string result = page.substr(start, page.size() - empty.size());
    EXPECT_EQ(source_page("a.f90", result, date_time), page);
    return result;
  }

  Declaration& declare(const char* name, std::size_t file, int line) {
    return *new Declaration(DT_SUBROUTINE, name, files.slot(file), line);
  }

  FileList files{{"a.f90", "b.f90", "c.f90"}};
  const std::vector<std::string> pages{page_a, page_b, page_c};
};

// A reference to a name that is defined once.
std::string reference(int line, const std::string& target,
                      const std::string& word) {
  return "<a NAME=\"line" + std::to_string(line) + "\"></a><a HREF=\"" +
         target + "\"><b>" + word + "</b></a>";
}

// A definition with the items of its menu.
std::string definition(const std::string& anchor, const std::string& word,
                       const std::string& items) {
  return "<a NAME=\"" + anchor + "\"><b>" + word + "</b></a>" +
         callers_menu(items);
}

TEST_F(PrintLinks, WritesAWholePage) {
  Declaration& solve = declare("Solve", 0, 1);
  solve.add_calling(files.slot(0), 2);
  const std::string page =
      page_of(0, "subroutine Solve(x)\nend subroutine solve\n");

  ASSERT_EQ(page_head(), page.substr(0, 1644));
  EXPECT_EQ(
      "<TITLE>a.f90</TITLE>\n"
      "<H1>a.f90</H1>\n"
      "<code> <pre>\n"
      "subroutine <a NAME=\"Solve-1\"><b>Solve</b></a>"
      "<span id=\"nav\"><span class=\"popup\"><big><big style=\"color: rgb(204,"
      " 0, 0);\">&#134;</big></big><table class=\"pane\"><tr><td style=\""
      "vertical-align:top;\">\n"
      "Referenced By...\n"
      "<a href=\"a1751050.html#line2\">a.f90&nbsp;:&nbsp;2</a><br/>\n"
      "</td></tr></table></span></span>(x)\n"
      "end subroutine <a NAME=\"line2\"></a>"
      "<a HREF=\"a1751050.html#Solve-1\"><b>solve</b></a>\n"
      "</pre> </code>\n"
      "<hr><small>Generated Sun Mar  1 12:44:05 2009\n"
      " by <a href=\"https://zelkor.example/\">zelkor</a>, A CASE Tool from "
      "<a href=\"mailto:zelkor@qumbra.example\">Qumbra</a></small>"
      "</body>\n</html>\n",
      page.substr(1644));
}

TEST_F(PrintLinks, MarksReferencesAndDefinitions) {
  const std::string f = page_b + "#f-1";
  const std::string blanks(4092, ' ');
  const std::string dashes(100000, '-');
  const std::string long_word(100000, 'w');
  const std::string name(255, 'n');
  const std::string longer = name + "_and_more";
  std::string bytes;
  for (int code = 1; code < 256; ++code)
    if (code != '\n') bytes += static_cast<char>(code);
  ASSERT_EQ(hash_of("apply_rk_0"), hash_of("cpply_rk_1"));
  ASSERT_EQ(hash_of("apply_rk_0"), hash_of("epply_rk_2"));
  const struct {
    std::string source;
    std::string shown;
  } cases[] = {
      // A last line without line end is omitted unless it fills a piece.
      {"", ""},
      {"x = 1\ny = 2", "x = 1\n"},
      {"y = 2", ""},
      {std::string(4094, '-'), ""},
      {std::string(4095, '-'), std::string(4095, '-')},
      {std::string(4096, '-'), std::string(4095, '-')},
      // Each reference has the anchor of its line.
      {"\n\n\n\n\n\n  call F(x)\n",
       "\n\n\n\n\n\n  call " + reference(7, f, "F") + "(x)\n"},
      {"y = f(f(x))\n",
       "y = " + reference(1, f, "f") + "(" + reference(1, f, "f") + "(x))\n"},
      {"APPLY_RK_0 cpply_rk_1 epply_rk_2\n",
       reference(1, page_c + "#apply_rk_0-1", "APPLY_RK_0") + " " +
           reference(1, page_b + "#cpply_rk_1-1", "cpply_rk_1") +
           " epply_rk_2\n"},
      {"\"f\" ! f\n",
       "\"" + reference(1, f, "f") + "\" ! " + reference(1, f, "f") + "\n"},
      {"if (a<b .and. c>d) & ! \"<script>\" &amp; %s%d f<b>\n",
       "if (a<b .and. c>d) & ! \"<script>\" &amp; %s%d " +
           reference(1, f, "f") + "<b>\n"},
      // The anchor of a definition is spelled as on the line.
      {"x = 1\nsubroutine SOLVE ! solve\ny = 3\n",
       "x = 1\nsubroutine " + definition("SOLVE-1", "SOLVE", "") + " ! " +
           definition("solve-1", "solve", "") + "\ny = 3\n"},
      // Words are runs of letters, digits, underscores and dots.
      {"x%f\tf2 f_ _f f. .f a.eq.f a.cross.b\n",
       "x%" + reference(1, f, "f") + "\tf2 f_ _f f. .f a.eq.f a.cross.b\n"},
      {"\xe9"
       "f\xe9\n",
       "\xe9" + reference(1, f, "f") + "\xe9\n"},
      {"a .Cross. b 2 2.0 x2 _2\n",
       "a " + reference(1, page_b + "#.cross.-1", ".Cross.") + " b " +
           reference(1, page_b + "#2-1", "2") + " 2.0 x2 _2\n"},
      // Their first 255 characters count.
      {longer + "(x)\n" + longer + "(x)\n",
       reference(1, page_a + "#" + name + "-1", longer) + "(x)\n" +
           definition(name + "-1", longer, "") + "(x)\n"},
      // Pieces of 4095 characters count as lines and split words.
      {blanks + "  \nf\n", blanks + "  \n" + reference(2, f, "f") + "\n"},
      {blanks + "   \nf\n", blanks + "   \n" + reference(3, f, "f") + "\n"},
      {blanks + "   f\nf\n", blanks + "   " + reference(2, f, "f") + "\n" +
                                 reference(3, f, "f") + "\n"},
      {blanks + "solcase\n",
       blanks + "sol" + reference(2, page_b + "#case-1", "case") + "\n"},
      {dashes + "\nf\n", dashes + "\n" + reference(26, f, "f") + "\n"},
      {long_word + " f\n", long_word + " " + reference(25, f, "f") + "\n"},
      // A NUL ends a line, its line end included.
      {std::string("x \0f\nf\n", 7), "x " + reference(2, f, "f") + "\n"},
      {std::string("\0\0\0\n\0", 5), ""},
      // All else reaches the page unchanged.
      {bytes + "\n", bytes + "\n"},
      {"\n   \t  \nDOS\r\n\f form feed \v\n\"open 'quotes\n&\n& &\n! x\n",
       "\n   \t  \nDOS\r\n\f form feed \v\n\"open 'quotes\n&\n& &\n! x\n"},
  };
  declare("f", 1, 1);
  declare(".cross.", 1, 4);
  declare("2", 1, 5);
  declare("case", 1, 6);
  declare("cpply_rk_1", 1, 3);
  declare("apply_rk_0", 2, 4);
  declare("Solve", 0, 2);
  declare(name.c_str(), 0, 2);
  // Without levels, words that name no unit are skipped sooner.
  const std::uint32_t styles[] = {html_style, LEVEL_3};
  for (const std::uint32_t style : styles)
    for (const auto& c : cases) {
      html_style = style;
      EXPECT_EQ(c.shown, content(c.source)) << c.source.substr(0, 80);
    }
}

TEST_F(PrintLinks, HighlightsKeywordsAndHidesTextAccordingToTheStyle) {
  declare("f", 1, 3);
  declare("case", 0, 9);
  const std::string f = reference(1, page_b + "#f-1", "f");
  const std::uint32_t hidden = HIDE_STRINGS_AND_COMMENTS;
  const std::uint32_t bold = BOLD_KEYWORDS;
  const struct {
    std::uint32_t style;
    std::string source;
    std::string shown;
  } cases[] = {
      {html_style, "type if allocate", "type if allocate"},
      {bold, "type if allocate", "type if allocate"},
      {bold | LEVEL_NONE, "type if allocate", "type if allocate"},
      {bold | LEVEL_1, "type if allocate", "<b>type</b> if allocate"},
      {bold | LEVEL_2, "type if allocate", "<b>type</b> <b>if</b> allocate"},
      {bold | LEVEL_3, "type if allocate",
       "<b>type</b> <b>if</b> <b>allocate</b>"},
      // The widest of several levels wins.
      {bold | LEVEL_1 | LEVEL_NONE, "type if", "<b>type</b> if"},
      {bold | LEVEL_1 | LEVEL_2, "if allocate", "<b>if</b> allocate"},
      {bold | LEVEL_1 | LEVEL_3, "if allocate", "<b>if</b> <b>allocate</b>"},
      {bold | LEVEL_3, "IF(x) Then; end dO",
       "<b>IF</b>(x) <b>Then</b>; end <b>dO</b>"},
      // A declared name is no keyword.
      {bold | LEVEL_3, "case if",
       reference(1, page_a + "#case-1", "case") + " <b>if</b>"},
      {hidden | bold | LEVEL_3, "x = \"f if\" + f + 'f' ! f if",
       "x = \"f if\" + " + f + " + '" + f + "' ! f if"},
  };
  for (const auto& c : cases) {
    html_style = c.style;
    EXPECT_EQ(c.shown + "\n", content(c.source + "\n")) << c.style;
  }
  html_style = hidden;
  EXPECT_EQ("call f\n", content("call f\n", true));
  EXPECT_EQ("call " + f + "\n", content("call f\n", false));
}

TEST_F(PrintLinks, WritesLongPagesInPiecesOf64Kilobytes) {
  std::string text;
  for (int i = 0; i < 6400; ++i) text += std::string(99, '+') + "\n";
  write_file("a.f90", text);
  const long before = process_counter("io", "syscw");
  print_links(files.slot(0), false);
  // 640000 bytes are ten pieces, or 157 of 4096 bytes. UBSan writes a few
  // times, too.
  EXPECT_GT(50, process_counter("io", "syscw") - before);
}

TEST_F(PrintLinks, ShowsTheLastPathComponentAsTitleAndHeading) {
  const struct {
    char separator;
    std::string path;
    std::string title;
    std::string page;
  } cases[] = {
      {'/', "src/sub.d/a.f90", "a.f90", "HTML/a2049440.html"},
      {'/', "src/100%s<&>%n.f90", "100%s<&>%n.f90",
       "HTML/100%s<&>%n1969392.html"},
      {'\\', "src\\a.f90", "a.f90", "HTML\\a1755158.html"},
  };
  for (const auto& c : cases) {
    slash = c.separator;
    FileList file({c.path});
    write_file(c.path, "x\n");
    print_links(file.slot(0), false);
    EXPECT_EQ(source_page(c.title, "x\n", date_time), content_of(c.page));
  }
}

TEST_F(PrintLinks, ListsAllDefinitionsAtAReferenceToANameDefinedTwice) {
  declare("Solve", 0, 2);
  declare("SOLVE", 1, 9);
  EXPECT_EQ(
      "call <a NAME=\"line1\"></a>"
      "<span id=\"nav\"><b class=\"multiref\">solve<table class=\"pane\"><tr>"
      "<td style=\"vertical-align:top;\">\n"
      "<small>Definitions:</small>\n"
      "<a href=\"a1751050.html#Solve-1\"><small>a.f90:2</small></a><br/>\n"
      "<a href=\"b1756053.html#SOLVE-2\"><small>b.f90:9</small></a><br/>\n"
      "</td></tr></table></b></span>()\n",
      content("call solve()\n"));
}

TEST_F(PrintLinks, ShowsTheSameMenuAtBothDefinitionsOfANameDefinedTwice) {
  Declaration& first = declare("solve", 0, 2);
  Declaration& second = declare("Solve", 1, 1);
  first.add_calling(files.slot(2), 5);
  second.add_calling(files.slot(2), 6);
  const std::string items = caller(page_c, "c.f90", 5);

  EXPECT_EQ("\nsubroutine " + definition("solve-1", "solve", items) + "\n",
            content("\nsubroutine solve\n"));
  EXPECT_EQ(
      source_page("b.f90",
                  "subroutine " + definition("Solve-2", "Solve", items) + "\n",
                  date_time),
      page_of(1, "subroutine Solve\n"));
}

TEST_F(PrintLinks, HighlightsALowerCaseKeywordThatIsListedInUpperCase) {
  const Syntax where(2, "WHERE");
  html_style = BOLD_KEYWORDS | LEVEL_2;
  EXPECT_EQ("end <b>where</b> wherever\n", content("end where wherever\n"));
  Syntax::first = where.next;
}

// It is skipped before its page is opened: this directory does not exist.
TEST_F(PrintLinks, SilentlySkipsAMissingSource) {
  verbose = 1;
  html_dir = "nowhere";
  EXPECT_EQ("", printed([&] { print_links(files.slot(0), false); }));
  EXPECT_FALSE(fs::exists("nowhere"));
}

TEST_F(PrintLinks, WritesAPageWithoutLinesForADirectory) {
  fs::create_directory("a.f90");
  print_links(files.slot(0), false);
  EXPECT_EQ(source_page("a.f90", "", date_time), content_of("HTML/" + page_a));
}

TEST_F(PrintLinks, LeavesNoFileOpen) {
  write_file("a.f90", "x\n");
  write_file("b.f90", "");
  fs::create_directory("c.f90");
  const auto before = open_files();
  for (int i = 0; i < files.count(); ++i) {
    print_links(files.data() + i, false);
    EXPECT_EQ(before, open_files()) << files.data()[i];
  }
}

TEST_F(PrintLinks, ReportsEachFileInVerboseMode) {
  FileList odd({"./100%s%n.f90"});
  write_file(*odd.slot(0), "x\n");
  for (const int level : {-1, 0, 1, 5}) {
    verbose = level;
    EXPECT_EQ(level > 0 ? "Generating HTML for ./100%s%n.f90...OK\n" : "",
              printed([&] { print_links(odd.slot(0), false); }));
  }
}

// The source is a pipe that stays open until the report has arrived.
TEST_F(PrintLinks, FlushesItsReportBeforeReadingAndAtTheEnd) {
  verbose = 1;
  ASSERT_EQ(0, mkfifo("a.f90", 0600));
  EXPECT_EQ("Generating HTML for a.f90...OK\n", printed([&] {
              std::thread source([&] {
                std::FILE* pipe = std::fopen("a.f90", "w");
                EXPECT_TRUE(wait_until([] { return bytes_printed() == 28; }));
                std::fclose(pipe);
              });
              print_links(files.slot(0), false);
              source.join();
              EXPECT_EQ(31, bytes_printed());
            }));
}

using PrintLinksDeathTest = PrintLinks;

// The message of glibc without the line number.
const char assertion[] =
    "zelkor: .*void print_links\\(char\\*\\*, bool\\).*html!=__null";

TEST_F(PrintLinksDeathTest, AbortsWhenThePageCannotBeCreated) {
  write_file("a.f90", "x\n");
  html_dir = "nowhere";
  EXPECT_EXIT(print_links(files.slot(0), false),
              testing::KilledBySignal(SIGABRT), assertion);
}

class ColumnRule : public PrintLinks {
 protected:
  // The sizes of the columns in a menu with n callers.
  std::vector<int> columns(int n) {
    Declaration::forget_all();
    Declaration& f = declare("f", 0, 1);
    for (int line = 1; line <= n; ++line) f.add_calling(files.slot(1), line);
    std::string menu = content("f\n");

    const std::string start =
        "<a NAME=\"f-1\"><b>f</b></a>" + menu_opening + "Referenced By...\n";
    EXPECT_EQ(start, menu.substr(0, start.size()));
    EXPECT_EQ(menu_closing + "\n",
              menu.substr(menu.size() - menu_closing.size() - 1));
    menu = menu.substr(start.size(),
                       menu.size() - start.size() - menu_closing.size() - 1);

    std::vector<int> sizes = {0};
    std::size_t position = 0;
    for (int line = 1; line <= n; ++line) {
      if (menu.compare(position, new_column.size(), new_column) == 0) {
        position += new_column.size();
        sizes.push_back(0);
      }
      const std::string item = caller(page_b, "b.f90", line);
      EXPECT_EQ(item, menu.substr(position, item.size()));
      position += item.size();
      ++sizes.back();
    }
    EXPECT_EQ(menu.size(), position);
    return sizes;
  }
};

TEST_F(ColumnRule, SpreadsCallersOverOneToThreeColumns) {
  const struct {
    int callers;
    std::vector<int> columns;
  } cases[] = {
      {0, {0}},
      {1, {1}},
      {2, {2}},
      {12, {12}},
      {13, {13}},
      {14, {8, 6}},
      {15, {8, 7}},
      {16, {9, 7}},
      {22, {12, 10}},
      {23, {12, 11}},
      {24, {9, 9, 6}},
      {25, {9, 9, 7}},
      {26, {9, 9, 8}},
      {27, {10, 10, 7}},
      {28, {10, 10, 8}},
      {47, {16, 16, 15}},
      {300, {101, 101, 98}},
  };
  for (const auto& c : cases)
    EXPECT_EQ(c.columns, columns(c.callers)) << c.callers << " callers";
}

TEST_F(PrintLinks, ShowsNoUnitsOrCallersOfEarlierRuns) {
  for (int run = 1; run <= 3; ++run) {
    Declaration::forget_all();
    Declaration& first = declare("s", 0, 1);
    declare("s", 1, run);
    first.add_calling(files.slot(2), 10 * run);
    EXPECT_EQ(
        definition("s-1", "s", caller(page_c, "c.f90", 10 * run)) +
            "\n<a NAME=\"line2\"></a>" +
            definitions_pane("s", pane_item(page_a, "a.f90", "s", 1, 1) +
                                      pane_item(page_b, "b.f90", "s", 2, run)) +
            "\n",
        content("s\ns\n"))
        << run;
  }
}

TEST(PrintSyntax, WritesTheTextUnchangedInTheChosenStyle) {
  const SettingsGuard settings;
  const struct {
    std::uint32_t style;
    const char* shown;
  } cases[] = {
      {0, "<%s&"},
      {BOLD_KEYWORDS, "<b><%s&</b>"},
      {ITALIC_KEYWORDS, "<i><%s&</i>"},
      {BOLD_KEYWORDS | ITALIC_KEYWORDS, "<b><i><%s&</i></b>"},
      {BOLD_KEYWORDS | LEVEL_NONE | WRITE_INDEX, "<b><%s&</b>"},
  };
  for (const auto& c : cases) {
    html_style = c.style;
    EXPECT_EQ(c.shown, written([](std::FILE* html) {
                print_syntax("if (x) <%s& y\n", 7, 11, html);
              }))
        << c.style;
  }
}

}  // namespace
