// How many files the process holds open.

#pragma once

#include <cstddef>
#include <filesystem>
#include <iterator>

/// The number of open file descriptors.
inline std::ptrdiff_t open_files() {
  const std::filesystem::directory_iterator descriptors("/proc/self/fd");
  return std::distance(begin(descriptors), end(descriptors));
}
