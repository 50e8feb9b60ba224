// Each stored line is examined by itself, with strings and comments blanked. A
// line opens a unit if its first word is a keyword of units. The word after the
// keyword is the unit's name.

#include "analysis/declarations.h"

#include <cstdio>
#include <cstring>
#include <memory>
#include <string_view>

#include "analysis/declaration.h"
#include "analysis/keywords.h"
#include "analysis/normalise.h"
#include "analysis/ram_file.h"
#include "analysis/words.h"
#include "driver/settings.h"

// Reads the operator of an interface statement. `position` is the first column
// after the keyword that is not white space.
//
// Deliberate: the step over "operator" and one more character is fixed, so
// "operator (" is recognised only with a blank and only directly after the
// keyword. Intrinsic operators such as (+) are not declared by the user.
static bool read_operator(const char* line, int position, char* name) {
  const int step = 9;
  for (int i = 0; i < step && line[position] != '\0'; ++i) ++position;
  position = skip_white_space(line, position);
  if (line[position] != '(') return false;
  position = skip_white_space(line, position + 1);
  if (line[position] != '.') return false;

  // The name goes from dot to dot, or to the line's end if no dot closes it.
  std::string_view text = line + position;
  const std::size_t closing = text.find('.', 1);
  if (closing != std::string_view::npos) text = text.substr(0, closing + 1);
  name[text.copy(name, word_size - 1)] = '\0';
  return true;
}

// Reads the name of the unit that a line opens with a keyword.
//
//   position  just past the keyword
//   name      receives the name, which may be empty; word_size bytes
//
// Returns false when the line opens no unit after all.
static bool read_unit_name(const Marker& keyword, const char* line,
                           int position, char* name) {
  position = skip_white_space(line, position);
  // type(state) :: s declares variables.
  if (keyword.type == DT_TYPE && line[position] == '(') return false;

  // Deliberate: all separators are skipped, so the name of
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

// The unit keyword at the start of a line, or null. `consumed` receives the
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
    // Deliberate: a file is at its end as soon as its last line has been read,
    // so that line is never examined.
    if (at_eof(source.get(), verbose > 0)) break;
    if (verbose > 4) std::printf("---%s", line);
    register_unit(line, file, line_number);
  }
  fclose(source.get());
}
