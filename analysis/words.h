// What a word is, and how words and keywords are found and compared.
//
// A word is an unbroken run of letters, digits, "_" and "."; the dot belongs to
// it so that dotted operators such as .cross. are single words. Case is ignored
// in every comparison. Characters are classed as ASCII, whatever the locale:
// bytes above 127 are neither word characters nor white space and have no other
// case. Columns are bytes counted from 0. Nothing here allocates or fails.

#ifndef ZELKOR_ANALYSIS_WORDS_H
#define ZELKOR_ANALYSIS_WORDS_H

/// Size of a buffer that receives a word, closing NUL included. Longer words
/// are known by as many characters as fit, in every pass the same.
constexpr int word_size = 256;

/// Whether a character is a blank or one of \t \n \v \f \r.
bool is_white_space(char c);

/// The column of the first character at or after a column that is not white
/// space.
int skip_white_space(const char* line, int column);

/// The upper-case form of an ASCII letter; any other character is unchanged.
char to_upper(char c);

/// Whether a character belongs to a word.
bool isALNUM(char c);

/// Compares two texts without regard to case: 0 when they are equal.
/// Deliberate: otherwise the sign is the opposite of strcmp's. It is the
/// difference of the first characters that differ, in lower case, `b`'s minus
/// `a`'s; when one text ends first, the other's character counts as it stands.
int STRCMP(const char* a, const char* b);

/// The last component of a path: a pointer just past its last `slash`, or the
/// path itself when it holds none. Points into *file.
char* file_part(char** file);

/// Finds the next word of a line, at or after a column.
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

/// A word of a line and the columns where it stands.
struct Word {
  char text[word_size] = "";  ///< cut to what fits
  int start = 0;
  int end = 0;  ///< just past the whole word
};

/// Moves on to the next word of a line; a new Word stands before the first one.
/// All passes walk the words of a line this way. Returns false when there is no
/// further word.
bool next_word(const char* line, Word& word);

/// Copies the first word of a text; the empty text when there is none.
///
///   word  word_size bytes
void CopyWord(const char* text, char* word);

/// Whether a text begins, after white space, with a keyword that no further
/// word character follows. An empty keyword is found where no word begins.
///
///   consumed  out: the number of white-space characters skipped, plus the
///             keyword's length when it was found
bool match(const char* keyword, const char* text, int* consumed);

/// Whether a word stands at the very start of a text and no further word
/// character follows. An empty word is found where no word begins.
bool starts_with_word(const char* text, const char* word);

#endif
