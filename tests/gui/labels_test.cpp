#include "gui/labels.h"

#include <FL/Fl.H>
#include <FL/Fl_Box.H>
#include <FL/Fl_Menu_Button.H>
#include <FL/Fl_Menu_Item.H>
#include <gtest/gtest.h>

#include <string>

#include "gui/directory_menu.h"
#include "tests/gui/main_window_fixture.h"
#include "tests/gui/pixels.h"

namespace {

TEST(LabelText, DoublesAtSigns) {
  EXPECT_EQ("a@@b@@", label_text("a@b@"));
  EXPECT_EQ("plain", label_text("plain"));
  EXPECT_EQ("", label_text(""));
}

class StatusLabel : public MainWindowTest {
 protected:
  void SetUp() override {
    MainWindowTest::SetUp();
    show();
  }

  // What the status line shows for a text, borders included.
  Pixels status(const char* text) {
    Fl_Box& box = *ui.status_box;
    box.label(text);
    box.redraw();
    Fl::check();
    return shown(*window, box.x(), box.y(), box.w(), box.h());
  }
};

TEST_F(StatusLabel, ShowsUnderscores) {
  EXPECT_TRUE(status("") != status("_"));
}

TEST_F(StatusLabel, ShowsWhatFollowsAnAtSign) {
  const Pixels before = status("a");
  EXPECT_NE(before, status("a@b.f90"));
  EXPECT_NE(status("a@b.f90"), status("a@c.f90"));
  EXPECT_NE(status("@->"), status("@<-"));
  EXPECT_NE(status("a&b.f90"), status("ab.f90"));
}

TEST_F(StatusLabel, LongTextsAreCutAtTheBordersOfTheBox) {
  const Pixels empty = status("");
  const Pixels full = status(std::string(500, '_').insert(0, 500, 'W').c_str());
  const int w = ui.status_box->w();
  const int h = ui.status_box->h();
  for (int y = 0; y < h; ++y)
    for (int x = 0; x < w; ++x) {
      if (x >= 2 && x < w - 2 && y >= 2 && y < h - 2) continue;
      const auto at = static_cast<std::size_t>(y * w + x);
      ASSERT_EQ(empty.colours[at], full.colours[at])
          << "pixel " << x << ", " << y;
    }
  ui.status_box->label("");
}

class LiteralLabel : public MainWindowTest {
 protected:
  void SetUp() override {
    MainWindowTest::SetUp();
    show();
  }

  // What the menu's button shows.
  Pixels button() {
    Fl_Menu_Button& menu = *ui.dir_menu_button;
    menu.redraw();
    Fl::check();
    return shown(*window, menu.x(), menu.y(), menu.w(), menu.h());
  }
};

TEST_F(LiteralLabel, ButtonShowsTheDirectorysNameAsItIs) {
  for (const char* name : {"a@b dir", "&amp dir", "a&b", "@->"}) {
    const std::string path = std::string("/x/") + name;
    dir_menu(ui.dir_menu_button, path.c_str());
    EXPECT_STREQ(name, ui.dir_menu_button->label());
    const Pixels literal = button();
    // The same in the toolkit's own terms.
    std::string escaped;
    for (const char* c = name; *c != '\0'; ++c)
      escaped.append(*c == '@' || *c == '&' ? 2 : 1, *c);
    ui.dir_menu_button->labeltype(FL_NORMAL_LABEL);
    ui.dir_menu_button->label(escaped.c_str());
    EXPECT_PRED_FORMAT2(same_picture, button(), literal) << name;
    ui.dir_menu_button->label("");
  }
}

TEST_F(LiteralLabel, ItemsAreDrawnAndMeasuredAsTheyAre) {
  dir_menu(ui.dir_menu_button, "/home/a@b dir/&amp dir/last");
  const Fl_Menu_Item* items = ui.dir_menu_button->menu();
  ASSERT_EQ(4, ui.dir_menu_button->size());
  for (int i = 0; i < 3; ++i)
    EXPECT_EQ(literal_label(), items[i].labeltype_) << i;
  EXPECT_STREQ("&amp dir", items[0].label());
  EXPECT_STREQ("a@b dir", items[1].label());

  const auto width = [this](const char* text, Fl_Labeltype type) {
    Fl_Menu_Item item = ui.dir_menu_button->menu()[0];
    item.label(text);
    item.labeltype(type);
    return item.measure(nullptr, ui.dir_menu_button);
  };
  EXPECT_EQ(width("a@@b dir", FL_NORMAL_LABEL),
            width("a@b dir", literal_label()));
  EXPECT_EQ(width("&&amp dir", FL_NORMAL_LABEL),
            width("&amp dir", literal_label()));
}

}  // namespace
