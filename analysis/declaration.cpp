#include "analysis/declaration.h"

#include <cstring>

#include "analysis/words.h"

Declaration::Registry Declaration::decs;

static unsigned changes = 0;

// The units of the last run stay in the registry until the program ends. This
// object is destroyed before the registry, and destroys them.
static const struct LastRun {
  ~LastRun() { Declaration::forget_all(); }
} last_run;

static std::string upper_case(std::string key) {
  for (char& c : key) c = to_upper(c);
  return key;
}

static char* copy_of(const char* text) {
  const std::size_t size = std::strlen(text) + 1;
  return static_cast<char*>(std::memcpy(new char[size], text, size));
}

void Declaration::forget_all() {
  for (const auto& entry : decs) delete entry.second;
  decs.clear();
  ++changes;
}

unsigned Declaration::generation() { return changes; }

Declaration::Declaration(DecType unit_type, const char* unit_name,
                         char** source, int source_line)
    : type(unit_type),
      file(source),
      name(copy_of(unit_name)),
      line(source_line) {
  decs.emplace(upper_case(name), this);
  ++changes;
}

Declaration::~Declaration() { delete[] name; }

bool Declaration::Is(const char* text) const {
  return starts_with_word(text, name);
}

void Declaration::add_calling(char** source, int source_line) {
  if (callers.insert({source, source_line})) ++changes;
}
