// The names of the registry, looked up by the words of the sources.

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
  bool share_callers;  ///< they hold the same references
};

/// Records a reference to all units of a name.
void add_calling(const Namesakes& units, const Calling& calling);

/// What a word of a line stands for.
struct Meaning {
  const Namesakes* units = nullptr;  ///< the units of this name; null: none
  /// The definition index of the unit of this name that is declared on this
  /// very line of this file; of several the last one. 0: none is.
  int declared = 0;

  bool is_reference() const { return units != nullptr && declared == 0; }
};

/// An index of the registry as it was at one moment. Most words of a source
/// name no unit; for them it takes one look into a small table.
class NameIndex {
 public:
  /// The index of the registry as it is now. It is built anew when the registry
  /// has changed since the last call; then an index handed out before, and what
  /// it gave, must not be used any more. Others may erase units of `decs` and
  /// insert them again under their names, with a call between the two: the size
  /// of the registry shows it.
  static const NameIndex& current();

  /// Decides what a word stands for. Case is ignored.
  ///
  ///   file, line  where it stands
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
  // A line that declares a unit of a name.
  struct Opening {
    char** file;
    int line;
    int index;
  };

  // A name. Its openings come one after the other, in their order.
  struct Entry {
    Namesakes units;
    std::size_t first_opening;
  };

  // A hash table with linear probing. Its tags lie by themselves, so that those
  // of all names fit into the processor's cache.
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
  std::vector<Tag> tags;             // a power of two, at most an eighth in use
  std::vector<std::uint32_t> slots;  // the entries of the tags
  unsigned generation = 0;
  std::size_t size = 0;  // of the registry
};

/// Looks a word up in the registry, without regard to case.
///
///   file, line  where the word stands
///   self        out: the definition index of the unit of this name that is
///               declared on this very line of this file, 0 if none is: then
///               the word is a reference
///   count       out: the number of units of this name
///
/// Returns the first unit of this name, or the registry's end.
Declaration::Registry::iterator isDeclaration(const char* word, char** file,
                                              int line, int& self, int& count);
