// A run whose time stamp is known.

#pragma once

#include <stdlib.h>

#include <ctime>
#include <optional>
#include <string>

#include "driver/settings.h"

/// Shows times in one zone, UTC unless another is given, while it lives.
class TimeZone {
 public:
  explicit TimeZone(const char* zone = "UTC0") {
    if (const char* value = getenv("TZ")) previous = value;
    setenv("TZ", zone, 1);
    tzset();
  }
  ~TimeZone() {
    if (previous)
      setenv("TZ", previous->c_str(), 1);
    else
      unsetenv("TZ");
    tzset();
  }
  TimeZone(const TimeZone&) = delete;
  TimeZone& operator=(const TimeZone&) = delete;

 private:
  std::optional<std::string> previous;
};

/// Sets the time stamp to Sun Mar  1 12:44:05 2009, shown in UTC. A
/// SettingsGuard puts the time stamp back.
class FixedClock {
 public:
  FixedClock() { date_time = 1235911445; }

 private:
  TimeZone zone;
};
