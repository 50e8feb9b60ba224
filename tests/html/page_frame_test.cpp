#include "html/page_frame.h"

#include <gtest/gtest.h>

#include <string>
#include <string_view>

#include "analysis/calling.h"
#include "analysis/declaration.h"
#include "driver/settings.h"
#include "tests/support/capture.h"
#include "tests/support/file_list.h"
#include "tests/support/fixed_clock.h"
#include "tests/support/page_text.h"
#include "tests/support/settings_guard.h"

namespace {

using MarkUp = void (*)(std::FILE*);
using TitledMarkUp = void (*)(std::FILE*, const char*);

std::string written_with(TitledMarkUp writer, const char* title) {
  return written([&](std::FILE* html) { writer(html, title); });
}

std::string menu_item_text(const Declaration& declaration, int index,
                           bool starts_column) {
  return written([&](std::FILE* html) {
    menu_item(html, declaration, index, starts_column);
  });
}

std::string menu_item_text(const Calling& calling, bool starts_column) {
  return written(
      [&](std::FILE* html) { menu_item(html, calling, starts_column); });
}

std::string multiref_item_text(const Declaration& declaration, int index) {
  return written(
      [&](std::FILE* html) { multiref_item(html, declaration, index); });
}

TEST(HtmlHeader, WritesTheWholeHeadAndNothingElse) {
  EXPECT_EQ(page_head(), written(html_header));
}

TEST(HtmlHeader, Is1644BytesLong) {
  EXPECT_EQ(1644u, page_head().size());
  EXPECT_EQ(1644u, written(html_header).size());
}

// Browsers would take the pages out of the mode in which "left: 2" is a length.
TEST(HtmlHeader, StartsWithoutADocumentType) {
  EXPECT_EQ(0u, written(html_header).find("<html>\n<head>\n"));
}

TEST(HtmlHeader, DoesNotChangeFromPageToPage) {
  EXPECT_EQ(page_head() + page_head(), written([](std::FILE* html) {
              html_header(html);
              html_header(html);
            }));
}

class HtmlFooter : public testing::Test {
 protected:
  ~HtmlFooter() override { page_trailer = trailer; }

  SettingsGuard settings;
  FixedClock clock;
  std::string trailer = page_trailer;
};

TEST_F(HtmlFooter, ShowsTheTimeStampWithItsLineEndAndTheMakers) {
  EXPECT_EQ(
      "<hr><small>Generated Sun Mar  1 12:44:05 2009\n"
      " by <a href=\"https://zelkor.example/\">zelkor</a>, A CASE Tool from "
      "<a href=\"mailto:zelkor@qumbra.example\">Qumbra</a></small>"
      "</body>\n</html>\n",
      written(html_footer));
}

TEST_F(HtmlFooter, ShowsTheTimeOfTheRunNotOfTheCall) {
  date_time = 0;
  EXPECT_EQ(0u, written(html_footer)
                    .find("<hr><small>Generated Thu Jan  1 00:00:00 1970\n"
                          " by <a "));
}

TEST_F(HtmlFooter, ShowsLocalTime) {
  const TimeZone five_hours_east("EAST-5");
  EXPECT_EQ(0u, written(html_footer)
                    .find("<hr><small>Generated Sun Mar  1 17:44:05 2009\n"));
}

TEST_F(HtmlFooter, TakesTheTrailerAsAFormatOfTheTimeText) {
  page_trailer = "[%s] 100%%";
  EXPECT_EQ("[Sun Mar  1 12:44:05 2009\n] 100%</body>\n</html>\n",
            written(html_footer));
}

TEST(BeginMenu, WithoutTitleIsThe151ByteOpening) {
  const std::string text = written_with(begin_menu, nullptr);
  EXPECT_EQ(
      "<span id=\"nav\"><span class=\"popup\"><big><big style=\"color: "
      "rgb(204, 0, 0);\">&#134;</big></big><table class=\"pane\"><tr><td "
      "style=\"vertical-align:top;\">\n",
      text);
  EXPECT_EQ(151u, text.size());
}

TEST(BeginMenu, AddsATitlePlainOnALineOfItsOwn) {
  EXPECT_EQ(written_with(begin_menu, nullptr) + "Referenced By...\n",
            written_with(begin_menu, "Referenced By..."));
}

TEST(BeginMultiref, WithoutTitleOpensThePaneOnly) {
  EXPECT_EQ("<table class=\"pane\"><tr><td style=\"vertical-align:top;\">\n",
            written_with(begin_multiref, nullptr));
}

TEST(BeginMultiref, AddsATitleInSmallType) {
  EXPECT_EQ(
      "<table class=\"pane\"><tr><td style=\"vertical-align:top;\">\n"
      "<small>Definitions:</small>\n",
      written_with(begin_multiref, "Definitions:"));
}

TEST(Titles, AreNoFormatsAndNotEscaped) {
  const std::string title = "100%s %n <a & b>";
  EXPECT_EQ(written_with(begin_menu, nullptr) + title + "\n",
            written_with(begin_menu, title.c_str()));
  EXPECT_EQ(
      written_with(begin_multiref, nullptr) + "<small>" + title + "</small>\n",
      written_with(begin_multiref, title.c_str()));
}

TEST(Titles, AnEmptyOneIsWrittenUnlikeANullOne) {
  EXPECT_EQ(written_with(begin_menu, nullptr) + "\n",
            written_with(begin_menu, ""));
  EXPECT_EQ(written_with(begin_multiref, nullptr) + "<small></small>\n",
            written_with(begin_multiref, ""));
}

TEST(MarkUp, ClosingsAndOpeningsHaveNoLineEnd) {
  const struct {
    MarkUp writer;
    const char* text;
  } cases[] = {
      {end_menu, "</td></tr></table></span></span>"},
      {open_multiref, "<span id=\"nav\"><b class=\"multiref\">"},
      {close_multiref, "</td></tr></table></b></span>"},
  };
  for (const auto& c : cases) EXPECT_EQ(c.text, written(c.writer));
}

TEST(PrintHtmlChar, WritesEveryCharacterUnchanged) {
  for (int code = 0; code < 256; ++code) {
    const char c = static_cast<char>(code);
    EXPECT_EQ(std::string(1, c),
              written([c](std::FILE* html) { print_html_char(c, html); }))
        << code;
  }
}

TEST(PrintHtmlChar, MakesNoEntities) {
  EXPECT_EQ("<>&\"'", written([](std::FILE* html) {
              for (const char c : {'<', '>', '&', '"', '\''})
                print_html_char(c, html);
            }));
}

class Items : public testing::Test {
 protected:
  Declaration& declare(const char* name, std::size_t file, int line) {
    return *new Declaration(DT_SUBROUTINE, name, files.slot(file), line);
  }

  SettingsGuard settings;
  FileList files{{"src/a.f90", "100%s\xe9.f90"}};
};

TEST_F(Items, MenuItemOfADeclarationShowsItsNameTwice) {
  const Declaration& solve = declare("Solve", 0, 12);
  EXPECT_EQ("<a href=\"a1530023.html#Solve-2\"><small>Solve</small></a><br/>\n",
            menu_item_text(solve, 2, false));
}

TEST_F(Items, MenuItemOfADeclarationMayStartAColumn) {
  const Declaration& solve = declare("Solve", 0, 12);
  EXPECT_EQ(
      "</td><td style=\"vertical-align:top;\">\n"
      "<a href=\"a1530023.html#Solve-1\"><small>Solve</small></a><br/>\n",
      menu_item_text(solve, 1, true));
}

TEST_F(Items, MenuItemOfACallShowsThePathAndTheLine) {
  EXPECT_EQ(
      "<a href=\"a1530023.html#line42\">src/a.f90&nbsp;:&nbsp;42</a><br/>\n",
      menu_item_text(Calling{files.slot(0), 42}, false));
}

TEST_F(Items, MenuItemOfACallMayStartAColumn) {
  EXPECT_EQ(
      "</td><td style=\"vertical-align:top;\">\n"
      "<a href=\"a1530023.html#line7\">src/a.f90&nbsp;:&nbsp;7</a><br/>\n",
      menu_item_text(Calling{files.slot(0), 7}, true));
}

TEST_F(Items, MultirefItemShowsWhereTheDeclarationStands) {
  const Declaration& solve = declare("Solve", 0, 12);
  EXPECT_EQ(
      "<a href=\"a1530023.html#Solve-3\"><small>src/a.f90:12</small></a>"
      "<br/>\n",
      multiref_item_text(solve, 3));
}

// 100%s\xe9.f90 has the byte sum 527 (\xe9 counts as -23), so its number is
// 527 * 5003 modulo 2 ^ 21.
TEST_F(Items, PathsAndNamesAreNoFormatsAndNotEscaped) {
  const std::string path = "100%s\xe9.f90";
  const std::string page =
      "100%s\xe9"
      "539429.html";
  const Declaration& odd = declare(".%d<&.", 1, 3);
  EXPECT_EQ(
      "<a href=\"" + page + "#.%d<&.-1\"><small>.%d<&.</small></a><br/>\n",
      menu_item_text(odd, 1, false));
  EXPECT_EQ("<a href=\"" + page + "#.%d<&.-1\"><small>" + path +
                ":3</small></a><br/>\n",
            multiref_item_text(odd, 1));
  EXPECT_EQ(
      "<a href=\"" + page + "#line5\">" + path + "&nbsp;:&nbsp;5</a><br/>\n",
      menu_item_text(Calling{files.slot(1), 5}, false));
}

TEST_F(Items, UnnamedUnitsHaveAnEmptyName) {
  const Declaration& unnamed = declare("", 0, 1);
  EXPECT_EQ("<a href=\"a1530023.html#-1\"><small></small></a><br/>\n",
            menu_item_text(unnamed, 1, false));
}

}  // namespace
