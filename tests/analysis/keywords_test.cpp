#include "analysis/keywords.h"

#include <gtest/gtest.h>

#include <string>

#include "tests/support/settings_guard.h"

// clang-format off
static const struct { const char* name; int type; } units[] = {
  { "PROGRAM",    1 },
  { "MODULE",     0 },
  { "SUBROUTINE", 2 },
  { "FUNCTION",   3 },
  { "INTERFACE",  4 },
  { "TYPE",       5 },
};

static const struct { const char* word; int level; } highlights[] = {
  { "deallocate", 3 },
  { "allocate",   3 },
  { "case",       2 },
  { "select",     2 },
  { "enddo",      2 },
  { "continue",   2 },
  { "until",      2 },
  { "while",      2 },
  { "do",         2 },
  { "endif",      2 },
  { "elseif",     2 },
  { "else",       2 },
  { "then",       2 },
  { "if",         2 },
  { "type",       1 },
  { "interface",  1 },
  { "function",   1 },
  { "subroutine", 1 },
  { "module",     1 },
  { "program",    1 },
};

static const struct { std::uint32_t style; int highest_level; } styles[] = {
  { 8226,                      0 },   // as the program starts
  { 0,                         0 },
  { 0xffffffffu & ~7168u,      0 },   // all but the three level bits
  { 1024,                      1 },
  { 2048,                      2 },
  { 4096,                      3 },
  { 1024 | 2048,               2 },   // the widest level wins
  { 1024 | 4096,               3 },
  { 2048 | 4096,               3 },
  { 1024 | 2048 | 4096,        3 },
  { 8192 | 1024,               1 },   // "None" does not count
  { 0xffffffffu,               3 },
};
// clang-format on

TEST(MarkerList, ContainsTheSixUnitKeywordsInTheOrderInWhichTheyAreTried) {
  const Marker* entry = Marker::first;
  for (const auto& unit : units) {
    ASSERT_NE(nullptr, entry) << unit.name;
    EXPECT_STREQ(unit.name, entry->name);
    EXPECT_EQ(unit.type, static_cast<int>(entry->type)) << unit.name;
    entry = entry->next;
  }
  EXPECT_EQ(nullptr, entry);
}

TEST(SyntaxList, ContainsTheTwentyWordsWithTheirLevels) {
  const Syntax* entry = Syntax::first;
  for (const auto& highlight : highlights) {
    ASSERT_NE(nullptr, entry) << highlight.word;
    EXPECT_STREQ(highlight.word, entry->word);
    EXPECT_EQ(highlight.level, entry->level) << highlight.word;
    entry = entry->next;
  }
  EXPECT_EQ(nullptr, entry);
}

class IsSyntax : public testing::Test {
 protected:
  static Syntax* entry_of(const std::string& word) {
    Syntax* entry = Syntax::first;
    while (entry != nullptr && entry->word != word) entry = entry->next;
    return entry;
  }

  SettingsGuard guard;
};

TEST_F(IsSyntax, FindsTheWordsOfTheEnabledLevels) {
  for (const auto& c : styles) {
    html_style = c.style;
    for (const auto& highlight : highlights) {
      Syntax* const expected = highlight.level <= c.highest_level
                                   ? entry_of(highlight.word)
                                   : nullptr;
      const std::string text = std::string(highlight.word) + " (x) then";
      EXPECT_EQ(expected, isSyntax(text.c_str()))
          << text << " with style " << c.style;
    }
  }
}

TEST_F(IsSyntax, FindsOnlyAWholeWordAtTheVeryStartIgnoringCase) {
  html_style = 4096;
  EXPECT_EQ(entry_of("do"), isSyntax("do i = 1, n"));
  EXPECT_EQ(entry_of("do"), isSyntax("DO"));
  for (const char* text :
       {"end", "call", "use", "contains", "integer", "where", "iff", "endifs",
        "double", "do_loop", "type.x", " if", "(if)", "", "\xe9"})
    EXPECT_EQ(nullptr, isSyntax(text)) << text;
}

TEST_F(IsSyntax, FindsNoWordAboveLevelThree) {
  html_style = LEVEL_1 | LEVEL_2 | LEVEL_3;
  const Syntax word(4, "forall");
  EXPECT_EQ(nullptr, isSyntax("forall"));
  EXPECT_EQ(entry_of("allocate"), isSyntax("allocate"));
  Syntax::first = word.next;
}
