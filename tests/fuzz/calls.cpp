// The call pass over a source, for units that the source declares itself. The
// first two bytes are settings.

#include "analysis/calls.h"

#include <map>
#include <set>
#include <string>

#include "analysis/declaration.h"
#include "analysis/declarations.h"
#include "analysis/source_lines.h"
#include "analysis/words.h"
#include "tests/fuzz/scratch.h"

// The numbers of the lines in which each word stands, by its upper-case form.
static std::map<std::string, std::set<int>> lines_of_words(const char* path) {
  std::map<std::string, std::set<int>> lines;
  SourceLines source(path, false);
  while (source.is_open() && source.next()) {
    for (Word word; find_next(source.scanned(), word);) {
      std::string key(word.name);
      for (char& c : key) c = to_upper(c);
      lines[key].insert(source.number());
    }
  }
  return lines;
}

static std::set<int> lines_of(const Callers& callers) {
  std::set<int> lines;
  for (const Calling& calling : callers) lines.insert(calling.line);
  return lines;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data,
                                      std::size_t size) {
  enter_scratch_folder();
  write_source("a.f90", take_settings(bytes_of(data, size)));
  std::string path = "a.f90";
  char* slot = path.data();
  gather_declarations(&slot, false);
  gather_calls(&slot, false);
  auto references = lines_of_words(slot);
  for (const auto& [key, unit] : Declaration::decs)
    references[key].erase(unit->line);
  for (const auto& [key, unit] : Declaration::decs)
    demand(lines_of(unit->callers) == references[key],
           "a unit is referred to by every line that has its name and declares "
           "no unit of that name");
  Declaration::forget_all();
  return 0;
}
