// The pass looks at each stored line by itself, with strings and comments
// blanked: a unit is opened by a keyword that is the first word of its line,
// and bears the first word after that keyword.

#include "analysis/declarations.h"

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <iterator>
#include <memory>

#include "analysis/hash_table.h"
#include "analysis/keywords.h"
#include "analysis/normalise.h"
#include "analysis/ram_file.h"
#include "analysis/words.h"
#include "driver/settings.h"

Declaration::Registry Declaration::decs;

HashFilter declared_names;

namespace {

using Entry = Declaration::Registry::iterator;

// The units of one name.
struct Namesakes {
  Entry first;
  int count;
};

// Stands before the ordered search of the registry and answers most questions
// without it. Of several names that share a hash only the one that came first
// is known here.
HashTable<Namesakes> names;

// The units that the table counts.
std::size_t units_in_table = 0;

// The lines that declare a unit; few do.
HashFilter declaring_lines;

// Whether all units that share their references are in the registry, which is
// so until others change it. Then a set that as many share as there are units
// of a name is shared by just these.
bool sharers_are_registered = true;

unsigned times_emptied = 0;

std::uint64_t hash_of_place(char** file, int line) {
  const std::uint64_t odd = 0xD6E8FEB86659FD93u;
  return reinterpret_cast<std::uintptr_t>(file) * odd +
         static_cast<std::uint64_t>(line);
}

// The units of the last run stay in the registry until the program ends. This
// object is destroyed before the registry, and destroys them.
struct LastUnits {
  ~LastUnits() { Declaration::forget_all(); }
} last_units;

}  // namespace

static std::string upper_case(const char* word) {
  std::string key = word;
  for (char& c : key) c = to_upper(c);
  return key;
}

static char* copy_of(const char* text) {
  const std::size_t size = std::strlen(text) + 1;
  char* copy = new char[size];
  std::memcpy(copy, text, size);
  return copy;
}

static void enter_in_table(Entry entry) {
  const NameHash hash = hash_of(entry->first.c_str());
  Namesakes* const known = names.try_emplace(hash, Namesakes{entry, 0}).first;
  if (known->first->first == entry->first) ++known->count;
  ++units_in_table;
}

static void empty_table() {
  names.clear();
  units_in_table = 0;
  ++times_emptied;
}

// The registry is open to everybody. When others have taken units out of it or
// put them back, its size tells, unless they did both since it was last looked
// at. The filters need no such care: they know each unit from its building to
// its end.
static void follow_registry() {
  if (Declaration::decs.size() == units_in_table) return;
  empty_table();
  sharers_are_registered = false;
  for (auto entry = Declaration::decs.begin(); entry != Declaration::decs.end();
       ++entry)
    enter_in_table(entry);
}

// Units of one name are referred to together, from the first reference on.
static void share_with_namesake(Entry entry) {
  if (entry == Declaration::decs.begin()) return;
  const auto& [name, unit] = *std::prev(entry);
  if (name == entry->first && unit->callers.empty())
    entry->second->callers.share(unit->callers);
}

void Declaration::forget_all() {
  for (const auto& entry : decs) delete entry.second;
  decs.clear();
  empty_table();
  declared_names.clear();
  declaring_lines.clear();
  sharers_are_registered = true;
}

unsigned Declaration::run() { return times_emptied; }

Declaration::Declaration(DecType unit_type, const char* unit_name,
                         char** source, int source_line)
    : type(unit_type),
      file(source),
      name(copy_of(unit_name)),
      line(source_line) {
  follow_registry();
  const Entry entry = decs.emplace(upper_case(name), this);
  enter_in_table(entry);
  share_with_namesake(entry);
  declared_names.add(hash_of(name));
  declaring_lines.add(hash_of_place(file, line));
}

Declaration::~Declaration() { delete[] name; }

bool Declaration::Is(const char* text) const {
  return starts_with_word(text, name);
}

void Declaration::add_calling(char** source, int source_line) {
  callers.insert({source, source_line});
}

void Declaration::add_calling_to_all(Registry::iterator first, int count,
                                     char** source, int source_line) {
  const Calling calling{source, source_line};
  if (sharers_are_registered && count > 1 &&
      first->second->callers.insert_in_all(count, calling))
    return;
  for (Entry entry = first; count > 0; --count, ++entry)
    entry->second->callers.insert(calling);
}

// Whether a word is a name whose upper-case form is given.
static bool is_name(const char* word, const std::string& key) {
  for (const char c : key)
    if (to_upper(*word++) != c) return false;
  return *word == '\0';
}

static Namesakes find_namesakes(const char* word) {
  follow_registry();
  const Namesakes* known = names.find(hash_of(word));
  if (known == nullptr) return {Declaration::decs.end(), 0};
  if (is_name(word, known->first->first)) return *known;

  const auto [first, last] = Declaration::decs.equal_range(upper_case(word));
  const auto count = static_cast<int>(std::distance(first, last));
  return {count > 0 ? first : Declaration::decs.end(), count};
}

Declaration::Registry::iterator isDeclaration(const char* word, char** file,
                                              int line, int& self, int& count) {
  const Namesakes found = find_namesakes(word);
  count = found.count;
  self = 0;
  if (!declaring_lines.may_contain(hash_of_place(file, line)))
    return found.first;
  Entry entry = found.first;
  for (int index = 1; index <= count; ++index, ++entry)
    if (entry->second->file == file && entry->second->line == line)
      self = index;
  return found.first;
}

// Reads the operator of an interface statement; `position` is the first column
// after the keyword that is not white space.
//
// Deliberate: a fixed step is taken for "operator" and one character more, so
// that only "operator (" with its blank is understood, and only right after the
// keyword. Intrinsic operators such as (+) are none of the user's.
static bool read_operator(const char* line, int position, char* name) {
  const int step = 9;
  for (int i = 0; i < step && line[position] != '\0'; ++i) ++position;
  position = skip_white_space(line, position);
  if (line[position] != '(') return false;
  position = skip_white_space(line, position + 1);
  if (line[position] != '.') return false;

  // From dot to dot; without a closing dot, all that is left of the line.
  const char* opening = line + position;
  const char* closing = std::strchr(opening + 1, '.');
  const std::size_t length =
      closing == nullptr ? std::strlen(opening)
                         : static_cast<std::size_t>(closing + 1 - opening);
  const std::size_t kept = std::min<std::size_t>(length, word_size - 1);
  std::memcpy(name, opening, kept);
  name[kept] = '\0';
  return true;
}

// Reads the name of the unit that a line opens with a keyword.
//
//   position  just past the keyword
//   name      receives the name, which may be empty; word_size bytes
//
// Returns false when the line opens nothing after all.
static bool read_unit_name(const Marker& keyword, const char* line,
                           int position, char* name) {
  position = skip_white_space(line, position);
  // type(state) :: s declares variables.
  if (keyword.type == DT_TYPE && line[position] == '(') return false;

  // Deliberate: separators are skipped unseen, so that the name of
  // "type, public :: point" is "public".
  CopyWord(line + position, name);
  if (keyword.type == DT_MODULE) return STRCMP(name, "procedure") != 0;
  if (keyword.type == DT_INTERFACE) {
    if (STRCMP(name, "assignment") == 0) return false;
    if (STRCMP(name, "operator") == 0)
      return read_operator(line, position, name);
  }
  return true;
}

// The unit keyword that begins a line, or null; `consumed` receives the
// position just past it.
static const Marker* find_keyword(const char* line, int* consumed) {
  const char initial = to_upper(line[skip_white_space(line, 0)]);
  for (const Marker* keyword = Marker::first; keyword != nullptr;
       keyword = keyword->next)
    if (keyword->name[0] == initial && keyword->In(line, consumed))
      return keyword;
  return nullptr;
}

static void register_unit(const char* line, char** file, int line_number) {
  int position = 0;
  const Marker* keyword = find_keyword(line, &position);
  if (keyword == nullptr) return;
  char name[word_size];
  if (!read_unit_name(*keyword, line, position, name)) return;

  if (verbose > 0) {
    std::printf("%-20s", keyword->name);
    std::printf("***\t%s\tin %s\n", name, *file);
  }
  new Declaration(keyword->type, name, file, line_number);
}

void gather_declarations(char** file, bool fixed_form) {
  const std::unique_ptr<ramFILE> source(ramFILE::New(*file));
  if (source == nullptr) return;
  hide_F90_strings_comments(source.get(), fixed_form);

  char line[stored_line_size];
  for (int line_number = 1;; ++line_number) {
    if (fgets(line, stored_line_size, source.get()) == 0) break;
    // Deliberate: a file is at its end as soon as its last line is handed out,
    // so that line is never examined.
    if (at_eof(source.get(), verbose > 0)) break;
    if (verbose > 4) std::printf("---%s", line);
    register_unit(line, file, line_number);
  }
  fclose(source.get());
}
