#include "analysis/words.h"

#include <cstring>

#include "driver/settings.h"

static char to_lower(char c) {
  return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

bool isALNUM(char c) { return detail::form_of(c) > detail::line_end; }

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

NameHash hash_of(std::string_view name) {
  NameHash hash = 0;
  for (const char c : name)
    hash = detail::hash_with(hash, static_cast<unsigned char>(to_upper(c)));
  return hash;
}

bool NextWord(const char* line, char* word, int& start, int& end) {
  Word next;
  next.end = start;
  const bool found = find_next(line, next);
  word[next.name.copy(word, word_size - 1)] = '\0';
  start = next.start;
  end = next.end;
  return found;
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
