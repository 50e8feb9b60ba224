// The program seen from outside: its arguments, its output and its exit status.
// The reports of a run show which files were selected, and in which order.

#include <gtest/gtest.h>

#include <linux/close_range.h>
#include <signal.h>
#include <stdlib.h>
#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>
#include <iterator>
#include <memory>
#include <string>
#include <vector>

#include "driver/command_line.h"
#include "driver/version.h"
#include "tests/support/capture.h"
#include "tests/support/environment.h"
#include "tests/support/program.h"
#include "tests/support/program_window.h"
#include "tests/support/script.h"
#include "tests/support/temporary_folder.h"
#include "tests/support/wait_until.h"

namespace fs = std::filesystem;

namespace {

using Words = std::vector<std::string>;

class StartUp : public testing::Test {
 protected:
  StartUp() { fs::create_symlink(ZELKOR_PROGRAM, "zelkor"); }
  ~StartUp() override { program.reset(); }

  void start(Words arguments, const std::string& name = "./zelkor") {
    arguments.insert(arguments.begin(), name);
    program = std::make_unique<Program>(arguments, folder.path() / "output",
                                        folder.path() / "errors");
  }

  // Waits for the program to end by itself. Returns its exit status.
  int end() {
    if (!wait_until([this] { return !program->running(); })) {
      ADD_FAILURE() << "the program does not end";
      program.reset();
      return -1;
    }
    return program->wait();
  }

  std::string output() { return content_of(folder.path() / "output"); }
  std::string errors() { return errors_in(folder.path() / "errors"); }

  TemporaryFolder folder;
  std::unique_ptr<Program> program;
};

// Opening a window would fail with a message.
class StartUpWithoutDisplay : public StartUp {
 protected:
  StartUpWithoutDisplay() { unsetenv("DISPLAY"); }

 private:
  EnvironmentGuard display{"DISPLAY"};
};

std::string joined(const Words& words) {
  std::string line;
  for (const std::string& word : words) line += word + ' ';
  return line;
}

TEST_F(StartUpWithoutDisplay, HelpOptionAtTheEndPrintsOnlyTheUsage) {
  const std::string name = folder.path() / "100%s%n";
  fs::create_symlink(ZELKOR_PROGRAM, name);
  for (const Words& arguments :
       {Words{"-h"}, Words{"data-h"}, Words{"-e", "f90", "-h"}}) {
    SCOPED_TRACE(joined(arguments));
    start(arguments, name);
    EXPECT_EQ(0, end());
    EXPECT_EQ(printed([&] { print_usage(name.c_str()); }), output());
    EXPECT_EQ("", errors());
  }
}

// Nobody reads the pipe, and the program starts with the default action for
// SIGPIPE, which would end it.
TEST_F(StartUpWithoutDisplay, BrokenPipeDoesNotChangeTheExitStatus) {
  ASSERT_EQ(0, mkfifo("gone", 0600));
  start({"--default-signal=PIPE", "sh", "-c",
         "exec ./zelkor -h 3<>gone >gone 3>&-"},
        "env");
  EXPECT_EQ(0, end());
  EXPECT_EQ("", errors());
}

TEST_F(StartUpWithoutDisplay, ToolkitsParserRejectsUnknownWords) {
  write_file("main.f90", "");
  const Words cases[] = {
      {"main.f90"},
      {"-e"},
      {"-v", "2", "-e", "f90"},
      {"-h", "-e", "f90"},
      {"-geometry", "10x10", "main.f90"},
      {"100%s%n"},
  };
  for (const Words& arguments : cases) {
    SCOPED_TRACE(joined(arguments));
    start(arguments);
    EXPECT_EQ(1, end());
    EXPECT_EQ("", output());
    // The toolkit's own text.
    EXPECT_EQ(0u, errors().find("options are:\n -")) << errors();
    EXPECT_EQ('\n', errors().back());
  }
}

class StartUpWithDisplay : public StartUp {
 protected:
  // Starts the program and waits for its window.
  bool open(const Words& arguments) {
    window.pass_over_present();
    start(arguments);
    return window.wait_for(*program);
  }

  // Closes the window, and with it the program.
  void close() {
    window.close();
    EXPECT_EQ(0, end());
  }

  // Generates pages in the directory "pages" and closes the program. Returns
  // how many there are.
  std::ptrdiff_t generate() {
    fs::create_directory("pages");
    window.name_output_directory("pages");
    window.press_generate();
    EXPECT_TRUE(wait_until([] {
      if (!fs::exists("pages/index.html")) return false;
      const std::string page = content_of("pages/index.html");
      return page.find("</body>\n</html>\n") != std::string::npos;
    }));
    close();
    const fs::directory_iterator pages("pages");
    return std::distance(begin(pages), fs::end(pages));
  }

  // With a file selected, a press on the button would show an alert about the
  // empty output directory, and the window would not close.
  void expect_nothing_selected() {
    window.press_generate();
    close();
    EXPECT_EQ("", output());
    EXPECT_EQ("", errors());
  }

  ProgramWindow window;
};

// The reports of a run over files without units.
std::string run_reports(const Words& paths) {
  std::string passes[3];
  for (const std::string& path : paths) {
    passes[0] += "END OF FILE\n";
    passes[1] += "Generating XREF for " + path + "...OK\n";
    passes[2] += "Generating HTML for " + path + "...OK\n";
  }
  return passes[0] + passes[1] + passes[2] + "Generating HTML index..\nDone!\n";
}

TEST_F(StartUpWithDisplay, EscapeEndsTheProgram) {
  ASSERT_TRUE(open({}));
  EXPECT_EQ("Zelkor  " + version_text(build_date()), window.title());
  window.press_key_over_window("Escape");
  EXPECT_EQ(0, end());
}

TEST_F(StartUpWithDisplay, SelectsNothingWithoutAMatchingExtension) {
  write_file("a.f90", "x\n");
  for (const Words& arguments :
       {Words{}, Words{"-r", "-v", "1"}, Words{"-e", ".f90", "-v", "1"}}) {
    SCOPED_TRACE(joined(arguments));
    ASSERT_TRUE(open(arguments));
    expect_nothing_selected();
  }
}

TEST_F(StartUpWithDisplay, SelectsTheFilesThatTheOptionsAskFor) {
  for (const char* path : {"b.f90", "a.F90", "m10.f90", "m2.f90", "sub/d.f90",
                           "sub/e.F90", "sub/f.f", "c.f95"})
    write_file(path, "x\ny\n");
  const std::string all =
      run_reports({"./a.F90", "./b.f90", "./m2.f90", "./m10.f90", "./sub/d.f90",
                   "./sub/e.F90"});
  const struct {
    Words arguments;
    std::ptrdiff_t pages;
    std::string output;
  } cases[] = {
      {{"-r", "-e", "f90", "-e", "F90", "-v", "2"}, 7, all},
      {{"-e", "F90", "-v", "5"}, 2, "---x\n" + run_reports({"./a.F90"})},
      {{"-e", "F90", "-v", "abc"}, 2, ""},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(joined(c.arguments));
    fs::remove_all("pages");
    ASSERT_TRUE(open(c.arguments));
    EXPECT_EQ(c.pages, generate());
    EXPECT_EQ(c.output, output());
    EXPECT_EQ("", errors());
  }
}

// A window that starts as an icon is not drawn, but files are still selected.
TEST_F(StartUpWithDisplay, AcceptsToolkitSwitchesBeforeItsOptions) {
  write_file("a.f90", "x\n");
  const std::string display = getenv("DISPLAY");
  unsetenv("DISPLAY");
  start({"-display", display, "-scheme", "plastic", "-iconic", "-e", "f90",
         "-v", "1"});
  setenv("DISPLAY", display.c_str(), 1);
  ASSERT_TRUE(window.wait_for(*program));
  generate();
  EXPECT_EQ(run_reports({"./a.f90"}), output());
}

TEST_F(StartUpWithDisplay, ReplacesAClosedStandardErrorByTheNullDevice) {
  write_file("a.f90", "x\n");
  start({"-c", "exec ./zelkor -e f90 2>&-"}, "sh");
  ASSERT_TRUE(window.wait_for(*program));
  EXPECT_EQ(
      "/dev/null",
      fs::read_symlink("/proc/" + std::to_string(program->id()) + "/fd/2"));
  EXPECT_EQ(2, generate());
}

class StartedBrowser : public StartUpWithDisplay {
 protected:
  // What a command prints when a browser that F1 starts runs it. The options
  // are for env, which starts the program.
  std::string printed_in_browser(const std::string& command,
                                 const Words& options) {
    write_file("share/doc/zelkor/Zelkor_Handbook.html", "x");
    const std::string browser = write_script(
        "browser", command + " >printed.new\nmv printed.new printed\n");
    Words words = options;
    words.insert(words.end(), {"QUMBRA_HOME=" + folder.path().string(),
                               "BROWSER=" + quoted(browser), "./zelkor"});
    fs::remove("printed");
    window.pass_over_present();
    start(words, "env");
    EXPECT_TRUE(window.wait_for(*program));
    window.press_key_over_window("F1");
    EXPECT_TRUE(wait_until([] { return fs::exists("printed"); }));
    close();
    return content_of("printed");
  }
};

TEST_F(StartedBrowser, InheritsOnlyTheStandardStreams) {
  close_range(3, ~0U, CLOSE_RANGE_CLOEXEC);  // those of this process
  // ls opens 3 to read the directory.
  EXPECT_EQ("0\n1\n2\n3\n", printed_in_browser("ls /proc/self/fd", {}));
}

TEST_F(StartedBrowser, InheritsTheChoiceOfX11) {
  EXPECT_EQ("x11\n",
            printed_in_browser("echo $FLTK_BACKEND", {"-u", "FLTK_BACKEND"}));
}

// Bit n - 1 is the signal n. The shell ignores SIGINT and SIGQUIT for
// what it runs in the background.
TEST_F(StartedBrowser, IgnoresTheSignalsThatTheProgramIgnoredAtStart) {
  const auto bit = [](int number) { return 1UL << (number - 1); };
  const auto own = bit(32) - 1;  // those above are the C library's
  const struct {
    const char* option;
    unsigned long ignored;
  } cases[] = {
      {"--default-signal", 0},
      {"--ignore-signal=HUP", bit(SIGHUP)},
      {"--ignore-signal=PIPE", bit(SIGPIPE)},
  };
  for (const auto& c : cases) {
    const std::string mask =
        printed_in_browser("sed -n 's/SigIgn://p' /proc/self/status",
                           {"--default-signal", c.option});
    EXPECT_EQ(bit(SIGINT) | bit(SIGQUIT) | c.ignored,
              std::stoul(mask, nullptr, 16) & own)
        << c.option;
  }
}

// --- The window before the search ---

// Two links to the directory itself make the search practically endless.
class EndlessSearch : public StartUpWithDisplay {
 protected:
  EndlessSearch() {
    fs::create_symlink(".", "one");
    fs::create_symlink(".", "two");
  }

  const Words search = {"-r", "-e", "f90"};
};

TEST_F(EndlessSearch, StartsAfterTheWindowIsDrawn) {
  ASSERT_TRUE(open(search));
  EXPECT_TRUE(wait_until([this] { return window.is_drawn(); }));
  EXPECT_TRUE(program->running());
}

TEST_F(EndlessSearch, IsSkippedWhenTheWindowIsClosedBeforeItIsDrawn) {
  const WindowsKeptOffTheScreen others;
  start(search);
  others.close_next();
  EXPECT_EQ(0, end());
}

}  // namespace
