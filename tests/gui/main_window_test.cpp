#include "gui/main_window.h"

#include <FL/Fl_Box.H>
#include <FL/Fl_Button.H>
#include <FL/Fl_Check_Button.H>
#include <FL/Fl_Choice.H>
#include <FL/Fl_File_Input.H>
#include <FL/Fl_Input.H>
#include <FL/Fl_Menu_Button.H>
#include <FL/Fl_Multi_Browser.H>
#include <FL/Fl_Slider.H>
#include <FL/fl_ask.H>
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <functional>
#include <map>
#include <set>
#include <string>
#include <typeinfo>
#include <vector>

#include "driver/settings.h"
#include "driver/version.h"
#include "gui/file_panes.h"
#include "gui/labels.h"
#include "gui/special_browser.h"
#include "tests/gui/main_window_fixture.h"
#include "tests/gui/user.h"

namespace fs = std::filesystem;

namespace {

const ZelkorUserInterface* const instance_at_start = gui_instance;

// --- What the window is made of ---

// The settings of a widget by name. Callbacks and their arguments are numbers.
using Look = std::map<std::string, std::intptr_t>;

template <class Pointer>
std::intptr_t number_of(Pointer* pointer) {
  return reinterpret_cast<std::intptr_t>(pointer);
}

Look look_of(const Fl_Widget& o) {
  Look look = {
      {"class", static_cast<std::intptr_t>(typeid(o).hash_code())},
      {"x", o.x()},
      {"y", o.y()},
      {"w", o.w()},
      {"h", o.h()},
      {"type", o.type()},
      {"box", o.box()},
      {"color", o.color()},
      {"selection_color", o.selection_color()},
      {"labeltype", o.labeltype()},
      {"labelfont", o.labelfont()},
      {"labelsize", o.labelsize()},
      {"labelcolor", o.labelcolor()},
      {"align", o.align()},
      {"when", o.when()},
      {"active", o.active()},
      {"visible", o.visible()},
      {"callback", number_of(o.callback())},
      {"user_data", number_of(o.user_data())},
  };
  // The addresses of these values are private to the window.
  if (o.callback() == SyntaxStyle_cb)
    look["user_data"] = *static_cast<int*>(o.user_data());
  return look;
}

Look with(Look look, Look settings) {
  settings.merge(look);
  return settings;
}

// The toolkit's defaults for a class of widgets, except for some settings.
template <class Widget>
Look plain(int x, int y, int w, int h, const Look& settings) {
  const Widget widget(x, y, w, h);
  Fl_Group::current(nullptr);
  return with(look_of(widget), settings);
}

std::string notice() {
  const std::string date = build_date();
  return "F1: handbook. Copyright (C) Qumbra " + date.substr(date.size() - 4);
}

using MainWindow = MainWindowTest;

TEST_F(MainWindow, CreatesItsWidgetsInOrderWithTheirSettings) {
  build();
  std::vector<Fl_Widget*> widgets = widgets_in(*window);
  widgets.insert(widgets.begin(), window.get());

  const Fl_Widget* help = button_of(*window, "help");
  ASSERT_NE(nullptr, help);
  // Its callback is private to the window, but no other widget has it.
  for (const Fl_Widget* widget : widgets)
    EXPECT_TRUE(widget == help || widget->callback() != help->callback());
  const auto ours = number_of(&ui);
  const Look list = {{"type", FL_MULTI_BROWSER},
                     {"color", 52},
                     {"selection_color", 175},
                     {"labelfont", 1},
                     {"align", 5}};
  const std::string label_of_notice = notice();
  const std::string listed = folder.path().filename().string() + "/";
  // clang-format off
  const struct {
    const char* label;
    const Fl_Widget* field;  // null: in none
    Look look;
  } rows[] = {
    {"Zelkor  test", window.get(), plain<Fl_Window>(0, 0, 529, 363,
        {{"color", 48}, {"user_data", ours}, {"visible", 0}})},
    {"", ui.progress_bar, plain<Fl_Slider>(10, 337, 95, 20,
        {{"type", FL_HOR_FILL_SLIDER}, {"box", FL_ENGRAVED_BOX}, {"color", 52},
         {"selection_color", 176}, {"labelfont", 10}, {"align", 8},
         {"when", FL_WHEN_NOT_CHANGED}, {"active", 0}})},
    {label_of_notice.c_str(), ui.status_box, plain<Fl_Box>(105, 337, 414, 20,
        {{"box", FL_ENGRAVED_BOX}, {"color", 52}, {"labelfont", 10},
         {"align", 84}, {"labeltype", status_label()}})},
    {"Selected Files", ui.selected_files,
     plain<SpecialBrowser>(10, 115, 210, 215,
        with(list, {{"when", FL_WHEN_NOT_CHANGED}}))},
    {"Potential Files", ui.potential_files,
     plain<Fl_Multi_Browser>(310, 115, 210, 215,
        with(list, {{"when", FL_WHEN_CHANGED}, {"user_data", ours},
                    {"callback", number_of(change_dir_click_cb)}}))},
    {listed.c_str(), ui.dir_menu_button,
     plain<Fl_Menu_Button>(310, 95, 210, 19,
        {{"color", 52}, {"selection_color", 175}, {"labelfont", 1},
         {"labeltype", literal_label()}, {"user_data", ours},
         {"callback", number_of(change_dir_menu_cb)}})},
    {"<<<", ui.add_button, plain<Fl_Button>(235, 125, 60, 25,
        {{"callback", number_of(add_files_cb)}, {"user_data", ours}})},
    {">>>", ui.remove_button, plain<Fl_Button>(235, 160, 60, 25,
        {{"callback", number_of(remove_files_cb)}, {"user_data", ours}})},
    {"help", help, plain<Fl_Button>(235, 300, 60, 25,
        {{"callback", number_of(help->callback())}})},
    {"Syntax Highlighting", nullptr, plain<Fl_Group>(350, 25, 170, 65,
        {{"box", FL_ENGRAVED_BOX}, {"color", 52}, {"labelfont", 1},
         {"align", 5}})},
    {"Level :", nullptr, plain<Fl_Choice>(365, 50, 65, 25, {{"align", 5}})},
    {"bold", ui.bold_button, plain<Fl_Check_Button>(450, 28, 70, 30,
        {{"selection_color", 2}, {"labelfont", 1},
         {"callback", number_of(SyntaxStyle_cb)}, {"user_data", 32}})},
    {"italic", ui.italic_button, plain<Fl_Check_Button>(450, 57, 70, 30,
        {{"selection_color", 2}, {"labelfont", 2},
         {"callback", number_of(SyntaxStyle_cb)}, {"user_data", 64}})},
    {"Generate HTML", ui.generate_button, plain<Fl_Button>(25, 10, 180, 30,
        {{"box", FL_ROUND_UP_BOX}, {"color", 47}, {"labelfont", 1},
         {"active", 0}, {"callback", number_of(GenerateHTML_cb)},
         {"user_data", ours}})},
    {"HTML Output Directory", ui.output_dir_input,
     plain<Fl_Input>(10, 65, 325, 25, {{"labelfont", 1}, {"align", 5}})},
    {"Browse...", nullptr, plain<Fl_Button>(260, 45, 75, 20,
        {{"callback", number_of(SelectOutput_cb)},
         {"user_data", number_of(ui.output_dir_input)}})},
  };
  // clang-format on
  ASSERT_EQ(std::size(rows), widgets.size());
  for (std::size_t i = 0; i < widgets.size(); ++i) {
    SCOPED_TRACE(rows[i].label);
    EXPECT_STREQ(rows[i].label, widgets[i]->label());
    EXPECT_EQ(rows[i].look, look_of(*widgets[i]));
    EXPECT_TRUE(rows[i].field == nullptr || rows[i].field == widgets[i]);
  }
  EXPECT_EQ(window.get(), ui.generate_button->parent());
  EXPECT_EQ(ui.current_directory + directory().size() - listed.size(),
            ui.dir_menu_button->label());
}

TEST_F(MainWindow, KeepsItsFieldsInOrder) {
  const std::vector<const void*> fields = {
      &ui.progress_bar,     &ui.status_box,      &ui.selected_files,
      &ui.potential_files,  &ui.add_button,      &ui.remove_button,
      &ui.generate_button,  &ui.bold_button,     &ui.italic_button,
      &ui.output_dir_input, &ui.dir_menu_button, &ui.current_directory};
  EXPECT_EQ(&ui, fields[0]);
  EXPECT_TRUE(std::is_sorted(fields.begin(), fields.end()));
  EXPECT_EQ(2048u, sizeof ui.current_directory);
}

TEST_F(MainWindow, SetsItsTitleClassAndInitialValues) {
  EXPECT_EQ(nullptr, instance_at_start);
  std::string title = "Zelkor  2.0.65";
  window.reset(ui.make_window(title));
  title.assign(title.size(), 'x');
  EXPECT_STREQ("Zelkor  2.0.65", window->label());
  EXPECT_STREQ("zelkor", window->xclass());
  EXPECT_EQ(&ui, gui_instance);
  EXPECT_FALSE(window->shown());
  EXPECT_EQ(nullptr, Fl_Group::current());
  EXPECT_EQ(0.0, ui.progress_bar->minimum());
  EXPECT_EQ(1.0, ui.progress_bar->maximum());
  EXPECT_EQ(0.0, ui.progress_bar->value());
  EXPECT_STREQ("", ui.output_dir_input->value());
  EXPECT_EQ(4, ui.output_dir_input->textfont());
  EXPECT_EQ(FL_DIAMOND_DOWN_BOX, ui.bold_button->down_box());
  EXPECT_EQ(FL_DIAMOND_DOWN_BOX, ui.italic_button->down_box());
}

TEST_F(MainWindow, BuildsItsNoticeOnceWithTheYearOfTheBuild) {
  build();
  const char* label = ui.status_box->label();
  EXPECT_EQ(notice(), label);
  build();
  EXPECT_EQ(label, ui.status_box->label());
}

TEST_F(MainWindow, OpensInADirectoryThatCannotBeListed) {
  const TemporaryFolder vanished;
  fs::remove(vanished.path());
  build();
  EXPECT_EQ("./", directory());
  EXPECT_EQ(Texts{}, potential());
  EXPECT_STREQ("Potential Files", ui.dir_menu_button->label());
  EXPECT_EQ(Texts{}, items_of(*ui.dir_menu_button));
}

TEST_F(MainWindow, HelpButtonShowsItsTextInAMessageBox) {
  build();
  const MessageBoxes boxes;
  button_of(*window, "help")->do_callback();
  EXPECT_EQ(Texts{"i Go to https://zelkor.example/\n"
                  "Use the 'Bugs' link for feedback\n"
                  "\n"
                  "Zelkor is FREE... tell others about it!\n"},
            boxes.seen());
}

TEST_F(MainWindow, MessageBoxesHaveTheProgramsNameAsTitle) {
  build();
  const auto title_in = [](const std::function<void()>& box) {
    std::string title;
    const ModalWatcher watcher([&title](Fl_Window& shown) {
      title = shown.label() == nullptr ? "" : shown.label();
      press_key(shown, FL_Escape);
    });
    box();
    return title;
  };
  EXPECT_EQ("Zelkor", title_in([] { fl_message("message"); }));
  EXPECT_EQ("Zelkor", title_in([] { fl_alert("alert"); }));
  EXPECT_EQ("Zelkor", title_in([] { fl_choice("choice", "0", "1", "2"); }));
  EXPECT_EQ("Zelkor", title_in([] { fl_input("input", ""); }));
}

TEST_F(MainWindow, ControlsThatNeedAnExplanationHaveTooltips) {
  build();
  std::set<std::string> explained;
  for (const Fl_Widget* widget : widgets_in(*window))
    if (widget->tooltip() != nullptr && widget->tooltip()[0] != '\0')
      explained.insert(widget->label());
  EXPECT_EQ(
      (std::set<std::string>{"<<<", ">>>", ui.dir_menu_button->label(),
                             "Level :", "Browse...", "HTML Output Directory"}),
      explained);
}

// --- Highlighting controls ---

const std::uint32_t levels[] = {8192, 1024, 2048, 4096};  // in menu order

// The set of levels whose places in `levels` are the bits of a number.
std::uint32_t level_set(unsigned places) {
  std::uint32_t set = 0;
  for (int i = 0; i < 4; ++i)
    if ((places >> i & 1) != 0) set |= levels[i];
  return set;
}

class Highlighting : public MainWindowTest {
 protected:
  Fl_Choice& level() { return *first_in<Fl_Choice>(*window); }
  void choose(int item) { level().menu()[item].do_callback(&level()); }
};

TEST_F(Highlighting, LevelMenuHasFourItems) {
  build();
  const Fl_Menu_Item* items = ZelkorUserInterface::menu_Level;
  EXPECT_EQ(items, level().menu());
  const char* labels[] = {"None", "1", "2", "3"};
  for (int i = 0; i < 4; ++i) {
    SCOPED_TRACE(i);
    EXPECT_STREQ(labels[i], items[i].text);
    EXPECT_EQ(0, items[i].shortcut_);
    EXPECT_EQ(&SyntaxStyle_cb, items[i].callback());
    EXPECT_EQ(static_cast<int>(levels[i]),
              *static_cast<int*>(items[i].user_data()));
    EXPECT_EQ(0, items[i].flags);
    EXPECT_EQ(FL_NORMAL_LABEL, items[i].labeltype());
    EXPECT_EQ(0, items[i].labelfont());
    EXPECT_EQ(14, items[i].labelsize());
    EXPECT_EQ(0, items[i].labelcolor());
  }
  EXPECT_EQ(nullptr, items[4].text);
}

TEST_F(Highlighting, ControlsShowTheStyleAndNoneUnlessExactlyOneLevelIsSet) {
  for (unsigned places = 0; places < 16; ++places)
    for (const std::uint32_t style : {0u, 32u, 64u, 96u}) {
      const std::uint32_t set = level_set(places);
      const int item = set == 1024 ? 1 : set == 2048 ? 2 : set == 4096 ? 3 : 0;
      html_style = 2 | set | style;
      build();
      EXPECT_EQ(item, level().value()) << html_style;
      EXPECT_EQ((style & 32) != 0, ui.bold_button->value() != 0) << style;
      EXPECT_EQ((style & 64) != 0, ui.italic_button->value() != 0) << style;
      EXPECT_EQ(2 | set | style, html_style);
    }
}

TEST_F(Highlighting, ChoosingALevelInvertsTheLevelBitsAndSetsTheChosenOne) {
  build();
  const std::uint32_t others = 0x80000000u | 1 | 2 | 32 | 64 | 128;
  for (unsigned places = 0; places < 16; ++places) {
    for (int item = 0; item < 4; ++item) {
      const std::uint32_t before = level_set(places);
      std::uint32_t after = 0;
      for (const std::uint32_t bit : levels)
        if (bit == levels[item] || (before & bit) == 0) after |= bit;

      html_style = others | before;
      choose(item);
      EXPECT_EQ(others | after, html_style)
          << "item " << item << " of levels " << before;
    }
  }
}

// The states of the check buttons are not read.
TEST_F(Highlighting, TogglingTwiceRestoresHtmlStyle) {
  build();
  for (const std::uint32_t style : {8226u, 0u, 0xffffffffu})
    for (int value : {1, 2, 32, 64}) {
      html_style = style;
      SyntaxStyle_cb(ui.bold_button, &value);
      EXPECT_EQ(style ^ static_cast<unsigned>(value), html_style);
      SyntaxStyle_cb(ui.bold_button, &value);
      EXPECT_EQ(style, html_style);
    }
}

TEST_F(Highlighting, IgnoresOtherValues) {
  html_style = 8226;
  for (int value :
       {0, 3, 4, 8, 16, 96, 128, 256, 512, 3072, 15360, 16384, -1}) {
    SyntaxStyle_cb(nullptr, &value);
    EXPECT_EQ(8226u, html_style) << value;
  }
}

// --- Browse... ---

class Browse : public MainWindowTest {
 protected:
  // Presses Browse..., enters a name in the chooser unless it is empty, and
  // presses a button there.
  void browse(const std::string& answer, const std::string& name = "") {
    const ModalWatcher watcher([&](Fl_Window& chooser) {
      title = chooser.label();
      Fl_Input* input = first_in<Fl_File_Input>(chooser);
      start = input->value();
      if (!name.empty()) input->value(name.c_str());
      button_of(chooser, answer)->do_callback();
    });
    button_of(*window, "Browse...")->do_callback();
  }

  std::string title;
  std::string start;
};

TEST_F(Browse, ChosenDirectoryBecomesHtmlDirAndIsShown) {
  fs::create_directory("out");
  fs::create_directory("other");
  build();
  const struct {
    std::string html_dir, answer, name, result;
  } rows[] = {
      {"out", "Cancel", "", "out"},
      {"out", "Cancel", path_of("other"), "out"},
      {"out", "OK", path_of("other"), path_of("other")},
      // The chooser returns an absolute path, even of a missing directory.
      {"HTML", "OK", "", path_of("HTML")},
      {"out", "OK", path_of("nowhere"), path_of("nowhere")},
  };
  for (const auto& row : rows) {
    html_dir = row.html_dir;
    ui.output_dir_input->value("typed");
    browse(row.answer, row.name);
    EXPECT_EQ("select HTML ouput directory", title);
    EXPECT_EQ(path_of(row.html_dir), start);
    EXPECT_EQ(row.result, html_dir);
    EXPECT_EQ(row.result, ui.output_dir_input->value());
  }
  EXPECT_FALSE(fs::exists("nowhere"));
}

TEST_F(Browse, AcceptsStartDirectoriesOfAnyLength) {
  build();
  for (const std::size_t length : {255u, 1024u, 4096u}) {
    const std::string place(length, 'd');
    html_dir = place;
    browse("Cancel");
    EXPECT_EQ(place, html_dir);
    EXPECT_EQ(place, ui.output_dir_input->value());
  }
}

}  // namespace
