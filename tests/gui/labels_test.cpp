#include "gui/labels.h"

#include <FL/Fl.H>
#include <FL/Fl_Box.H>
#include <FL/Fl_Menu_Button.H>
#include <FL/Fl_Menu_Item.H>
#include <FL/fl_draw.H>
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

class LabelTypes : public MainWindowTest {
 protected:
  void SetUp() override {
    MainWindowTest::SetUp();
    show();
  }

  // What a widget shows, borders included.
  Pixels picture(Fl_Widget& o) const {
    fl_font(FL_COURIER, 6);  // as another widget may leave it
    o.redraw();
    Fl::check();
    return shown(*window, o.x(), o.y(), o.w(), o.h());
  }
  Pixels status(const std::string& text) const {
    ui.status_box->label(text.c_str());
    const Pixels pixels = picture(*ui.status_box);
    ui.status_box->label("");
    return pixels;
  }
};

TEST_F(LabelTypes, StatusLineShowsTextUnchanged) {
  const char* const pairs[][2] = {{"", "_"},
                                  {"a", "a@b.f90"},
                                  {"a@b.f90", "a@c.f90"},
                                  {"@->", "@<-"},
                                  {"a&b.f90", "ab.f90"}};
  for (const auto& pair : pairs)
    EXPECT_TRUE(status(pair[0]) != status(pair[1])) << pair[1];
}

TEST_F(LabelTypes, LongStatusIsClippedAtTheBoxBorders) {
  const Pixels empty = status("");
  const Pixels full = status(std::string(500, '_').insert(0, 500, 'W'));
  const int w = ui.status_box->w();
  const int h = ui.status_box->h();
  for (int y = 0; y < h; ++y)
    for (int x = 0; x < w; ++x) {
      if (x >= 2 && x < w - 2 && y >= 2 && y < h - 2) continue;
      const auto at = static_cast<std::size_t>(y * w + x);
      ASSERT_EQ(empty.colours[at], full.colours[at])
          << "pixel " << x << ", " << y;
    }
}

TEST_F(LabelTypes, MenuShowsTheDirectoryNameUnchanged) {
  Fl_Menu_Button& menu = *ui.dir_menu_button;
  for (const char* name : {"a@b dir", "&amp dir", "a&b", "@->"}) {
    const std::string path = std::string("/x/") + name;
    dir_menu(&menu, path.c_str());
    EXPECT_STREQ(name, menu.label());
    const Pixels literal = picture(menu);
    // The same name with the toolkit's escapes.
    std::string escaped;
    for (const char* c = name; *c != '\0'; ++c)
      escaped.append(*c == '@' || *c == '&' ? 2 : 1, *c);
    menu.labeltype(FL_NORMAL_LABEL);
    menu.label(escaped.c_str());
    EXPECT_PRED_FORMAT2(same_picture, picture(menu), literal) << name;
    menu.label("");
  }
}

TEST_F(LabelTypes, MenuItemsAreDrawnAndMeasuredUnchanged) {
  dir_menu(ui.dir_menu_button, "/home/a@b dir/&amp dir/last");
  ASSERT_EQ(4, ui.dir_menu_button->size());
  for (int i = 0; i < 3; ++i)
    EXPECT_EQ(literal_label(), ui.dir_menu_button->menu()[i].labeltype_) << i;
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
