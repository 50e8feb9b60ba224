// Output directories and pages that take no text. A page that cannot be created
// stops the process; what cannot be written to one that could is not noticed.

#include <gtest/gtest.h>

#include <sched.h>
#include <signal.h>
#include <stdlib.h>
#include <sys/mount.h>
#include <unistd.h>

#include <filesystem>
#include <functional>
#include <string>

#include "tests/faults/engine_run.h"

namespace fs = std::filesystem;

namespace {

// glibc's words, without a line number.
const char assertion[] =
    "zelkor: .*void print_links\\(char\\*\\*, bool\\).*html!=__null";

class Pages : public EngineRun {
 protected:
  Pages() {
    write_file("a.f90", "x\n");
    write_file("b.f90", "y\n");
  }

  // Runs, and expects the process to be stopped for a page.
  void expect_stop() {
    EXPECT_EXIT(run(), testing::KilledBySignal(SIGABRT), assertion);
  }

  // As page() gives it in the runs that after_report() watches.
  static std::string page_of_then(const std::string& title,
                                  const std::string& content) {
    return source_page(title, content, 1235911445);
  }
};

using PagesDeathTest = Pages;

TEST_F(PagesDeathTest, ADirectoryRemovedDuringTheRunStopsIt) {
  after_report(4, [] { fs::remove("HTML"); });
  expect_stop();
  EXPECT_EQ("x\n", content_of("a.f90"));
}

TEST_F(PagesDeathTest, ADirectoryLockedDuringTheRunStopsItAtTheNextPage) {
  after_report(5, [] {
    fs::permissions("HTML", fs::perms::owner_read | fs::perms::owner_exec);
  });
  expect_stop();
  fs::permissions("HTML", fs::perms::owner_all);
  EXPECT_EQ(page_of_then("a.f90", "x\n"), content_of("HTML/" + page_a));
  EXPECT_FALSE(fs::exists("HTML/" + page_b));
}

TEST_F(PagesDeathTest, AReadOnlyPageStopsTheRunAndKeepsItsText) {
  write_file("HTML/" + page_b, "kept");
  fs::permissions("HTML/" + page_b, fs::perms::owner_read);
  after_report(1, [] {});
  expect_stop();
  EXPECT_EQ(page_of_then("a.f90", "x\n"), content_of("HTML/" + page_a));
  EXPECT_EQ("kept", content_of("HTML/" + page_b));
}

TEST_F(PagesDeathTest, ALinkIntoAMissingDirectoryAsPageStopsTheRun) {
  fs::create_symlink("../nowhere/page.html", "HTML/" + page_a);
  expect_stop();
  EXPECT_FALSE(fs::exists("nowhere"));
}

TEST_F(PagesDeathTest, APageThatCannotBeCreatedIsNotReported) {
  verbose = 1;
  fs::create_directory("HTML/" + page_b);
  EXPECT_EQ(
      "END OF FILE\nEND OF FILE\n"
      "Generating XREF for a.f90...OK\n"
      "Generating XREF for b.f90...OK\n"
      "Generating HTML for a.f90...OK\n",
      printed([this] { expect_stop(); }));
}

// The page's name is the source's with a number and a longer extension.
TEST_F(PagesDeathTest, ASourceWhoseNameLeavesNoRoomForTheNumberStopsTheRun) {
  const std::string name = std::string(251, 'n') + ".f90";
  write_file(name, "x\n");
  FileList files({name});
  EXPECT_EXIT(run(files), testing::KilledBySignal(SIGABRT), assertion);
}

TEST_F(PagesDeathTest, AnOutputDirectoryThatLeavesNoRoomInThePathStopsTheRun) {
  html_dir = "";
  while (html_dir.size() < 4080) html_dir += std::string(199, 'd') + "/";
  html_dir.resize(4085);
  fs::create_directories(html_dir);
  expect_stop();
}

TEST_F(Pages, OutputDirectoriesOf255And1024And4000BytesTakeThePages) {
  for (const std::size_t length : {255u, 1024u, 4000u}) {
    html_dir = "";
    while (html_dir.size() < length) html_dir += std::string(198, 'e') + "/";
    html_dir.resize(length);
    if (html_dir.back() == '/') html_dir.back() = 'e';
    fs::create_directories(html_dir);
    run();
    EXPECT_EQ(page("a.f90", "x\n"), content_of(html_dir + "/" + page_a));
    EXPECT_TRUE(fs::exists(html_dir + "/index.html"));
  }
}

TEST_F(Pages, ADirectoryRemovedAfterTheLastPageLosesTheIndexAlone) {
  after_report(7, [] { fs::rename("HTML", "moved"); });
  run();
  EXPECT_EQ(messages_of_whole_run(), messages());
  EXPECT_EQ(page("b.f90", "y\n"), content_of("moved/" + page_b));
  EXPECT_FALSE(fs::exists("moved/index.html"));
}

TEST_F(Pages, ADanglingLinkAsPageMakesThePageItLeadsTo) {
  fs::create_symlink("../made.html", "HTML/" + page_a);
  fs::create_symlink("../made_index.html", "HTML/index.html");
  run();
  EXPECT_EQ(page("a.f90", "x\n"), content_of("made.html"));
  EXPECT_TRUE(fs::is_symlink("HTML/" + page_a));
  EXPECT_TRUE(fs::exists("made_index.html"));
}

TEST_F(Pages, ALinkIntoAMissingDirectoryAsIndexIsSkipped) {
  fs::create_symlink("../nowhere/index.html", "HTML/index.html");
  run();
  EXPECT_EQ(messages_of_whole_run(), messages());
  EXPECT_FALSE(fs::exists("nowhere"));
}

TEST_F(Pages, AFullDeviceAsPageTakesNothingAndTheRunGoesOn) {
  fs::create_symlink("/dev/full", "HTML/" + page_a);
  fs::create_symlink("/dev/full", "HTML/index.html");
  verbose = 1;
  EXPECT_EQ(
      "END OF FILE\nEND OF FILE\n"
      "Generating XREF for a.f90...OK\n"
      "Generating XREF for b.f90...OK\n"
      "Generating HTML for a.f90...OK\n"
      "Generating HTML for b.f90...OK\n"
      "Generating HTML index..\nDone!\n",
      printed([this] { run(); }));
  EXPECT_EQ(messages_of_whole_run(), messages());
  EXPECT_EQ("/dev/full", fs::read_symlink("HTML/" + page_a));
  EXPECT_EQ(page("b.f90", "y\n"), content_of("HTML/" + page_b));
}

// A small file system at HTML while it lives, seen by this process alone. Only
// the system's administrator may mount one.
class SmallDisk {
 public:
  explicit SmallDisk(const char* limits) {
    as_administrator([&] {
      is_mounted =
          unshare(CLONE_NEWNS) == 0 &&
          mount("none", "/", nullptr, MS_REC | MS_PRIVATE, nullptr) == 0 &&
          mount("none", "HTML", "tmpfs", 0, limits) == 0;
    });
  }
  ~SmallDisk() {
    if (is_mounted) as_administrator([] { umount("HTML"); });
  }
  SmallDisk(const SmallDisk&) = delete;
  SmallDisk& operator=(const SmallDisk&) = delete;

  bool mounted() const { return is_mounted; }

 private:
  bool is_mounted = false;
};

TEST_F(Pages, AFullDiskCutsPagesAndTheRunGoesOn) {
  const SmallDisk disk("size=64k,mode=777");
  if (!disk.mounted()) GTEST_SKIP() << "mounting is not allowed here";
  std::string long_text;
  for (int line = 0; line < 10000; ++line) long_text += "x = 1\n";
  write_file("a.f90", long_text);
  run();
  EXPECT_EQ(messages_of_whole_run(), messages());
  EXPECT_EQ(long_text, content_of("a.f90"));
  const std::string whole = page("a.f90", long_text);
  const std::string cut = content_of("HTML/" + page_a);
  EXPECT_LT(0u, cut.size());
  EXPECT_GE(65536u, cut.size());
  EXPECT_EQ(whole.substr(0, cut.size()), cut);
  EXPECT_EQ("", content_of("HTML/" + page_b));
  EXPECT_EQ("", content_of("HTML/index.html"));

  // With room made, the next run writes all.
  write_file("a.f90", "x\n");
  run();
  EXPECT_EQ(page("a.f90", "x\n"), content_of("HTML/" + page_a));
  EXPECT_EQ(page("b.f90", "y\n"), content_of("HTML/" + page_b));
}

// The directory itself counts as one.
TEST_F(PagesDeathTest, ADiskThatTakesNoFurtherFileStopsTheRun) {
  const SmallDisk disk("nr_inodes=2,mode=777");
  if (!disk.mounted()) GTEST_SKIP() << "mounting is not allowed here";
  after_report(1, [] {});
  expect_stop();
  EXPECT_EQ(page_of_then("a.f90", "x\n"), content_of("HTML/" + page_a));
  EXPECT_FALSE(fs::exists("HTML/" + page_b));
}

}  // namespace
