// What the system counts for a process.

#pragma once

#include <gtest/gtest.h>

#include <fstream>
#include <string>

/// A number that Linux counts for this process: the one after `name` in
/// /proc/self/`file`. The test fails if it is missing.
inline long process_counter(const std::string& file, const std::string& name) {
  std::ifstream counters("/proc/self/" + file);
  std::string word;
  while (counters >> word && word != name + ":") continue;
  long count = 0;
  if (!(counters >> count)) ADD_FAILURE() << "no " << name << " in " << file;
  return count;
}
