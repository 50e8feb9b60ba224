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
  const auto first = isDeclaration(word, file, line_number, self, count);
  if (self != 0) return;
  Declaration::add_calling_to_all(first, count, file, line_number);
}

void gather_calls(char** file, bool fixed_form) {
  SourceLines source(*file, fixed_form);
  if (!source.is_open()) return;
  if (verbose > 0) {
    std::printf("Generating XREF for %s...", *file);
    std::fflush(stdout);
  }

  while (source.next()) {
    for (Word word; next_word(source.scanned(), word);) {
      if (!may_be_declared(word.hash)) continue;
      char text[word_size];
      copy_word(source.scanned(), word, text);
      record_reference(text, file, source.number());
    }
  }

  if (verbose > 0) {
    std::puts("OK");
    std::fflush(stdout);
  }
}
