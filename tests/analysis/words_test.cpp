#include "analysis/words.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "analysis/declaration.h"
#include "analysis/keywords.h"
#include "tests/support/file_list.h"
#include "tests/support/settings_guard.h"

using namespace std::string_literals;

// A word of this length without equal neighbouring characters.
static std::string word_of(std::size_t length) {
  std::string word;
  while (word.size() < length) word += "abcdefghij_0123456789.";
  return word.substr(0, length);
}

TEST(IsAlnum, AcceptsOnlyAsciiLettersDigitsUnderscoreAndDot) {
  std::string word_characters;
  for (int b = 0; b < 256; ++b)
    if (isALNUM(static_cast<char>(b))) word_characters += static_cast<char>(b);
  EXPECT_EQ(".0123456789ABCDEFGHIJKLMNOPQRSTUVWXYZ_abcdefghijklmnopqrstuvwxyz",
            word_characters);
}

TEST(SkipWhiteSpace, StopsAtTheFirstCharacterThatIsNotWhiteSpace) {
  EXPECT_EQ(6, skip_white_space(" \t\n\v\f\rx ", 0));
  EXPECT_EQ(3, skip_white_space("a  b", 1));
  EXPECT_EQ(0, skip_white_space("a  b", 0));
  EXPECT_EQ(2, skip_white_space("  ", 0));
}

// clang-format off
static const struct { std::string a; std::string b; int result; }
comparisons[] = {
  { "abc",  "ABC",  0 },
  { "",     "",     0 },
  { "a_1.", "A_1.", 0 },
  { "abc",  "abd",  1 },            // second minus first
  { "abd",  "abc", -1 },
  { "a",    "Z",   'z' - 'a' },     // both in lower case
  { "Z",    "a",   'a' - 'z' },
  { "_",    "A",   'a' - '_' },
  { "ab",   "abC", 'C' },           // at an end, not in lower case
  { "ab",   "abc", 'c' },
  { "abC",  "ab", -'C' },
  { "",     "A",   'A' },
  { "A",    "",   -'A' },
  { "\xe9", "a",   'a' + 0x17 },    // 0xe9 is -0x17
  { "a",    "\xe9", -0x17 - 'a' },
  { "",     "\xe9", -0x17 },
  { "\xe9", "",     0x17 },
  { "\xc9", "\xe9", 0x20 },         // only ASCII has case
  { std::string(300, 'a') + "b", std::string(300, 'A') + "c", 1 },
};

static const struct { std::string path; char separator; std::size_t part; }
paths[] = {
  { "src/a.f90",     '/',  4 },
  { "/me/src/a.f90", '/',  8 },
  { "/a.f90",        '/',  1 },
  { "src/",          '/',  4 },
  { "a.f90",         '/',  0 },
  { "",              '/',  0 },
  { "src\\a.f90",    '/',  0 },
  { "src\\a.f90",    '\\', 4 },
  { "src/a.f90",     '\\', 0 },
};
// clang-format on

TEST(Strcmp, ReturnsTheDifferenceWithReversedSign) {
  for (const auto& c : comparisons)
    EXPECT_EQ(c.result, STRCMP(c.a.c_str(), c.b.c_str()))
        << c.a << " and " << c.b;
}

TEST(FilePart, ReturnsWhatFollowsTheLastSeparator) {
  SettingsGuard guard;
  for (const auto& c : paths) {
    slash = c.separator;
    FileList files({c.path});
    EXPECT_EQ(*files.slot(0) + c.part, file_part(files.slot(0))) << c.path;
  }
}

// clang-format off
static const struct {
  std::string line;
  int from;
  std::string word;   // empty: there is none
  int start;
  int end;
} next_words[] = {
  { "  call foo_bar(x)",  0, "call",     2,  6 },
  { "  call foo_bar(x)",  6, "foo_bar",  7, 14 },
  { "  call foo_bar(x)", 14, "x",       15, 16 },
  { "  call foo_bar(x)", 16, "",        17, 17 },
  { "  call foo_bar(x)", 17, "",        17, 17 },
  { "     ",              0, "",         5,  5 },
  { "",                   0, "",         0,  0 },
  { "solve",              2, "lve",      2,  5 },   // starts within a word
  { "(SoLvE\0more"s,      0, "SoLvE",    1,  6 },
  { "(\0more"s,           0, "",         1,  1 },
  { "(" + word_of(254) + ") x",  0, word_of(254), 1,  255 },
  { "(" + word_of(255) + ") x",  0, word_of(255), 1,  256 },
  { "(" + word_of(256) + ") x",  0, word_of(255), 1,  257 },
  { "(" + word_of(4000) + ") x", 0, word_of(255), 1, 4001 },
};
// clang-format on

TEST(NextWord, CopiesTheNextWordAndReturnsItsColumns) {
  for (const auto& c : next_words) {
    char word[word_size] = "left over";
    int start = c.from;
    int end = -1;
    EXPECT_EQ(!c.word.empty(), NextWord(c.line.c_str(), word, start, end));
    EXPECT_EQ(c.word, word);
    EXPECT_EQ(c.start, start) << c.line;
    EXPECT_EQ(c.end, end) << c.line;
  }
}

TEST(CopyWord, CopiesTheFirstWord) {
  for (const auto& c : next_words) {
    char word[word_size] = "left over";
    CopyWord(c.line.c_str() + c.from, word);
    EXPECT_EQ(c.word, word);
  }
}

// clang-format off
static const struct {
  std::string line;
  std::vector<std::string> words;
} word_lines[] = {
  { "a.eq.b",              {"a.eq.b"} },          // the dots belong to the word
  { "a .eq. b",            {"a", ".eq.", "b"} },
  { "u%v => w_1*2.5e3",    {"u", "v", "w_1", "2.5e3"} },
  { "End Solve\r\n",       {"End", "Solve"} },
  { "d\xe9" "but;\xff" "x", {"d", "but", "x"} },  // only ASCII counts
  { "'it''s'\t\"q\"",      {"it", "s", "q"} },
  { "...",                 {"..."} },
  { "+-*/=<>&!@#$^~`?{}",  {} },
  { word_of(255) + " x",   {word_of(255), "x"} },
  { word_of(256) + " x",   {word_of(255), "x"} },
  { std::string(100000, 'a'), {std::string(255, 'a')} },
};
// clang-format on

TEST(WordWalk, SplitsALineAtEveryCharacterThatIsNotAWordCharacter) {
  for (const auto& c : word_lines) {
    std::vector<std::string> words;
    for (Word word; find_next(c.line.c_str(), word);) {
      words.emplace_back(word.name);
      EXPECT_EQ(hash_of(words.back()), word.hash) << words.back();
    }
    EXPECT_EQ(c.words, words) << c.line;
  }
}

TEST(WordHash, RotatesBySevenBitsAndAddsTheUpperCaseCharacter) {
  EXPECT_EQ(0u, hash_of(""));
  EXPECT_EQ(0x41u, hash_of("a"));
  EXPECT_EQ(0x20C2u, hash_of("ab"));  // 0x2080 and 0x42
  EXPECT_EQ(0xE9u, hash_of("\xe9"));
  EXPECT_EQ(hash_of("SOLVE_2.X"), hash_of("sOlVe_2.x"));
  // The first of ten characters is rotated by 63 bits: one to the right.
  EXPECT_EQ(0x8000000000000020u ^ hash_of("\1\1\1\1\1\1\1\1\1"),
            hash_of("A\1\1\1\1\1\1\1\1\1"));
  EXPECT_NE(hash_of(word_of(254)), hash_of(word_of(255)));
}

// clang-format off
static const struct {
  std::string keyword;
  std::string text;
  bool found;
  int consumed;
} matches[] = {
  { "TYPE", "   type(point) :: p", true,  7 },
  { "TYPE", "type point",          true,  4 },
  { "type", "TYPE",                true,  4 },
  { "TYPE", "tYpE\r\n",            true,  4 },
  { "TYPE", " \t\n\v\f\rtype",     true, 10 },
  { "TYPE", "typedef",             false, 0 },
  { "TYPE", "x = type",            false, 0 },   // not the first word
  { "TYPE", "type.x",              false, 0 },   // the dot belongs to the word
  { "TYPE", "  typ",               false, 2 },
  { "TYPE", "  typedef",           false, 2 },
  { "TYPE", "\xa0type",            false, 0 },   // only ASCII counts
  { "TYPE", "",                    false, 0 },
  { "TYPE", "   ",                 false, 3 },
  { "",     "",                    true,  0 },
  { "",     "  ",                  true,  2 },
  { "",     " (x)",                true,  1 },
  { "",     " x",                  false, 1 },
  { word_of(300), std::string(4000, ' ') + word_of(300),       true,  4300 },
  { word_of(300), std::string(4000, ' ') + word_of(300) + "x", false, 4000 },
};

static const struct { const char* word; const char* text; bool starts; }
word_starts[] = {
  { "do",      "do i = 1, n", true },
  { "do",      "DO",          true },    // the end of the text ends the word
  { "DO",      "do\n",        true },
  { "do",      "double",      false },
  { "do",      "do_loop",     false },
  { "do",      "do.",         false },
  { "do",      "do1",         false },
  { "do",      "d",           false },
  { "do",      "",            false },
  { "do",      " do",         false },   // no white space is skipped
  { "do",      "do\xe9",      true },
  { ".cross.", ".CROSS.b",    false },
  { ".cross.", ".CROSS. b",   true },
  { "",        "(x)",         true },
  { "",        "",            true },
  { "",        "x",           false },
  { "",        ".",           false },
};
// clang-format on

TEST(Match, FindsAKeywordOnlyAtTheStartOfAStatement) {
  for (const auto& c : matches) {
    int consumed = -1;
    EXPECT_EQ(c.found, match(c.keyword.c_str(), c.text.c_str(), &consumed))
        << "\"" << c.keyword << "\" in \"" << c.text << "\"";
    EXPECT_EQ(c.consumed, consumed)
        << "\"" << c.keyword << "\" in \"" << c.text << "\"";
  }
}

TEST(StartsWithWord, AcceptsOnlyAWholeWordAtTheVeryStart) {
  SettingsGuard guard;
  for (const auto& c : word_starts) {
    SCOPED_TRACE("\""s + c.word + "\" in \"" + c.text + "\"");
    EXPECT_EQ(c.starts, starts_with_word(c.text, c.word));
    EXPECT_EQ(c.starts,
              (new Declaration(DT_TYPE, c.word, nullptr, 1))->Is(c.text));
    const Syntax entry(1, c.word);
    Syntax::first = entry.next;
    EXPECT_EQ(c.starts, entry.Is(c.text));
  }
}
