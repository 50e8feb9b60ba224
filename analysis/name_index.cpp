#include "analysis/name_index.h"

#include <algorithm>
#include <utility>

using Unit = Declaration::Registry::iterator;

void add_reference(const Namesakes& units, const Calling& reference) {
  if (units.share_references) {
    units.first->second->callers.insert_in_all(reference);
    return;
  }
  Unit unit = units.first;
  for (int i = 0; i < units.count; ++i, ++unit)
    unit->second->callers.insert(reference);
}

const NameIndex& NameIndex::current() {
  static NameIndex index;
  if (index.generation != Declaration::generation() ||
      index.size != Declaration::decs.size())
    index.build();
  return index;
}

void NameIndex::build() {
  entries.clear();
  openings.clear();
  const Unit end = Declaration::decs.end();
  for (Unit first = Declaration::decs.begin(); first != end;) {
    Unit unit = first;
    int count = 0;
    for (; unit != end && unit->first == first->first; ++unit)
      openings.push_back({unit->second->file, unit->second->line, ++count});
    add_name(first, count);
    first = unit;
  }
  fill_slots();
  generation = Declaration::generation();
  size = Declaration::decs.size();
}

// A reference to a name with hundreds of units would need hundreds of records.
// So namesakes share their references, unless one of them has some already.
static bool share_references(Unit first, int count) {
  if (count == 1) return false;
  Unit unit = first;
  for (int i = 0; i < count; ++i, ++unit)
    if (!unit->second->callers.empty()) return false;
  first->second->callers.start_anew();
  unit = first;
  for (int i = 1; i < count; ++i)
    (++unit)->second->callers.share(first->second->callers);
  return true;
}

// What openings are sorted by. Addresses become numbers: pointers into
// different arrays have no order.
static auto sort_key(char** file, int line) {
  return std::pair(reinterpret_cast<std::uintptr_t>(file), line);
}

void NameIndex::add_name(Unit first, int count) {
  const std::size_t begin = openings.size() - static_cast<std::size_t>(count);
  entries.push_back({{first, count, share_references(first, count)}, begin});
  std::stable_sort(openings.begin() + static_cast<std::ptrdiff_t>(begin),
                   openings.end(), [](const Opening& a, const Opening& b) {
                     return sort_key(a.file, a.line) < sort_key(b.file, b.line);
                   });
}

void NameIndex::fill_slots() {
  std::size_t width = 1;
  while (width < 8 * entries.size()) width *= 2;
  tags.assign(width, empty);
  slots.resize(width);
  std::uint32_t number = 0;
  for (const Entry& entry : entries) {
    const NameHash hash = hash_of(entry.units.first->first);
    std::size_t i = place(hash);
    while (tags[i] != empty) i = next(i);
    tags[i] = tag(hash);
    slots[i] = number++;
  }
}

bool NameIndex::is_named(const Entry& entry, std::string_view name) {
  const std::string& key = entry.units.first->first;
  return std::equal(name.begin(), name.end(), key.begin(), key.end(),
                    [](char c, char upper) { return to_upper(c) == upper; });
}

int NameIndex::declared(const Entry& entry, char** file, int line) const {
  const auto begin =
      openings.begin() + static_cast<std::ptrdiff_t>(entry.first_opening);
  auto opening =
      std::upper_bound(begin, begin + entry.units.count, sort_key(file, line),
                       [](const auto& key, const Opening& o) {
                         return key < sort_key(o.file, o.line);
                       });
  if (opening == begin) return 0;
  --opening;
  return opening->file == file && opening->line == line ? opening->index : 0;
}

Unit isDeclaration(const char* word, char** file, int line, int& self,
                   int& count) {
  const Word name{0, 0, word, hash_of(word)};
  const auto [units, declared] = NameIndex::current().look_up(name, file, line);
  self = declared;
  count = units == nullptr ? 0 : units->count;
  return units == nullptr ? Declaration::decs.end() : units->first;
}
