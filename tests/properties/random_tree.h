// Random trees with many special cases.

#pragma once

#include <cstdint>
#include <random>
#include <string>
#include <vector>

#include "tests/properties/tree.h"

/// Random numbers that are the same on every machine.
class Dice {
 public:
  explicit Dice(std::uint64_t seed) : engine(seed) {}

  /// A number from 0 up to, not including, n.
  std::size_t below(std::size_t n) { return engine() % n; }
  bool percent(std::size_t chance) { return below(100) < chance; }

  template <typename Value>
  const Value& one_of(const std::vector<Value>& values) {
    return values[below(values.size())];
  }

  template <typename Value>
  void shuffle(std::vector<Value>& values) {
    for (std::size_t i = values.size(); i > 1; --i)
      std::swap(values[i - 1], values[below(i)]);
  }

 private:
  std::mt19937_64 engine;
};

/// A tree of one to eight files. Its list may contain a path twice, a missing
/// file and a directory.
Tree random_tree(Dice& dice);
