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

// Deliberate: the apostrophe delimits nothing, so its strings stay visible and
// a "!" inside one starts a comment.
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

// ramFILE_imp is the only implementation there is.
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

void merge_F90_continuations(ramFILE* file) {
  if (file == nullptr) return;
  file->rewind();
  ramFILE_imp& lines = lines_of(file);
  for (auto line = lines.begin(); lines.end() - line > 1; ++line) {
    const auto next = line + 1;
    // The rule looks at the raw text: blanks or a comment after the "&" end
    // the statement.
    const std::size_t length = length_without_line_end(*line);
    if (length == 0 || (*line)[length - 1] != '&') continue;
    std::string joined(*line, length - 1);
    joined += *next + skip_white_space(*next, 0);
    *next = lines.copy(joined);
    *line = lines.copy("\n");
  }
}

void config_dos_or_unix(const char* /*hint*/) { slash = '/'; }
