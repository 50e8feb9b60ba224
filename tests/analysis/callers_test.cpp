#include "analysis/callers.h"

#include <gtest/gtest.h>

#include <string>
#include <type_traits>
#include <vector>

#include "tests/support/file_list.h"

namespace {

using Texts = std::vector<std::string>;

static_assert(std::is_same_v<Callers::value_type, Calling>);

class CallersTest : public testing::Test {
 protected:
  static Texts places(const Callers& callers) {
    Texts texts;
    for (const Calling& calling : callers)
      texts.push_back(*calling.file + (":" + std::to_string(calling.line)));
    return texts;
  }

  FileList files{{"a.f90", "b.f90"}};
  const Calling a1{files.slot(0), 1};
  const Calling a2{files.slot(0), 2};
  const Calling b1{files.slot(1), 1};
  Callers first;
  Callers second;
  Callers third;
};

TEST_F(CallersTest, AreNoneAtFirst) {
  EXPECT_TRUE(first.empty());
  EXPECT_EQ(0u, first.size());
  EXPECT_EQ(Texts{}, places(first));
}

TEST_F(CallersTest, AreOrderedAndTakeNoReferenceTwice) {
  for (const Calling& calling : {b1, a2, a1, a2}) first.insert(calling);
  EXPECT_FALSE(first.empty());
  EXPECT_EQ(3u, first.size());
  EXPECT_EQ((Texts{"a.f90:1", "a.f90:2", "b.f90:1"}), places(first));
}

TEST_F(CallersTest, AreFoundByTheirPlace) {
  EXPECT_TRUE(first.find(a1) == first.end());
  first.insert(a1);
  EXPECT_TRUE(first.find(a1) == first.begin());
  EXPECT_TRUE(first.find(a2) == first.end());
}

TEST_F(CallersTest, ShowWhatIsAddedToAllThatShare) {
  second.share(first);
  third.share(first);
  EXPECT_TRUE(third.empty());
  EXPECT_TRUE(first.insert_in_all(3, b1));
  EXPECT_TRUE(third.insert_in_all(3, a1));
  for (const Callers* callers : {&first, &second, &third})
    EXPECT_EQ((Texts{"a.f90:1", "b.f90:1"}), places(*callers));
}

TEST_F(CallersTest, ShareWhatIsThereAlreadyInsteadOfTheirOwn) {
  first.insert(a1);
  second.insert(a2);
  second.share(first);
  EXPECT_EQ(Texts{"a.f90:1"}, places(second));
  second.share(third);
  EXPECT_EQ(Texts{}, places(second));
  EXPECT_EQ(Texts{"a.f90:1"}, places(first));
}

TEST_F(CallersTest, AreNotSharedAnyMoreWhenOneGetsAReferenceOfItsOwn) {
  second.share(first);
  third.share(first);
  first.insert_in_all(3, a1);
  second.insert(a2);
  EXPECT_EQ(Texts{"a.f90:1"}, places(first));
  EXPECT_EQ((Texts{"a.f90:1", "a.f90:2"}), places(second));
  EXPECT_EQ(Texts{"a.f90:1"}, places(third));

  EXPECT_TRUE(first.insert_in_all(2, b1));
  EXPECT_EQ((Texts{"a.f90:1", "b.f90:1"}), places(third));
  EXPECT_EQ((Texts{"a.f90:1", "a.f90:2"}), places(second));
}

TEST_F(CallersTest, OfTwoThatShareTheOtherDoesNotSeeWhatIsAddedToOneAlone) {
  second.share(first);
  first.insert(a1);
  EXPECT_EQ(Texts{"a.f90:1"}, places(first));
  EXPECT_EQ(Texts{}, places(second));
}

TEST_F(CallersTest, AreStillSharedWhenOneGetsAReferenceThatItHas) {
  second.share(first);
  first.insert_in_all(2, a1);
  second.insert(a1);
  EXPECT_TRUE(first.insert_in_all(2, a2));
  EXPECT_EQ((Texts{"a.f90:1", "a.f90:2"}), places(second));
}

TEST_F(CallersTest, AddNothingWhenMoreOrFewerShare) {
  for (const int sets : {0, 1}) EXPECT_FALSE(first.insert_in_all(sets, a1));
  second.share(first);
  for (const int sets : {0, 1, 3}) {
    EXPECT_FALSE(first.insert_in_all(sets, a1)) << sets;
    EXPECT_FALSE(second.insert_in_all(sets, a1)) << sets;
  }
  EXPECT_TRUE(first.empty());
  EXPECT_TRUE(second.empty());
}

TEST_F(CallersTest, OutliveThoseTheyShareWith) {
  {
    Callers other;
    other.insert(a1);
    first.share(other);
  }
  EXPECT_EQ(Texts{"a.f90:1"}, places(first));
  EXPECT_TRUE(first.insert_in_all(1, a2));
  EXPECT_EQ((Texts{"a.f90:1", "a.f90:2"}), places(first));
}

}  // namespace
