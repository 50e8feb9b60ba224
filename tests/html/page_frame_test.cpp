#include "html/page_frame.h"

#include <gtest/gtest.h>

#include <functional>
#include <string>

#include "analysis/calling.h"
#include "analysis/declaration.h"
#include "driver/settings.h"
#include "tests/support/capture.h"
#include "tests/support/file_list.h"
#include "tests/support/fixed_clock.h"
#include "tests/support/page_text.h"
#include "tests/support/settings_guard.h"

namespace {

TEST(HtmlHeader, WritesTheWholeHeadAndNothingElse) {
  EXPECT_EQ(1644u, page_head().size());
  EXPECT_EQ(page_head(), written(html_header));
}

class HtmlFooter : public testing::Test {
 protected:
  ~HtmlFooter() override { page_trailer = trailer; }

  SettingsGuard settings;
  FixedClock clock;
  std::string trailer = page_trailer;
};

TEST_F(HtmlFooter, ShowsTheTimeStampWithItsLineEndAndTheMaker) {
  EXPECT_EQ(
      "<hr><small>Generated Sun Mar  1 12:44:05 2009\n"
      " by <a href=\"https://zelkor.example/\">zelkor</a>, A CASE Tool from "
      "<a href=\"mailto:zelkor@qumbra.example\">Qumbra</a></small>"
      "</body>\n</html>\n",
      written(html_footer));
}

TEST_F(HtmlFooter, UsesTheTrailerAsAFormatForTheLocalTime) {
  page_trailer = "[%s] 100%%";
  const TimeZone five_hours_east("EAST-5");
  EXPECT_EQ("[Sun Mar  1 17:44:05 2009\n] 100%</body>\n</html>\n",
            written(html_footer));
}

TEST(MenuOperations, WriteExactlyTheirMarkUp) {
  const std::string pane =
      "<table class=\"pane\"><tr><td style=\"vertical-align:top;\">\n";
  const std::string menu =
      "<span id=\"nav\"><span class=\"popup\"><big><big style=\"color: "
      "rgb(204, 0, 0);\">&#134;</big></big>" +
      pane;
  EXPECT_EQ(151u, menu.size());
  const auto menu_with = [](const char* title) {
    return [title](std::FILE* html) { begin_menu(html, title); };
  };
  const auto pane_with = [](const char* title) {
    return [title](std::FILE* html) { begin_multiref(html, title); };
  };
  const struct {
    std::string text;
    std::function<void(std::FILE*)> writer;
  } cases[] = {
      {menu, menu_with(nullptr)},
      {menu + "\n", menu_with("")},
      {menu + "Referenced By...\n", menu_with("Referenced By...")},
      {menu + "100%s %n <a & b>\n", menu_with("100%s %n <a & b>")},
      {pane, pane_with(nullptr)},
      {pane + "<small></small>\n", pane_with("")},
      {pane + "<small>Definitions:</small>\n", pane_with("Definitions:")},
      {pane + "<small>%s %n <a & b></small>\n", pane_with("%s %n <a & b>")},
      {"</td></tr></table></span></span>", end_menu},
      {"<span id=\"nav\"><b class=\"multiref\">", open_multiref},
      {"</td></tr></table></b></span>", close_multiref},
  };
  for (const auto& c : cases) EXPECT_EQ(c.text, written(c.writer));
}

TEST(PrintHtmlChar, WritesEveryCharacterUnchanged) {
  for (int code = 0; code < 256; ++code) {
    const char c = static_cast<char>(code);
    EXPECT_EQ(std::string(1, c),
              written([c](std::FILE* html) { print_html_char(c, html); }));
  }
}

// The bytes of 100%s\xe9.f90 add up to 527 (\xe9 counts as -23), so its number
// is 527 * 5003 modulo 2 ^ 21.
TEST(ItemOperations, WriteExactlyTheirMarkUp) {
  const SettingsGuard settings;
  FileList files{{"src/a.f90", "100%s\xe9.f90"}};
  const auto* solve =
      new Declaration(DT_SUBROUTINE, "Solve", files.slot(0), 12);
  const auto* unnamed = new Declaration(DT_INTERFACE, "", files.slot(0), 1);
  const auto* odd = new Declaration(DT_INTERFACE, ".%d<&.", files.slot(1), 3);
  const auto unit = [](const Declaration* declaration, int index, bool starts) {
    return
        [=](std::FILE* html) { menu_item(html, *declaration, index, starts); };
  };
  const auto call = [&](std::size_t file, int line, bool starts) {
    return [&files, file, line, starts](std::FILE* html) {
      menu_item(html, Calling{files.slot(file), line}, starts);
    };
  };
  const auto definition = [](const Declaration* declaration, int index) {
    return [=](std::FILE* html) { multiref_item(html, *declaration, index); };
  };
  const std::string column = "</td><td style=\"vertical-align:top;\">\n";
  const std::string odd_page =
      "<a href=\"100%s\xe9"
      "539429.html#";
  const struct {
    std::string text;
    std::function<void(std::FILE*)> writer;
  } cases[] = {
      {"<a href=\"a1530023.html#Solve-2\"><small>Solve</small></a><br/>\n",
       unit(solve, 2, false)},
      {column +
           "<a href=\"a1530023.html#Solve-1\"><small>Solve</small></a><br/>\n",
       unit(solve, 1, true)},
      {"<a href=\"a1530023.html#-1\"><small></small></a><br/>\n",
       unit(unnamed, 1, false)},
      {odd_page + ".%d<&.-1\"><small>.%d<&.</small></a><br/>\n",
       unit(odd, 1, false)},
      {"<a href=\"a1530023.html#line42\">src/a.f90&nbsp;:&nbsp;42</a><br/>\n",
       call(0, 42, false)},
      {column +
           "<a href=\"a1530023.html#line7\">src/a.f90&nbsp;:&nbsp;7</a><br/>\n",
       call(0, 7, true)},
      {odd_page + "line5\">100%s\xe9.f90&nbsp;:&nbsp;5</a><br/>\n",
       call(1, 5, false)},
      {"<a href=\"a1530023.html#Solve-3\"><small>src/a.f90:12</small></a>"
       "<br/>\n",
       definition(solve, 3)},
      {odd_page + ".%d<&.-1\"><small>100%s\xe9.f90:3</small></a><br/>\n",
       definition(odd, 1)},
  };
  for (const auto& c : cases) EXPECT_EQ(c.text, written(c.writer));
}

}  // namespace
