// Pages that cannot be created, which abort the process, and pages that cannot
// be written, which are ignored.

#include <gtest/gtest.h>

#include <sched.h>
#include <signal.h>
#include <sys/mount.h>

#include <filesystem>
#include <string>

#include "tests/faults/engine_run.h"

namespace fs = std::filesystem;

namespace {

class Pages : public EngineRun {
 protected:
  Pages() {
    write_file("a.f90", "x\n");
    write_file("b.f90", "y\n");
  }
};

using PagesDeathTest = Pages;

TEST_F(PagesDeathTest, AbortTheRunWithoutAReportWhenTheyCannotBeCreated) {
  verbose = 1;
  fs::create_directory("HTML/" + page_b);
  EXPECT_EQ(
      "END OF FILE\nEND OF FILE\n"
      "Generating XREF for a.f90...OK\n"
      "Generating XREF for b.f90...OK\n"
      "Generating HTML for a.f90...OK\n",
      printed([this] {
        EXPECT_EXIT(run(), testing::KilledBySignal(SIGABRT), "html!=__null");
      }));
  expect_page_a("x\n");
}

TEST_F(Pages, AreWrittenToOutputDirectoriesWithLongPaths) {
  for (const std::size_t length : {255u, 1024u, 4000u}) {
    fs::remove_all("HTML");
    fs::create_directory("HTML");
    html_dir = "HTML" + std::string(length - 4, '/');
    run();
    expect_page_a("x\n");
    EXPECT_TRUE(fs::exists("HTML/index.html"));
  }
}

TEST_F(Pages, RemainWhenTheDirectoryIsMovedBeforeTheIndexIsWritten) {
  after_report(7, [] { fs::rename("HTML", "moved"); });
  expect_whole_run();
  expect_page("moved/" + page_b, "b.f90", "y\n");
  EXPECT_FALSE(fs::exists("moved/index.html"));
}

TEST_F(Pages, OnAFullDeviceDoNotStopTheRun) {
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

// A small file system at HTML that only this process sees. Only root may mount
// it.
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

TEST_F(Pages, AreCutByAFullDiskAndTheRunContinues) {
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

  // The next run needs less space.
  write_file("a.f90", "x\n");
  run();
  expect_page_a("x\n");
  expect_page_b("y\n");
}

}  // namespace
