// A progress() that records the reports, for tests without a window.

#pragma once

#include <functional>
#include <string>
#include <vector>

/// One call of progress().
struct ProgressReport {
  double fraction;
  std::string message;
  void* ui;
};

/// The calls so far; tests clear it.
extern std::vector<ProgressReport> progress_reports;

/// Called after each report is recorded, if set; tests reset it.
extern std::function<void(const ProgressReport&)> progress_hook;
