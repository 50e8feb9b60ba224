// Waiting for other processes.

#pragma once

#include <chrono>
#include <functional>
#include <thread>

/// Repeats a condition until it is true. Returns whether it became true within
/// half a minute.
inline bool wait_until(const std::function<bool()>& condition) {
  const auto deadline =
      std::chrono::steady_clock::now() + std::chrono::seconds(30);
  while (!condition()) {
    if (std::chrono::steady_clock::now() > deadline) return false;
    std::this_thread::sleep_for(std::chrono::milliseconds(10));
  }
  return true;
}
