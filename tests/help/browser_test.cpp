#include "help/browser.h"

#include <FL/Fl.H>
#include <FL/Fl_Help_View.H>
#include <FL/Fl_Input.H>
#include <FL/fl_ask.H>
#include <gtest/gtest.h>

#include <fcntl.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <filesystem>
#include <functional>
#include <optional>
#include <set>
#include <string>
#include <thread>
#include <vector>

#include "tests/gui/main_window_fixture.h"
#include "tests/gui/user.h"
#include "tests/support/alone.h"
#include "tests/support/capture.h"
#include "tests/support/environment.h"
#include "tests/support/open_files.h"
#include "tests/support/script.h"
#include "tests/support/temporary_folder.h"
#include "tests/support/wait_until.h"

namespace fs = std::filesystem;

namespace {

class Browser : public testing::Test {
 protected:
  void TearDown() override {
    while (Fl_Window* window = Fl::first_window()) window->hide();
    Fl::check();
  }

  static void browser(const std::optional<std::string>& command) {
    set_environment("BROWSER", command);
  }
  static std::string shown_path() {
    return help_view() == nullptr ? "(none)" : help_view()->filename();
  }
  static std::string shown_text() {
    return help_view() == nullptr ? "(none)" : help_view()->value();
  }

  TemporaryFolder folder;
  EnvironmentGuard guard{"BROWSER"};
};

// --- The browser's command ---

// Deliberate: nothing is quoted, so the shell interprets the path.
TEST_F(Browser, ReceivesThePathAsAnAddress) {
  const std::string long_path = "/" + std::string(100000, 'x');
  const struct {
    std::string path, address;
  } rows[] = {
      {"/tmp/a.html", "file:///tmp/a.html"},
      {"doc/a.html", "file:///doc/a.html"},
      {"C:/x.html", "file:///C:/x.html"},
      {"./a.html", "file:///./a.html"},
      {"//a.html", "file:////a.html"},
      {"\\a.html", "file:///a.html"},
      {"/tmp/a b.html", "file:///tmp/a\nb.html"},
      {"/tmp/'a b'.html", "file:///tmp/a b.html"},
      {"/tmp/a@b%20c%s.html", "file:///tmp/a@b%20c%s.html"},
      {"/tmp/\xe9\xff.html", "file:///tmp/\xe9\xff.html"},
      {"", "file:///"},
      {long_path, "file://" + long_path},
  };
  browser(write_browser());
  for (const auto& row : rows) {
    fs::remove("words");
    launch_html(row.path);
    EXPECT_EQ(row.address + "\n", content_of("words"));
  }
  EXPECT_EQ("(none)", shown_path());
}

TEST_F(Browser, CommandIsTheVariableABlankTheAddressAndAnAmpersand) {
  const std::string value = " tr '\\0' '|' </proc/$$/cmdline >command; : ";
  browser(value);
  launch_html("/tmp/a.html");
  const std::string command = content_of("command");
  const std::string expected = "|" + value + " file:///tmp/a.html &|";
  ASSERT_GE(command.size(), expected.size()) << command;
  EXPECT_EQ(expected, command.substr(command.size() - expected.size()));
}

// The command is then the address, a path relative to this folder.
TEST_F(Browser, EmptyVariableIsStillACommand) {
  fs::create_directories("file:/tmp");
  write_script("file:/tmp/a.html", "echo run");
  browser("");
  EXPECT_EQ("run\n", printed([] { launch_html("/tmp/a.html"); }));
  EXPECT_EQ("(none)", shown_path());
}

// --- Its output ---

TEST_F(Browser, OutputIsCopiedByteForByte) {
  const std::string outputs[] = {
      "",
      "one\ntwo\n",
      "no line end",
      "\n\n",
      "a\r\nb\r\n",
      "%s %d %n @\\\n",
      "\x01\x7f\x80\xff\n",
      std::string(1022, 'x') + "\n",
      std::string(1023, 'x') + "\n",
      std::string(1024, 'x') + "\n",
      std::string(1025, 'x'),
      std::string(100000, 'x') + "\nrest",
  };
  browser("cat output #");
  for (const std::string& output : outputs) {
    write_file("output", output);
    const std::string copied = printed([] { launch_html("/tmp/a.html"); });
    EXPECT_TRUE(output == copied)
        << output.size() << " bytes, copied " << copied.size();
  }
}

// A shell command that waits for a file, but no longer than five seconds.
std::string wait_for_file(const std::string& name) {
  return "i=0\n"
         "while [ ! -e " +
         name +
         " ] && [ $i -lt 100 ]; do\n"
         "  i=$((i+1)); sleep 0.05\n"
         "done\n"
         "[ -e " +
         name + " ] && ";
}

// The command goes on once its first line has arrived.
TEST_F(Browser, OutputIsCopiedAtOnceAndCompletely) {
  write_script("browser", "echo one\n" + wait_for_file("seen") + "echo two\n");
  browser("./browser");
  EXPECT_EQ("one\ntwo\n", printed([] {
              std::thread reader([] {
                if (wait_until([] { return bytes_printed() == 4; }))
                  write_file("seen", "");
              });
              launch_html("/tmp/a.html");
              reader.join();
            }));
}

TEST_F(Browser, InterfaceIsDrawnOnceBeforeTheOutputIsRead) {
  int turns = 0;
  const auto note = [](void* count) {
    ++*static_cast<int*>(count);
    write_file("drawn", "");
  };
  write_script("browser", wait_for_file("drawn") + "printf 'x\\ny\\nz\\n'\n");
  browser("./browser");
  Fl::add_check(note, &turns);
  EXPECT_EQ("x\ny\nz\n", printed([] { launch_html("/tmp/a.html"); }));
  Fl::remove_check(note, &turns);
  EXPECT_EQ(1, turns);
}

TEST_F(Browser, LeavesNoProcessAndNoOpenFileBehind) {
  browser(write_browser());
  launch_html("/tmp/a.html");  // what the toolkit opens, it opens once
  const std::ptrdiff_t before = open_files();
  launch_html("/tmp/a.html");
  EXPECT_EQ(before, open_files());
  siginfo_t ended{};
  waitid(P_ALL, 0, &ended, WEXITED | WNOHANG | WNOWAIT);
  EXPECT_EQ(0, ended.si_pid);
}

void hide_and_fail(Fl_Window& window) {
  ADD_FAILURE() << "asked";
  window.hide();
}

TEST_F(Browser, FailureAfterTheStartIsIgnored) {
  const ModalWatcher watcher(hide_and_fail);
  for (const char* command :
       {"echo tried; false", "echo tried; ./no-such-browser 2>/dev/null",
        "echo tried; kill -9 $$ #"}) {
    browser(command);
    EXPECT_EQ("tried\n", printed([] { launch_html("/tmp/a.html"); }))
        << command;
    EXPECT_EQ("(none)", shown_path());
  }
}

// --- The help viewer ---

TEST_F(Browser, ViewerOpensAtOnceWithoutTheVariable) {
  browser(std::nullopt);
  const char* const path = "doc/a b@'c.html";
  write_file(path, "<html><body>first</body></html>");
  const ModalWatcher watcher(hide_and_fail);
  EXPECT_EQ("", printed([&] { launch_html(path); }));
  EXPECT_EQ(path, shown_path());
  EXPECT_EQ("<html><body>first</body></html>", shown_text());
}

TEST_F(Browser, ViewerIsReusedEvenAfterItWasClosed) {
  browser(std::nullopt);
  write_file("a.html", "first");
  write_file("b.html", "second");
  launch_html("a.html");
  const Fl_Help_View* const view = help_view();
  EXPECT_EQ("first", shown_text());
  launch_html("b.html");
  EXPECT_EQ(view, help_view());
  EXPECT_EQ(nullptr, Fl::next_window(view->window()));
  EXPECT_EQ("second", shown_text());
  view->window()->hide();
  launch_html("a.html");
  EXPECT_EQ(view, help_view());
  EXPECT_EQ("first", shown_text());
}

// --- A browser that cannot be started ---

// Allows this process to open one more file but no pipe, so no command can be
// started.
class NoPipes {
 public:
  NoPipes() { getrlimit(RLIMIT_NOFILE, &before); }
  ~NoPipes() { end(); }
  NoPipes(const NoPipes&) = delete;
  NoPipes& operator=(const NoPipes&) = delete;

  void begin() const {
    const int first_free = open("/dev/null", O_RDONLY);
    close(first_free);
    rlimit limit = before;
    limit.rlim_cur = static_cast<rlim_t>(first_free) + 1;
    setrlimit(RLIMIT_NOFILE, &limit);
  }
  void end() const { setrlimit(RLIMIT_NOFILE, &before); }

 private:
  rlimit before{};
};

class UnstartableBrowser : public Browser {
 protected:
  using Step = std::function<void(Fl_Window&)>;

  void SetUp() override {
    load_fonts();
    browser("./browser");
    write_browser();
    write_file("a.html", "in the viewer");
  }

  // Shows every kind of window once: loading a font needs more open files than
  // a process without pipes may have.
  static void load_fonts() {
    const ModalWatcher user([](Fl_Window& window) {
      if (is_drawn(window)) press_key(window, FL_Escape);
    });
    fl_choice("question", "0", "1", "2");
    fl_input("prompt", "");
    browser(std::nullopt);
    write_file("fonts.html", "<h1>heading</h1>text");
    launch_html("fonts.html");
    while (!is_drawn(*help_view()->window())) Fl::wait(0.02);
    help_view()->window()->hide();
  }

  // Launches while no command can be started. Each modal window that appears is
  // passed to the next step. The steps themselves have pipes, which sanitizers
  // need for their checks.
  void launch(const std::vector<Step>& steps,
              const std::string& path = "a.html") {
    pipes_work = false;
    std::size_t next = 0;
    const ModalWatcher user([&](Fl_Window& window) {
      no_pipes.end();
      if (!is_drawn(window)) {
      } else if (next < steps.size()) {
        steps[next++](window);
      } else {
        ADD_FAILURE() << "asked once more: " << question_in(window).text;
        window.hide();
      }
      if (!pipes_work) no_pipes.begin();
    });
    no_pipes.begin();
    launch_html(path);
    no_pipes.end();
    EXPECT_EQ(steps.size(), next);
  }

  static Step answer(const char* label) {
    return [label](Fl_Window& window) { click(*button_of(window, label)); };
  }
  // The toolkit's button of a box with an input field.
  static Step enter(const std::string& command) {
    return [command](Fl_Window& window) {
      first_in<Fl_Input>(window)->value(command.c_str());
      press_key(window, FL_Enter);
    };
  }
  Step once_pipes_work(const Step& step) {
    return [this, step](Fl_Window& window) {
      pipes_work = true;
      step(window);
    };
  }
  static Step press(int key) {
    return [key](Fl_Window& window) { press_key(window, key); };
  }
  static void expect_nothing_shown() {
    EXPECT_FALSE(fs::exists("words"));
    EXPECT_EQ("(none)", shown_path());
  }

  NoPipes no_pipes;
  bool pipes_work = false;
};

TEST_F(UnstartableBrowser, LeadsToAQuestionWithThreeAnswers) {
  launch({[&](Fl_Window& window) {
           const Question question = question_in(window);
           EXPECT_EQ(
               "Could not connect to external browser\n"
               "./browser file:///me@@home/100%s.html &",
               question.text);
           EXPECT_EQ((std::set<std::string>{"Cancel Browser", "Edit...",
                                            "Use Internal Browser"}),
                     question.buttons);
           answer("Cancel Browser")(window);
         }},
         "/me@home/100%s.html");
  expect_nothing_shown();
  launch({answer("Cancel Browser")}, std::string(100000, 'x'));
  expect_nothing_shown();
}

// It is the toolkit's choice 0.
TEST_F(UnstartableBrowser, UseInternalBrowserShowsTheFileInTheViewer) {
  for (const Step& step : {answer("Use Internal Browser"), press(FL_Escape)}) {
    launch({step});
    EXPECT_EQ("a.html", shown_path());
    EXPECT_EQ("in the viewer", shown_text());
    EXPECT_FALSE(fs::exists("words"));
    help_view()->window()->hide();
  }
}

// Edit... is the toolkit's choice 1.
TEST_F(UnstartableBrowser, EditOffersTheCurrentCommandAndCanBeCancelled) {
  for (const Step& edit : {answer("Edit..."), press(FL_Enter)})
    for (const Step& cancel : {answer("Cancel"), press(FL_Escape)}) {
      launch({edit,
              [&](Fl_Window& window) {
                EXPECT_EQ("edit the command", question_in(window).text);
                EXPECT_STREQ("./browser file:///me@home/a.html &",
                             first_in<Fl_Input>(window)->value());
                cancel(window);
              }},
             "/me@home/a.html");
      expect_nothing_shown();
    }
}

TEST_F(UnstartableBrowser, EditedCommandIsRunOnceUnchanged) {
  EXPECT_EQ("edited\n", printed([&] {
              launch({answer("Edit..."),
                      once_pipes_work(enter("echo edited; ./browser a b"))});
            }));
  EXPECT_EQ("a\nb\n", content_of("words"));
  EXPECT_EQ("(none)", shown_path());
  launch_html("/b.html");
  EXPECT_EQ("file:///b.html\n", content_of("words"));
}

TEST_F(UnstartableBrowser, UnchangedCommandIsTriedAgain) {
  launch({answer("Edit..."), once_pipes_work(answer("OK"))});
  EXPECT_EQ("file:///a.html\n", content_of("words"));
}

TEST_F(UnstartableBrowser, EditedCommandThatFailsLeadsToAnotherQuestion) {
  std::vector<std::string> texts;
  const auto note_and = [&](const char* label) -> Step {
    return [&texts, label](Fl_Window& window) {
      texts.push_back(question_in(window).text);
      click(*button_of(window, label));
    };
  };
  launch({note_and("Edit..."), enter("first"), note_and("Edit..."),
          [](Fl_Window& window) {
            EXPECT_STREQ("first", first_in<Fl_Input>(window)->value());
            enter("second")(window);
          },
          note_and("Use Internal Browser")});
  EXPECT_EQ((std::vector<std::string>{
                "Could not connect to external browser\n"
                "./browser file:///a.html &",
                "Could not connect to external browser\nfirst",
                "Could not connect to external browser\nsecond"}),
            texts);
  EXPECT_EQ("in the viewer", shown_text());
}

TEST_F(UnstartableBrowser, EmptyCommandOpensTheViewer) {
  launch({answer("Edit..."), enter("")});
  EXPECT_EQ("in the viewer", shown_text());
  EXPECT_FALSE(fs::exists("words"));
}

// --- The handbook ---

TEST_F(Browser, HandbookIsLaunchedFromTheInstallationDirectory) {
  alone([&] {
    browser(write_browser());
    setenv("QUMBRA_HOME", folder.path().c_str(), 1);
    launch_handbook("zelkor");
    EXPECT_EQ(words_of("file://" + folder.path().string() +
                       "/share/doc/zelkor/Zelkor_Handbook.html"),
              content_of("words"));
  });
}

}  // namespace
