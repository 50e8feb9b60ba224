#include "analysis/hash_filter.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <memory>

// Numbers that have little in common.
static std::uint64_t scattered(std::uint64_t i) {
  const std::uint64_t odd = 0xBF58476D1CE4E5B9u;
  i = (i + 1) * odd;
  return (i ^ i >> 31) * odd;
}

class HashFilterTest : public ::testing::Test {
 protected:
  // Too large for the stack, as others are that live until the program ends.
  const std::unique_ptr<HashFilter> filter = std::make_unique<HashFilter>();
};

TEST_F(HashFilterTest, ContainsNothingAtTheStart) {
  for (std::uint64_t i = 0; i < 1000; ++i) {
    EXPECT_FALSE(filter->may_contain(i)) << i;
    EXPECT_FALSE(filter->may_contain(scattered(i))) << i;
  }
}

TEST_F(HashFilterTest, ContainsAllThatWasAdded) {
  const std::uint64_t bounds[] = {0, 1, 0x8000000000000000u, ~std::uint64_t{0}};
  for (const std::uint64_t hash : bounds) filter->add(hash);
  for (std::uint64_t i = 0; i < 100000; ++i) filter->add(scattered(i));
  for (const std::uint64_t hash : bounds)
    EXPECT_TRUE(filter->may_contain(hash)) << hash;
  for (std::uint64_t i = 0; i < 100000; ++i)
    EXPECT_TRUE(filter->may_contain(scattered(i))) << i;
}

TEST_F(HashFilterTest, ContainsFewOthers) {
  for (std::uint64_t i = 0; i < 10000; ++i) filter->add(scattered(i));
  int others = 0;
  for (std::uint64_t i = 10000; i < 110000; ++i)
    others += filter->may_contain(scattered(i)) ? 1 : 0;
  EXPECT_LT(others, 2000);  // one in a hundred is to be expected
}

// Hashes of lines that follow each other differ in a few low bits, those of
// files in a few high ones.
TEST_F(HashFilterTest, TellsNeighboursApart) {
  for (const int bit : {0, 8, 16, 24, 32, 40, 48, 54}) {
    filter->clear();
    for (std::uint64_t i = 0; i < 1000; i += 2) filter->add(i << bit);
    int others = 0;
    for (std::uint64_t i = 1; i < 1000; i += 2)
      others += filter->may_contain(i << bit) ? 1 : 0;
    EXPECT_LT(others, 10) << "from bit " << bit;
  }
}

TEST_F(HashFilterTest, ContainsNothingOnceCleared) {
  for (std::uint64_t i = 0; i < 1000; ++i) filter->add(scattered(i));
  filter->clear();
  for (std::uint64_t i = 0; i < 1000; ++i)
    EXPECT_FALSE(filter->may_contain(scattered(i))) << i;
  filter->add(7);
  EXPECT_TRUE(filter->may_contain(7));
}
