// A reference is any word that names a unit, keywords and comments included.
// Physical lines are scanned one by one, continued or not.

#include "analysis/calls.h"

#include <cstdio>

#include "analysis/declarations.h"
#include "analysis/source_lines.h"
#include "analysis/words.h"
#include "driver/settings.h"

static void record_reference(const char* word, char** file, int line_number) {
  int self = 0;
  int count = 0;
  auto entry = isDeclaration(word, file, line_number, self, count);
  if (self != 0) return;
  for (int i = 0; i < count; ++i, ++entry)
    entry->second->add_calling(file, line_number);
}

void gather_calls(char** file, bool fixed_form) {
  std::FILE* source = std::fopen(*file, "r");
  if (source == nullptr) return;
  if (verbose > 0) {
    std::printf("Generating XREF for %s...", *file);
    std::fflush(stdout);
  }

  SourceLine line;
  for (int line_number = 1; read_source_line(source, fixed_form, line);
       ++line_number) {
    for (Word word; next_word(line.scanned, word);)
      record_reference(word.text, file, line_number);
  }

  std::fclose(source);
  if (verbose > 0) {
    std::puts("OK");
    std::fflush(stdout);
  }
}
