#include "tests/support/recorded_progress.h"

#include "gui/progress.h"

std::vector<ProgressReport> progress_reports;
std::function<void(const ProgressReport&)> progress_hook;

int progress(double fraction, const char* message, void* ui) {
  progress_reports.push_back({fraction, message, ui});
  if (progress_hook) progress_hook(progress_reports.back());
  return 1;
}
