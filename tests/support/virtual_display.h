// An X server for tests.

#pragma once

#include <sys/types.h>

/// Starts an Xvfb on a free display, 1280 x 1024 pixels in true colour, and
/// names it in DISPLAY; ends it when destroyed, or when this process ends.
/// Throws std::runtime_error when it does not start.
class VirtualDisplay {
 public:
  VirtualDisplay();
  ~VirtualDisplay();
  VirtualDisplay(const VirtualDisplay&) = delete;
  VirtualDisplay& operator=(const VirtualDisplay&) = delete;

 private:
  pid_t server;
};
