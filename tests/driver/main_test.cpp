// The program from outside: what it makes of its arguments, what it prints and
// how it ends. A press on Generate HTML tells by the reports of the run which
// files were selected, and in which order.

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

  // The exit status of the program, which is to end by itself.
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

// A window would fail, with a message of its own.
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

TEST_F(StartUpWithoutDisplay, HelpAsLastWordPrintsTheUsageAndNothingElse) {
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

// Nobody reads the pipe, and nothing but the program keeps it from a signal.
TEST_F(StartUpWithoutDisplay, HelpThatNobodyReadsEndsTheProgramAsEver) {
  ASSERT_EQ(0, mkfifo("gone", 0600));
  start({"--default-signal=PIPE", "sh", "-c",
         "exec ./zelkor -h 3<>gone >gone 3>&-"},
        "env");
  EXPECT_EQ(0, end());
  EXPECT_EQ("", errors());
}

TEST_F(StartUpWithoutDisplay, UnknownWordsEndTheProgramInTheToolkitsParser) {
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

  // With nothing selected a press on the button does nothing; otherwise the
  // empty output directory would bring up an alert, and as long as that is
  // open the window does not close.
  void expect_nothing_selected() {
    window.press_generate();
    close();
    EXPECT_EQ("", output());
    EXPECT_EQ("", errors());
  }

  ProgramWindow window;
};

// What a run over files of one line reports.
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

TEST_F(StartUpWithDisplay, NothingIsSelectedUnlessFilesHaveAnExtension) {
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

// An icon is not drawn, but selects files as well.
TEST_F(StartUpWithDisplay, SwitchesOfTheToolkitComeFirst) {
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

TEST_F(StartUpWithDisplay, AClosedStandardErrorIsNeitherTheDisplayNorAPage) {
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
  // What a command prints when it is run by a browser that F1 starts. The
  // options are those of env for the program.
  std::string told_to(const std::string& command, const Words& options) {
    write_file("share/doc/zelkor/Zelkor_Handbook.html", "x");
    const std::string browser =
        write_script("browser", command + " >told.new\nmv told.new told\n");
    Words words = options;
    words.insert(words.end(), {"QUMBRA_HOME=" + folder.path().string(),
                               "BROWSER=" + quoted(browser), "./zelkor"});
    fs::remove("told");
    window.pass_over_present();
    start(words, "env");
    EXPECT_TRUE(window.wait_for(*program));
    window.press_key_over_window("F1");
    EXPECT_TRUE(wait_until([] { return fs::exists("told"); }));
    close();
    return content_of("told");
  }
};

TEST_F(StartedBrowser, HasTheStandardStreamsAlone) {
  close_range(3, ~0U, CLOSE_RANGE_CLOEXEC);  // those of this process
  // The last one is that of ls, for the directory.
  EXPECT_EQ("0\n1\n2\n3\n", told_to("ls /proc/self/fd", {}));
}

// Bit n - 1 stands for the signal n. The shell ignores SIGINT and SIGQUIT for
// what it runs in the background.
TEST_F(StartedBrowser, IgnoresTheSignalsThatTheProgramWasToldToIgnore) {
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
    const std::string mask = told_to("sed -n 's/SigIgn://p' /proc/self/status",
                                     {"--default-signal", c.option});
    EXPECT_EQ(bit(SIGINT) | bit(SIGQUIT) | c.ignored,
              std::stoul(mask, nullptr, 16) & own)
        << c.option;
  }
}

// --- The window before the search ---

// A search below two links to the directory itself has no end.
class EndlessSearch : public StartUpWithDisplay {
 protected:
  EndlessSearch() {
    fs::create_symlink(".", "one");
    fs::create_symlink(".", "two");
  }

  const Words search = {"-r", "-e", "f90"};
};

TEST_F(EndlessSearch, TheWindowIsDrawnAlready) {
  ASSERT_TRUE(open(search));
  EXPECT_TRUE(wait_until([this] { return window.is_drawn(); }));
  EXPECT_TRUE(program->running());
}

TEST_F(EndlessSearch, IsLeftOutWhenTheWindowIsClosedBeforeItIsDrawn) {
  const WindowsKeptOffTheScreen others;
  start(search);
  others.close_next();
  EXPECT_EQ(0, end());
}

}  // namespace
