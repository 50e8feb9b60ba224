// Keeps the run settings of one test from the next.

#pragma once

#include "analysis/declaration.h"
#include "driver/settings.h"

/// Puts the settings back as they were, and empties the registry, when
/// destroyed.
class SettingsGuard {
 public:
  SettingsGuard() = default;
  ~SettingsGuard() {
    html_style = style;
    html_dir = dir;
    verbose = verbosity;
    slash = separator;
    date_time = time;
    Declaration::forget_all();
  }
  SettingsGuard(const SettingsGuard&) = delete;
  SettingsGuard& operator=(const SettingsGuard&) = delete;

 private:
  std::uint32_t style = html_style;
  std::string dir = html_dir;
  int verbosity = verbose;
  char separator = slash;
  std::time_t time = date_time;
};
