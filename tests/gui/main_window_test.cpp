#include "gui/main_window.h"

#include <FL/Fl.H>
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

#include <filesystem>
#include <functional>
#include <set>
#include <sstream>
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

// The settings of a widget. Those of a row begin as the toolkit makes a widget
// of its class; the row then names what differs.
struct Look {
  explicit Look(const Fl_Widget& o)
      : class_name(typeid(o).name()),
        label(o.label() == nullptr ? "(none)" : o.label()),
        x(o.x()),
        y(o.y()),
        w(o.w()),
        h(o.h()),
        type_(o.type()),
        box_(o.box()),
        color_(o.color()),
        selection_color_(o.selection_color()),
        labeltype_(o.labeltype()),
        labelfont_(o.labelfont()),
        labelsize_(o.labelsize()),
        labelcolor_(o.labelcolor()),
        align_(o.align()),
        when_(o.when()),
        active_(o.active() != 0),
        visible_(o.visible() != 0),
        callback_(o.callback()),
        user_data_(o.user_data()) {
    // The values that these widgets point to are not to be seen from here.
    if (callback_ != SyntaxStyle_cb) return;
    passed_ = *static_cast<int*>(user_data_);
    user_data_ = nullptr;
  }

  Look& type(int v) { return set(type_, v); }
  Look& box(int v) { return set(box_, v); }
  Look& color(int v) { return set(color_, v); }
  Look& selection_color(int v) { return set(selection_color_, v); }
  Look& labeltype(Fl_Labeltype type) { return set(labeltype_, int{type}); }
  Look& labelfont(int v) { return set(labelfont_, v); }
  Look& align(int v) { return set(align_, v); }
  Look& when(int v) { return set(when_, v); }
  Look& inactive() { return set(active_, false); }
  Look& user_data(void* v) { return set(user_data_, v); }
  Look& passes(int v) { return set(passed_, v); }
  template <class Callback>
  Look& calls(Callback* callback, void* data) {
    callback_ = reinterpret_cast<Fl_Callback*>(callback);
    return user_data(data);
  }

  std::string text() const {
    std::ostringstream s;
    s << class_name << " \"" << label << "\" at " << x << ", " << y << ", " << w
      << ", " << h << " type " << type_ << " box " << box_ << " color "
      << color_ << " selection_color " << selection_color_ << " label type "
      << labeltype_ << " font " << labelfont_ << " size " << labelsize_
      << " color " << labelcolor_ << " align " << align_ << " when " << when_
      << " active " << active_ << " visible " << visible_ << " callback "
      << reinterpret_cast<void*>(callback_) << " user_data " << user_data_
      << " passes " << passed_;
    return s.str();
  }

 private:
  template <class T>
  Look& set(T& setting, T value) {
    setting = value;
    return *this;
  }

  std::string class_name, label;
  int x, y, w, h;
  int type_, box_, color_, selection_color_;
  int labeltype_, labelfont_, labelsize_, labelcolor_;
  int align_, when_;
  bool active_, visible_;
  Fl_Callback* callback_;
  void* user_data_;
  int passed_ = 0;
};

template <class Widget>
Look plain(int x, int y, int w, int h, const char* label) {
  const Widget widget(x, y, w, h, label);
  Fl_Group::current(nullptr);
  return Look(widget);
}

// The window and its widgets in the order in which they were made; what makes
// up a list or a choice is the toolkit's own.
void collect(const Fl_Widget& widget, std::vector<const Fl_Widget*>& all) {
  all.push_back(&widget);
  const bool holds_ours =
      typeid(widget) == typeid(Fl_Window) || typeid(widget) == typeid(Fl_Group);
  if (!holds_ours) return;
  const auto& group = dynamic_cast<const Fl_Group&>(widget);
  for (int i = 0; i < group.children(); ++i) collect(*group.child(i), all);
}

using MainWindow = MainWindowTest;

TEST_F(MainWindow, ConsistsOfTheseWidgetsInThisOrder) {
  build();
  std::vector<const Fl_Widget*> widgets;
  collect(*window, widgets);

  const Fl_Widget* help = button_of(*window, "help");
  ASSERT_NE(nullptr, help);
  // What it calls is not to be seen from here, but it is nobody else's.
  for (const Fl_Widget* widget : widgets)
    EXPECT_TRUE(widget == help || widget->callback() != help->callback());
  const int engraved = FL_ENGRAVED_BOX;
  // clang-format off
  const std::vector<Look> looks = {
    Look(Fl_Window(529, 363, "Zelkor  test")).color(48).user_data(&ui),
    plain<Fl_Slider>(10, 337, 95, 20, "")
        .type(FL_HOR_FILL_SLIDER).box(engraved).color(52).selection_color(176)
        .labelfont(10).align(8).when(FL_WHEN_NOT_CHANGED).inactive(),
    plain<Fl_Box>(105, 337, 414, 20, ui.status_box->label())
        .box(engraved).color(52).labelfont(10).align(84)
        .labeltype(status_label()),
    plain<SpecialBrowser>(10, 115, 210, 215, "Selected Files")
        .type(FL_MULTI_BROWSER).color(52).selection_color(175).labelfont(1)
        .align(5).when(FL_WHEN_NOT_CHANGED),
    plain<Fl_Multi_Browser>(310, 115, 210, 215, "Potential Files")
        .type(FL_MULTI_BROWSER).color(52).selection_color(175).labelfont(1)
        .align(5).when(FL_WHEN_CHANGED).calls(change_dir_click_cb, &ui),
    plain<Fl_Menu_Button>(310, 95, 210, 19, ui.dir_menu_button->label())
        .color(52).selection_color(175).labelfont(1)
        .labeltype(literal_label()).calls(change_dir_menu_cb, &ui),
    plain<Fl_Button>(235, 125, 60, 25, "<<<").calls(add_files_cb, &ui),
    plain<Fl_Button>(235, 160, 60, 25, ">>>").calls(remove_files_cb, &ui),
    plain<Fl_Button>(235, 300, 60, 25, "help")
        .calls(help->callback(), nullptr),
    plain<Fl_Group>(350, 25, 170, 65, "Syntax Highlighting")
        .box(engraved).color(52).labelfont(1).align(5),
    plain<Fl_Choice>(365, 50, 65, 25, "Level :").align(5),
    plain<Fl_Check_Button>(450, 28, 70, 30, "bold")
        .selection_color(2).labelfont(1)
        .calls(SyntaxStyle_cb, nullptr).passes(32),
    plain<Fl_Check_Button>(450, 57, 70, 30, "italic")
        .selection_color(2).labelfont(2)
        .calls(SyntaxStyle_cb, nullptr).passes(64),
    plain<Fl_Button>(25, 10, 180, 30, "Generate HTML")
        .box(FL_ROUND_UP_BOX).color(47).labelfont(1).inactive()
        .calls(GenerateHTML_cb, &ui),
    plain<Fl_Input>(10, 65, 325, 25, "HTML Output Directory")
        .labelfont(1).align(5),
    plain<Fl_Button>(260, 45, 75, 20, "Browse...")
        .calls(SelectOutput_cb, ui.output_dir_input),
  };
  // clang-format on
  ASSERT_EQ(looks.size(), widgets.size());
  for (std::size_t i = 0; i < looks.size(); ++i)
    EXPECT_EQ(looks[i].text(), Look(*widgets[i]).text()) << "widget " << i;
}

TEST_F(MainWindow, FieldsPointAtTheirWidgets) {
  build();
  std::vector<const Fl_Widget*> widgets;
  collect(*window, widgets);
  ASSERT_EQ(16u, widgets.size());
  const std::vector<const Fl_Widget*> fields = {
      ui.progress_bar,    ui.status_box,      ui.selected_files,
      ui.potential_files, ui.dir_menu_button, ui.add_button,
      ui.remove_button,   ui.bold_button,     ui.italic_button,
      ui.generate_button, ui.output_dir_input};
  const std::vector<std::size_t> places = {1, 2, 3, 4, 5, 6, 7, 11, 12, 13, 14};
  for (std::size_t i = 0; i < fields.size(); ++i)
    EXPECT_EQ(widgets[places[i]], fields[i]) << "field " << i;
}

TEST_F(MainWindow, FieldsStandInTheirOrder) {
  const std::vector<const void*> fields = {
      &ui,
      &ui.progress_bar,
      &ui.status_box,
      &ui.selected_files,
      &ui.potential_files,
      &ui.add_button,
      &ui.remove_button,
      &ui.generate_button,
      &ui.bold_button,
      &ui.italic_button,
      &ui.output_dir_input,
      &ui.dir_menu_button,
      &ui.current_directory,
  };
  EXPECT_EQ(fields[0], fields[1]);
  for (std::size_t i = 2; i < fields.size(); ++i)
    EXPECT_LT(fields[i - 1], fields[i]) << "field " << i;
  EXPECT_EQ(2048u, sizeof ui.current_directory);
}

TEST_F(MainWindow, StatusBoxLeavesElevenPixelsOfTheWindowsWidthToTheBar) {
  build();
  EXPECT_EQ(529, window->w());
  EXPECT_EQ(414, ui.status_box->w());
}

TEST_F(MainWindow, IsTheInstanceOfTheProgram) {
  EXPECT_EQ(nullptr, instance_at_start);
  build();
  EXPECT_EQ(&ui, gui_instance);
}

TEST_F(MainWindow, IsReturnedUnshownWithItsGroupEnded) {
  build();
  EXPECT_FALSE(window->shown());
  EXPECT_EQ(nullptr, Fl_Group::current());
}

TEST_F(MainWindow, KeepsACopyOfItsTitle) {
  std::string title = "Zelkor  2.0.65";
  window.reset(ui.make_window(title));
  title.assign(title.size(), 'x');
  EXPECT_STREQ("Zelkor  2.0.65", window->label());
}

TEST_F(MainWindow, IsOfTheWindowClassZelkor) {
  build();
  EXPECT_STREQ("zelkor", window->xclass());
}

TEST_F(MainWindow, NoticeEndsInTheYearOfTheBuild) {
  build();
  const std::string date = build_date();
  EXPECT_EQ(
      "F1: handbook. Copyright (C) Qumbra " + date.substr(date.size() - 4),
      ui.status_box->label());
}

TEST_F(MainWindow, NoticeIsBuiltOnce) {
  build();
  const char* notice = ui.status_box->label();
  build();
  EXPECT_EQ(notice, ui.status_box->label());
}

TEST_F(MainWindow, BarRunsFromZeroToOneAndStandsAtZero) {
  build();
  EXPECT_EQ(0.0, ui.progress_bar->minimum());
  EXPECT_EQ(1.0, ui.progress_bar->maximum());
  EXPECT_EQ(0.0, ui.progress_bar->value());
}

TEST_F(MainWindow, OutputDirectoryIsEmptyAndInCourier) {
  build();
  EXPECT_STREQ("", ui.output_dir_input->value());
  EXPECT_EQ(4, ui.output_dir_input->textfont());
}

TEST_F(MainWindow, CheckButtonsShowDiamonds) {
  build();
  EXPECT_EQ(FL_DIAMOND_DOWN_BOX, ui.bold_button->down_box());
  EXPECT_EQ(FL_DIAMOND_DOWN_BOX, ui.italic_button->down_box());
}

TEST_F(MainWindow, ListsTheWorkingDirectory) {
  fs::create_directory("src");
  write_file("main.f90", "");
  build();
  EXPECT_EQ((Texts{"@b.", "@b..", "@bsrc", "main.f90"}), potential());
  EXPECT_EQ(path_of(""), directory());
  EXPECT_EQ(Texts{}, selected());
}

TEST_F(MainWindow, DirectoryMenuTakesItsNameFromTheCurrentDirectory) {
  build();
  const std::string parent = folder.path().parent_path();
  EXPECT_EQ(ui.current_directory + parent.size() + 1,
            ui.dir_menu_button->label());
  EXPECT_EQ(folder.path().filename().string() + "/",
            ui.dir_menu_button->label());
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

TEST_F(MainWindow, HelpShowsItsTextInAMessageBox) {
  build();
  const MessageBoxes boxes;
  button_of(*window, "help")->do_callback();
  EXPECT_EQ(Texts{"i Go to https://zelkor.example/\n"
                  "Use the 'Bugs' link for feedback\n"
                  "\n"
                  "Zelkor is FREE... tell others about it!\n"},
            boxes.seen());
}

TEST_F(MainWindow, MessageBoxesBearTheProgramsName) {
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

TEST_F(MainWindow, ControlsWhoseUseIsNotPlainHaveTooltips) {
  build();
  std::vector<const Fl_Widget*> widgets;
  collect(*window, widgets);
  std::set<std::string> explained;
  for (const Fl_Widget* widget : widgets)
    if (widget->tooltip() != nullptr && widget->tooltip()[0] != '\0')
      explained.insert(widget->label());
  EXPECT_EQ(
      (std::set<std::string>{"<<<", ">>>", ui.dir_menu_button->label(),
                             "Level :", "Browse...", "HTML Output Directory"}),
      explained);
}

// --- Highlighting controls ---

const std::uint32_t levels[] = {8192, 1024, 2048, 4096};  // in menu order
const std::uint32_t level_mask = 15360;

// The set of levels whose places in `levels` are the bits of a number.
std::uint32_t level_set(unsigned places) {
  std::uint32_t set = 0;
  for (int i = 0; i < 4; ++i)
    if ((places >> i & 1) != 0) set |= levels[i];
  return set;
}

class Highlighting : public MainWindowTest {
 protected:
  Fl_Choice& level() {
    auto* group = dynamic_cast<Fl_Group*>(ui.bold_button->parent());
    return dynamic_cast<Fl_Choice&>(*group->child(0));
  }
  void choose(int item) { level().menu()[item].do_callback(&level()); }
};

TEST_F(Highlighting, LevelMenuHasFourItems) {
  const Fl_Menu_Item* items = ZelkorUserInterface::menu_Level;
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

TEST_F(Highlighting, LevelChoiceUsesThatMenu) {
  build();
  EXPECT_EQ(ZelkorUserInterface::menu_Level, level().menu());
}

TEST_F(Highlighting, LevelChoiceShowsTheOneLevelThatIsSet) {
  for (int item = 0; item < 4; ++item) {
    html_style = 2 | 32 | levels[item];
    build();
    EXPECT_EQ(item, level().value()) << "html_style " << html_style;
  }
}

TEST_F(Highlighting, LevelChoiceShowsNoneForNoLevelOrSeveral) {
  for (unsigned places = 0; places < 16; ++places) {
    const std::uint32_t set = level_set(places);
    if (set == 1024 || set == 2048 || set == 4096) continue;
    html_style = 2 | set;
    build();
    EXPECT_EQ(0, level().value()) << "html_style " << html_style;
    EXPECT_EQ(2 | set, html_style);
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

TEST_F(Highlighting, ChoosingTwoAfterOneThenThree) {
  html_style = 1024;
  build();
  level().picked(&level().menu()[2]);
  EXPECT_EQ(2048u | 4096 | 8192, html_style);
  level().picked(&level().menu()[3]);
  EXPECT_EQ(1024u | 4096, html_style);
}

TEST_F(Highlighting, ChoosingTheOneLevelSetLeavesAllFour) {
  build();
  html_style = 4096;
  choose(3);
  EXPECT_EQ(level_mask, html_style);
}

TEST_F(Highlighting, ChoosingFromAllFourLeavesTheChosenOne) {
  build();
  html_style = level_mask;
  choose(1);
  EXPECT_EQ(1024u, html_style);
}

TEST_F(Highlighting, CheckButtonsShowHtmlStyle) {
  for (const std::uint32_t style : {0u, 32u, 64u, 96u}) {
    html_style = style | 8192;
    build();
    EXPECT_EQ((style & 32) != 0, ui.bold_button->value() != 0) << style;
    EXPECT_EQ((style & 64) != 0, ui.italic_button->value() != 0) << style;
  }
}

TEST_F(Highlighting, CheckButtonsPassTheirBits) {
  build();
  EXPECT_EQ(32, *static_cast<int*>(ui.bold_button->user_data()));
  EXPECT_EQ(64, *static_cast<int*>(ui.italic_button->user_data()));
}

TEST_F(Highlighting, ClickingTheCheckButtonsTogglesTheirBits) {
  html_style = 8226;
  show();
  click(*ui.bold_button);
  EXPECT_EQ(8226u - 32, html_style);
  click(*ui.italic_button);
  EXPECT_EQ(8226u - 32 + 64, html_style);
  EXPECT_EQ(0, ui.bold_button->value());
  EXPECT_NE(0, ui.italic_button->value());
}

TEST_F(Highlighting, TogglingBoldTwiceRestoresHtmlStyle) {
  build();
  for (const std::uint32_t style : {8226u, 0u, 0xffffffffu}) {
    html_style = style;
    ui.bold_button->do_callback();
    EXPECT_EQ(style ^ 32, html_style);
    ui.bold_button->do_callback();
    EXPECT_EQ(style, html_style);
  }
}

TEST_F(Highlighting, TheStateOfTheCheckButtonIsNotRead) {
  build();
  html_style = 0;
  ui.bold_button->value(0);
  ui.bold_button->do_callback();
  EXPECT_EQ(32u, html_style);
}

TEST_F(Highlighting, HidingAndIndexAreToggled) {
  html_style = 8226;
  for (int value : {1, 2}) {
    SyntaxStyle_cb(nullptr, &value);
    EXPECT_EQ(8226u ^ static_cast<unsigned>(value), html_style);
    SyntaxStyle_cb(nullptr, &value);
    EXPECT_EQ(8226u, html_style);
  }
}

TEST_F(Highlighting, OtherValuesDoNothing) {
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
  // Presses Browse..., then a button of the chooser, the name there being
  // replaced before unless the new one is empty.
  void browse(const std::string& answer, const std::string& name = "") {
    const ModalWatcher watcher([&](Fl_Window& chooser) {
      title = chooser.label();
      Fl_Input* input = name_input(chooser);
      start = input->value();
      if (!name.empty()) input->value(name.c_str());
      button_of(chooser, answer)->do_callback();
    });
    button_of(*window, "Browse...")->do_callback();
  }

  // The first one in a group, or in the groups in it.
  static Fl_File_Input* name_input(Fl_Group& group) {
    for (int i = 0; i < group.children(); ++i) {
      if (auto* input = dynamic_cast<Fl_File_Input*>(group.child(i)))
        return input;
      if (auto* inner = dynamic_cast<Fl_Group*>(group.child(i)))
        if (auto* found = name_input(*inner)) return found;
    }
    return nullptr;
  }

  std::string title;
  std::string start;
};

TEST_F(Browse, StartsAtHtmlDir) {
  fs::create_directory("out");
  html_dir = "out";
  build();
  browse("Cancel");
  EXPECT_EQ("select HTML ouput directory", title);
  EXPECT_EQ(path_of("out"), start);
}

TEST_F(Browse, ChosenDirectoryBecomesHtmlDirAndIsShown) {
  fs::create_directory("out");
  fs::create_directory("other");
  html_dir = "out";
  build();
  browse("OK", path_of("other"));
  EXPECT_EQ(path_of("other"), html_dir);
  EXPECT_EQ(path_of("other"), ui.output_dir_input->value());
}

TEST_F(Browse, AcceptingTheStartGivesAnAbsolutePath) {
  html_dir = "HTML";
  build();
  browse("OK");
  EXPECT_EQ(path_of("HTML"), html_dir);
  EXPECT_EQ(path_of("HTML"), ui.output_dir_input->value());
}

TEST_F(Browse, CancellingPutsHtmlDirIntoTheFieldInPlaceOfWhatWasTyped) {
  html_dir = "HTML";
  build();
  ui.output_dir_input->value("typed");
  browse("Cancel");
  EXPECT_EQ("HTML", html_dir);
  EXPECT_STREQ("HTML", ui.output_dir_input->value());
}

// The chooser takes a name that does not exist and makes nothing; the run is
// refused then.
TEST_F(Browse, ChosenDirectoryThatDoesNotExistIsRefusedByTheRun) {
  write_file("a.f90", "x\n");
  build();
  ui.selected_files->add(path_of("a.f90").c_str());
  browse("OK", path_of("nowhere"));
  EXPECT_EQ(path_of("nowhere"), html_dir);
  EXPECT_EQ(path_of("nowhere"), ui.output_dir_input->value());
  EXPECT_FALSE(fs::exists("nowhere"));

  const MessageBoxes boxes;
  ui.generate_button->do_callback();
  EXPECT_EQ(Texts{"! '" + path_of("nowhere") + "'\nis not a directory name"},
            boxes.seen());
  EXPECT_FALSE(fs::exists("nowhere"));
}

TEST_F(Browse, StartsAtDirectoriesOfAnyLength) {
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
