// Waiting for what other processes do.

#pragma once

#include <chrono>
#include <functional>
#include <thread>

/// Asks again and again until a condition holds. Returns whether it did within
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
