#include "analysis/hash_table.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <string>
#include <vector>

using Hashes = std::vector<std::uint64_t>;

class HashTableTest : public ::testing::Test {
 protected:
  // The value of a hash; "none" when there is none.
  std::string value(std::uint64_t hash) {
    const std::string* found = table.find(hash);
    return found == nullptr ? "none" : *found;
  }

  HashTable<std::string> table;
};

TEST_F(HashTableTest, HasNoValuesAtTheStart) {
  for (const std::uint64_t hash : Hashes{0, 1, 2, ~std::uint64_t{0}})
    EXPECT_EQ("none", value(hash)) << hash;
}

TEST_F(HashTableTest, AddsAValueAndTellsSo) {
  const auto [added, is_new] = table.try_emplace(7, "seven");
  EXPECT_TRUE(is_new);
  EXPECT_EQ("seven", *added);
  EXPECT_EQ(added, table.find(7));
  EXPECT_EQ("none", value(8));
}

TEST_F(HashTableTest, KeepsTheFirstValueOfAHash) {
  table.try_emplace(7, "seven");
  const auto [known, is_new] = table.try_emplace(7, "another");
  EXPECT_FALSE(is_new);
  EXPECT_EQ("seven", *known);
  EXPECT_EQ("seven", value(7));
}

TEST_F(HashTableTest, GivesValuesToBeChanged) {
  *table.try_emplace(7, "seven").first += "!";
  EXPECT_EQ("seven!", value(7));
  *table.find(7) += "!";
  EXPECT_EQ("seven!!", value(7));
}

// Empty slots are marked by 0, which a hash can be, too.
TEST_F(HashTableTest, TakesAHashOf0ForOneOf1) {
  EXPECT_TRUE(table.try_emplace(0, "zero").second);
  EXPECT_FALSE(table.try_emplace(0, "another").second);
  EXPECT_EQ("zero", value(0));
  EXPECT_EQ("zero", value(1));
  EXPECT_EQ("none", value(2));
}

TEST_F(HashTableTest, FindsEachOfManyValuesWhileItGrows) {
  const struct {
    const char* name;
    std::uint64_t first;
    std::uint64_t step;
  } rows[] = {
      {"neighbours", 2, 1},
      {"equal low halves", 5, std::uint64_t{1} << 32},
      {"equal low bits", 0x123456789ABCDEF0u, 1 << 20},
      {"down from the last", ~std::uint64_t{0}, ~std::uint64_t{0}},
  };
  const std::uint64_t count = 20000;
  for (const auto& row : rows) {
    table.clear();
    for (std::uint64_t i = 0; i < count; ++i)
      ASSERT_TRUE(
          table.try_emplace(row.first + i * row.step, std::to_string(i)).second)
          << row.name << ' ' << i;
    for (std::uint64_t i = 0; i < count; ++i)
      ASSERT_EQ(std::to_string(i), value(row.first + i * row.step))
          << row.name << ' ' << i;
    for (std::uint64_t i = count; i < 2 * count; ++i)
      ASSERT_EQ("none", value(row.first + i * row.step))
          << row.name << ' ' << i;
  }
}

TEST_F(HashTableTest, AnswersAtEverySize) {
  for (std::uint64_t i = 2; i < 1000; ++i) {
    ASSERT_EQ("none", value(i)) << i;
    table.try_emplace(i, std::to_string(i));
    ASSERT_EQ(std::to_string(i), value(i));
    ASSERT_EQ("2", value(2)) << i;
  }
}

// All of these hashes want the last slot of a small table, and go round its
// end.
TEST_F(HashTableTest, PutsWhatWantsATakenSlotIntoTheNextFreeOne) {
  Hashes wanted;
  for (std::uint64_t hash = 2; wanted.size() < 40; ++hash)
    if ((hash * 0x9E3779B97F4A7C15u >> 32) % 64 == 63) wanted.push_back(hash);
  for (const std::uint64_t hash : wanted)
    table.try_emplace(hash, std::to_string(hash));
  for (const std::uint64_t hash : wanted)
    EXPECT_EQ(std::to_string(hash), value(hash));
}

TEST_F(HashTableTest, HasNoValuesOnceCleared) {
  for (std::uint64_t i = 0; i < 500; ++i) table.try_emplace(i, "old");
  table.clear();
  for (std::uint64_t i = 0; i < 500; ++i) EXPECT_EQ("none", value(i)) << i;
  EXPECT_TRUE(table.try_emplace(7, "new").second);
  EXPECT_EQ("new", value(7));
  EXPECT_EQ("none", value(8));
  table.clear();
  table.clear();
  EXPECT_EQ("none", value(7));
}
