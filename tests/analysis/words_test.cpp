#include "analysis/words.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "analysis/declarations.h"
#include "tests/support/file_list.h"
#include "tests/support/settings_guard.h"

using namespace std::string_literals;

// Every value that a character can have.
static std::string all_bytes() {
  std::string bytes;
  for (int b = 0; b < 256; ++b) bytes += static_cast<char>(b);
  return bytes;
}

static std::string those_that(bool (*holds)(char)) {
  std::string bytes;
  for (const char c : all_bytes())
    if (holds(c)) bytes += c;
  return bytes;
}

TEST(IsAlnum, TakesAsciiLettersDigitsUnderscoreAndDotAlone) {
  EXPECT_EQ(".0123456789ABCDEFGHIJKLMNOPQRSTUVWXYZ_abcdefghijklmnopqrstuvwxyz",
            those_that(isALNUM));
}

TEST(SkipWhiteSpace, StopsAtTheFirstOtherCharacter) {
  EXPECT_EQ(6, skip_white_space(" \t\n\v\f\rx ", 0));
  EXPECT_EQ(3, skip_white_space("a  b", 1));
  EXPECT_EQ(0, skip_white_space("a  b", 0));
  EXPECT_EQ(0, skip_white_space("\xa0", 0));
  EXPECT_EQ(2, skip_white_space("  ", 0));
  EXPECT_EQ(0, skip_white_space("", 0));
}

// clang-format off
static const struct { const char* a; const char* b; int result; }
comparisons[] = {
  { "abc",  "ABC",  0 },
  { "",     "",     0 },
  { "a_1.", "A_1.", 0 },
  { "abc",  "abd",  1 },            // the second's minus the first's
  { "abd",  "abc", -1 },
  { "a",    "Z",   'z' - 'a' },     // both in lower case
  { "Z",    "a",   'a' - 'z' },
  { "_",    "A",   'a' - '_' },
  { "ab",   "abC", 'C' },           // one that ends: the other as it stands
  { "ab",   "abc", 'c' },
  { "abC",  "ab", -'C' },
  { "",     "A",   'A' },
  { "A",    "",   -'A' },
  { "\xe9", "a",   'a' + 0x17 },    // 0xe9 is -0x17
  { "a",    "\xe9", -0x17 - 'a' },
  { "",     "\xe9", -0x17 },
  { "\xe9", "",     0x17 },
  { "\xc9", "\xe9", 0x20 },         // no case beyond ASCII
};
// clang-format on

TEST(Strcmp, GivesTheDifferenceWithTheSignReversed) {
  for (const auto& c : comparisons)
    EXPECT_EQ(c.result, STRCMP(c.a, c.b)) << c.a << " and " << c.b;
}

TEST(Strcmp, ComparesWholeTextsHoweverLong) {
  const std::string a(300, 'a');
  EXPECT_EQ(0, STRCMP(a.c_str(), std::string(300, 'A').c_str()));
  EXPECT_EQ(1, STRCMP((a + "b").c_str(), (a + "c").c_str()));
}

static std::string file_part_of(std::string path) {
  char* slot = path.data();
  return file_part(&slot);
}

TEST(FilePart, IsWhatFollowsTheLastSlash) {
  EXPECT_EQ("a.f90", file_part_of("src/a.f90"));
  EXPECT_EQ("a.f90", file_part_of("/home/me/src/a.f90"));
  EXPECT_EQ("a.f90", file_part_of("/a.f90"));
  EXPECT_EQ("", file_part_of("src/"));
}

TEST(FilePart, OfANameWithoutSeparatorIsTheNameItself) {
  char name[] = "a.f90";
  char* slot = name;
  EXPECT_EQ(name, file_part(&slot));
  EXPECT_EQ("", file_part_of(""));
  EXPECT_EQ("src\\a.f90", file_part_of("src\\a.f90"));
}

TEST(FilePart, PointsIntoThePath) {
  char path[] = "src/a.f90";
  char* slot = path;
  EXPECT_EQ(path + 4, file_part(&slot));
  EXPECT_EQ(path, slot);
}

TEST(FilePart, GoesByTheSettingOfThePathSeparator) {
  SettingsGuard guard;
  slash = '\\';
  EXPECT_EQ("a.f90", file_part_of("src\\a.f90"));
  EXPECT_EQ("src/a.f90", file_part_of("src/a.f90"));
}

// What one call of NextWord() answers.
struct Found {
  bool any;
  std::string word;
  int start;
  int end;

  bool operator==(const Found& other) const {
    return any == other.any && word == other.word && start == other.start &&
           end == other.end;
  }
};

static std::ostream& operator<<(std::ostream& out, const Found& found) {
  return out << (found.any ? "\"" : "no \"") << found.word << "\" from "
             << found.start << " to " << found.end;
}

static Found next_word(const std::string& line, int start) {
  char word[word_size] = "left over";
  int end = -1;
  const bool any = NextWord(line.c_str(), word, start, end);
  return {any, word, start, end};
}

TEST(NextWord, GivesWordAfterWordWithTheirColumns) {
  const char* line = "  call foo_bar(x)";
  EXPECT_EQ((Found{true, "call", 2, 6}), next_word(line, 0));
  EXPECT_EQ((Found{true, "foo_bar", 7, 14}), next_word(line, 6));
  EXPECT_EQ((Found{true, "x", 15, 16}), next_word(line, 14));
  EXPECT_EQ((Found{false, "", 17, 17}), next_word(line, 16));
}

TEST(NextWord, OfALineOfBlanksIsFalseAndEmpty) {
  EXPECT_EQ((Found{false, "", 5, 5}), next_word("     ", 0));
}

TEST(NextWord, OfAnEmptyLineIsFalseAndEmpty) {
  EXPECT_EQ((Found{false, "", 0, 0}), next_word("", 0));
}

TEST(NextWord, BeginsInTheMiddleOfAWordWhenAskedTo) {
  EXPECT_EQ((Found{true, "lve", 2, 5}), next_word("solve", 2));
}

TEST(NextWord, KeepsCaseAndSeesNothingBeyondANul) {
  EXPECT_EQ((Found{true, "SoLvE", 1, 6}), next_word("(SoLvE\0more"s, 0));
  EXPECT_EQ((Found{false, "", 1, 1}), next_word("(\0more"s, 0));
}

// clang-format off
static const struct {
  const char* line;
  std::vector<std::string> words;
} word_lines[] = {
  { "a.eq.b",              {"a.eq.b"} },          // the dots belong to the word
  { "a .eq. b",            {"a", ".eq.", "b"} },
  { "u%v => w_1*2.5e3",    {"u", "v", "w_1", "2.5e3"} },
  { "end solve\r\n",       {"end", "solve"} },
  { "d\xe9" "but;\xff" "x", {"d", "but", "x"} },  // above 127: separators
  { "'it''s'\t\"q\"",      {"it", "s", "q"} },
  { "...",                 {"..."} },
  { "+-*/=<>&!@#$^~`?{}",  {} },
};
// clang-format on

static std::vector<std::string> words_of(const std::string& line) {
  std::vector<std::string> words;
  for (Word word; find_next(line.c_str(), word);) words.emplace_back(word.name);
  return words;
}

TEST(WordWalk, SeparatesAtWhateverIsNoWordCharacter) {
  for (const auto& c : word_lines)
    EXPECT_EQ(c.words, words_of(c.line)) << c.line;
}

TEST(WordWalk, TellsWhereEachWordStands) {
  const char* line = "  call foo_bar(x)";
  const Found expected[] = {{true, "call", 2, 6},
                            {true, "foo_bar", 7, 14},
                            {true, "x", 15, 16},
                            {false, "", 17, 17},
                            {false, "", 17, 17}};
  Word word;
  for (const Found& found : expected) {
    const bool any = find_next(line, word);
    EXPECT_EQ(found,
              (Found{any, std::string(word.name), word.start, word.end}));
  }
}

static std::string first_word(const std::string& text) {
  char word[word_size] = "left over";
  CopyWord(text.c_str(), word);
  return word;
}

TEST(CopyWord, CopiesTheFirstWord) {
  EXPECT_EQ("point", first_word(" :: point, other"));
  EXPECT_EQ("Solve", first_word("Solve"));
  EXPECT_EQ(".cross.", first_word("(.cross.)"));
}

TEST(CopyWord, IsEmptyWhenThereIsNone) {
  for (const auto& text : {""s, "   "s, "(+)\r\n"s, "\xe9"s, "\0point"s})
    EXPECT_EQ("", first_word(text)) << text;
}

// A word of each length, its characters all different from their neighbours.
static std::string word_of(std::size_t length) {
  std::string word;
  while (word.size() < length) word += "abcdefghij_0123456789.";
  return word.substr(0, length);
}

TEST(LongWord, IsKnownByItsFirst255Characters) {
  const std::string known = word_of(255);
  for (const std::size_t length : {254u, 255u, 256u, 300u, 4000u}) {
    const std::string word = word_of(length);
    const int end = static_cast<int>(length) + 2;
    EXPECT_EQ((Found{true, word.substr(0, 255), 2, end}),
              next_word("( " + word + ") x", 0))
        << length;
    EXPECT_EQ(word.substr(0, 255), first_word("( " + word + ") x")) << length;
  }
}

TEST(LongWord, IsOneWordToTheScan) {
  EXPECT_EQ((std::vector<std::string>{word_of(255), "x"}),
            words_of(word_of(300) + " x"));
  EXPECT_EQ((std::vector<std::string>{std::string(255, 'a')}),
            words_of(std::string(100000, 'a')));
}

TEST(LongWord, StaysWithinTheBuffer) {
  struct {
    char word[word_size];
    char beyond[4];
  } buffer = {"", "abc"};
  CopyWord(word_of(300).c_str(), buffer.word);
  EXPECT_EQ(word_of(255), buffer.word);
  EXPECT_STREQ("abc", buffer.beyond);
}

static NameHash first_hash(const std::string& line) {
  Word word;
  find_next(line.c_str(), word);
  return word.hash;
}

TEST(WordHash, RotatesBySevenBitsAndAddsTheUpperCaseCharacter) {
  EXPECT_EQ(0u, hash_of(""));
  EXPECT_EQ(0x41u, hash_of("a"));
  EXPECT_EQ(0x20C2u, hash_of("ab"));  // 0x2080 and 0x42
  EXPECT_EQ(0xE9u, hash_of("\xe9"));
  // The first of ten characters is rotated by 63 bits, and so its bits stand
  // one place lower and the lowest at the top.
  EXPECT_EQ(0x8000000000000020u ^ hash_of("\1\1\1\1\1\1\1\1\1"),
            hash_of("A\1\1\1\1\1\1\1\1\1"));
}

TEST(WordHash, IsThatOfTheNameWhereverTheWordStands) {
  for (const auto& c : word_lines) {
    const std::string line = c.line;
    std::size_t i = 0;
    for (Word word; find_next(line.c_str(), word); ++i)
      EXPECT_EQ(hash_of(c.words[i]), word.hash) << c.words[i];
  }
}

TEST(WordHash, IgnoresTheCaseOfAsciiLettersAlone) {
  EXPECT_EQ(hash_of("SOLVE_2.X"), hash_of("sOlVe_2.x"));
  EXPECT_EQ(hash_of("SOLVE_2.X"), first_hash("sOlVe_2.x"));
  for (const char c : all_bytes()) {
    if (c == '\0') continue;
    const std::string name = {'x', c, 'x'};
    const std::string upper = {'X', to_upper(c), 'X'};
    EXPECT_EQ(hash_of(upper), hash_of(name)) << name;
  }
  EXPECT_NE(hash_of("\xc9"), hash_of("\xe9"));
}

TEST(WordHash, TellsNamesApartThatDifferInOneCharacter) {
  for (const std::size_t length : {1u, 9u, 10u, 64u, 255u}) {
    const std::string name = word_of(length);
    for (std::size_t i = 0; i < length; ++i) {
      std::string other = name;
      other[i] = '#';
      EXPECT_NE(hash_of(name), hash_of(other)) << i;
    }
  }
}

TEST(WordHash, IsThatOfTheFirst255Characters) {
  const NameHash known = hash_of(word_of(255));
  for (const std::size_t length : {255u, 256u, 257u, 300u, 4000u}) {
    EXPECT_EQ(known, first_hash("( " + word_of(length) + ")")) << length;
  }
  EXPECT_NE(known, hash_of(word_of(254)));
  EXPECT_NE(known, first_hash(word_of(254)));
}

TEST(WordHash, OfNoWordIsThatOfTheEmptyName) {
  for (const char* line : {"", "  ", "(+)\n"}) EXPECT_EQ(0u, first_hash(line));
}

// clang-format off
static const struct {
  const char* keyword;
  const char* text;
  bool found;
  int consumed;
} matches[] = {
  { "TYPE", "   type(point) :: p", true,  7 },
  { "TYPE", "type point",          true,  4 },
  { "type", "TYPE",                true,  4 },
  { "TYPE", "tYpE\r\n",            true,  4 },
  { "TYPE", " \t\n\v\f\rtype",     true, 10 },
  { "TYPE", "type\xe9",            true,  4 },   // a byte above 127 ends a word
  { "TYPE", "typedef",             false, 0 },
  { "TYPE", "x = type",            false, 0 },   // not the first word
  { "TYPE", "type.x",              false, 0 },   // the dot belongs to the word
  { "TYPE", "type_x",              false, 0 },
  { "TYPE", "type2",               false, 0 },
  { "TYPE", "typ",                 false, 0 },   // ends too early
  { "TYPE", "  typ",               false, 2 },
  { "TYPE", "  typedef",           false, 2 },
  { "TYPE", "\xa0type",            false, 0 },   // no white space beyond ASCII
  { "TYPE", "",                    false, 0 },
  { "TYPE", "   ",                 false, 3 },
  { "",     "",                    true,  0 },
  { "",     "  ",                  true,  2 },
  { "",     " (x)",                true,  1 },
  { "",     " x",                  false, 1 },
  { "",     ".",                   false, 0 },
};
// clang-format on

TEST(Match, FindsAKeywordAtTheStartOfAStatement) {
  for (const auto& c : matches) {
    int consumed = -1;
    EXPECT_EQ(c.found, match(c.keyword, c.text, &consumed))
        << "\"" << c.keyword << "\" in \"" << c.text << "\"";
    EXPECT_EQ(c.consumed, consumed)
        << "\"" << c.keyword << "\" in \"" << c.text << "\"";
  }
}

TEST(Match, TakesKeywordsOfAnyLengthAfterAnyAmountOfWhiteSpace) {
  const std::string keyword = word_of(300);
  const std::string text = std::string(4000, ' ') + keyword;
  int consumed = -1;
  EXPECT_TRUE(match(keyword.c_str(), text.c_str(), &consumed));
  EXPECT_EQ(4300, consumed);
  EXPECT_FALSE(match(keyword.c_str(), (text + "x").c_str(), &consumed));
  EXPECT_EQ(4000, consumed);
}

// clang-format off
static const struct { const char* word; const char* text; bool holds; }
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
};
// clang-format on

TEST(StartsWithWord, TakesWholeWordsAtTheVeryStart) {
  for (const auto& c : word_starts)
    EXPECT_EQ(c.holds, starts_with_word(c.text, c.word))
        << "\"" << c.word << "\" in \"" << c.text << "\"";
}

TEST(DeclarationIs, TakesItsNameAsAWholeWordAtTheVeryStart) {
  SettingsGuard guard;
  FileList files({"a.f90"});
  for (const auto& c : word_starts) {
    std::string name = c.word;
    EXPECT_EQ(
        c.holds,
        (new Declaration(DT_TYPE, name.data(), files.slot(0), 1))->Is(c.text))
        << "\"" << c.word << "\" in \"" << c.text << "\"";
  }
}
