// Each line is scanned by itself: continuation lines are not joined.

#include "analysis/calls.h"

#include <cstdio>

#include "analysis/name_index.h"
#include "analysis/source_lines.h"
#include "analysis/words.h"
#include "driver/settings.h"

void gather_calls(char** file, bool fixed_form) {
  SourceLines source(*file, fixed_form);
  if (!source.is_open()) return;
  if (verbose > 0) {
    std::printf("Generating XREF for %s...", *file);
    std::fflush(stdout);
  }

  const NameIndex& names = NameIndex::current();
  while (source.next())
    for (Word word; find_next(source.scanned(), word);) {
      const Meaning meaning = names.look_up(word, file, source.number());
      if (meaning.is_reference())
        add_reference(*meaning.units, {file, source.number()});
    }

  if (verbose > 0) {
    std::puts("OK");
    std::fflush(stdout);
  }
}

void sort_references() {
  for (const auto& entry : Declaration::decs) entry.second->callers.sort();
}
