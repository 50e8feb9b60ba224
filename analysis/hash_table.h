// A table of values that are known by a hash.

#ifndef ZELKOR_ANALYSIS_HASH_TABLE_H
#define ZELKOR_ANALYSIS_HASH_TABLE_H

#include <cstddef>
#include <cstdint>
#include <utility>
#include <vector>

/// Keeps one value for each hash; 0 and 1 are taken for the same hash. A value
/// is found by one look into memory, most of the time, for the table is one
/// array: what the passes look up by the million is scattered over more memory
/// than the caches hold.
template <typename Value>
class HashTable {
 public:
  /// The value of a hash; null when there is none. Adding moves the values.
  Value* find(std::uint64_t hash) {
    if (slots.empty()) return nullptr;
    Slot& slot = slots[place(key_of(hash))];
    return slot.key == 0 ? nullptr : &slot.value;
  }

  /// Adds a value unless the hash has one already. Returns the value of the
  /// hash and whether it was added now.
  std::pair<Value*, bool> try_emplace(std::uint64_t hash, const Value& value) {
    if (4 * (count + 1) > 3 * slots.size()) grow();
    const std::uint64_t key = key_of(hash);
    Slot& slot = slots[place(key)];
    const bool is_new = slot.key == 0;
    if (is_new) {
      slot = {key, value};
      ++count;
    }
    return {&slot.value, is_new};
  }

  void clear() {
    slots.clear();
    count = 0;
  }

 private:
  struct Slot {
    std::uint64_t key = 0;  // 0: empty
    Value value{};
  };

  static std::uint64_t key_of(std::uint64_t hash) {
    return hash == 0 ? 1 : hash;
  }

  // The slot of a key, or the empty slot where it belongs.
  std::size_t place(std::uint64_t key) const {
    const std::size_t mask = slots.size() - 1;
    const std::uint64_t spread = key * 0x9E3779B97F4A7C15u;
    auto i = static_cast<std::size_t>(spread >> 32) & mask;
    while (slots[i].key != 0 && slots[i].key != key) i = (i + 1) & mask;
    return i;
  }

  void grow() {
    std::vector<Slot> old(slots.empty() ? 64 : 2 * slots.size());
    old.swap(slots);
    for (const Slot& slot : old)
      if (slot.key != 0) slots[place(slot.key)] = slot;
  }

  std::vector<Slot> slots;  // a power of two, at most three quarters in use
  std::size_t count = 0;
};

#endif
