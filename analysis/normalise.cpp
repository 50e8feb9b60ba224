#include "analysis/normalise.h"

#include <cstring>
#include <string>

#include "analysis/ram_file.h"
#include "analysis/words.h"
#include "driver/settings.h"

// Blanks the characters from `text` up to, not including, the first `stop`,
// or to the end of the buffer. Returns where it ended.
static char* blank_up_to(char* text, char stop) {
  while (*text != '\0' && *text != stop) *text++ = ' ';
  return text;
}

static void hide_fixed_form_comment(char* line) {
  if (*line == 'c' || *line == 'C') blank_up_to(line, '\n');
}

// Deliberate: the apostrophe delimits no string. Text between apostrophes stays
// visible, and a "!" in it starts a comment.
static void hide_free_form(char* line) {
  for (char* at = line;;) {
    at += std::strcspn(at, "!\"");
    if (*at == '!') {
      at = blank_up_to(at, '\n');
    } else if (*at == '"') {
      at = blank_up_to(at + 1, '"');
      if (*at == '"') ++at;
    } else {
      return;
    }
  }
}

void hide_F90_strings_comments(char* line, bool fixed_form) {
  if (fixed_form)
    hide_fixed_form_comment(line);
  else
    hide_free_form(line);
}

// ramFILE_imp is the only implementation of ramFILE.
static ramFILE_imp& lines_of(ramFILE* file) {
  return *static_cast<ramFILE_imp*>(file);
}

void hide_F90_strings_comments(ramFILE* file, bool fixed_form) {
  if (file == nullptr) return;
  file->rewind();
  for (char* line : lines_of(file)) hide_F90_strings_comments(line, fixed_form);
}

// The length of a line without its final "\n", "\r" or "\r\n".
static std::size_t length_without_line_end(std::string_view line) {
  std::size_t length = line.size();
  if (length > 0 && line[length - 1] == '\n') --length;
  if (length > 0 && line[length - 1] == '\r') --length;
  return length;
}

// The "&" must be the last character: a line with a blank or a comment after it
// is not continued.
static bool is_continued(std::string_view line) {
  const std::size_t length = length_without_line_end(line);
  return length > 0 && line[length - 1] == '&';
}

void merge_F90_continuations(ramFILE* file) {
  if (file == nullptr) return;
  file->rewind();
  ramFILE_imp& lines = lines_of(file);
  for (auto line = lines.begin(); line != lines.end(); ++line) {
    const auto first = line;
    std::string statement = *first;
    while (is_continued(statement) && line + 1 != lines.end()) {
      statement.resize(length_without_line_end(statement) - 1);
      *line++ = lines.copy("\n");
      statement += *line + skip_white_space(*line, 0);
    }
    if (line != first) *line = lines.copy(statement);
  }
}

void config_dos_or_unix(const char* /*hint*/) { slash = '/'; }
