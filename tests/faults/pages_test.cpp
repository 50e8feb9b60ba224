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
};

using PagesDeathTest = Pages;

TEST_F(PagesDeathTest, ADirectoryLockedDuringTheRunStopsItAtTheNextPage) {
  after_report(5, [] {
    fs::permissions("HTML", fs::perms::owner_read | fs::perms::owner_exec);
  });
  expect_stop();
  fs::permissions("HTML", fs::perms::owner_all);
  expect_page_a("x\n");
  EXPECT_FALSE(fs::exists("HTML/" + page_b));
}

TEST_F(PagesDeathTest, AReadOnlyPageStopsTheRunAndKeepsItsText) {
  write_file("HTML/" + page_b, "kept");
  fs::permissions("HTML/" + page_b, fs::perms::owner_read);
  expect_stop();
  expect_page_a("x\n");
  EXPECT_EQ("kept", content_of("HTML/" + page_b));
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

TEST_F(Pages, OutputDirectoriesOf255And1024And4000BytesTakeThePages) {
  for (const std::size_t length : {255u, 1024u, 4000u}) {
    html_dir = "";
    while (html_dir.size() < length) html_dir += std::string(198, 'e') + "/";
    html_dir.resize(length);
    if (html_dir.back() == '/') html_dir.back() = 'e';
    fs::create_directories(html_dir);
    run();
    expect_page(html_dir + "/" + page_a, "a.f90", "x\n");
    EXPECT_TRUE(fs::exists(html_dir + "/index.html"));
  }
}

TEST_F(Pages, ADirectoryRemovedAfterTheLastPageLosesTheIndexAlone) {
  after_report(7, [] { fs::rename("HTML", "moved"); });
  expect_whole_run();
  expect_page("moved/" + page_b, "b.f90", "y\n");
  EXPECT_FALSE(fs::exists("moved/index.html"));
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
      printed([this] { expect_whole_run(); }));
  EXPECT_EQ("/dev/full", fs::read_symlink("HTML/" + page_a));
  expect_page_b("y\n");
}

// A small file system at HTML while it lives, seen by this process alone. Only
// the system's administrator may mount one.
class SmallDisk {
 public:
  SmallDisk() {
    as_administrator([&] {
      mounted =
          unshare(CLONE_NEWNS) == 0 &&
          mount("none", "/", nullptr, MS_REC | MS_PRIVATE, nullptr) == 0 &&
          mount("none", "HTML", "tmpfs", 0, "size=64k,mode=777") == 0;
    });
  }
  ~SmallDisk() {
    if (mounted) as_administrator([] { umount("HTML"); });
  }
  SmallDisk(const SmallDisk&) = delete;
  SmallDisk& operator=(const SmallDisk&) = delete;

  bool mounted = false;
};

TEST_F(Pages, AFullDiskCutsPagesAndTheRunGoesOn) {
  const SmallDisk disk;
  if (!disk.mounted) GTEST_SKIP() << "mounting is not allowed here";
  std::string long_text;
  for (int line = 0; line < 10000; ++line) long_text += "x = 1\n";
  write_file("a.f90", long_text);
  expect_whole_run();
  EXPECT_EQ(long_text, content_of("a.f90"));
  const std::string whole = source_page("a.f90", long_text, date_time);
  const std::string cut = content_of("HTML/" + page_a);
  EXPECT_LT(0u, cut.size());
  EXPECT_GE(65536u, cut.size());
  EXPECT_EQ(whole.substr(0, cut.size()), cut);
  EXPECT_EQ("", content_of("HTML/" + page_b));
  EXPECT_EQ("", content_of("HTML/index.html"));

  // With room made, the next run writes all.
  write_file("a.f90", "x\n");
  run();
  expect_page_a("x\n");
  expect_page_b("y\n");
}

}  // namespace
