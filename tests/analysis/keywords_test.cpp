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

// The reverse of the order in which the entries are built.
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
// clang-format on

TEST(MarkerList, HoldsTheSixUnitKeywordsInTheOrderOfTrial) {
  const Marker* entry = Marker::first;
  for (const auto& unit : units) {
    ASSERT_NE(nullptr, entry) << unit.name;
    EXPECT_STREQ(unit.name, entry->name);
    EXPECT_EQ(unit.type, static_cast<int>(entry->type)) << unit.name;
    entry = entry->next;
  }
  EXPECT_EQ(nullptr, entry);
}

TEST(SyntaxList, HoldsTheTwentyWordsWithTheirLevels) {
  const Syntax* entry = Syntax::first;
  for (const auto& highlight : highlights) {
    ASSERT_NE(nullptr, entry) << highlight.word;
    EXPECT_STREQ(highlight.word, entry->word);
    EXPECT_EQ(highlight.level, entry->level) << highlight.word;
    entry = entry->next;
  }
  EXPECT_EQ(nullptr, entry);
}

// An entry of a table that lives no longer than its test.
template <class Entry>
struct Passing {
  template <class A, class B>
  Passing(A a, B b) : entry(a, b) {}
  ~Passing() { Entry::first = entry.next; }
  Entry entry;
};

TEST(MarkerList, TakesNewEntriesAtTheFront) {
  Marker* const before = Marker::first;
  const Passing<Marker> passing(DT_TYPE, "CLASS");
  EXPECT_EQ(&passing.entry, Marker::first);
  EXPECT_EQ(before, passing.entry.next);
  EXPECT_EQ(DT_TYPE, passing.entry.type);
  EXPECT_STREQ("CLASS", passing.entry.name);
}

TEST(SyntaxList, TakesNewEntriesAtTheFront) {
  Syntax* const before = Syntax::first;
  const Passing<Syntax> passing(2, "where");
  EXPECT_EQ(&passing.entry, Syntax::first);
  EXPECT_EQ(before, passing.entry.next);
  EXPECT_EQ(2, passing.entry.level);
  EXPECT_STREQ("where", passing.entry.word);
}

static const Marker* unit_keyword_of(const char* text, int* consumed) {
  const Marker* entry = Marker::first;
  while (entry != nullptr && !entry->In(text, consumed)) entry = entry->next;
  return entry;
}

TEST(MarkerIn, FindsItsKeywordAtTheStartOfAStatement) {
  for (const auto& unit : units) {
    int consumed = -1;
    const Marker* found = unit_keyword_of(
        (" \t" + std::string(unit.name) + " x").c_str(), &consumed);
    ASSERT_NE(nullptr, found) << unit.name;
    EXPECT_STREQ(unit.name, found->name);
    EXPECT_EQ(2 + static_cast<int>(std::string(unit.name).size()), consumed);
  }
}

TEST(MarkerIn, FindsNoKeywordFurtherOn) {
  for (const char* text :
       {"end subroutine f", "pure function f", "x = type", "programs", ""}) {
    int consumed = -1;
    EXPECT_EQ(nullptr, unit_keyword_of(text, &consumed)) << text;
  }
}

static Syntax* entry_of(const std::string& word) {
  Syntax* entry = Syntax::first;
  while (entry != nullptr && entry->word != word) entry = entry->next;
  return entry;
}

TEST(SyntaxIs, TakesItsWordWholeAtTheVeryStart) {
  const Syntax* entry = entry_of("do");
  ASSERT_NE(nullptr, entry);
  EXPECT_TRUE(entry->Is("do i = 1, n"));
  EXPECT_TRUE(entry->Is("DO"));
  EXPECT_TRUE(entry->Is("Do\r\n"));
  EXPECT_FALSE(entry->Is("double"));
  EXPECT_FALSE(entry->Is("do_loop"));
  EXPECT_FALSE(entry->Is("do.x"));
  EXPECT_FALSE(entry->Is(" do"));
  EXPECT_FALSE(entry->Is("d"));
  EXPECT_FALSE(entry->Is(""));
}

TEST(SyntaxIs, OfAnEmptyWordHoldsWhereNoWordBegins) {
  const Passing<Syntax> empty(1, "");
  EXPECT_TRUE(empty.entry.Is(""));
  EXPECT_TRUE(empty.entry.Is(" do"));
  EXPECT_TRUE(empty.entry.Is("(x)"));
  EXPECT_FALSE(empty.entry.Is("do"));
  EXPECT_FALSE(empty.entry.Is("_"));
  EXPECT_FALSE(empty.entry.Is("."));
}

// clang-format off
static const struct { std::uint32_t style; int highest_level; } styles[] = {
  { 8226,                      0 },   // as the program starts
  { 0,                         0 },
  { 0xffffffffu & ~7168u,      0 },   // everything but the three level bits
  { 1024,                      1 },
  { 2048,                      2 },
  { 4096,                      3 },
  { 1024 | 2048,               2 },   // the widest wins
  { 1024 | 4096,               3 },
  { 2048 | 4096,               3 },
  { 1024 | 2048 | 4096,        3 },
  { 8192 | 1024,               1 },   // "None" has no meaning of its own
  { 0xffffffffu,               3 },
};
// clang-format on

TEST(IsSyntax, FindsTheWordsOfTheEnabledLevels) {
  SettingsGuard guard;
  for (const auto& c : styles) {
    html_style = c.style;
    for (const auto& highlight : highlights) {
      Syntax* const expected = highlight.level <= c.highest_level
                                   ? entry_of(highlight.word)
                                   : nullptr;
      const std::string text = std::string(highlight.word) + " (x)";
      EXPECT_EQ(expected, isSyntax(text.c_str()))
          << text << " with style " << c.style;
    }
  }
}

TEST(IsSyntax, FindsIfWithLevelTwoOrThreeOnly) {
  SettingsGuard guard;
  html_style = 1024;
  EXPECT_EQ(nullptr, isSyntax("if (x) then"));
  for (const std::uint32_t level : {2048u, 4096u}) {
    html_style = level;
    ASSERT_NE(nullptr, isSyntax("if (x) then"));
    EXPECT_STREQ("if", isSyntax("if (x) then")->word);
  }
}

TEST(IsSyntax, FindsNothingElse) {
  SettingsGuard guard;
  html_style = 4096;
  for (const char* text :
       {"end", "call", "use", "contains", "integer", "where", "iff", "endifs",
        "do_loop", "type.x", " if", "(if)", "", "\xe9"})
    EXPECT_EQ(nullptr, isSyntax(text)) << text;
}

// The table has none now.
TEST(IsSyntax, FindsNoWordAboveTheWidestLevel) {
  SettingsGuard guard;
  html_style = LEVEL_1 | LEVEL_2 | LEVEL_3;
  const Syntax word(4, "forall");
  EXPECT_EQ(nullptr, isSyntax("forall"));
  EXPECT_EQ(entry_of("allocate"), isSyntax("allocate"));
  Syntax::first = word.next;
}

TEST(IsSyntax, IgnoresCase) {
  SettingsGuard guard;
  html_style = 4096;
  EXPECT_EQ(entry_of("elseif"), isSyntax("ELSEIF"));
  EXPECT_EQ(entry_of("deallocate"), isSyntax("DeAllocate(x)"));
}
