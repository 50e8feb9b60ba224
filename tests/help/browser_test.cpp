#include "help/browser.h"

#include <FL/Fl.H>
#include <FL/Fl_Box.H>
#include <FL/Fl_Button.H>
#include <FL/Fl_Help_View.H>
#include <FL/Fl_Input.H>
#include <FL/fl_ask.H>
#include <gtest/gtest.h>

#include <fcntl.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <filesystem>
#include <functional>
#include <iterator>
#include <optional>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include "tests/gui/modal.h"
#include "tests/gui/user.h"
#include "tests/support/alone.h"
#include "tests/support/capture.h"
#include "tests/support/environment.h"
#include "tests/support/script.h"
#include "tests/support/temporary_folder.h"
#include "tests/support/wait_until.h"

namespace fs = std::filesystem;

namespace {

Fl_Help_View* view_in(Fl_Group& group) {
  for (int i = 0; i < group.children(); ++i) {
    if (auto* view = dynamic_cast<Fl_Help_View*>(group.child(i))) return view;
    if (auto* inner = dynamic_cast<Fl_Group*>(group.child(i)))
      if (Fl_Help_View* view = view_in(*inner)) return view;
  }
  return nullptr;
}

std::vector<Fl_Window*> windows_on_screen() {
  std::vector<Fl_Window*> windows;
  for (Fl_Window* w = Fl::first_window(); w != nullptr; w = Fl::next_window(w))
    windows.push_back(w);
  return windows;
}

// The view of the help viewer on screen; null when none is shown.
Fl_Help_View* viewer() {
  for (Fl_Window* window : windows_on_screen())
    if (Fl_Help_View* view = view_in(*window)) return view;
  return nullptr;
}

std::string shown_path() {
  const Fl_Help_View* const view = viewer();
  return view == nullptr ? "(none)" : view->filename();
}

std::string shown_text() {
  const Fl_Help_View* const view = viewer();
  return view == nullptr || view->value() == nullptr ? "(none)" : view->value();
}

class Browser : public testing::Test {
 protected:
  void TearDown() override {
    for (Fl_Window* window : windows_on_screen()) window->hide();
    Fl::check();
  }

  static void browser(const std::optional<std::string>& command) {
    set_environment("BROWSER", command);
  }
  // The words that the browser which notes them is given for a path.
  static std::string words_for(const std::string& path) {
    fs::remove("words");
    launch_html(path);
    return content_of("words");
  }

  TemporaryFolder folder;
  EnvironmentGuard guard{"BROWSER"};
};

// --- The browser's command ---

TEST_F(Browser, PathBecomesAnAddress) {
  const struct {
    const char* path;
    const char* address;
  } rows[] = {
      {"/tmp/a.html", "file:///tmp/a.html"},
      {"doc/a.html", "file:///doc/a.html"},
      {"C:/x.html", "file:///C:/x.html"},
      {"./a.html", "file:///./a.html"},
      {"//a.html", "file:////a.html"},
      {"\\a.html", "file:///a.html"},  // the shell takes the backslash
      {"/tmp/a@b%20c%s.html", "file:///tmp/a@b%20c%s.html"},
      {"/tmp/\xe9\xff.html", "file:///tmp/\xe9\xff.html"},
      {"", "file:///"},
  };
  browser(write_browser());
  for (const auto& row : rows)
    EXPECT_EQ(std::string(row.address) + "\n", words_for(row.path)) << row.path;
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

TEST_F(Browser, VariableMayHoldBlanksQuotesAndOptions) {
  write_browser("my browser");
  browser("'./my browser' --new \"a  b\"");
  EXPECT_EQ("--new\na  b\nfile:///tmp/a.html\n", words_for("/tmp/a.html"));
}

TEST_F(Browser, VariableMayHoldAnyShellCommand) {
  browser("two() { printf '%s.' \"$@\" >words; }; VALUE=x two");
  EXPECT_EQ("file:///tmp/a.html.", words_for("/tmp/a.html"));
}

// Deliberate: nothing is quoted.
TEST_F(Browser, PathIsReadByTheShell) {
  browser(write_browser());
  EXPECT_EQ("file:///tmp/a\nb.html\n", words_for("/tmp/a b.html"));
  EXPECT_EQ("file:///tmp/a b.html\n", words_for("/tmp/'a b'.html"));
}

TEST_F(Browser, LongPathIsPassedWhole) {
  browser(write_browser());
  const std::string path = "/" + std::string(100000, 'x');
  EXPECT_EQ("file://" + path + "\n", words_for(path));
}

TEST_F(Browser, EmptyVariableIsACommandAllTheSame) {
  fs::create_directory("file:");
  fs::create_directory("file:/tmp");
  write_script("file:/tmp/a.html", "echo run");
  browser("");
  // The address itself is the command then, a path relative to this folder.
  EXPECT_EQ("run\n", printed([] { launch_html("/tmp/a.html"); }));
  EXPECT_EQ("(none)", shown_path());
}

// --- Its output ---

TEST_F(Browser, OutputIsCopiedByteForByte) {
  const std::string outputs[] = {
      "",
      "one\n",
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

TEST_F(Browser, OutputOfTheCommandInTheBackgroundIsCopiedToo) {
  write_script("browser", "echo \"opened $1\"\n");
  browser("./browser");
  EXPECT_EQ("opened file:///tmp/a.html\n",
            printed([] { launch_html("/tmp/a.html"); }));
}

// The command goes on once its first line has arrived, or gives up after five
// seconds.
TEST_F(Browser, OutputIsCopiedAtOnce) {
  write_script("browser",
               "echo one\n"
               "i=0\n"
               "while [ ! -e seen ] && [ $i -lt 100 ]; do\n"
               "  i=$((i+1)); sleep 0.05\n"
               "done\n"
               "[ -e seen ] && echo two\n");
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

TEST_F(Browser, WaitsUntilTheOutputIsClosed) {
  // Held open until a reader of the fifo has come and gone.
  write_script("browser",
               "mkfifo f; (cat f >/dev/null) & echo x >f\n"
               "wait; echo done >done\n");
  browser("./browser");
  launch_html("/tmp/a.html");
  EXPECT_TRUE(fs::exists("done"));
}

TEST_F(Browser, DoesNotWaitForABrowserThatClosedItsOutput) {
  write_script("browser",
               "exec >&- 2>&-\n"
               "while [ ! -e go ]; do sleep 0.05; done\n"
               ": >ended\n");
  browser("./browser");
  launch_html("/tmp/a.html");
  EXPECT_FALSE(fs::exists("ended"));
  write_file("go", "");
  EXPECT_TRUE(wait_until([] { return fs::exists("ended"); }));
}

TEST_F(Browser, InterfaceIsKeptDrawnBeforeTheOutputIsRead) {
  int calls = 0;
  Fl::add_timeout(
      0,
      [](void* count) {
        ++*static_cast<int*>(count);
        write_file("drawn", "");
      },
      &calls);
  // Gives up after five seconds.
  write_script("browser",
               "i=0\n"
               "while [ ! -e drawn ] && [ $i -lt 100 ]; do\n"
               "  i=$((i+1)); sleep 0.05\n"
               "done\n"
               "[ -e drawn ] && echo drawn\n");
  browser("./browser");
  EXPECT_EQ("drawn\n", printed([] { launch_html("/tmp/a.html"); }));
  EXPECT_EQ(1, calls);
}

// Counts how often the toolkit deals with events.
struct TurnCounter {
  TurnCounter() { Fl::add_check(count, this); }
  ~TurnCounter() { Fl::remove_check(count, this); }
  TurnCounter(const TurnCounter&) = delete;
  TurnCounter& operator=(const TurnCounter&) = delete;
  static void count(void* self) { ++static_cast<TurnCounter*>(self)->turns; }
  int turns = 0;
};

TEST_F(Browser, InterfaceIsGivenOneTurnHoweverMuchIsRead) {
  write_file("output", std::string(5000, 'x') + "\none\ntwo\n");
  browser("cat output #");
  const TurnCounter counter;
  printed([] { launch_html("/tmp/a.html"); });
  EXPECT_EQ(1, counter.turns);
}

// Ended, and nobody asked how.
bool has_dead_children() {
  siginfo_t child{};
  return waitid(P_ALL, 0, &child, WEXITED | WNOHANG | WNOWAIT) == 0 &&
         child.si_pid != 0;
}

std::ptrdiff_t open_files() {
  const fs::directory_iterator files("/proc/self/fd");
  return std::distance(begin(files), end(files));
}

TEST_F(Browser, LeavesNoProcessAndNoOpenFileBehind) {
  browser(write_browser());
  launch_html("/tmp/a.html");  // what the toolkit opens, it opens once
  const std::ptrdiff_t before = open_files();
  launch_html("/tmp/a.html");
  EXPECT_EQ(before, open_files());
  EXPECT_FALSE(has_dead_children());
}

TEST_F(Browser, FailureOfAStartedBrowserIsNotNoticed) {
  const ModalWatcher watcher([](Fl_Window& window) {
    ADD_FAILURE() << "asked";
    window.hide();
  });
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

TEST_F(Browser, WithoutVariableTheViewerOpensAtOnce) {
  browser(std::nullopt);
  write_file("a.html", "<html><body>first</body></html>");
  bool asked = false;
  const ModalWatcher watcher([&](Fl_Window& window) {
    asked = true;
    window.hide();
  });
  const std::string path = folder.path() / "a.html";
  EXPECT_EQ("", printed([&] { launch_html(path); }));
  EXPECT_FALSE(asked);
  EXPECT_EQ(path, shown_path());
  EXPECT_EQ("<html><body>first</body></html>", shown_text());
}

TEST_F(Browser, ViewerTakesThePathAsItIs) {
  browser(std::nullopt);
  write_file("doc/a b@'c.html", "relative");
  launch_html("doc/a b@'c.html");
  EXPECT_EQ("doc/a b@'c.html", shown_path());
  EXPECT_EQ("relative", shown_text());
}

TEST_F(Browser, ViewerIsReusedForTheNextFile) {
  browser(std::nullopt);
  write_file("a.html", "first");
  write_file("b.html", "second");
  launch_html("a.html");
  const Fl_Help_View* const view = viewer();
  const Fl_Window* const window = view->window();
  EXPECT_EQ("first", shown_text());
  launch_html("b.html");
  EXPECT_EQ(view, viewer());
  EXPECT_EQ(window, viewer()->window());
  EXPECT_EQ(1u, windows_on_screen().size());
  EXPECT_EQ("second", shown_text());
}

TEST_F(Browser, ViewerThatWasClosedIsShownAgain) {
  browser(std::nullopt);
  write_file("a.html", "first");
  write_file("b.html", "second");
  launch_html("a.html");
  Fl_Help_View* const view = viewer();
  view->window()->hide();
  EXPECT_EQ(nullptr, viewer());
  launch_html("b.html");
  EXPECT_EQ(view, viewer());
  EXPECT_EQ("second", shown_text());
}

TEST_F(Browser, ViewerOfAFileThatCannotBeReadIsShown) {
  browser(std::nullopt);
  launch_html("none.html");
  EXPECT_NE(nullptr, viewer());
  write_file("empty.html", "");
  launch_html("empty.html");
  write_file("binary.html", std::string("<a\0\xff<b", 6));
  launch_html("binary.html");
  EXPECT_EQ("binary.html", shown_path());
}

// --- A browser that cannot be started ---

// Lets this process open one more file but no pipe, so that no command can be
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

// What a question shows.
struct Question {
  std::string text;
  std::vector<std::string> buttons;  // from left to right
};

Question question_in(Fl_Window& window) {
  Question question;
  std::vector<const Fl_Widget*> buttons;
  for (int i = 0; i < window.children(); ++i) {
    const Fl_Widget* const o = window.child(i);
    if (!o->visible() || o->label() == nullptr) continue;
    if (dynamic_cast<const Fl_Button*>(o) != nullptr)
      buttons.push_back(o);
    else if (o->box() == FL_NO_BOX)
      question.text = o->label();
  }
  std::sort(buttons.begin(), buttons.end(),
            [](auto* a, auto* b) { return a->x() < b->x(); });
  for (const Fl_Widget* button : buttons)
    question.buttons.emplace_back(button->label());
  return question;
}

Fl_Input& input_in(Fl_Window& window) {
  for (int i = 0; i < window.children(); ++i)
    if (auto* input = dynamic_cast<Fl_Input*>(window.child(i)))
      if (input->visible()) return *input;
  throw std::logic_error("nothing to edit");
}

void press(Fl_Window& window, const char* label) {
  Fl_Widget* const button = button_of(window, label);
  if (button == nullptr) throw std::logic_error(label);
  click(*button);
}

class UnstartableBrowser : public Browser {
 protected:
  using Step = std::function<void(Fl_Window&)>;

  void SetUp() override {
    load_fonts();
    browser("./browser");
    write_browser();
    write_file("a.html", "in the viewer");
  }

  // Shows all that a test may show: fonts are loaded from more files at a time
  // than a process without pipes may open.
  static void load_fonts() {
    const ModalWatcher user([](Fl_Window& window) {
      if (is_drawn(window)) press_key(window, FL_Escape);
    });
    fl_choice("question", "0", "1", "2");
    fl_input("prompt", "");
    browser(std::nullopt);
    write_file("fonts.html", "<h1>heading</h1>text");
    launch_html("fonts.html");
    while (!is_drawn(*viewer()->window())) Fl::wait(0.02);
    viewer()->window()->hide();
  }

  // Launches while no command can be started; the modal windows that come up
  // are given to the steps one after the other. The steps themselves have
  // pipes, which sanitizers need for their checks.
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
    return [label](Fl_Window& window) { press(window, label); };
  }
  // The toolkit's button of a box with an input field.
  static Step enter(const std::string& command) {
    return [command](Fl_Window& window) {
      input_in(window).value(command.c_str());
      press_key(window, FL_Enter);
    };
  }
  Step enter_once_pipes_work(const std::string& command) {
    return [this, command](Fl_Window& window) {
      pipes_work = true;
      enter(command)(window);
    };
  }
  static Step cancel_edit() {
    return [](Fl_Window& window) { press_key(window, FL_Escape); };
  }
  static void expect_nothing_shown() {
    EXPECT_FALSE(fs::exists("words"));
    EXPECT_EQ("(none)", shown_path());
  }

  NoPipes no_pipes;
  bool pipes_work = false;
};

TEST_F(UnstartableBrowser, LeadsToAQuestionWithThreeAnswers) {
  Question question;
  launch({[&](Fl_Window& window) {
    question = question_in(window);
    press(window, "Cancel Browser");
  }});
  EXPECT_EQ("Could not connect to external browser\n./browser file:///a.html &",
            question.text);
  std::vector<std::string> in_order = question.buttons;
  std::sort(in_order.begin(), in_order.end());
  EXPECT_EQ((std::vector<std::string>{"Cancel Browser", "Edit...",
                                      "Use Internal Browser"}),
            in_order);
}

TEST_F(UnstartableBrowser, InternalBrowserIsTheToolkitsChoiceZero) {
  launch({[](Fl_Window& window) { press_key(window, FL_Escape); }});
  EXPECT_EQ("in the viewer", shown_text());
}

TEST_F(UnstartableBrowser, EditIsTheToolkitsChoiceOne) {
  launch({[](Fl_Window& window) { press_key(window, FL_Enter); },
          [](Fl_Window& window) {
            EXPECT_EQ("./browser file:///a.html &",
                      std::string(input_in(window).value()));
            press_key(window, FL_Escape);
          }});
}

TEST_F(UnstartableBrowser, CommandInTheQuestionIsShownAsItIs) {
  Question question;
  launch({[&](Fl_Window& window) {
           question = question_in(window);
           press(window, "Cancel Browser");
         }},
         "/me@home/100%s.html");
  EXPECT_EQ(
      "Could not connect to external browser\n"
      "./browser file:///me@@home/100%s.html &",
      question.text);
}

TEST_F(UnstartableBrowser, LongCommandIsAskedAboutToo) {
  launch({answer("Cancel Browser")}, std::string(100000, 'x'));
  expect_nothing_shown();
}

TEST_F(UnstartableBrowser, UseInternalBrowserShowsTheFileInTheViewer) {
  launch({answer("Use Internal Browser")});
  EXPECT_EQ("a.html", shown_path());
  EXPECT_EQ("in the viewer", shown_text());
  EXPECT_FALSE(fs::exists("words"));
}

TEST_F(UnstartableBrowser, CancelBrowserShowsNothing) {
  launch({answer("Cancel Browser")});
  expect_nothing_shown();
}

TEST_F(UnstartableBrowser, EditOffersTheCurrentCommand) {
  std::string prompt, command;
  launch({answer("Edit..."),
          [&](Fl_Window& window) {
            prompt = question_in(window).text;
            command = input_in(window).value();
            press_key(window, FL_Escape);
          }},
         "/me@home/a.html");
  EXPECT_EQ("edit the command", prompt);
  EXPECT_EQ("./browser file:///me@home/a.html &", command);
}

TEST_F(UnstartableBrowser, CancelledEditShowsNothing) {
  launch({answer("Edit..."), cancel_edit()});
  expect_nothing_shown();
  launch(
      {answer("Edit..."), [](Fl_Window& window) { press(window, "Cancel"); }});
  expect_nothing_shown();
}

TEST_F(UnstartableBrowser, EditedCommandIsTriedAsItStands) {
  EXPECT_EQ("edited\n", printed([&] {
              launch({answer("Edit..."),
                      enter_once_pipes_work("echo edited; ./browser a b")});
            }));
  EXPECT_EQ("a\nb\n", content_of("words"));
  EXPECT_EQ("(none)", shown_path());
}

TEST_F(UnstartableBrowser, UnchangedCommandIsTriedAgain) {
  launch({answer("Edit..."), [&](Fl_Window& window) {
            pipes_work = true;
            press(window, "OK");
          }});
  EXPECT_EQ("file:///a.html\n", content_of("words"));
}

TEST_F(UnstartableBrowser, EditedCommandThatFailsTooIsAskedAboutAgain) {
  std::vector<std::string> texts;
  const auto note_and = [&](const char* label) -> Step {
    return [&texts, label](Fl_Window& window) {
      texts.push_back(question_in(window).text);
      press(window, label);
    };
  };
  launch({note_and("Edit..."), enter("first"), note_and("Edit..."),
          [](Fl_Window& window) {
            EXPECT_STREQ("first", input_in(window).value());
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

TEST_F(UnstartableBrowser, EmptiedCommandOpensTheViewer) {
  launch({answer("Edit..."), enter("")});
  EXPECT_EQ("in the viewer", shown_text());
  EXPECT_FALSE(fs::exists("words"));
}

TEST_F(UnstartableBrowser, VariableKeepsItsValueWhenTheCommandIsEdited) {
  launch({answer("Edit..."), enter_once_pipes_work("true")});
  launch_html("/b.html");
  EXPECT_EQ("file:///b.html\n", content_of("words"));
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

TEST_F(Browser, HandbookIsShownInTheViewerWithoutVariable) {
  alone([&] {
    browser(std::nullopt);
    setenv("QUMBRA_HOME", folder.path().c_str(), 1);
    write_file("share/doc/plomvek/Plomvek_Handbook.html", "handbook");
    launch_handbook("plomvek");
    EXPECT_EQ("handbook", shown_text());
    EXPECT_EQ(folder.path() / "share/doc/plomvek/Plomvek_Handbook.html",
              shown_path());
  });
}

}  // namespace
