#include "html/source_page.h"

#include <gtest/gtest.h>

#include <sys/stat.h>
#include <unistd.h>

#include <csignal>
#include <filesystem>
#include <string>
#include <thread>
#include <vector>

#include "analysis/name_index.h"
#include "analysis/keywords.h"
#include "analysis/words.h"
#include "driver/settings.h"
#include "html/page_names.h"
#include "tests/support/page_test.h"
#include "tests/support/capture.h"
#include "tests/support/file_list.h"
#include "tests/support/open_files.h"
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
  // Writes a source and its page; returns the page.
  std::string page_of(std::size_t file, const std::string& text,
                      bool fixed_form = false) {
    write_file(*files.slot(file), text);
    print_links(files.slot(file), fixed_form);
    return content_of("HTML/" + pages[file]);
  }

  // What stands between "<pre>" and "</pre>" on the page of a.f90.
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

// A reference to the one unit of a name, on a line of its own.
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

TEST_F(PrintLinks, WritesThePageFromTopToBottom) {
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

TEST_F(PrintLinks, AnEmptySourceGivesAPageWithoutLines) {
  EXPECT_EQ(source_page("a.f90", "", date_time), page_of(0, ""));
}

TEST_F(PrintLinks, ALastLineWithoutLineEndIsNotOnThePage) {
  EXPECT_EQ("x = 1\n", content("x = 1\ny = 2"));
  EXPECT_EQ("", content("y = 2"));
}

TEST_F(PrintLinks, LongPagesAreWrittenInPiecesOf64Kilobytes) {
  std::string text;
  for (int i = 0; i < 6400; ++i) text += std::string(99, '+') + "\n";
  write_file("a.f90", text);
  const long before = process_counter("io", "syscw");
  print_links(files.slot(0), false);
  // 640000 bytes are not quite ten pieces, but 157 of 4096 bytes. UBSan writes
  // a few times, too.
  EXPECT_GT(50, process_counter("io", "syscw") - before);
}

TEST_F(PrintLinks, TitleAndHeadingAreTheLastPathComponent) {
  FileList deep({"src/sub.d/a.f90", "src/100%s<&>%n.f90"});
  write_file(*deep.slot(0), "x\n");
  print_links(deep.slot(0), false);
  EXPECT_EQ(source_page("a.f90", "x\n", date_time),
            content_of("HTML/a2049440.html"));

  write_file(*deep.slot(1), "x\n");
  print_links(deep.slot(1), false);
  EXPECT_EQ(source_page("100%s<&>%n.f90", "x\n", date_time),
            content_of("HTML/100%s<&>%n1969392.html"));
}

TEST_F(PrintLinks, ThePathSeparatorIsTheOneOfTheSettings) {
  slash = '\\';
  FileList odd({"src\\a.f90"});
  write_file(*odd.slot(0), "x\n");
  print_links(odd.slot(0), false);
  EXPECT_EQ(source_page("a.f90", "x\n", date_time),
            content_of("HTML\\a1755158.html"));
}

TEST_F(PrintLinks, APageOfAnEarlierRunIsReplaced) {
  page_of(0, "x = 1\ny = 2\n");
  EXPECT_EQ("z\n", content("z\n"));
}

TEST_F(PrintLinks, AReferenceOnLine7LinksToTheOneDefinition) {
  declare("Solve", 1, 3);
  EXPECT_EQ("\n\n\n\n\n\n  call " + reference(7, page_b + "#Solve-1", "SOLVE") +
                "(x)\n",
            content("\n\n\n\n\n\n  call SOLVE(x)\n"));
}

TEST_F(PrintLinks, NamesDefinedTwiceShowAllDefinitionsAtEveryReference) {
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

TEST_F(PrintLinks, NamesDefinedTwiceHaveNumberedAnchorsAndTheSameMenu) {
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

TEST_F(PrintLinks, AThirdDefinitionIsAThirdEntryOfThePane) {
  declare("s", 0, 4);
  declare("s", 1, 5);
  declare("s", 2, 6);
  EXPECT_EQ(
      "<a NAME=\"line1\"></a>" +
          definitions_pane(
              "s",
              "<a href=\"a1751050.html#s-1\"><small>a.f90:4</small></a><br/>\n"
              "<a href=\"b1756053.html#s-2\"><small>b.f90:5</small></a><br/>\n"
              "<a href=\"c1761056.html#s-3\"><small>c.f90:6</small></a>"
              "<br/>\n") +
          "\n",
      content("s\n"));
}

TEST_F(PrintLinks, AnUncalledDefinitionHasAnEmptyMenu) {
  declare("solve", 0, 1);
  EXPECT_EQ("subroutine <a NAME=\"solve-1\"><b>solve</b></a>" + menu_opening +
                "Referenced By...\n" + menu_closing + "\n",
            content("subroutine solve\n"));
}

TEST_F(PrintLinks, TheNameAgainOnTheLineOfItsDefinitionIsADefinitionToo) {
  declare("solve", 0, 1);
  const std::string mark = definition("solve-1", "solve", "");
  EXPECT_EQ("subroutine " + mark + " ! " + mark + "\n",
            content("subroutine solve ! solve\n"));
}

TEST_F(PrintLinks, TheAnchorOfADefinitionIsSpelledAsOnItsLine) {
  declare("solve", 0, 1);
  EXPECT_EQ(definition("SOLVE-1", "SOLVE", "") + " " +
                definition("solve-1", "solve", "") + "\n",
            content("SOLVE solve\n"));
}

TEST_F(PrintLinks, TheSameLineOfAnotherFileIsAReference) {
  declare("solve", 1, 1);
  EXPECT_EQ("subroutine " + reference(1, page_b + "#solve-1", "solve") + "\n",
            content("subroutine solve\n"));
}

TEST_F(PrintLinks, TheSamePathInAnotherSlotIsAnotherFile) {
  FileList twice({"a.f90", "a.f90"});
  new Declaration(DT_SUBROUTINE, "solve", twice.slot(0), 1);
  write_file("a.f90", "solve\n");
  print_links(twice.slot(1), false);
  EXPECT_EQ(
      source_page("a.f90", reference(1, page_a + "#solve-1", "solve") + "\n",
                  date_time),
      content_of("HTML/" + page_a));
}

TEST_F(PrintLinks, TwoReferencesOnALineRepeatTheLineAnchor) {
  declare("f", 1, 3);
  const std::string link = reference(1, page_b + "#f-1", "f");
  EXPECT_EQ("y = " + link + "(" + link + "(x))\n", content("y = f(f(x))\n"));
}

TEST_F(PrintLinks, LinesWithoutReferencesHaveNoAnchor) {
  declare("solve", 0, 2);
  EXPECT_EQ(
      "x = 1\nsubroutine " + definition("solve-1", "solve", "") + "\ny = 2\n",
      content("x = 1\nsubroutine solve\ny = 2\n"));
}

TEST_F(PrintLinks, SourceTextIsNotEscaped) {
  declare("f", 1, 3);
  EXPECT_EQ("if (a<b .and. c>d) & ! \"<script>\" &amp; %s%d " +
                reference(1, page_b + "#f-1", "f") + "<b>\n",
            content("if (a<b .and. c>d) & ! \"<script>\" &amp; %s%d f<b>\n"));
}

TEST_F(PrintLinks, WordsAreRunsOfLettersDigitsUnderscoresAndDots) {
  declare("f", 1, 3);
  declare(".cross.", 1, 4);
  declare("2", 1, 5);
  const std::string link = reference(1, page_b + "#f-1", "f");
  const struct {
    std::string source;
    std::string shown;
  } cases[] = {
      {"f", link},
      {" f", " " + link},
      {"(f)", "(" + link + ")"},
      {"x%f", "x%" + link},
      {"f\t", link + "\t"},
      {"\xe9"
       "f\xe9",
       "\xe9" + link + "\xe9"},
      {"f2 f_ _f", "f2 f_ _f"},
      {"f. .f a.eq.f x.f", "f. .f a.eq.f x.f"},
      {"a.cross.b", "a.cross.b"},
      {"a .Cross. b",
       "a " + reference(1, page_b + "#.cross.-1", ".Cross.") + " b"},
      {"2", reference(1, page_b + "#2-1", "2")},
      {"2.0 x2 _2", "2.0 x2 _2"},
  };
  for (const auto& c : cases)
    EXPECT_EQ(c.shown + "\n", content(c.source + "\n")) << c.source;
}

TEST_F(PrintLinks, OddLinesReachThePageAsTheyAre) {
  const std::string cases[] = {
      "\n",
      "   \t  \n",
      "no line end before the next\r\nline\r\n",
      "\f form feed \v\n",
      "\xe9\xff\x80 caf\xe9 8-bit \xc3\xa9\n",
      "\x01\x02\x1b[0m control\x7f\n",
      "\"open 'quotes\n",
      "&\n& & continued\n",
      "! only a comment\n",
  };
  for (const std::string& text : cases) EXPECT_EQ(text, content(text));
}

TEST_F(PrintLinks, WordsInCommentsAndStringsAreLinkedByDefault) {
  declare("f", 1, 3);
  const std::string link = reference(1, page_b + "#f-1", "f");
  EXPECT_EQ("x = \"" + link + "\" ! " + link + "\n",
            content("x = \"f\" ! f\n"));
}

TEST_F(PrintLinks, WordsInHiddenStringsAndCommentsAreWrittenPlain) {
  declare("f", 1, 3);
  html_style |= HIDE_STRINGS_AND_COMMENTS | LEVEL_3;
  const std::string link = reference(1, page_b + "#f-1", "f");
  EXPECT_EQ("x = \"f if\" + " + link + " + '" + link + "' ! f if\n",
            content("x = \"f if\" + f + 'f' ! f if\n"));
}

TEST_F(PrintLinks, TheCommentRuleIsTheOneOfTheFlag) {
  declare("f", 1, 3);
  html_style |= HIDE_STRINGS_AND_COMMENTS;
  const std::string link = reference(1, page_b + "#f-1", "f");
  EXPECT_EQ("call f\n", content("call f\n", true));
  EXPECT_EQ("call " + link + "\n", content("call f\n", false));
}

TEST_F(PrintLinks, KeywordsArePlainWithoutALevel) {
  const std::string text = "if program IF allocate\n";
  EXPECT_EQ(text, content(text));
}

TEST_F(PrintLinks, TheWidestLevelDecidesWhichKeywordsAreHighlighted) {
  const struct {
    std::uint32_t levels;
    const char* shown;
  } cases[] = {
      {0, "type if allocate\n"},
      {LEVEL_NONE, "type if allocate\n"},
      {LEVEL_1, "<b>type</b> if allocate\n"},
      {LEVEL_2, "<b>type</b> <b>if</b> allocate\n"},
      {LEVEL_3, "<b>type</b> <b>if</b> <b>allocate</b>\n"},
      {LEVEL_1 | LEVEL_NONE, "<b>type</b> if allocate\n"},
      {LEVEL_1 | LEVEL_2, "<b>type</b> <b>if</b> allocate\n"},
      {LEVEL_1 | LEVEL_3, "<b>type</b> <b>if</b> <b>allocate</b>\n"},
      {LEVEL_1 | LEVEL_2 | LEVEL_3 | LEVEL_NONE,
       "<b>type</b> <b>if</b> <b>allocate</b>\n"},
  };
  for (const auto& c : cases) {
    html_style = BOLD_KEYWORDS | c.levels;
    EXPECT_EQ(c.shown, content("type if allocate\n")) << c.levels;
  }
}

TEST_F(PrintLinks, AllTwentyKeywordsAndNoOthersAreHighlighted) {
  html_style = BOLD_KEYWORDS | LEVEL_3;
  for (const char* keyword :
       {"program", "module", "subroutine", "function", "interface",
        "type",    "if",     "then",       "else",     "elseif",
        "endif",   "do",     "while",      "until",    "continue",
        "enddo",   "select", "case",       "allocate", "deallocate"})
    EXPECT_EQ("<b>" + std::string(keyword) + "</b>\n",
              content(std::string(keyword) + "\n"));
  const std::string others =
      "end call use contains endprogram do_ .if. iff doif 1do integer\n";
  EXPECT_EQ(others, content(others));
}

TEST_F(PrintLinks, KeywordsKeepTheSpellingOfTheSource) {
  html_style = BOLD_KEYWORDS | LEVEL_3;
  EXPECT_EQ("<b>IF</b>(x) <b>Then</b>; end <b>dO</b>\n",
            content("IF(x) Then; end dO\n"));
}

TEST_F(PrintLinks, AnEntryInUpperCaseFindsItsKeywordInLowerCase) {
  const Syntax where(2, "WHERE");
  html_style = BOLD_KEYWORDS | LEVEL_2;
  EXPECT_EQ("end <b>where</b> wherever\n", content("end where wherever\n"));
  Syntax::first = where.next;
}

TEST_F(PrintLinks, ADeclaredNameIsNeverHighlightedAsAKeyword) {
  declare("case", 0, 2);
  html_style = BOLD_KEYWORDS | LEVEL_3;
  EXPECT_EQ(reference(1, page_a + "#case-1", "case") +
                " <b>if</b>\n<b>function</b> " +
                definition("case-1", "case", "") + "\n",
            content("case if\nfunction case\n"));
}

TEST_F(PrintLinks, AMissingSourceGetsNoPageAndNoMessage) {
  verbose = 1;
  EXPECT_EQ("", printed([&] { print_links(files.slot(0), false); }));
  EXPECT_TRUE(fs::is_empty("HTML"));
}

TEST_F(PrintLinks, AMissingSourceIsNoticedBeforeThePage) {
  html_dir = "nowhere";
  print_links(files.slot(0), false);
  EXPECT_FALSE(fs::exists("nowhere"));
}

TEST_F(PrintLinks, ADirectoryAsSourceGetsAPageWithoutLines) {
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

TEST_F(PrintLinks, SaysWhichFileItIsAtWhenVerbose) {
  FileList odd({"./100%s%n.f90"});
  write_file(*odd.slot(0), "x\n");
  for (const int level : {1, 2, 5}) {
    verbose = level;
    EXPECT_EQ("Generating HTML for ./100%s%n.f90...OK\n",
              printed([&] { print_links(odd.slot(0), false); }))
        << level;
  }
}

TEST_F(PrintLinks, SaysNothingAtVerbosity0OrLess) {
  write_file("a.f90", "x\n");
  for (const int level : {0, -1, -5}) {
    verbose = level;
    EXPECT_EQ("", printed([&] { print_links(files.slot(0), false); })) << level;
  }
}

// The source is a pipe that stays open until the report has arrived.
TEST_F(PrintLinks, ReportsTheFileBeforeItReadsItAndWhenItIsDone) {
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

// glibc's words, without a line number.
const char assertion[] =
    "zelkor: .*void print_links\\(char\\*\\*, bool\\).*html!=__null";

TEST_F(PrintLinksDeathTest, StopsWhenTheOutputDirectoryIsMissing) {
  write_file("a.f90", "x\n");
  html_dir = "nowhere";
  EXPECT_EXIT(print_links(files.slot(0), false),
              testing::KilledBySignal(SIGABRT), assertion);
}

TEST_F(PrintLinksDeathTest, StopsWhenThePageCannotBeCreated) {
  write_file("a.f90", "x\n");
  fs::create_directory("HTML/" + page_a);
  EXPECT_EXIT(print_links(files.slot(0), false),
              testing::KilledBySignal(SIGABRT), assertion);
}

class ColumnRule : public PrintLinks {
 protected:
  // The sizes of the columns of the menu of a unit with n callers.
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

TEST_F(ColumnRule, SpreadsTheCallersOverOneToThreeColumns) {
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

TEST_F(PrintLinks, CallersAreListedByFileNameAndLine) {
  Declaration& f = declare("f", 0, 1);
  f.add_calling(files.slot(2), 1);
  f.add_calling(files.slot(1), 10);
  f.add_calling(files.slot(1), 9);
  f.add_calling(files.slot(1), 9);
  EXPECT_EQ(
      definition("f-1", "f",
                 caller(page_b, "b.f90", 9) + caller(page_b, "b.f90", 10) +
                     caller(page_c, "c.f90", 1)) +
          "\n",
      content("f\n"));
}

TEST_F(PrintLinks, LinesOfUpTo4095CharactersCountOnce) {
  declare("f", 1, 3);
  const std::string longest(4094, ' ');
  EXPECT_EQ(longest + "\n" + reference(2, page_b + "#f-1", "f") + "\n",
            content(longest + "\nf\n"));
}

TEST_F(PrintLinks, LongerLinesCountOncePerPieceOf4095Characters) {
  declare("f", 1, 3);
  const auto link = [](int line) {
    return reference(line, page_b + "#f-1", "f");
  };
  const std::string blanks(4095, ' ');
  EXPECT_EQ(blanks + "\n" + link(3) + "\n", content(blanks + "\nf\n"));
  EXPECT_EQ(blanks + link(2) + "\n" + link(3) + "\n",
            content(blanks + "f\nf\n"));
}

TEST_F(PrintLinks, AWordCutByTheEndOfAPieceIsTwoWords) {
  declare("solve", 1, 3);
  declare("ve", 1, 4);
  const std::string blanks(4092, ' ');
  EXPECT_EQ(blanks + "sol" + reference(2, page_b + "#ve-1", "ve") + "\n",
            content(blanks + "solve\n"));
}

TEST_F(PrintLinks, AHundredThousandCharactersArePiecesOfOneLine) {
  declare("f", 1, 3);
  // 24 pieces of 4095 characters and one of 1721.
  const std::string filler(100000, '-');
  EXPECT_EQ(filler + "\n" + reference(26, page_b + "#f-1", "f") + "\n",
            content(filler + "\nf\n"));
}

TEST_F(PrintLinks, AWordOfAHundredThousandCharactersIsShownWhole) {
  declare("f", 1, 3);
  const std::string word(100000, 'w');
  EXPECT_EQ(word + " " + reference(25, page_b + "#f-1", "f") + "\n",
            content(word + " f\n"));
}

TEST_F(PrintLinks, ALastPieceThatFillsTheBufferIsShownWithoutLineEnd) {
  const std::string full(4095, '-');
  EXPECT_EQ(full, content(full));
  EXPECT_EQ("", content(std::string(4094, '-')));
  EXPECT_EQ(full, content(full + "-"));
}

TEST_F(PrintLinks, WordsAreKnownByTheirFirst255Characters) {
  const std::string name(255, 'n');
  const std::string word = name + "_and_more";
  declare(name.c_str(), 0, 2);
  EXPECT_EQ(reference(1, page_a + "#" + name + "-1", word) + "(x)\n" +
                definition(name + "-1", word, "") + "(x)\n",
            content(word + "(x)\n" + word + "(x)\n"));
}

TEST_F(PrintLinks, ALineEndsAtANulLineEndIncluded) {
  declare("f", 1, 3);
  EXPECT_EQ("x " + reference(2, page_b + "#f-1", "f") + "\n",
            content(std::string("x \0f\nf\n", 7)));
  EXPECT_EQ("", content(std::string("\0\0\0\n\0", 5)));
}

TEST_F(PrintLinks, AllByteValuesPassThroughUnchanged) {
  std::string bytes;
  for (int code = 1; code < 256; ++code)
    if (code != '\n') bytes += static_cast<char>(code);
  html_style |= LEVEL_3;
  EXPECT_EQ(bytes + "\n", content(bytes + "\n"));
}

// What the pane of a name shows for one of its units.
std::string pane_item(const std::string& page, const std::string& path,
                      const std::string& name, int index, int line) {
  return "<a href=\"" + page + "#" + name + "-" + std::to_string(index) +
         "\"><small>" + path + ":" + std::to_string(line) +
         "</small></a><br/>\n";
}

TEST_F(PrintLinks, ALaterRunShowsItsOwnUnitsAndCallers) {
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

TEST_F(PrintLinks, ALaterRunShowsTheFilesOfItsOwnList) {
  for (const std::size_t file : {0u, 1u, 2u}) {
    FileList list({*files.slot(file)});
    new Declaration(DT_TYPE, "s", list.slot(0), 8);
    new Declaration(DT_TYPE, "s", list.slot(0), 9);
    EXPECT_EQ(
        source_page(
            *files.slot(0),
            "<a NAME=\"line1\"></a>" +
                definitions_pane(
                    "s",
                    pane_item(pages[file], *files.slot(file), "s", 1, 8) +
                        pane_item(pages[file], *files.slot(file), "s", 2, 9)) +
                "\n",
            date_time),
        page_of(0, "s\n"));
    Declaration::forget_all();
  }
}

TEST_F(PrintLinks, ANameThatGainsUnitsOrCallersShowsThem) {
  Declaration& first = declare("s", 0, 1);
  std::string items = pane_item(page_a, "a.f90", "s", 1, 1);
  std::string callers;
  for (int unit = 2; unit <= 4; ++unit) {
    declare("s", 1, unit);
    items += pane_item(page_b, "b.f90", "s", unit, unit);
    for (const int line : {2 * unit, 2 * unit + 1}) {
      first.add_calling(files.slot(2), line);
      callers += caller(page_c, "c.f90", line);
      EXPECT_EQ(definition("s-1", "s", callers) + "\n<a NAME=\"line2\"></a>" +
                    definitions_pane("s", items) + "\n",
                content("s\ns\n"))
          << unit << ' ' << line;
    }
  }
}

// Their panes take more than a megabyte together.
TEST_F(PrintLinks, ManyNamesWithManyUnitsShowEachItsOwn) {
  std::string source;
  std::string shown;
  for (int k = 10; k < 40; ++k) {
    const std::string name = "shared_" + std::to_string(k);
    std::string items;
    for (int unit = 1; unit <= 600; ++unit) {
      declare(name.c_str(), 1, 100 * unit + k);
      items += pane_item(page_b, "b.f90", name, unit, 100 * unit + k);
    }
    source += name + "\n";
    shown += "<a NAME=\"line" + std::to_string(k - 9) + "\"></a>" +
             definitions_pane(name, items) + "\n";
  }
  ASSERT_LT(1u << 20, shown.size());
  for (int pass = 0; pass < 2; ++pass)
    EXPECT_TRUE(content(source) == shown) << pass;
}

// Their menus are rendered for each of them.
TEST_F(PrintLinks, FewUnitsWithManyCallersShowThemAll) {
  Declaration& first = declare("s", 0, 1);
  declare("s", 0, 2);
  for (int line = 1; line <= 300; ++line)
    first.add_calling(files.slot(1), line);
  std::string items;
  for (int line = 1; line <= 300; ++line) {
    if (line == 102 || line == 203) items += new_column;
    items += caller(page_b, "b.f90", line);
  }
  EXPECT_EQ(definition("s-1", "s", items) + "\n" +
                definition("s-2", "s", items) + "\n",
            content("s\ns\n"));
}

TEST_F(PrintLinks, PanesFollowTheSeparatorOfPaths) {
  FileList list({"a.f90", "d/b.f90"});
  Declaration* const first = new Declaration(DT_TYPE, "s", list.slot(0), 1);
  new Declaration(DT_TYPE, "s", list.slot(1), 2);
  first->add_calling(list.slot(1), 3);
  write_file("a.f90", "s\ns\n");
  const std::string number = std::to_string(unique_id("d/b.f90"));
  for (const char separator : {'/', '\\', '/'}) {
    slash = separator;
    const std::string page =
        (separator == '/' ? "b" : "d/b") + number + ".html";
    print_links(list.slot(0), false);
    EXPECT_EQ(
        source_page("a.f90",
                    definition("s-1", "s", caller(page, "d/b.f90", 3)) +
                        "\n<a NAME=\"line2\"></a>" +
                        definitions_pane(
                            "s", pane_item(page_a, "a.f90", "s", 1, 1) +
                                     pane_item(page, "d/b.f90", "s", 2, 2)) +
                        "\n",
                    date_time),
        content_of("HTML" + std::string(1, separator) + page_a));
  }
}

TEST_F(PrintLinks, NamesThatShareAHashAreLinkedEachToItsOwn) {
  ASSERT_EQ(hash_of("apply_rk_0"), hash_of("cpply_rk_1"));
  ASSERT_EQ(hash_of("apply_rk_0"), hash_of("epply_rk_2"));
  declare("cpply_rk_1", 1, 3);
  declare("apply_rk_0", 2, 4);
  EXPECT_EQ(reference(1, page_c + "#apply_rk_0-1", "APPLY_RK_0") + " " +
                reference(1, page_b + "#cpply_rk_1-1", "cpply_rk_1") +
                " epply_rk_2\n",
            content("APPLY_RK_0 cpply_rk_1 epply_rk_2\n"));
}

// Words that name nothing are passed over sooner when no keyword is sought.
TEST_F(PrintLinks, LinksAreTheSameWithAndWithoutHighlighting) {
  declare("f", 1, 3);
  const std::string link = reference(1, page_b + "#f-1", "f");
  for (const std::uint32_t style : {0u, 1024u, 2048u, 4096u, 8192u}) {
    html_style = style;
    EXPECT_EQ("x = if " + link + " do g\n", content("x = if f do g\n"))
        << style;
  }
}

TEST(PrintSyntax, WritesTheColumnsInTheChosenStyle) {
  const SettingsGuard settings;
  const struct {
    std::uint32_t style;
    const char* shown;
  } cases[] = {
      {0, "Then"},
      {BOLD_KEYWORDS, "<b>Then</b>"},
      {ITALIC_KEYWORDS, "<i>Then</i>"},
      {BOLD_KEYWORDS | ITALIC_KEYWORDS, "<b><i>Then</i></b>"},
      {BOLD_KEYWORDS | LEVEL_NONE | WRITE_INDEX, "<b>Then</b>"},
  };
  for (const auto& c : cases) {
    html_style = c.style;
    EXPECT_EQ(c.shown, written([](std::FILE* html) {
                print_syntax("if (x) Then & <y>\n", 7, 11, html);
              }))
        << c.style;
  }
}

TEST(PrintSyntax, EscapesNothingAndMayBeEmpty) {
  const SettingsGuard settings;
  html_style = BOLD_KEYWORDS;
  EXPECT_EQ("<b><%s&></b>", written([](std::FILE* html) {
              print_syntax("<%s&>", 0, 5, html);
            }));
  EXPECT_EQ("<b></b>",
            written([](std::FILE* html) { print_syntax("if", 1, 1, html); }));
}

}  // namespace
