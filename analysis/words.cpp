#include "analysis/words.h"

#include <cstring>

#include "driver/settings.h"

bool is_white_space(char c) { return c == ' ' || (c >= '\t' && c <= '\r'); }

int skip_white_space(const char* line, int column) {
  while (is_white_space(line[column])) ++column;
  return column;
}

char to_upper(char c) {
  return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c;
}

static char to_lower(char c) {
  return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

bool isALNUM(char c) {
  return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') ||
         (c >= '0' && c <= '9') || c == '_' || c == '.';
}

// Plain char is unsigned on some machines.
static int signed_value(char c) { return static_cast<signed char>(c); }

int STRCMP(const char* a, const char* b) {
  for (; *a != '\0' && *b != '\0'; ++a, ++b) {
    const int difference =
        signed_value(to_lower(*b)) - signed_value(to_lower(*a));
    if (difference != 0) return difference;
  }
  return *a == '\0' ? signed_value(*b) : -signed_value(*a);
}

char* file_part(char** file) {
  char* last_slash = std::strrchr(*file, slash);
  return last_slash == nullptr ? *file : last_slash + 1;
}

bool NextWord(const char* line, char* word, int& start, int& end) {
  while (line[start] != '\0' && !isALNUM(line[start])) ++start;
  end = start;
  int length = 0;
  for (; isALNUM(line[end]); ++end)
    if (length < word_size - 1) word[length++] = line[end];
  word[length] = '\0';
  return end > start;
}

bool next_word(const char* line, Word& word) {
  word.start = word.end;
  return NextWord(line, word.text, word.start, word.end);
}

void CopyWord(const char* text, char* word) {
  int start = 0;
  int end = 0;
  NextWord(text, word, start, end);
}

bool match(const char* keyword, const char* text, int* consumed) {
  *consumed = skip_white_space(text, 0);
  if (!starts_with_word(text + *consumed, keyword)) return false;
  *consumed += static_cast<int>(std::strlen(keyword));
  return true;
}

bool starts_with_word(const char* text, const char* word) {
  for (; *word != '\0'; ++text, ++word)
    if (to_upper(*text) != to_upper(*word)) return false;
  return !isALNUM(*text);
}
