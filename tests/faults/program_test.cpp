// The program when its environment fails: standard streams that cannot be
// written, a display that goes away, a window that is closed during a run.

#include "tests/support/program.h"

#include <gtest/gtest.h>

#include <fcntl.h>
#include <signal.h>
#include <stdlib.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <filesystem>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "tests/support/capture.h"
#include "tests/support/page_text.h"
#include "tests/support/program_window.h"
#include "tests/support/temporary_folder.h"
#include "tests/support/virtual_display.h"
#include "tests/support/wait_until.h"

namespace fs = std::filesystem;

namespace {

using Words = std::vector<std::string>;

// A source that blocks a run until it is served. It is a named pipe: opening it
// for reading waits for a writer.
class HeldSource {
 public:
  explicit HeldSource(std::string pipe_path) : path(std::move(pipe_path)) {
    if (mkfifo(path.c_str(), 0600) != 0) ADD_FAILURE() << "no pipe " << path;
  }
  ~HeldSource() {
    if (writer >= 0) close(writer);
  }
  HeldSource(const HeldSource&) = delete;
  HeldSource& operator=(const HeldSource&) = delete;

  // Waits until it is opened for reading.
  bool reached() {
    return wait_until([this] {
      writer = open(path.c_str(), O_WRONLY | O_NONBLOCK);
      return writer >= 0;
    });
  }

  void serve(const std::string& text) {
    EXPECT_EQ(static_cast<ssize_t>(text.size()),
              write(writer, text.data(), text.size()));
    close(writer);
    writer = -1;
  }

 private:
  std::string path;
  int writer = -1;
};

class ProgramRun : public testing::Test {
 protected:
  ProgramRun() {
    setenv("HOME", folder.path().c_str(), 1);
    fs::create_directory("pages");
  }
  ~ProgramRun() override { program.reset(); }

  // Starts the program with its standard streams redirected as in the shell.
  void launch(const Words& arguments, const std::string& streams = "") {
    Words words = {"sh", "-c", "exec \"$0\" \"$@\" " + streams, ZELKOR_PROGRAM};
    words.insert(words.end(), arguments.begin(), arguments.end());
    program = std::make_unique<Program>(words, folder.path() / "output",
                                        folder.path() / "errors");
  }

  // Launches the program and waits for its window.
  void start(const Words& arguments, const std::string& streams = "") {
    window->pass_over_present();
    launch(arguments, streams);
    ASSERT_TRUE(window->wait_for(*program)) << errors();
  }

  // Enters the output directory and starts a run.
  void press_generate() {
    window->name_output_directory("pages");
    window->press_generate();
  }

  // Waits until the program ends by itself. Returns its exit status.
  int end() {
    if (!wait_until([this] { return !program->running(); })) {
      ADD_FAILURE() << "the program does not end";
      return -1000;
    }
    return program->wait();
  }

  // Waits for the last page of a run, and closes the window.
  void finish() {
    EXPECT_TRUE(wait_until([] { return is_whole_page("pages/index.html"); }));
    window->close();
    EXPECT_EQ(0, end());
    EXPECT_EQ("", errors());
  }

  std::string output() { return content_of(folder.path() / "output"); }
  std::string errors() { return errors_in(folder.path() / "errors"); }

  static int page_count() {
    return static_cast<int>(std::distance(fs::directory_iterator("pages"),
                                          fs::directory_iterator()));
  }

  const TemporaryFolder folder;
  std::unique_ptr<VirtualDisplay> display = std::make_unique<VirtualDisplay>();
  std::unique_ptr<ProgramWindow> window = std::make_unique<ProgramWindow>();
  std::unique_ptr<Program> program;
};

TEST_F(ProgramRun, WritesWholePagesWhenItsReportsCannotBeWritten) {
  const char* streams[] = {">/dev/full", ">&-", "<&- >&- 2>&-",
                           // A pipe without a reader.
                           "3<>gone >gone 3>&-"};
  ASSERT_EQ(0, mkfifo("gone", 0600));
  for (const std::string led : streams) {
    SCOPED_TRACE(led);
    fs::remove_all("pages");
    fs::create_directory("pages");
    write_file("a.f90", "x = 1\n");
    start({"-e", "f90", "-v", "5"}, led);
    press_generate();
    finish();
    EXPECT_EQ(2, page_count());
    for (const auto& page : fs::directory_iterator("pages")) {
      EXPECT_EQ(std::string::npos,
                content_of(page.path()).find("Generating HTML"));
      EXPECT_TRUE(is_whole_page(page.path()));
    }
  }
}

TEST_F(ProgramRun, EndsWithAMessageWithoutADisplay) {
  window.reset();
  display.reset();
  unsetenv("DISPLAY");
  write_file("a.f90", "x = 1\n");
  launch({"-e", "f90"});
  EXPECT_EQ(1, end());
  EXPECT_EQ("", output());
  EXPECT_EQ(0u, errors().find("Can't open display: ")) << errors();
}

TEST_F(ProgramRun, EndsWithAMessageWhenTheDisplayGoesAway) {
  start({});
  window->disconnect();
  display.reset();
  EXPECT_EQ(1, end());
  EXPECT_NE("", errors());
}

class HeldRun : public ProgramRun {
 protected:
  // Starts a run over a.f90, b.f90 and c.f90, and lets it continue until it
  // opens b.f90 for its page.
  void run_up_to_page_b() {
    write_file("a.f90", "x = 1\n");
    write_file("c.f90", "z = 1\n");
    start({"-e", "f90", "-v", "1"});
    press_generate();
    ASSERT_TRUE(source.reached());
    source.serve("y = 1\n");
    // The next pass has started, so b.f90 is not open any more.
    ASSERT_TRUE(reported("Generating XREF for ./a.f90...OK\n"));
    ASSERT_TRUE(source.reached());
    source.serve("y = 1\n");
    ASSERT_TRUE(reported("Generating HTML for ./a.f90...OK\n"));
    ASSERT_TRUE(source.reached());
  }

  bool reported(const std::string& text) {
    return wait_until([&] { return output().find(text) != std::string::npos; });
  }

  static std::string reports_of_whole_run() {
    std::string text = "END OF FILE\nEND OF FILE\nEND OF FILE\n";
    for (const char* pass : {"XREF", "HTML"})
      for (const char* file : {"a", "b", "c"})
        text += std::string("Generating ") + pass + " for ./" + file +
                ".f90...OK\n";
    return text + "Generating HTML index..\nDone!\n";
  }

  void expect_the_run_to_end() {
    source.serve("y = 1\n");
    EXPECT_EQ(0, end());
    EXPECT_EQ(reports_of_whole_run(), output());
    EXPECT_EQ("", errors());
    EXPECT_EQ(4, page_count());
    EXPECT_TRUE(is_whole_page("pages/index.html"));
  }

  HeldSource source{"b.f90"};
};

TEST_F(HeldRun, LeavesWholePagesWhenTheDisplayGoesAway) {
  run_up_to_page_b();
  window->disconnect();
  display.reset();
  source.serve("y = 1\n");
  EXPECT_EQ(1, end());
  EXPECT_NE("", errors());
  EXPECT_EQ(2, page_count());
  for (const auto& page : fs::directory_iterator("pages"))
    EXPECT_TRUE(is_whole_page(page.path()));
  EXPECT_EQ("x = 1\n", content_of("a.f90"));
}

TEST_F(HeldRun, IsCompletedAfterTheWindowIsClosed) {
  run_up_to_page_b();
  window->close();
  expect_the_run_to_end();
}

TEST_F(HeldRun, IsCompletedAfterEscapeIsPressed) {
  run_up_to_page_b();
  window->press_key("Escape");
  expect_the_run_to_end();
}

TEST_F(HeldRun, IgnoresFurtherPressesOfGenerate) {
  run_up_to_page_b();
  for (int press = 0; press < 3; ++press) window->press_generate();
  source.serve("y = 1\n");
  finish();
  EXPECT_EQ(reports_of_whole_run(), output());
}

TEST_F(HeldRun, AbortsWhenTheOutputDirectoryIsMoved) {
  run_up_to_page_b();
  fs::rename("pages", "moved");
  source.serve("y = 1\n");
  EXPECT_EQ(-SIGABRT, end());
  EXPECT_EQ(
      "zelkor: void print_links(char**, bool): Assertion `html!=__null' "
      "failed.\n",
      errors());
  for (const auto& page : fs::directory_iterator("moved"))
    EXPECT_TRUE(is_whole_page(page.path()));
}

TEST_F(ProgramRun, FollowsACircleOfLinksAsFarAsTheSystemAllows) {
  write_file("sub/a.f90", "x = 1\n");
  fs::create_directory_symlink("..", "sub/up");
  start({"-r", "-e", "f90", "-v", "1"});
  press_generate();
  finish();
  // Linux follows 40 links in a path.
  std::string path = "./";
  for (int links = 0; links <= 40; ++links) {
    EXPECT_NE(std::string::npos, output().find("Generating HTML for " + path +
                                               "sub/a.f90...OK\n"));
    path += "sub/up/";
  }
  EXPECT_EQ(42, page_count());
}

TEST_F(ProgramRun, WorksInADirectoryWithALongPath) {
  const std::string program_folder = folder.path();
  for (const std::size_t length : {255u, 1024u, 4090u}) {
    SCOPED_TRACE(length);
    // Each step uses a relative path, as the whole path may be too long.
    std::string path = program_folder;
    while (path.size() < length) {
      const std::string name(
          std::min<std::size_t>(
              200, std::max<std::size_t>(1, length - path.size() - 1)),
          'd');
      fs::create_directory(name);
      fs::current_path(name);
      path += "/" + name;
    }
    write_file("a.f90", "x = 1\n");
    fs::create_directory("pages");
    start({"-e", "f90"});
    press_generate();
    finish();
    fs::current_path(program_folder);
  }
}

TEST_F(ProgramRun, WritesPagesForTwentyThousandFiles) {
  if (getenv("ZELKOR_LARGE_TESTS") == nullptr)
    GTEST_SKIP() << "takes many seconds; set ZELKOR_LARGE_TESTS";
  const int count = 20000;
  // Links are created much faster than files.
  write_file("s0.f90", "x = 1\n");
  for (int i = 1; i < count; ++i)
    fs::create_hard_link("s0.f90", "s" + std::to_string(i) + ".f90");
  start({"-e", "f90"});
  press_generate();
  finish();
  EXPECT_EQ(count + 1, page_count());
}

}  // namespace
