// Runs of the engine during which something goes wrong.

#pragma once

#include <filesystem>
#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "driver/pipeline.h"
#include "driver/settings.h"
#include "tests/support/capture.h"
#include "tests/support/file_list.h"
#include "tests/support/ordinary_user.h"
#include "tests/support/page_test.h"
#include "tests/support/page_text.h"
#include "tests/support/recorded_progress.h"

inline const std::string page_a = "a1751050.html";
inline const std::string page_b = "b1756053.html";

/// Runs over "a.f90" and "b.f90" with the rights of an ordinary user.
class EngineRun : public PageTest {
 protected:
  EngineRun() {
    // It must belong to that user.
    std::filesystem::remove("HTML");
    std::filesystem::create_directory("HTML");
    after_report(0, nullptr);
  }
  ~EngineRun() override { progress_hook = nullptr; }

  void run(FileList& files) {
    progress_reports.clear();
    gen_html(files.count(), files.data());
  }
  void run() { run(both); }

  /// Runs, and expects the reports of an undisturbed run.
  void expect_whole_run() {
    run();
    EXPECT_EQ(
        (std::vector<std::string>{"a.f90", "b.f90", "a.f90", "b.f90", "a.f90",
                                  "b.f90", "printing index...", "Done!"}),
        messages());
  }

  /// Calls `fault` right after report number `step` of the next run, counted
  /// from 1. Reports 1 and 2 end the declaration pass of a file, 3 and 4 the
  /// reference pass, 5 and 6 the page pass; 7 precedes the index and 8 follows
  /// it. Every run has a known time stamp.
  static void after_report(std::size_t step,
                           const std::function<void()>& fault) {
    progress_hook = [step, fault](const ProgressReport&) {
      date_time = 1235911445;
      if (progress_reports.size() == step) fault();
    };
  }

  /// The messages of the last run's reports.
  static std::vector<std::string> messages() {
    std::vector<std::string> texts;
    for (const ProgressReport& report : progress_reports)
      texts.push_back(report.message);
    return texts;
  }

  /// Expects the page of a source with this content.
  static void expect_page(const std::string& file, const std::string& title,
                          const std::string& content) {
    EXPECT_EQ(source_page(title, content, 1235911445), content_of(file));
  }
  static void expect_page_a(const std::string& content) {
    expect_page("HTML/" + page_a, "a.f90", content);
  }
  static void expect_page_b(const std::string& content) {
    expect_page("HTML/" + page_b, "b.f90", content);
  }

  const AsOrdinaryUser user{folder.path()};
  FileList both = FileList({"a.f90", "b.f90"});
};

/// Removes all rights to a file or directory, and restores them when destroyed.
class Locked {
 public:
  explicit Locked(std::string locked_path) : path(std::move(locked_path)) {
    permit(std::filesystem::perms::none);
  }
  ~Locked() { permit(std::filesystem::perms::owner_all); }
  Locked(const Locked&) = delete;
  Locked& operator=(const Locked&) = delete;

 private:
  void permit(std::filesystem::perms rights) const {
    std::error_code ignored;
    std::filesystem::permissions(path, rights, ignored);
  }

  std::string path;
};
