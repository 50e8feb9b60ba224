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
#include <memory>
#include <sstream>
#include <string>
#include <vector>

#include "driver/version.h"
#include "tests/support/capture.h"
#include "tests/support/program.h"
#include "tests/support/program_window.h"
#include "tests/support/script.h"
#include "tests/support/temporary_folder.h"
#include "tests/support/virtual_display.h"
#include "tests/support/wait_until.h"

namespace fs = std::filesystem;

namespace {

using Words = std::vector<std::string>;

// The scheme, worked out anew: years since 2007, thirds of the year, and the
// days of a third, 32 to a month.
std::string version_of_build() {
  const std::string months = "JanFebMarAprMayJunJulAugSepOctNovDec";
  std::istringstream date(build_date());
  std::string month_word;
  int day = 0;
  int year = 0;
  date >> month_word >> day >> year;
  const int month = static_cast<int>(months.find(month_word)) / 3;
  std::ostringstream version;
  version << year - 2007 << '.' << month / 4 << '.' << (month % 4) * 32 + day;
  return version.str();
}

class StartUp : public testing::Test {
 protected:
  StartUp() {
    setenv("HOME", folder.path().c_str(), 1);
    unsetenv("DISPLAY");
    fs::create_symlink(ZELKOR_PROGRAM, "zelkor");
  }

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

std::string usage(const std::string& name) {
  return "usage: (order of options is important)\n"
         "\t" +
         name +
         " [-r] [-e <ext> [-e <ext> ...]] [-v <level>] [-h|--h|-help|--help]\n"
         " -r           initiates a recursive search in the current directory "
         "for the extensions\n"
         " -e <ext>     adds an extension to the search list\n"
         " -v <level>   turns on verbose reporting to desired level (>0)\n"
         " -h           generates this help message\n";
}

std::string joined(const Words& words) {
  std::string line;
  for (const std::string& word : words) line += word + ' ';
  return line;
}

TEST_F(StartUp, HelpAsLastWordPrintsTheUsageAndNothingElse) {
  const Words cases[] = {
      {"-h"},       {"--h"},          {"-help"},
      {"--help"},   {"data-h"},       {"-e", "f90", "-h"},
      {"-v", "-h"}, {"x", "y", "-h"},
  };
  for (const Words& arguments : cases) {
    SCOPED_TRACE(joined(arguments));
    start(arguments);
    EXPECT_EQ(0, end());
    EXPECT_EQ(usage("./zelkor"), output());
    EXPECT_EQ("", errors());
  }
}

TEST_F(StartUp, TheUsageNamesTheProgramAsItWasCalled) {
  const std::string name = folder.path() / "100%s%n";
  fs::create_symlink(ZELKOR_PROGRAM, name);
  start({"-h"}, name);
  EXPECT_EQ(0, end());
  EXPECT_EQ(usage(name), output());
}

// Nobody reads the pipe, and nothing but the program keeps it from a signal.
TEST_F(StartUp, HelpThatNobodyReadsEndsTheProgramAsEver) {
  ASSERT_EQ(0, mkfifo("gone", 0600));
  start({"--default-signal=PIPE", "sh", "-c",
         "exec ./zelkor -h 3<>gone >gone 3>&-"},
        "env");
  EXPECT_EQ(0, end());
  EXPECT_EQ("", errors());
}

// The toolkit's own text: a heading and its fifteen switches.
bool is_switch_list(const std::string& text) {
  if (text.empty() || text.back() != '\n') return false;
  std::istringstream lines(text);
  std::string line;
  if (!std::getline(lines, line) || line != "options are:") return false;
  int switches = 0;
  for (; std::getline(lines, line); ++switches)
    if (line.compare(0, 2, " -") != 0) return false;
  return switches == 15;
}

// Without a display the window would fail, with a message of its own.
TEST_F(StartUp, UnknownWordsEndTheProgramInTheToolkitsParser) {
  write_file("main.f90", "");
  const Words cases[] = {
      {"main.f90"},
      {"-e"},
      {"-v"},
      {"-r", "-e"},
      {"-r", "-v"},
      {"-r", "-r"},
      {"-R"},
      {"-"},
      {"-e", "f90", "-r"},
      {"-v", "2", "-e", "f90"},
      {"-h", "-e", "f90"},
      {"-e", "f90", "main.f90"},
      {"-geometry", "10x10", "main.f90"},
      {"100%s%n"},
  };
  for (const Words& arguments : cases) {
    SCOPED_TRACE(joined(arguments));
    start(arguments);
    EXPECT_EQ(1, end());
    EXPECT_EQ("", output());
    EXPECT_TRUE(is_switch_list(errors())) << errors();
  }
}

TEST_F(StartUp, AMissingDisplayEndsTheProgram) {
  for (const Words& arguments :
       {Words{"-display", ":x"}, Words{"-display", ":x", "-e", "f90"}}) {
    start(arguments);
    EXPECT_EQ(1, end());
    EXPECT_EQ("", output());
    EXPECT_EQ("Can't open display: :x\n", errors());
  }
}

class StartUpWithDisplay : public StartUp {
 protected:
  ~StartUpWithDisplay() override { program.reset(); }

  // Starts the program and waits for its window.
  bool open(const Words& arguments) {
    window.pass_over_present();
    start(arguments);
    return is_open();
  }

  bool is_open() { return window.wait_for(*program); }
  void close() { window.close(); }
  void press_generate() { window.click(115, 25); }

  // Generates pages in the directory "pages" and closes the program. Returns
  // the names of the pages.
  std::vector<std::string> generate() {
    fs::create_directory("pages");
    window.click(150, 77);
    window.type("pages");
    press_generate();
    EXPECT_TRUE(wait_until([] {
      if (!fs::exists("pages/index.html")) return false;
      const std::string page = content_of("pages/index.html");
      const std::string end = "</body>\n</html>\n";
      return page.size() > end.size() &&
             page.compare(page.size() - end.size(), end.size(), end) == 0;
    }));
    close();
    EXPECT_EQ(0, end());

    std::vector<std::string> names;
    for (const auto& entry : fs::directory_iterator("pages"))
      names.push_back(entry.path().filename());
    return names;
  }

  // With nothing selected a press on the button does nothing; otherwise the
  // empty output directory would bring up an alert, and as long as that is
  // open the window does not close.
  void expect_nothing_selected() {
    press_generate();
    close();
    EXPECT_EQ(0, end());
    EXPECT_EQ("", output());
    EXPECT_EQ("", errors());
  }

  VirtualDisplay server;
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

TEST_F(StartUpWithDisplay, TheWindowIsNamedAfterTheVersion) {
  ASSERT_TRUE(open({}));
  EXPECT_EQ("Zelkor  " + version_of_build(), window.title());
}

TEST_F(StartUpWithDisplay, WithoutArgumentsNothingIsSelected) {
  write_file("a.f90", "x\n");
  ASSERT_TRUE(open({}));
  expect_nothing_selected();
}

TEST_F(StartUpWithDisplay, ClosingTheWindowEndsTheProgram) {
  ASSERT_TRUE(open({}));
  close();
  EXPECT_EQ(0, end());
  EXPECT_EQ("", output());
  EXPECT_EQ("", errors());
}

TEST_F(StartUpWithDisplay, EscapeEndsTheProgram) {
  ASSERT_TRUE(open({}));
  window.click(265, 230);
  window.press_key("Escape");
  EXPECT_EQ(0, end());
}

TEST_F(StartUpWithDisplay, SelectsTheFilesOfTheExtensionsRecursively) {
  for (const char* path : {"b.f90", "a.F90", "m10.f90", "m2.f90", "sub/d.f90",
                           "sub/e.F90", "sub/f.f", "c.f95"})
    write_file(path, "x\n");
  ASSERT_TRUE(open({"-r", "-e", "f90", "-e", "F90", "-v", "2"}));
  EXPECT_EQ(7u, generate().size());
  EXPECT_EQ(run_reports({"./a.F90", "./b.f90", "./m2.f90", "./m10.f90",
                         "./sub/d.f90", "./sub/e.F90"}),
            output());
  EXPECT_EQ("", errors());
}

TEST_F(StartUpWithDisplay, WithoutRecursionDirectoriesAreLeftOut) {
  for (const char* path : {"b.f90", "sub/d.f90"}) write_file(path, "x\n");
  ASSERT_TRUE(open({"-e", "f90", "-v", "1"}));
  generate();
  EXPECT_EQ(run_reports({"./b.f90"}), output());
}

TEST_F(StartUpWithDisplay, ARepeatedExtensionIsSearchedOnce) {
  for (const char* path : {"a.f90", "b.f90"}) write_file(path, "x\n");
  ASSERT_TRUE(open({"-e", "f90", "-e", "f90", "-v", "1"}));
  generate();
  EXPECT_EQ(run_reports({"./a.f90", "./b.f90"}), output());
}

TEST_F(StartUpWithDisplay, VerbosityComesFromTheLevel) {
  write_file("a.f90", "x = 1\ny = 2\n");
  const struct {
    Words options;
    std::string output;
  } cases[] = {
      {{}, ""},
      {{"-v", "0"}, ""},
      {{"-v", "abc"}, ""},
      {{"-v", "-1"}, ""},
      {{"-v", "1"}, run_reports({"./a.f90"})},
      {{"-v", "5"}, "---x = 1\n" + run_reports({"./a.f90"})},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(joined(c.options));
    Words arguments = {"-e", "f90"};
    arguments.insert(arguments.end(), c.options.begin(), c.options.end());
    fs::remove_all("pages");
    ASSERT_TRUE(open(arguments));
    EXPECT_EQ(2u, generate().size());
    EXPECT_EQ(c.output, output());
  }
}

TEST_F(StartUpWithDisplay, SwitchesOfTheToolkitComeFirst) {
  write_file("a.f90", "x\n");
  const std::string display = getenv("DISPLAY");
  unsetenv("DISPLAY");
  start({"-display", display, "-scheme", "plastic", "-e", "f90", "-v", "1"});
  setenv("DISPLAY", display.c_str(), 1);
  ASSERT_TRUE(is_open());
  generate();
  EXPECT_EQ(run_reports({"./a.f90"}), output());
}

TEST_F(StartUpWithDisplay, RecursionAloneSelectsNothing) {
  write_file("a.f90", "x\n");
  ASSERT_TRUE(open({"-r", "-v", "1"}));
  expect_nothing_selected();
}

TEST_F(StartUpWithDisplay, AnExtensionWithItsPointSelectsNothing) {
  write_file("a.f90", "x\n");
  ASSERT_TRUE(open({"-r", "-e", ".f90", "-v", "1"}));
  expect_nothing_selected();
}

TEST_F(StartUpWithDisplay, ARemovedWorkingDirectorySelectsNothing) {
  const std::string program_path = folder.path() / "zelkor";
  fs::create_directory("gone");
  fs::current_path("gone");
  fs::remove(folder.path() / "gone");
  start({"-r", "-e", "f90", "-v", "1"}, program_path);
  fs::current_path(folder.path());
  ASSERT_TRUE(is_open());
  expect_nothing_selected();
}

TEST_F(StartUpWithDisplay, ASecondProgramHasAWindowOfItsOwn) {
  ASSERT_TRUE(open({}));
  const std::unique_ptr<Program> first = std::move(program);
  ASSERT_TRUE(open({}));
  close();
  EXPECT_EQ(0, end());
  EXPECT_TRUE(first->running());
}

TEST_F(StartUpWithDisplay, AClosedStandardErrorIsNeitherTheDisplayNorAPage) {
  write_file("a.f90", "x\n");
  start({"-c", "exec ./zelkor -e f90 2>&-"}, "sh");
  ASSERT_TRUE(is_open());
  EXPECT_EQ(
      "/dev/null",
      fs::read_symlink("/proc/" + std::to_string(program->id()) + "/fd/2"));
  EXPECT_EQ(2u, generate().size());
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
    EXPECT_TRUE(is_open());
    window.click(265, 230);
    window.press_key("F1");
    EXPECT_TRUE(wait_until([] { return fs::exists("told"); }));
    close();
    EXPECT_EQ(0, end());
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

TEST_F(StartUpWithDisplay, NeverStartsARunByItself) {
  write_file("a.f90", "x\n");
  fs::create_directory("HTML");
  ASSERT_TRUE(open({"-e", "f90", "-v", "1"}));
  close();
  EXPECT_EQ(0, end());
  EXPECT_EQ("", output());
  EXPECT_TRUE(fs::is_empty("HTML"));
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
  EXPECT_EQ("Zelkor  " + version_of_build(), window.title());
  EXPECT_TRUE(wait_until([this] { return window.is_drawn(); }));
  EXPECT_TRUE(program->running());
}

TEST_F(EndlessSearch, IsLeftOutWhenTheWindowIsClosedBeforeItIsDrawn) {
  const WindowsKeptOffTheScreen others;
  start(search);
  others.close_next();
  EXPECT_EQ(0, end());
}

TEST_F(StartUpWithDisplay, AnIconSelectsFilesAsWell) {
  write_file("a.f90", "x\n");
  ASSERT_TRUE(open({"-iconic", "-e", "f90", "-v", "1"}));
  generate();
  EXPECT_EQ(run_reports({"./a.f90"}), output());
}

}  // namespace
