#include "gui/special_browser.h"

#include <FL/Fl.H>
#include <FL/fl_draw.H>
#include <gtest/gtest.h>

#include <algorithm>
#include <ctime>
#include <string>
#include <type_traits>
#include <vector>

#include "tests/gui/main_window_fixture.h"
#include "tests/gui/pixels.h"
#include "tests/gui/user.h"

namespace {

// A browser whose protected operations can be called, by line number.
class OpenBrowser : public SpecialBrowser {
 public:
  using SpecialBrowser::SpecialBrowser;

  int height(int line) const { return item_height(find_line(line)); }
  int quick_height(int line) const {
    return item_quick_height(find_line(line));
  }
  int width(int line) const { return item_width(find_line(line)); }
  void draw_line(int line, int x, int y, int w, int h) const {
    item_draw(find_line(line), x, y, w, h);
  }
  int total_height() const { return full_height(); }
  void area(int& x, int& y, int& w, int& h) const { bbox(x, y, w, h); }

  // The sizes in the toolkit's own list.
  int plain_height(int line) const {
    return Fl_Multi_Browser::item_height(find_line(line));
  }
  int plain_width(int line) const {
    return Fl_Multi_Browser::item_width(find_line(line));
  }
};

const int w = 150;
const int h = 40;
const Fl_Color background = FL_WHITE;

// The expected look of one half of a line.
struct Half {
  std::string text;
  int x, y, width, height;
  int font = 0, size = 14;
  Fl_Color color = FL_BLACK;
};

Pixels picture(const std::vector<Half>& halves, Fl_Color under = background,
               int width = w, int height = h) {
  return drawn(width, height, under, [&] {
    for (const Half& half : halves) {
      fl_font(half.font, half.size);
      fl_color(half.color);
      fl_draw(half.text.c_str(), half.x + 3, half.y, half.width - 6,
              half.height, static_cast<Fl_Align>(FL_ALIGN_LEFT | FL_ALIGN_CLIP),
              nullptr, 1);
    }
  });
}

class SpecialBrowserTest : public testing::Test {
 protected:
  SpecialBrowserTest() : window(0, 0, 300, 300), list(10, 10, 210, 215) {
    window.end();
    list.type(FL_MULTI_BROWSER);
    show_and_wait(window);
  }
  ~SpecialBrowserTest() override {
    window.hide();
    Fl::check();
  }

  void fill(const Texts& texts) {
    list.clear();
    for (const std::string& text : texts) list.add(text.c_str());
  }

  // What a line looks like in a rectangle of a picture.
  Pixels line(int number, int x, int y, int width, int height,
              Fl_Color under = background) const {
    return drawn(w, h, under,
                 [&] { list.draw_line(number, x, y, width, height); });
  }
  Pixels line(int number, Fl_Color under = background) const {
    return line(number, 0, 0, w, h, under);
  }

  Fl_Window window;
  OpenBrowser list;
};

static_assert(std::is_base_of_v<Fl_Multi_Browser, SpecialBrowser>);
static_assert(sizeof(Fl_Multi_Browser) == sizeof(SpecialBrowser));

// clang-format off
const struct {
  Texts texts;
  Lines heights;
} group_cases[] = {
  {{"/src/a", "/src/b", "/src/c"},   {2, 1, 1}},
  {{"a/x", "b/y", "a/z"},            {2, 2, 2}},  // neighbours only
  {{"/src/a", "/src2/b"},            {2, 2}},
  {{"/src/a", "/src/b", "/lib/c", "/lib/d", "/src/e"}, {2, 1, 2, 1, 2}},
  {{"/src/a", "/src/sub/b"},         {2, 2}},
  {{"ab/x", "ac/x"},                 {2, 2}},     // the last letter counts
  {{"Src/x", "src/x"},               {2, 2}},
  {{"/a/x", "//a/x"},                {2, 2}},
  {{"/x", "/y"},                     {2, 1}},
  {{"x", "y"},                       {2, 1}},     // no "/": length 0
  {{"/x", "y", "/z"},                {2, 1, 1}},
  {{"a/x", "x", "a/x"},              {2, 2, 2}},
  {{"a/", "a/b"},                    {2, 1}},
  {{"", ""},                         {2, 1}},
  {{"a/x", "a/x"},                   {2, 1}},     // the same twice
  {{"@lbig/a", "@lbig/b", "@sbig/c"}, {2, 1, 2}}, // the base obeys prefixes
  {{"\xe9/x", "\xe9/y", "\xe8/z"},   {2, 1, 2}},
};
// clang-format on

TEST_F(SpecialBrowserTest, DoublesTheHeightOfALineThatStartsAGroup) {
  for (const auto& c : group_cases) {
    fill(c.texts);
    int sum = 0;
    for (int line = 1; line <= list.size(); ++line) {
      const int lines_high = c.heights.at(static_cast<std::size_t>(line) - 1);
      EXPECT_EQ(lines_high * list.plain_height(line), list.height(line))
          << "line " << line << " of " << testing::PrintToString(c.texts);
      EXPECT_EQ(list.height(line), list.quick_height(line));
      EXPECT_EQ(list.plain_width(line), list.width(line));
      sum += list.height(line);
    }
    EXPECT_EQ(sum, list.total_height());
  }
}

// --- drawing ---

TEST_F(SpecialBrowserTest, DrawsABoldHeadingAboveTheIndentedName) {
  const struct {
    std::string text, heading, name;
  } cases[] = {
      {"/home/src/main.f90", "/home/src/", "  main.f90"},
      {"./a.f90", "./", "  a.f90"},
      {"/a", "/", "  a"},
      {"plain", "/", "  lain"},  // the first character is dropped
      {"x", "/", "  "},
      {"", "/", "  "},
      {"dir/", "dir/", "  "},
      {"a//b", "a//", "  b"},
      {"/me@home/@i", "/me@home/", "  @i"},
      {"/R&D/a&b", "/R&D/", "  a&b"},
      {"/a\tb/c\td", "/a\tb/", "  c\td"},
      {"/\xe9t\xe9/\xe0", "/\xe9t\xe9/", "  \xe0"},
      {"/50%s/%n", "/50%s/", "  %n"},
      {"/" + std::string(60, 'M') + "/" + std::string(60, 'g'),
       "/" + std::string(60, 'M') + "/", "  " + std::string(60, 'g')},
  };
  for (const int size : {14, 30})  // the latter is higher than its half
    for (const auto& c : cases) {
      fill({c.text});
      list.textsize(static_cast<uchar>(size));
      EXPECT_PRED_FORMAT2(same_picture,
                          picture({{c.heading, 0, 0, w, 20, 1, size},
                                   {c.name, 0, 20, w, 20, 0, size}}),
                          line(1))
          << c.text;
    }
}

TEST_F(SpecialBrowserTest, UsesTheFontSizeAndColourOfTheList) {
  const struct {
    int font, bold, size;
    Fl_Color color;
  } cases[] = {
      {0, 1, 10, FL_RED},
      {4, 5, 14, FL_BLUE},
      {8, 9, 12, static_cast<Fl_Color>(63)},
      {1, 1, 14, FL_BLACK},
      {10, 11, 18, static_cast<Fl_Color>(176)},
  };
  fill({"/src/main.f90"});
  for (const auto& c : cases) {
    list.textfont(static_cast<uchar>(c.font));
    list.textsize(static_cast<uchar>(c.size));
    list.textcolor(c.color);
    EXPECT_PRED_FORMAT2(
        same_picture,
        picture({{"/src/", 0, 0, w, 20, c.bold, c.size, c.color},
                 {"  main.f90", 0, 20, w, 20, c.font, c.size, c.color}}),
        line(1))
        << "font " << c.font;
  }
}

// Black text on a dark blue selection is drawn in white.
TEST_F(SpecialBrowserTest, DrawsASelectedNameInContrastButNotItsHeading) {
  const auto dark_blue = static_cast<Fl_Color>(176);
  fill({"/src/a.f90", "/src/b.f90", "/src/c.f90"});
  list.selection_color(dark_blue);
  list.select(1);
  list.select(3);
  EXPECT_PRED_FORMAT2(same_picture,
                      picture({{"/src/", 0, 0, w, 20, 1},
                               {"  a.f90", 0, 20, w, 20, 0, 14, FL_WHITE}},
                              dark_blue),
                      line(1, dark_blue));
  EXPECT_PRED_FORMAT2(same_picture,
                      picture({{"  b.f90", 0, 0, w, h}}, dark_blue),
                      line(2, dark_blue));
  EXPECT_PRED_FORMAT2(
      same_picture,
      picture({{"  c.f90", 0, 0, w, h, 0, 14, FL_WHITE}}, dark_blue),
      line(3, dark_blue));
}

TEST_F(SpecialBrowserTest, GivesTheHeadingTheSmallerHalfOfAnOddHeight) {
  fill({"/src/a.f90"});
  EXPECT_PRED_FORMAT2(
      same_picture,
      picture({{"/src/", 5, 2, w, 15, 1}, {"  a.f90", 5, 17, w, 16}}),
      line(1, 5, 2, w, 31));
}

TEST_F(SpecialBrowserTest, ClipsTextThreePixelsInsideItsSides) {
  fill({"/" + std::string(60, 'W') + "/" + std::string(60, 'W')});
  const Pixels text = line(1, 20, 4, 100, 32);
  const Pixels blank = picture({});
  EXPECT_NE(blank, text);
  for (int y = 0; y < h; ++y)
    for (int x = 0; x < w; ++x) {
      if (x >= 23 && x < 117 && y >= 4 && y < 36) continue;
      const auto i = static_cast<std::size_t>(y * w + x);
      EXPECT_EQ(blank.colours[i], text.colours[i]) << x << ", " << y;
    }
}

// The contrasting colour is the colour itself if it differs enough from the
// selection colour, as yellow does from dark blue. Red does not.
TEST_F(SpecialBrowserTest, DrawSpecialLineUsesItsArguments) {
  const auto dark_blue = static_cast<Fl_Color>(176);
  const struct {
    Fl_Color color;
    bool selected;
    Fl_Color drawn;
  } colors[] = {
      {FL_RED, false, FL_RED},
      {FL_RED, true, FL_WHITE},
      {FL_YELLOW, true, FL_YELLOW},
  };
  for (const Fl_Align align : {FL_ALIGN_LEFT, FL_ALIGN_RIGHT, FL_ALIGN_BOTTOM})
    for (const auto& c : colors)
      for (const char* text : {"Text", "a@-> b"})
        EXPECT_PRED_FORMAT2(
            same_picture,
            drawn(w, h, background,
                  [&] {
                    fl_font(FL_COURIER, 12);
                    fl_color(c.drawn);
                    fl_draw(text, 13, 5, 94, 30,
                            static_cast<Fl_Align>(align | FL_ALIGN_CLIP),
                            nullptr, 1);
                  }),
            drawn(w, h, background,
                  [&] {
                    draw_special_line(text, c.selected, 10, 5, 100, 30, 12,
                                      FL_COURIER, c.color, dark_blue, align);
                  }))
            << text << " aligned " << align << " in color " << c.color
            << " selected " << c.selected;
}

TEST_F(SpecialBrowserTest, ShowsAHeadingWhereverTheDirectoryChanges) {
  fill({"a/x", "a/y", "b/z", "a/x"});
  list.redraw();
  Fl::check();
  int x = 0, y = 0, width = 0, height = 0;
  list.area(x, y, width, height);
  std::vector<Half> halves;
  for (const char* text : {"a/", "  x", "  y", "b/", "  z", "a/", "  x"})
    halves.push_back({text, 0,
                      static_cast<int>(halves.size()) * list.plain_height(2),
                      width, list.plain_height(2), text[0] == ' ' ? 0 : 1});
  EXPECT_PRED_FORMAT2(same_picture,
                      picture(halves, list.color(), width, height),
                      shown(window, x, y, width, height));
}

// --- in the main window ---

using SelectedFilesList = MainWindowTest;

TEST_F(SelectedFilesList, HasTheRightTotalHeightAfterRemovals) {
  build();
  SpecialBrowser& list = *ui.selected_files;
  for (const char* text :
       {"/d1/a", "/d1/b", "/d2/c", "/d1/d", "/d1/e", "/d2/f", "/d2/g", "/d3/h"})
    list.add(text);
  const int line_height = height_of(list, 2);
  EXPECT_EQ(13 * line_height, total_height_of(list));

  const struct {
    Texts removed;
    int lines_high;
  } steps[] = {
      {{"/d1/a"}, 12},          // b becomes the first of its group
      {{"/d2/c"}, 9},           // d loses its heading
      {{"/d1/b", "/d1/d"}, 7},  // e f g h
      {{"/d3/h"}, 5},           // e f g
      {{"/d1/e"}, 3},           // f g
      {{"/d2/f", "/d2/g"}, 0},
  };
  for (const auto& step : steps) {
    remove(step.removed);
    EXPECT_EQ(step.lines_high * line_height, total_height_of(list))
        << list.size() << " lines stay";
  }
}

// --- speed ---

// The time to fill a list and to scroll through it.
double seconds_for(OpenBrowser& list, int count) {
  const std::clock_t begin = std::clock();
  list.clear();
  for (int i = 0; i < count; ++i)
    list.add(("/home/user/source/d" + std::to_string(i / 7) + "/file" +
              std::to_string(i) + ".f90")
                 .c_str());
  for (int i = 0; i < 8; ++i) {
    i % 2 == 0 ? list.bottomline(count) : list.topline(1);
    Fl::check();
  }
  return static_cast<double>(std::clock() - begin) / CLOCKS_PER_SEC;
}

// 20,000 lines take 4 times the time of 5,000 if it is linear, and 16 times if
// it is quadratic. The best of several times excludes other work on the
// machine.
TEST_F(SpecialBrowserTest, TakesTimeProportionalToItsLines) {
  double small = 1e9;
  double large = 1e9;
  for (int i = 0; i < 5; ++i) {
    small = std::min(small, seconds_for(list, 5000));
    large = std::min(large, seconds_for(list, 20000));
  }
  EXPECT_LT(large / std::max(small, 1e-3), 9.0);
  list.bottomline(20000);
  Fl::check();
  EXPECT_TRUE(list.displayed(20000));
  EXPECT_EQ(20000 / 7 + 1 + 20000,
            list.total_height() / list.plain_height(20000));
}

}  // namespace
