#include "help/help_keys.h"

#include <FL/Fl.H>
#include <FL/Fl_Box.H>
#include <FL/Fl_Button.H>
#include <FL/Fl_Help_View.H>
#include <FL/Fl_Input.H>
#include <FL/Fl_Multi_Browser.H>
#include <FL/Fl_Multiline_Output.H>
#include <gtest/gtest.h>

#include <filesystem>
#include <functional>
#include <string>
#include <vector>

#include "driver/version.h"
#include "gui/dialog.h"
#include "gui/special_browser.h"
#include "tests/gui/main_window_fixture.h"
#include "tests/gui/modal.h"
#include "tests/gui/place.h"
#include "tests/gui/user.h"
#include "tests/support/alone.h"
#include "tests/support/capture.h"
#include "tests/support/environment.h"
#include "tests/support/program.h"
#include "tests/support/program_window.h"
#include "tests/support/script.h"
#include "tests/support/wait_until.h"

namespace fs = std::filesystem;

namespace {

const int f1 = FL_F + 1;

// Handlers stay with the toolkit and the handbook's place is determined once,
// so each test has a process of its own.
class HelpKeys : public MainWindowTest {
 protected:
  void SetUp() override {
    MainWindowTest::SetUp();
    set_environment("QUMBRA_HOME", folder.path());
    set_environment("BROWSER", write_browser("tools/browser"));
  }
  void start() {
    show();
    offer_help_keys(window.get());
  }

  std::string handbook() const {
    return path_of("share/doc/zelkor/Zelkor_Handbook.html");
  }
  // Whether the handbook was shown since the last question.
  static bool shown_in_browser(const std::string& path) {
    if (!fs::exists("tools/words")) return false;
    EXPECT_EQ(words_of("file://" + path), content_of("tools/words"));
    fs::remove("tools/words");
    return true;
  }
  // Presses a key; returns the texts of the boxes that come up.
  std::vector<std::string> boxes_after(int key) {
    const MessageBoxes boxes;
    press_key(*window, key);
    return boxes.seen();
  }

  EnvironmentGuard qumbra_home{"QUMBRA_HOME"};
  EnvironmentGuard browser{"BROWSER"};
};

TEST_F(HelpKeys, F1ShowsTheHandbookOfTheInstallationDirectory) {
  alone([&] {
    write_file(handbook(), "x");
    start();
    EXPECT_TRUE(boxes_after(f1).empty());
    EXPECT_TRUE(shown_in_browser(handbook()));
  });
}

TEST_F(HelpKeys, F1WorksWhateverHasTheFocusAndAsOftenAsItIsPressed) {
  alone([&] {
    write_file(handbook(), "x");
    start();
    for (Fl_Widget* widget : {static_cast<Fl_Widget*>(ui.output_dir_input),
                              static_cast<Fl_Widget*>(ui.potential_files),
                              static_cast<Fl_Widget*>(ui.selected_files),
                              static_cast<Fl_Widget*>(ui.add_button)}) {
      widget->take_focus();
      press_key(*window, f1);
      EXPECT_TRUE(shown_in_browser(handbook()));
    }
    Fl::focus(nullptr);
    press_key(*window, f1);
    EXPECT_TRUE(shown_in_browser(handbook()));
  });
}

TEST_F(HelpKeys, LocksDoNotChangeTheKeys) {
  alone([&] {
    write_file(handbook(), "x");
    start();
    press_key(*window, f1, FL_NUM_LOCK | FL_CAPS_LOCK);
    EXPECT_TRUE(shown_in_browser(handbook()));
    int boxes = 0;
    const WhenModal user([&](Fl_Window& box) {
      ++boxes;
      click(*button_of(box, "okay"));
    });
    press_key(*window, f1, FL_SHIFT | FL_NUM_LOCK | FL_CAPS_LOCK);
    EXPECT_EQ(1, boxes);
    EXPECT_FALSE(shown_in_browser(handbook()));
  });
}

TEST_F(HelpKeys, OtherKeysShowNothing) {
  alone([&] {
    write_file(handbook(), "x");
    start();
    int boxes = 0;
    const ModalWatcher watcher([&](Fl_Window& box) {
      ++boxes;
      box.hide();
    });
    for (const int key : {FL_F + 2, FL_F + 10, FL_F + 11, FL_Help, int{'1'}})
      for (const int modifiers : {0, FL_SHIFT})
        press_key(*window, key, modifiers);
    Fl::check();
    EXPECT_FALSE(shown_in_browser(handbook()));
    EXPECT_EQ(0, boxes);
  });
}

std::vector<int> keys_handed_on;

int note_key(int event) {
  if (event == FL_SHORTCUT) keys_handed_on.push_back(Fl::event_key());
  return 0;
}

TEST_F(HelpKeys, OnlyOtherKeysAreHandedOn) {
  alone([&] {
    write_file(handbook(), "x");
    Fl::add_handler(note_key);
    start();  // later handlers come first
    press_key(*window, f1);
    EXPECT_EQ(std::vector<int>(), keys_handed_on);
    press_key(*window, FL_F + 2);
    EXPECT_EQ(std::vector<int>{FL_F + 2}, keys_handed_on);
  });
}

struct Greedy : Fl_Box {
  using Fl_Box::Fl_Box;
  int handle(int event) override {
    if (event == FL_FOCUS || event == FL_UNFOCUS) return 1;
    return event == FL_KEYBOARD && Fl::event_key() == f1 ? 1 : 0;
  }
};

TEST_F(HelpKeys, WidgetThatWantsTheKeyHasIt) {
  alone([&] {
    write_file(handbook(), "x");
    start();
    Fl_Window other(10, 10, 100, 100);
    auto* const greedy = new Greedy(0, 0, 100, 100);
    other.end();
    show_and_wait(other);
    Fl::focus(greedy);
    press_key(other, f1);
    EXPECT_FALSE(shown_in_browser(handbook()));
    Fl::focus(nullptr);
    press_key(other, f1);
    EXPECT_TRUE(shown_in_browser(handbook()));
  });
}

TEST_F(HelpKeys, HandbookIsShownInTheViewerWithoutABrowser) {
  alone([&] {
    set_environment("BROWSER", std::nullopt);
    write_file(handbook(), "handbook");
    start();
    press_key(*window, f1);
    const Fl_Help_View* view = nullptr;
    for (Fl_Window* w = Fl::first_window(); w != nullptr;
         w = Fl::next_window(w))
      for (int i = 0; i < w->children(); ++i)
        if (auto* found = dynamic_cast<Fl_Help_View*>(w->child(i)))
          view = found;
    ASSERT_NE(nullptr, view);
    EXPECT_STREQ("handbook", view->value());
    view->window()->hide();
  });
}

// Where the handbook of this program would be: beside the folder it is in.
std::string own_handbook() {
  return fs::read_symlink("/proc/self/exe").parent_path().parent_path() /
         "share/doc/zelkor/Zelkor_Handbook.html";
}

TEST_F(HelpKeys, WithoutHandbookAMessageNamesTheTwoPlaces) {
  alone([&] {
    start();
    const std::vector<std::string> boxes = boxes_after(f1);
    ASSERT_EQ(1u, boxes.size());
    EXPECT_EQ("i The handbook is neither\n" + handbook() + "\nnor\n" +
                  own_handbook() +
                  "\nQUMBRA_HOME names the directory below which it is "
                  "sought.",
              boxes[0]);
    EXPECT_FALSE(fs::exists("tools/words"));
  });
}

TEST_F(HelpKeys, PlacesInTheMessageAreShownAsTheyAre) {
  alone([&] {
    set_environment("QUMBRA_HOME", path_of("me@100%s"));
    start();
    const std::vector<std::string> boxes = boxes_after(f1);
    ASSERT_EQ(1u, boxes.size());
    EXPECT_NE(std::string::npos, boxes[0].find("/me@@100%s/share/doc/zelkor/"))
        << boxes[0];
  });
}

TEST_F(HelpKeys, EmptyHandbookCountsAsMissing) {
  alone([&] {
    write_file(handbook(), "");
    start();
    EXPECT_EQ(1u, boxes_after(f1).size());
    EXPECT_FALSE(fs::exists("tools/words"));
  });
}

TEST_F(HelpKeys, HandbookThatComesLaterIsFound) {
  alone([&] {
    start();
    EXPECT_EQ(1u, boxes_after(f1).size());
    write_file(handbook(), "x");
    EXPECT_EQ(0u, boxes_after(f1).size());
    EXPECT_TRUE(shown_in_browser(handbook()));
  });
}

TEST_F(HelpKeys, ShiftF1ShowsTheAboutBoxOverTheWindow) {
  alone([&] {
    write_file(handbook(), "x");
    start();
    window->position(400, 300);
    Fl::check();
    int boxes = 0;
    const WhenModal user([&](Fl_Window& box) {
      ++boxes;
      EXPECT_EQ("About Zelkor " + version_text(build_date()), box.label());
      auto& dialog = dynamic_cast<Fl_Dialog&>(box);
      EXPECT_EQ(420, box.w());
      EXPECT_EQ(window->x() + window->w() / 2 - 210, box.x());
      EXPECT_EQ(window->y() + window->h() / 2 - box.h() / 2, box.y());
      const Fl_Widget& logo = *dialog.work_area()->child(0);
      EXPECT_EQ((Place{120, 10, 180, 108}), place_of(logo));
      const std::string text =
          dynamic_cast<Fl_Multiline_Output&>(*dialog.work_area()->child(1))
              .value();
      for (const char* part :
           {"Zelkor", "F1", "based in part on the work of the FLTK project"})
        EXPECT_NE(std::string::npos, text.find(part)) << part;
      click(*button_of(box, "okay"));
    });
    press_key(*window, f1, FL_SHIFT);
    EXPECT_EQ(1, boxes);
    EXPECT_EQ(nullptr, Fl::modal());
    EXPECT_FALSE(shown_in_browser(handbook()));
  });
}

// Help would come up behind a modal box, and could not be used.
TEST_F(HelpKeys, ModalBoxesHaveNoHelp) {
  alone([&] {
    write_file(handbook(), "x");
    start();
    int boxes = 0;
    const WhenModal user([&](Fl_Window& box) {
      ++boxes;
      press_key(box, f1);
      press_key(box, f1, FL_SHIFT);
      EXPECT_EQ(&box, Fl::modal());
      EXPECT_FALSE(shown_in_browser(handbook()));
      click(*button_of(box, "cancel"));
    });
    press_key(*window, f1, FL_SHIFT);
    EXPECT_EQ(1, boxes);
    press_key(*window, f1);
    EXPECT_TRUE(shown_in_browser(handbook()));
  });
}

// --- The program as it is installed ---

// Installs the program below the working directory, starts it and presses F1
// in its window.
class InstalledProgram : public testing::Test {
 protected:
  void SetUp() override {
    fs::create_directories("prefix/bin");
    fs::copy_file(ZELKOR_PROGRAM, "prefix/bin/zelkor");
    browser = write_browser();
  }
  void press_f1(const std::string& qumbra_home) {
    const std::string home = folder.path();
    program = std::make_unique<Program>(
        std::vector<std::string>{"env", "HOME=" + home, "BROWSER=" + browser,
                                 "QUMBRA_HOME=" + qumbra_home,
                                 folder.path() / started_as},
        "output", "errors");
    ASSERT_TRUE(window.wait_for(*program));
    window.click(265, 230);
    window.press_key("F1");
  }
  std::string address(const std::string& path) const {
    return words_of("file://" + folder.path().string() + "/" + path);
  }
  // The words that the browser was given, once it was.
  static std::string words() {
    if (!wait_until([] { return fs::exists("words"); })) return "(none)";
    return content_of("words");
  }

  const std::string own = "prefix/share/doc/zelkor/Zelkor_Handbook.html";
  std::string browser;
  fs::path started_as = "prefix/bin/zelkor";
  TemporaryFolder folder;
  ProgramWindow window;
  std::unique_ptr<Program> program;
};

TEST_F(InstalledProgram, F1ShowsTheHandbookBelowItsOwnPrefix) {
  write_file(own, "x");
  press_f1("/nowhere");
  EXPECT_EQ(address(own), words());
}

TEST_F(InstalledProgram, StaysUsableAfterF1) {
  write_file(own, "x");
  press_f1("/nowhere");
  EXPECT_EQ(address(own), words());
  EXPECT_TRUE(program->running());
  window.press_key("Escape");
  ASSERT_TRUE(wait_until([this] { return !program->running(); }));
  EXPECT_EQ(0, program->wait());
}

TEST_F(InstalledProgram, StartedThroughALinkItFindsItsHandbookToo) {
  write_file(own, "x");
  fs::create_symlink("prefix/bin/zelkor", "z");
  started_as = "z";
  press_f1("/nowhere");
  EXPECT_EQ(address(own), words());
}

TEST_F(InstalledProgram, F1ShowsTheHandbookFromTheBuildDirectoryToo) {
  started_as = ZELKOR_PROGRAM;
  press_f1("/nowhere");
  const fs::path built = started_as.parent_path().parent_path() /
                         "share/doc/zelkor/Zelkor_Handbook.html";
  EXPECT_EQ(words_of("file://" + built.string()), words());
  EXPECT_NE(0u, fs::file_size(built));
}

TEST_F(InstalledProgram, HandbookOfTheInstallationDirectoryComesFirst) {
  write_file(own, "x");
  const std::string common = "share/doc/zelkor/Zelkor_Handbook.html";
  write_file(common, "x");
  press_f1(folder.path());
  EXPECT_EQ(address(common), words());
}

}  // namespace
