#include "gui/special_browser.h"

#include <FL/Fl.H>
#include <FL/Fl_Button.H>
#include <FL/fl_draw.H>
#include <gtest/gtest.h>

#include <algorithm>
#include <ctime>
#include <memory>
#include <numeric>
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

  // As the toolkit's own list has them.
  int plain_height(int line) const {
    return Fl_Multi_Browser::item_height(find_line(line));
  }
  int plain_width(int line) const {
    return Fl_Multi_Browser::item_width(find_line(line));
  }
};

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

  // How many lines high each line is.
  Lines heights() const {
    Lines result;
    for (int line = 1; line <= list.size(); ++line) {
      EXPECT_EQ(0, list.height(line) % list.plain_height(line));
      result.push_back(list.height(line) / list.plain_height(line));
    }
    return result;
  }

  Fl_Window window;
  OpenBrowser list;
};

TEST_F(SpecialBrowserTest, IsAMultiBrowserWithoutFieldsOfItsOwn) {
  EXPECT_TRUE((std::is_base_of<Fl_Multi_Browser, SpecialBrowser>::value));
  EXPECT_EQ(sizeof(Fl_Multi_Browser), sizeof(SpecialBrowser));
}

// clang-format off
const struct {
  Texts texts;
  Lines heights;
} group_cases[] = {
  {{"/src/a", "/src/b", "/src/c"},   {2, 1, 1}},
  {{"a/x", "b/y", "a/z"},            {2, 2, 2}},  // neighbours only
  {{"/src/a", "/src2/b"},            {2, 2}},
  {{"/src2/a", "/src/b"},            {2, 2}},
  {{"/src/a", "/src/b", "/lib/c", "/lib/d", "/src/e"}, {2, 1, 2, 1, 2}},
  {{"/src/a", "/src/sub/b"},         {2, 2}},
  {{"/src/sub/a", "/src/b"},         {2, 2}},
  {{"ab/x", "ac/x"},                 {2, 2}},     // the last letter counts
  {{"Src/x", "src/x"},               {2, 2}},
  {{"/a/x", "//a/x"},                {2, 2}},
  {{"/x", "/y"},                     {2, 1}},
  {{"x", "y"},                       {2, 1}},     // no "/": length 0
  {{"/x", "y", "/z"},                {2, 1, 1}},
  {{"a/x", "x", "a/x"},              {2, 2, 2}},
  {{"a/", "a/b"},                    {2, 1}},
  {{"", ""},                         {2, 1}},
  {{"only/one"},                     {2}},
  {{"a/x", "a/x"},                   {2, 1}},     // the same twice
  {{"\xe9/x", "\xe9/y", "\xe8/z"},   {2, 1, 2}},
};
// clang-format on

TEST_F(SpecialBrowserTest, LineThatStartsAGroupIsTwiceAsHigh) {
  for (const auto& c : group_cases) {
    fill(c.texts);
    EXPECT_EQ(c.heights, heights()) << testing::PrintToString(c.texts);
  }
}

TEST_F(SpecialBrowserTest, QuickHeightIsTheHeight) {
  for (const auto& c : group_cases) {
    fill(c.texts);
    for (int line = 1; line <= list.size(); ++line)
      EXPECT_EQ(list.height(line), list.quick_height(line))
          << "line " << line << " of " << testing::PrintToString(c.texts);
  }
}

TEST_F(SpecialBrowserTest, HeightsFollowTheTextSize) {
  fill({"/src/a", "/src/b"});
  list.textsize(14);
  const int small = list.height(2);
  list.textsize(30);
  EXPECT_GT(list.height(2), small);
  EXPECT_EQ(2 * list.height(2), list.height(1));
}

TEST_F(SpecialBrowserTest, HeightsAreMultiplesOfTheToolkitsOwn) {
  fill({"@lbig/a", "@lbig/b", "@sbig/c"});  // its own obeys format prefixes
  EXPECT_NE(list.plain_height(1), list.plain_height(3));
  EXPECT_EQ((Lines{2, 1, 2}), heights());
}

TEST_F(SpecialBrowserTest, HiddenLineHasNoHeight) {
  fill({"/src/a", "/src/b"});
  list.hide(1);
  EXPECT_EQ(0, list.height(1));
}

TEST_F(SpecialBrowserTest, WidthIsTheToolkitsOwn) {
  fill({"/src/a", "/src/b", "/a/much/longer/directory/name.f90", "", "x"});
  for (int line = 1; line <= list.size(); ++line)
    EXPECT_EQ(list.plain_width(line), list.width(line)) << line;
}

TEST_F(SpecialBrowserTest, TotalHeightIsTheSumOfTheHeights) {
  for (const auto& c : group_cases) {
    fill(c.texts);
    int sum = 0;
    for (int line = 1; line <= list.size(); ++line) sum += list.height(line);
    EXPECT_EQ(sum, list.total_height()) << testing::PrintToString(c.texts);
  }
}

// --- drawing ---

const int w = 150;
const int h = 40;

// One half of a line as the rule has it.
void draw_text(const char* text, int x, int y, int width, int height, int font,
               int size, Fl_Color color) {
  fl_font(font, size);
  fl_color(color);
  fl_draw(text, x + 3, y, width - 6, height,
          static_cast<Fl_Align>(FL_ALIGN_LEFT | FL_ALIGN_CLIP), nullptr, 1);
}

const Fl_Color background = FL_WHITE;

class SpecialBrowserDrawing : public SpecialBrowserTest {
 protected:
  Pixels line(int number) {
    return drawn(w, h, background, [&] { list.draw_line(number, 0, 0, w, h); });
  }
};

TEST_F(SpecialBrowserDrawing, HeadingInBoldAboveTheIndentedName) {
  const struct {
    const char* text;
    const char* heading;
    const char* name;
  } cases[] = {
      {"/home/src/main.f90", "/home/src/", "  main.f90"},
      {"./a.f90", "./", "  a.f90"},
      {"src/a", "src/", "  a"},
      {"/a", "/", "  a"},
      {"plain", "/", "  lain"},  // the first character is dropped
      {"x", "/", "  "},
      {"", "/", "  "},
      {"dir/", "dir/", "  "},
      {"a//b", "a//", "  b"},
      {"/src/me@home.f90", "/src/", "  me@home.f90"},
      {"/me@home/a", "/me@home/", "  a"},
      {"@bold/@i", "@bold/", "  @i"},
      {"/R&D/a&b", "/R&D/", "  a&b"},
      {"/a\tb/c\td", "/a\tb/", "  c\td"},
      {"/\xe9t\xe9/\xe0", "/\xe9t\xe9/", "  \xe0"},
      {"/50%s/%n", "/50%s/", "  %n"},
  };
  for (const auto& c : cases) {
    fill({c.text});
    EXPECT_PRED_FORMAT2(
        same_picture,
        drawn(w, h, background,
              [&] {
                draw_text(c.heading, 0, 0, w, 20, 1, 14, FL_BLACK);
                draw_text(c.name, 0, 20, w, 20, 0, 14, FL_BLACK);
              }),
        line(1))
        << c.text;
  }
}

TEST_F(SpecialBrowserDrawing, PicturesDifferWhereTheyShould) {
  const auto picture = [](const char* text, int font) {
    return drawn(w, h, background,
                 [&] { draw_text(text, 0, 0, w, 20, font, 14, FL_BLACK); });
  };
  EXPECT_NE(picture("src/", 0), picture("src/", 1));
  EXPECT_NE(picture("  a", 0), picture(" a", 0));
  EXPECT_NE(picture("", 0), picture("/", 0));
}

TEST_F(SpecialBrowserDrawing, LineWithinAGroupShowsTheNameInItsWholeHeight) {
  fill({"/src/a.f90", "/src/b.f90", "c"});
  EXPECT_PRED_FORMAT2(
      same_picture,
      drawn(w, h, background,
            [] { draw_text("  b.f90", 0, 0, w, h, 0, 14, FL_BLACK); }),
      line(2));
}

TEST_F(SpecialBrowserDrawing, EveryChangeOfDirectoryShowsAHeading) {
  fill({"a/x", "b/y", "a/z"});
  const char* headings[] = {"a/", "b/", "a/"};
  const char* names[] = {"  x", "  y", "  z"};
  for (int i = 0; i < 3; ++i)
    EXPECT_PRED_FORMAT2(
        same_picture,
        drawn(w, h, background,
              [&] {
                draw_text(headings[i], 0, 0, w, 20, 1, 14, FL_BLACK);
                draw_text(names[i], 0, 20, w, 20, 0, 14, FL_BLACK);
              }),
        line(i + 1));
}

TEST_F(SpecialBrowserDrawing, FollowsTheListsFontSizeAndColour) {
  const struct {
    int font;
    int bold;
    int size;
    int color;
  } cases[] = {
      {0, 1, 10, FL_RED}, {4, 5, 14, FL_BLUE},  {8, 9, 12, 63},
      {1, 1, 14, 0},      {2, 3, 14, FL_BLACK}, {10, 11, 18, 176},
  };
  fill({"/src/main.f90"});
  for (const auto& c : cases) {
    list.textfont(static_cast<uchar>(c.font));
    list.textsize(static_cast<uchar>(c.size));
    list.textcolor(static_cast<unsigned>(c.color));
    const auto color = static_cast<Fl_Color>(c.color);
    EXPECT_PRED_FORMAT2(
        same_picture,
        drawn(w, h, background,
              [&] {
                draw_text("/src/", 0, 0, w, 20, c.bold, c.size, color);
                draw_text("  main.f90", 0, 20, w, 20, c.font, c.size, color);
              }),
        line(1))
        << "font " << c.font;
  }
}

// Black text on a dark blue selection is drawn in white.
TEST_F(SpecialBrowserDrawing, SelectedNameContrastsButItsHeadingDoesNot) {
  fill({"/src/a.f90", "/src/b.f90"});
  list.selection_color(176);
  list.select(1);
  list.select(2);
  const Fl_Color contrast = fl_contrast(FL_BLACK, static_cast<Fl_Color>(176));
  ASSERT_EQ(FL_WHITE, contrast);
  const auto dark_blue = static_cast<Fl_Color>(176);
  EXPECT_PRED_FORMAT2(
      same_picture,
      drawn(w, h, dark_blue,
            [&] {
              draw_text("/src/", 0, 0, w, 20, 1, 14, FL_BLACK);
              draw_text("  a.f90", 0, 20, w, 20, 0, 14, contrast);
            }),
      drawn(w, h, dark_blue, [&] { list.draw_line(1, 0, 0, w, h); }));
  EXPECT_PRED_FORMAT2(
      same_picture,
      drawn(w, h, dark_blue,
            [&] { draw_text("  b.f90", 0, 0, w, h, 0, 14, contrast); }),
      drawn(w, h, dark_blue, [&] { list.draw_line(2, 0, 0, w, h); }));
}

TEST_F(SpecialBrowserDrawing, OnlySelectedNamesContrast) {
  fill({"/src/a.f90", "/src/b.f90", "/src/c.f90"});
  list.selection_color(176);
  list.select(2);
  const char* names[] = {"  a.f90", "  b.f90", "  c.f90"};
  const auto color_of = [](int i) { return i == 1 ? FL_WHITE : FL_BLACK; };
  for (int i = 1; i < 3; ++i)
    EXPECT_PRED_FORMAT2(
        same_picture,
        drawn(w, h, FL_RED,
              [&] { draw_text(names[i], 0, 0, w, h, 0, 14, color_of(i)); }),
        drawn(w, h, FL_RED, [&] { list.draw_line(i + 1, 0, 0, w, h); }));
}

TEST_F(SpecialBrowserDrawing, OfAnOddHeightTheHeadingTakesTheSmallerHalf) {
  fill({"/src/a.f90"});
  for (const int height : {31, 33, 1, 0}) {
    const int upper = height / 2;
    EXPECT_PRED_FORMAT2(
        same_picture,
        drawn(w, h, background,
              [&] {
                draw_text("/src/", 0, 0, w, upper, 1, 14, FL_BLACK);
                draw_text("  a.f90", 0, upper, w, height - upper, 0, 14,
                          FL_BLACK);
              }),
        drawn(w, h, background, [&] { list.draw_line(1, 0, 0, w, height); }))
        << height;
  }
}

TEST_F(SpecialBrowserDrawing, OneOddHeightWorkedOut) {
  fill({"/src/a.f90"});
  EXPECT_PRED_FORMAT2(
      same_picture,
      drawn(w, h, background,
            [] {
              draw_text("/src/", 5, 2, w, 15, 1, 14, FL_BLACK);
              draw_text("  a.f90", 5, 17, w, 16, 0, 14, FL_BLACK);
            }),
      drawn(w, h, background, [&] { list.draw_line(1, 5, 2, w, 31); }));
}

TEST_F(SpecialBrowserDrawing, StaysThreePixelsInsideItsRectangle) {
  fill({"/" + std::string(60, 'W') + "/" + std::string(60, 'W')});
  const Pixels picture =
      drawn(w, h, background, [&] { list.draw_line(1, 20, 4, 100, 32); });
  const Pixels blank = drawn(w, h, background, [] {});
  bool inside = false;
  for (int y = 0; y < h; ++y)
    for (int x = 0; x < w; ++x) {
      const auto i = static_cast<std::size_t>(y * w + x);
      const bool marked = picture.colours[i] != blank.colours[i];
      if (x < 23 || x >= 117 || y < 4 || y >= 36)
        EXPECT_FALSE(marked) << x << ", " << y;
      else
        inside = inside || marked;
    }
  EXPECT_TRUE(inside);
}

TEST_F(SpecialBrowserDrawing, LongTextIsClippedToTheHalves) {
  const std::string heading = "/" + std::string(60, 'M') + "/";
  const std::string name(60, 'g');
  fill({heading + name});
  list.textsize(30);  // higher than its half, too
  EXPECT_PRED_FORMAT2(
      same_picture,
      drawn(w, h, background,
            [&] {
              draw_text(heading.c_str(), 0, 0, w, 20, 1, 30, FL_BLACK);
              draw_text(("  " + name).c_str(), 0, 20, w, 20, 0, 30, FL_BLACK);
            }),
      line(1));
}

// What contrasts is the colour itself when it is far enough from the selection
// colour, as yellow is from dark blue, but not red.
TEST_F(SpecialBrowserDrawing, SpecialLineDrawsInTheGivenManner) {
  const auto dark_blue = static_cast<Fl_Color>(176);
  const struct {
    Fl_Color color;
    bool selected;
    Fl_Color drawn;
  } colors[] = {
      {FL_RED, false, FL_RED},
      {FL_RED, true, FL_WHITE},
      {FL_YELLOW, false, FL_YELLOW},
      {FL_YELLOW, true, FL_YELLOW},
  };
  for (const Fl_Align align : {FL_ALIGN_LEFT, FL_ALIGN_RIGHT, FL_ALIGN_CENTER,
                               FL_ALIGN_TOP_LEFT, FL_ALIGN_BOTTOM})
    for (const auto& c : colors)
      for (const char* text : {"Text", "a@-> b", ""})
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

TEST_F(SpecialBrowserDrawing, ListOnScreenShowsItsGroups) {
  fill({"/src/a.f90", "/src/b.f90", "/lib/c.f90"});
  list.redraw();
  Fl::check();
  int x = 0, y = 0, width = 0, height = 0;
  list.area(x, y, width, height);
  const int line_height = list.plain_height(2);
  const auto text_at = [&](const char* text, int lines_above, int font) {
    draw_text(text, 0, lines_above * line_height, width, line_height, font, 14,
              FL_BLACK);
  };
  EXPECT_PRED_FORMAT2(same_picture,
                      drawn(width, height, list.color(),
                            [&] {
                              text_at("/src/", 0, 1);
                              text_at("  a.f90", 1, 0);
                              text_at("  b.f90", 2, 0);
                              text_at("/lib/", 3, 1);
                              text_at("  c.f90", 4, 0);
                            }),
                      shown(window, x, y, width, height));
}

// --- in the main window ---

class SelectedFilesList : public MainWindowTest {
 protected:
  int sum_of_heights() const {
    int sum = 0;
    for (int line = 1; line <= ui.selected_files->size(); ++line)
      sum += height_of(*ui.selected_files, line);
    return sum;
  }
};

TEST_F(SelectedFilesList, TotalHeightIsRightAfterAddingAndRemoving) {
  write_file("here/a", "");
  write_file("here/b", "");
  write_file("there/c", "");
  build();
  SpecialBrowser& list = *ui.selected_files;
  const Texts texts = {"/d1/a", "/d1/b", "/d2/c", "/d1/d",
                       "/d1/e", "/d2/f", "/d2/g", "/d3/h"};
  for (const std::string& text : texts) list.add(text.c_str());
  const int line_height = height_of(list, 2);
  EXPECT_EQ(13 * line_height, total_height_of(list));

  const struct {
    Lines removed;
    int lines_high;
  } steps[] = {
      {{1}, 12},    // b c d e f g h: b becomes the heading
      {{2}, 9},     // b d e f g h: d loses its heading, and c
      {{1, 2}, 7},  // e f g h
      {{4}, 5},     // e f g
      {{1}, 3},     // f g
      {{1, 2}, 0},
  };
  for (const auto& step : steps) {
    for (const int line : step.removed) list.select(line);
    ui.remove_button->do_callback();
    EXPECT_EQ(step.lines_high * line_height, total_height_of(list))
        << list.size() << " lines stay";
    EXPECT_EQ(sum_of_heights(), total_height_of(list));
  }
}

TEST_F(SelectedFilesList, LastLineCanBeReachedAfterRemovingMany) {
  build();
  SpecialBrowser& list = *ui.selected_files;
  for (int i = 0; i < 100; ++i)
    list.add(("/d" + std::to_string(i / 2) + "/" + std::to_string(i)).c_str());
  show_and_wait(*window);
  for (int i = 1; i < 100; i += 2) list.select(i);  // all first of groups
  ui.remove_button->do_callback();
  ASSERT_EQ(50, list.size());
  list.bottomline(50);
  Fl::check();
  EXPECT_TRUE(list.scrollbar.visible());
  EXPECT_TRUE(list.displayed(50));
  EXPECT_EQ(top_of(list, 50) + height_of(list, 50),
            list.y() + list.h() - Fl::box_dy(FL_DOWN_BOX));
}

// --- speed ---

std::vector<std::string> many_paths(int count) {
  std::vector<std::string> paths;
  for (int i = 0; i < count; ++i)
    paths.push_back("/home/user/source/d" + std::to_string(i / 7) + "/file" +
                    std::to_string(i) + ".f90");
  return paths;
}

double seconds(const std::function<void()>& action) {
  const std::clock_t begin = std::clock();
  action();
  return static_cast<double>(std::clock() - begin) / CLOCKS_PER_SEC;
}

// Time for 20,000 lines over the time for 5,000: 4 when it is linear, 16 when
// it is quadratic. Other work on the machine is kept out by repeating.
double growth(const std::function<double(int)>& time_for) {
  double small = 1e9;
  double large = 1e9;
  for (int i = 0; i < 5; ++i) {
    small = std::min(small, time_for(5000));
    large = std::min(large, time_for(20000));
  }
  return large / std::max(small, 1e-3);
}

TEST_F(SpecialBrowserTest, FillingTakesTimeInProportionToTheLines) {
  EXPECT_LT(growth([&](int count) {
              const Texts paths = many_paths(count);
              return seconds([&] { fill(paths); });
            }),
            9.0);
}

TEST_F(SpecialBrowserTest, ScrollingTakesTimeInProportionToTheLines) {
  EXPECT_LT(growth([&](int count) {
              fill(many_paths(count));
              Fl::check();
              return seconds([&] {
                for (int i = 0; i < 8; ++i) {
                  if (i % 2 == 0)
                    list.bottomline(list.size());
                  else
                    list.topline(1);
                  Fl::check();
                }
              });
            }),
            9.0);
}

TEST_F(SpecialBrowserTest, LongListScrollsToItsVeryEnd) {
  fill(many_paths(20000));
  list.bottomline(20000);
  Fl::check();
  EXPECT_TRUE(list.displayed(20000));
  EXPECT_EQ(20000 / 7 + 1 + 20000,
            list.total_height() / list.plain_height(20000));
}

}  // namespace
