#include "analysis/callers.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <type_traits>
#include <vector>

#include "tests/support/file_list.h"
#include "tests/support/heap_in_use.h"
#include "tests/support/registered.h"

namespace {

using Texts = std::vector<std::string>;

static_assert(std::is_same_v<Callers::value_type, Calling>);

class CallersTest : public testing::Test {
 protected:
  FileList files{{"a.f90", "b.f90", "a.f90"}};
  const Calling a1{files.slot(0), 1};
  const Calling a2{files.slot(0), 2};
  const Calling a10{files.slot(0), 10};
  const Calling b1{files.slot(1), 1};
  Callers first;
  Callers second;
  Callers third;
};

TEST_F(CallersTest, AreSortedWithoutDuplicatesWhateverTheOrderOfInsertion) {
  const Calling calls[] = {a2, a10, b1, {files.slot(2), 10}, a2};
  int order[] = {0, 1, 2, 3, 4};
  do {
    first.start_anew();
    for (const int i : order) first.insert(calls[i]);
    ASSERT_EQ((Texts{"a.f90:2", "a.f90:10", "b.f90:1"}), places(first));
  } while (std::next_permutation(std::begin(order), std::end(order)));
}

TEST_F(CallersTest, KeepTheFirstOfEqualReferences) {
  const Calling again{files.slot(2), 1};
  for (const Calling& calling : {b1, a1, again, b1}) first.insert(calling);
  EXPECT_EQ((Texts{"a.f90:1", "b.f90:1"}), places(first));
  EXPECT_EQ(a1.file, first.begin()->file);
}

TEST_F(CallersTest, NeedNoMemoryForDuplicates) {
  for (const Calling& calling : {b1, a2, a1}) first.insert(calling);
  first.insert(b1);
  const std::size_t before = heap_in_use();
  for (int i = 0; i < 100000; ++i)
    for (const Calling& calling : {b1, a1, a2}) first.insert(calling);
  EXPECT_GT(before + 1000, heap_in_use());
  EXPECT_EQ(3u, first.size());
}

// Sorting after each insertion would take minutes.
TEST_F(CallersTest, AreSortedQuicklyWhenManyAreInsertedInReverseOrder) {
  for (int line = 20000; line > 0; --line) first.insert({files.slot(0), line});
  EXPECT_EQ(20000u, first.size());
}

TEST_F(CallersTest, CanBeReadWithoutTheirPathsOnceSorted) {
  std::string paths[] = {"b.f90", "a.f90"};
  char* slots[] = {paths[0].data(), paths[1].data()};
  first.insert({&slots[0], 1});
  first.insert({&slots[1], 2});
  first.sort();
  slots[0] = slots[1] = nullptr;
  EXPECT_EQ(2, first.begin()->line);
  EXPECT_EQ(2u, first.size());
}

TEST_F(CallersTest, InsertedInAllAppearInEverySetThatSharesTheRecords) {
  first.start_anew();
  for (Callers* callers : {&second, &third}) callers->share(first);
  first.insert_in_all(b1);
  third.insert_in_all(a1);
  for (const Callers* callers : {&first, &second, &third})
    EXPECT_EQ((Texts{"a.f90:1", "b.f90:1"}), places(*callers));
}

TEST_F(CallersTest, AreReplacedByTheRecordsThatTheyShare) {
  first.insert(a1);
  second.insert(a2);
  second.share(first);
  EXPECT_EQ(Texts{"a.f90:1"}, places(second));
  second.start_anew();
  EXPECT_TRUE(second.empty());
  EXPECT_EQ(Texts{"a.f90:1"}, places(first));
}

TEST_F(CallersTest, InsertedInOneSetDoNotAppearInTheOthers) {
  first.insert(a1);
  for (Callers* callers : {&second, &third}) callers->share(first);
  EXPECT_TRUE(second.insert(a2));
  EXPECT_FALSE(second.insert(a2));
  first.insert(b1);
  EXPECT_EQ((Texts{"a.f90:1", "b.f90:1"}), places(first));
  EXPECT_EQ((Texts{"a.f90:1", "a.f90:2"}), places(second));
  EXPECT_EQ(Texts{"a.f90:1"}, places(third));
}

}  // namespace
