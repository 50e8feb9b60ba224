// A set of hashes that may take a few others for its own.

#ifndef ZELKOR_ANALYSIS_HASH_FILTER_H
#define ZELKOR_ANALYSIS_HASH_FILTER_H

#include <bitset>
#include <cstdint>

/// Answers, most of the time at once and in little memory, that something is
/// not there: each hash sets one bit out of many, so that a bit which is not
/// set proves that nothing of that hash was added.
class HashFilter {
 public:
  void add(std::uint64_t hash) { bits.set(place(hash)); }
  bool may_contain(std::uint64_t hash) const { return bits[place(hash)]; }
  void clear() { bits.reset(); }

 private:
  static constexpr int width = 20;

  // The top bits of a product depend on all bits of its factors.
  static std::size_t place(std::uint64_t hash) {
    return static_cast<std::size_t>(hash * 0x9E3779B97F4A7C15u >> (64 - width));
  }

  std::bitset<std::size_t{1} << width> bits;
};

#endif
