// A run whose time stamp is known.

#pragma once

#include <stdlib.h>

#include <optional>

#include "driver/settings.h"
#include "tests/support/environment.h"

/// Shows times in one zone, UTC unless another is given, while it lives.
class TimeZone {
 public:
  explicit TimeZone(const char* zone = "UTC0") {
    setenv("TZ", zone, 1);
    tzset();
  }
  ~TimeZone() {
    previous.reset();
    tzset();
  }

 private:
  std::optional<EnvironmentGuard> previous{"TZ"};
};

/// Sets the time stamp to Sun Mar  1 12:44:05 2009, shown in UTC. A
/// SettingsGuard puts the time stamp back.
class FixedClock {
 public:
  FixedClock() { date_time = 1235911445; }

 private:
  TimeZone zone;
};
