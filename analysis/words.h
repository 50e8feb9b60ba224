// What a word is, and how words and keywords are found and compared.
//
// A word is an unbroken run of letters, digits, "_" and "."; with the dot,
// operators such as .cross. are single words. Comparisons ignore case. The
// locale has no effect: bytes above 127 are neither word characters nor white
// space and have no other case. Columns are bytes counted from 0. Nothing here
// allocates or fails.

#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>

#include "driver/ascii.h"

/// Size of a buffer that receives a word, closing NUL included. Of longer words
/// every pass uses only the characters that fit.
constexpr int word_size = 256;

/// The column of the first character at or after a column that is not white
/// space.
inline int skip_white_space(const char* line, int column) {
  while (is_white_space(line[column])) ++column;
  return column;
}

/// Whether a character belongs to a word.
bool isALNUM(char c);

/// Compares two texts, ignoring case: 0 when they are equal. Otherwise the
/// result is the difference of the first characters that differ, in lower case,
/// `b`'s minus `a`'s. Deliberate: the sign is the opposite of strcmp's; when
/// one text ends first, the other's character is not turned into lower case.
int STRCMP(const char* a, const char* b);

/// The last component of a path: a pointer just past its last `slash`, or the
/// path itself when it holds none. Points into *file.
char* file_part(char** file);

/// Finds the next word of a line, at or after a column, and copies it. Part of
/// the interface; the passes use find_next().
///
///   line   NUL-terminated
///   word   receives the word; word_size bytes
///   start  in: where to begin; out: the column of the word's first character,
///          or of the line's end
///   end    out: the column just past the whole word, however long; equals
///          start when there is none
///
/// Returns false, with an empty word, when the line holds no further word.
bool NextWord(const char* line, char* word, int& start, int& end);

/// A hash of a name that ignores case.
using NameHash = std::uint64_t;

NameHash hash_of(std::string_view name);

namespace detail {

constexpr bool is_word_character(char c) {
  return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') ||
         (c >= '0' && c <= '9') || c == '_' || c == '.';
}

// What the scan of a line needs to know about a character: the upper-case form
// of a word character, or one of these two.
constexpr unsigned separator = 0;
constexpr unsigned line_end = 1;

inline constexpr auto forms = []() {
  std::array<unsigned char, 256> table{};
  table[0] = line_end;
  for (std::size_t value = 1; value < table.size(); ++value) {
    const auto c = static_cast<char>(value);
    if (is_word_character(c))
      table[value] = static_cast<unsigned char>(to_upper(c));
  }
  return table;
}();

inline unsigned form_of(char c) { return forms[static_cast<unsigned char>(c)]; }

// Rotating 64 bits by 7 keeps nine characters apart; older ones overlap them.
inline NameHash hash_with(NameHash hash, unsigned upper_case) {
  const int step = 7;
  return (hash << step | hash >> (64 - step)) ^ upper_case;
}

}  // namespace detail

/// A word of a line.
struct Word {
  int start = 0;
  int end = 0;  ///< just past the whole word
  /// The first word_size - 1 characters of the word, a view into the line. All
  /// passes compare these only.
  std::string_view name;
  NameHash hash = 0;  ///< of the name
};

/// Moves to the next word of a line; from a new Word, to the first. All passes
/// find the words of a line with this function. Returns false when there is no
/// further word.
inline bool find_next(const char* line, Word& word) {
  const char* at = line + word.end;
  while (detail::form_of(*at) == detail::separator) ++at;
  const char* const start = at;
  NameHash hash = 0;
  for (unsigned form; (form = detail::form_of(*at)) > detail::line_end; ++at)
    hash = detail::hash_with(hash, form);
  std::string_view name(start, static_cast<std::size_t>(at - start));
  if (name.size() >= word_size) {
    name = name.substr(0, word_size - 1);
    hash = hash_of(name);
  }
  word = {static_cast<int>(start - line), static_cast<int>(at - line), name,
          hash};
  return at != start;
}

/// Copies the first word of a text, or the empty text when there is none.
///
///   word  word_size bytes
void CopyWord(const char* text, char* word);

/// Whether a text begins, after white space, with a keyword that no further
/// word character follows. An empty keyword matches where no word begins.
///
///   consumed  out: the number of white-space characters skipped, plus the
///             keyword's length when it was found
bool match(const char* keyword, const char* text, int* consumed);

/// Whether a text begins with a word that no further word character follows. An
/// empty word matches where no word begins.
bool starts_with_word(const char* text, const char* word);
