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
#include <string>
#include <vector>

#include "driver/version.h"
#include "gui/dialog.h"
#include "gui/special_browser.h"
#include "tests/gui/main_window_fixture.h"
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

// The toolkit keeps handlers, and the handbook's place is determined once, so
// each test runs in a new process.
class HelpKeys : public MainWindowTest {
 protected:
  void SetUp() override {
    MainWindowTest::SetUp();
    set_environment("QUMBRA_HOME", home);
    set_environment("BROWSER", write_browser("tools/browser"));
  }
  void start() {
    show();
    offer_help_keys(window.get());
  }

  // Whether the handbook was shown since the last call.
  bool shown_in_browser() const {
    if (!fs::exists("tools/words")) return false;
    EXPECT_EQ(words_of("file://" + handbook), content_of("tools/words"));
    fs::remove("tools/words");
    return true;
  }

  const std::string home = path_of("me@100%s");
  const std::string handbook = home + "/share/doc/zelkor/Zelkor_Handbook.html";
  EnvironmentGuard qumbra_home{"QUMBRA_HOME"};
  EnvironmentGuard browser{"BROWSER"};
};

TEST_F(HelpKeys, F1ShowsTheHandbookWhateverHasTheFocus) {
  alone([&] {
    write_file(handbook, "handbook");
    start();
    for (Fl_Widget* widget : {static_cast<Fl_Widget*>(ui.output_dir_input),
                              static_cast<Fl_Widget*>(ui.potential_files),
                              static_cast<Fl_Widget*>(ui.add_button),
                              static_cast<Fl_Widget*>(nullptr)}) {
      Fl::focus(widget);
      press_key(*window, f1, FL_NUM_LOCK | FL_CAPS_LOCK);
      EXPECT_TRUE(shown_in_browser());
    }
    set_environment("BROWSER", std::nullopt);
    press_key(*window, f1);
    ASSERT_NE(nullptr, help_view());
    EXPECT_STREQ("handbook", help_view()->value());
    help_view()->window()->hide();
  });
}

// The handbook would open behind the modal box and could not be used.
TEST_F(HelpKeys, ShiftF1ShowsTheAboutBoxInWhichHelpKeysDoNothing) {
  alone([&] {
    write_file(handbook, "x");
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
      EXPECT_EQ((Place{120, 10, 180, 108}),
                place_of(*dialog.work_area()->child(0)));
      const std::string text =
          dynamic_cast<Fl_Multiline_Output&>(*dialog.work_area()->child(1))
              .value();
      for (const char* part :
           {"Zelkor", "F1", "based in part on the work of the FLTK project"})
        EXPECT_NE(std::string::npos, text.find(part)) << part;
      press_key(box, f1);
      press_key(box, f1, FL_SHIFT);
      EXPECT_EQ(&box, Fl::modal());
      click(*button_of(box, "okay"));
    });
    press_key(*window, f1, FL_SHIFT | FL_NUM_LOCK | FL_CAPS_LOCK);
    EXPECT_EQ(1, boxes);
    EXPECT_EQ(nullptr, Fl::modal());
    EXPECT_FALSE(shown_in_browser());
    press_key(*window, f1);
    EXPECT_TRUE(shown_in_browser());
  });
}

std::vector<int> keys_handed_on;

int note_key(int event) {
  if (event == FL_SHORTCUT) keys_handed_on.push_back(Fl::event_key());
  return 0;
}

TEST_F(HelpKeys, LeaveOtherKeysToOtherHandlers) {
  alone([&] {
    write_file(handbook, "x");
    Fl::add_handler(note_key);
    start();  // later handlers come first
    const MessageBoxes boxes;
    press_key(*window, f1);
    EXPECT_TRUE(shown_in_browser());
    EXPECT_EQ(std::vector<int>(), keys_handed_on);
    const std::vector<int> keys = {FL_F + 2, FL_F + 11, FL_Help, '1'};
    for (const int key : keys) press_key(*window, key);
    EXPECT_EQ(keys, keys_handed_on);
    EXPECT_FALSE(shown_in_browser());
    EXPECT_EQ(Texts{}, boxes.seen());
  });
}

struct Greedy : Fl_Box {
  using Fl_Box::Fl_Box;
  int handle(int event) override {
    if (event == FL_FOCUS || event == FL_UNFOCUS) return 1;
    return event == FL_KEYBOARD && Fl::event_key() == f1 ? 1 : 0;
  }
};

TEST_F(HelpKeys, LeaveF1ToAWidgetThatHandlesIt) {
  alone([&] {
    write_file(handbook, "x");
    start();
    Fl_Window other(10, 10, 100, 100);
    auto* const greedy = new Greedy(0, 0, 100, 100);
    other.end();
    show_and_wait(other);
    Fl::focus(greedy);
    press_key(other, f1);
    EXPECT_FALSE(shown_in_browser());
    Fl::focus(nullptr);
    press_key(other, f1);
    EXPECT_TRUE(shown_in_browser());
  });
}

// The handbook that belongs to this program would be beside its folder. An
// empty handbook counts as missing.
TEST_F(HelpKeys, NameBothPlacesOfAMissingHandbook) {
  alone([&] {
    start();
    const std::string own =
        fs::read_symlink("/proc/self/exe").parent_path().parent_path() /
        "share/doc/zelkor/Zelkor_Handbook.html";
    const std::string message =
        "i The handbook is neither\n" +
        path_of("me@@100%s/share/doc/zelkor/Zelkor_Handbook.html") + "\nnor\n" +
        own + "\nQUMBRA_HOME names the directory below which it is sought.";
    const MessageBoxes boxes;
    press_key(*window, f1);
    write_file(handbook, "");
    press_key(*window, f1);
    EXPECT_EQ((Texts{message, message}), boxes.seen());
    EXPECT_FALSE(shown_in_browser());
    write_file(handbook, "x");
    press_key(*window, f1);
    EXPECT_EQ(2u, boxes.seen().size());
    EXPECT_TRUE(shown_in_browser());
  });
}

// --- The installed program ---

TEST(InstalledProgram, F1ShowsTheHandbookOfTheFirstPrefixThatHasOne) {
  const TemporaryFolder folder;
  const std::string home = folder.path();
  const std::string handbook = "share/doc/zelkor/Zelkor_Handbook.html";
  const std::string own = home + "/prefix/" + handbook;
  const std::string common = home + "/" + handbook;
  const std::string built =
      fs::path(ZELKOR_PROGRAM).parent_path().parent_path() / handbook;
  write_file(own, "x");
  write_file(common, "x");
  fs::create_directories("prefix/bin");
  fs::copy_file(ZELKOR_PROGRAM, "prefix/bin/zelkor");
  fs::create_symlink("prefix/bin/zelkor", "z");
  const struct {
    std::string program, qumbra_home, shown;
  } cases[] = {
      {home + "/prefix/bin/zelkor", "/nowhere", own},
      {home + "/z", "/nowhere", own},
      {ZELKOR_PROGRAM, "/nowhere", built},
      {home + "/prefix/bin/zelkor", home, common},
  };
  const std::string browser = write_browser();
  ProgramWindow window;
  for (const auto& c : cases) {
    SCOPED_TRACE(c.shown);
    window.pass_over_present();
    Program program({"env", "HOME=" + home, "BROWSER=" + browser,
                     "QUMBRA_HOME=" + c.qumbra_home, c.program},
                    "output", "errors");
    ASSERT_TRUE(window.wait_for(program));
    window.press_key_over_window("F1");
    ASSERT_TRUE(wait_until([] { return fs::exists("words"); }));
    EXPECT_EQ(words_of("file://" + c.shown), content_of("words"));
    EXPECT_NE(0u, fs::file_size(c.shown));
    fs::remove("words");
    window.press_key("Escape");
    ASSERT_TRUE(wait_until([&] { return !program.running(); }));
    EXPECT_EQ(0, program.wait());
  }
}

}  // namespace
