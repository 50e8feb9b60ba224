// Runs of the engine that something befalls.

#ifndef ZELKOR_TESTS_FAULTS_ENGINE_RUN_H
#define ZELKOR_TESTS_FAULTS_ENGINE_RUN_H

#include <gtest/gtest.h>

#include <filesystem>
#include <functional>
#include <string>
#include <vector>

#include "driver/pipeline.h"
#include "driver/settings.h"
#include "tests/support/capture.h"
#include "tests/support/file_list.h"
#include "tests/support/fixed_clock.h"
#include "tests/support/ordinary_user.h"
#include "tests/support/page_text.h"
#include "tests/support/recorded_progress.h"
#include "tests/support/settings_guard.h"
#include "tests/support/temporary_folder.h"

inline const std::string page_a = "a1751050.html";
inline const std::string page_b = "b1756053.html";

/// Runs over "a.f90" and "b.f90" into the directory HTML, with the rights of an
/// ordinary user and a known time stamp.
class EngineRun : public testing::Test {
 protected:
  EngineRun() {
    std::filesystem::create_directory("HTML");
    progress_reports.clear();
  }
  ~EngineRun() override { progress_hook = nullptr; }

  void run(FileList& files) {
    progress_reports.clear();
    gen_html(files.count(), files.data());
  }
  void run() { run(both); }

  /// Has something happen once, right after the report number `step` of the
  /// next run, counted from 1: over two files, 1 and 2 end the declaration
  /// pass of a file, 3 and 4 the call pass, 5 and 6 the page pass; 7 is before
  /// the index and 8 after it. Also stops the clock of the run.
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

  static const std::vector<std::string>& messages_of_whole_run() {
    static const std::vector<std::string> texts = {"a.f90",
                                                   "b.f90",
                                                   "a.f90",
                                                   "b.f90",
                                                   "a.f90",
                                                   "b.f90",
                                                   "printing index...",
                                                   "Done!"};
    return texts;
  }

  /// The page of a source whose lines make up `content`.
  static std::string page(const std::string& title,
                          const std::string& content) {
    return source_page(title, content, date_time);
  }

  const TemporaryFolder folder;
  const AsOrdinaryUser user{folder.path()};
  const SettingsGuard settings;
  const TimeZone utc;
  FileList both = FileList({"a.f90", "b.f90"});
};

/// Takes all rights to a file or directory away, and gives them back when
/// destroyed.
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

#endif
