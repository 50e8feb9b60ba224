// A hash table of the names in the registry.

#pragma once

#include <cstdint>
#include <string_view>
#include <vector>

#include "analysis/declaration.h"
#include "analysis/words.h"

/// The units of one name.
struct Namesakes {
  Declaration::Registry::iterator first;
  int count;
  bool share_references;  ///< whether they share their references
};

/// Records a reference to all units of a name.
void add_reference(const Namesakes& units, const Calling& reference);

/// What a word of a line means.
struct Meaning {
  const Namesakes* units = nullptr;  ///< the units of this name; null: none
  /// The definition index of the unit of this name that this line of this file
  /// declares: the last one if there are several, 0 if there is none.
  int declared = 0;

  bool is_reference() const { return units != nullptr && declared == 0; }
};

/// A hash table of the names in the registry. Most words of a source name no
/// unit; looking one of them up mostly reads one byte of a small table.
class NameIndex {
 public:
  /// The table for the registry as it is now. It is built again if the registry
  /// has changed since the last call; all results of earlier look-ups are then
  /// invalid. Only a new generation or a new size shows that the registry has
  /// changed: code that erases units from `decs` and inserts them again must
  /// call this function in between.
  static const NameIndex& current();

  /// Looks a word up, ignoring case.
  ///
  ///   file, line  where the word is
  Meaning look_up(const Word& word, char** file, int line) const {
    for (auto i = place(word.hash); tags[i] != empty; i = next(i))
      if (tags[i] == tag(word.hash)) {
        const Entry& entry = entries[slots[i]];
        if (is_named(entry, word.name))
          return {&entry.units, declared(entry, file, line)};
      }
    return {};
  }

 private:
  // A line that declares a unit.
  struct Opening {
    char** file;
    int line;
    int index;  // the unit's definition index
  };

  // A name. Its openings are adjacent and sorted.
  struct Entry {
    Namesakes units;
    std::size_t first_opening;
  };

  // The hash table uses linear probing. Its tags are apart from its slots, so
  // that those of all names fit into the processor's cache.
  using Tag = std::uint8_t;
  static constexpr Tag empty = 0;

  NameIndex() : tags(1) {}
  void build();
  void add_name(Declaration::Registry::iterator first, int count);
  void fill_slots();

  static bool is_named(const Entry& entry, std::string_view name);
  int declared(const Entry& entry, char** file, int line) const;

  static std::uint64_t spread(NameHash hash) {
    return hash * 0x9E3779B97F4A7C15u;
  }
  static Tag tag(NameHash hash) {
    return static_cast<Tag>(spread(hash) >> 24 | 1);
  }
  std::size_t place(NameHash hash) const { return spread(hash) >> 32 & mask(); }
  std::size_t next(std::size_t place) const { return (place + 1) & mask(); }
  std::size_t mask() const { return tags.size() - 1; }

  std::vector<Entry> entries;
  std::vector<Opening> openings;
  std::vector<Tag> tags;             // 2^n of them, at most an eighth in use
  std::vector<std::uint32_t> slots;  // the entries of the tags
  unsigned generation = 0;
  std::size_t size = 0;  // of the registry
};

/// Looks a word up. Part of the interface; the passes use NameIndex.
///
///   file, line  where the word is
///   self        out: the definition index of the unit of this name that this
///               line of this file declares; 0 if it declares none. Then the
///               word is a reference if count is above 0
///   count       out: the number of units of this name
///
/// Returns the first unit of this name, or the registry's end.
Declaration::Registry::iterator isDeclaration(const char* word, char** file,
                                              int line, int& self, int& count);
