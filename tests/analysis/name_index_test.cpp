#include "analysis/name_index.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "tests/support/file_list.h"
#include "tests/support/registered.h"
#include "tests/support/settings_guard.h"

namespace {

using Texts = std::vector<std::string>;

class Names : public testing::Test {
 protected:
  static Declaration* add(DecType type, const std::string& name, char** file,
                          int line) {
    return new Declaration(type, name.c_str(), file, line);
  }

  FileList files{{"a.f90", "b.f90", "a.f90"}};
  SettingsGuard guard;
};

// Lookups of several units named solve and one of each neighbour.
class IsDeclaration : public Names {
 protected:
  void SetUp() override {
    add(DT_MODULE, "solv", files.slot(0), 1);
    add(DT_MODULE, "solve2", files.slot(0), 1);
    add(DT_SUBROUTINE, "solve", files.slot(1), 5);
    add(DT_SUBROUTINE, "Solve", files.slot(0), 5);
    add(DT_SUBROUTINE, "SOLVE", files.slot(0), 9);
  }

  struct Answer {
    const char* first;  // null for the registry's end
    int self;
    int count;
  };

  static void expect(const Answer& answer, std::string word, char** file,
                     int line) {
    SCOPED_TRACE(word + " on line " + std::to_string(line) + " of " + *file);
    int self = -1;
    int count = -1;
    const auto found = isDeclaration(word.data(), file, line, self, count);
    EXPECT_EQ(answer.self, self);
    EXPECT_EQ(answer.count, count);
    if (answer.first == nullptr) {
      EXPECT_TRUE(found == Declaration::decs.end());
    } else {
      ASSERT_TRUE(found != Declaration::decs.end());
      EXPECT_STREQ(answer.first, found->second->name);
    }
  }
};

TEST_F(IsDeclaration, FindsTheFirstOfAllNamesakes) {
  expect({"solve", 0, 3}, "solve", files.slot(0), 1);
  expect({"solv", 0, 1}, "solv", files.slot(0), 2);
}

TEST_F(IsDeclaration, IgnoresCaseAndLeavesTheWordAlone) {
  expect({"solve", 0, 3}, "sOLVe", files.slot(0), 1);
  char word[] = "sOLVe";
  int self = 0;
  int count = 0;
  isDeclaration(word, files.slot(0), 1, self, count);
  EXPECT_STREQ("sOLVe", word);
}

TEST_F(IsDeclaration, GivesTheEndForUnknownWords) {
  for (const char* word :
       {"", "s", "sol", "solve1", "solve22", "zzz", "a", "solve.", "\xe9"})
    expect({nullptr, 0, 0}, word, files.slot(0), 1);
}

TEST_F(IsDeclaration, GivesTheEndWhenNothingIsRegistered) {
  Declaration::forget_all();
  expect({nullptr, 0, 0}, "solve", files.slot(0), 5);
  expect({nullptr, 0, 0}, "", files.slot(0), 5);
}

TEST_F(IsDeclaration, TellsTheIndexOfTheUnitDeclaredOnThisLineOfThisFile) {
  expect({"solve", 1, 3}, "solve", files.slot(1), 5);
  expect({"solve", 2, 3}, "solve", files.slot(0), 5);
  expect({"solve", 3, 3}, "solve", files.slot(0), 9);
  expect({"solve", 0, 3}, "solve", files.slot(1), 9);
  expect({"solve", 0, 3}, "solve", files.slot(0), 6);
}

TEST_F(IsDeclaration, KnowsFilesByTheirSlotsAlone) {
  ASSERT_STREQ(*files.slot(0), *files.slot(2));
  expect({"solve", 0, 3}, "solve", files.slot(2), 5);
  add(DT_SUBROUTINE, "solve", files.slot(2), 5);
  expect({"solve", 2, 4}, "solve", files.slot(0), 5);
  expect({"solve", 4, 4}, "solve", files.slot(2), 5);
}

TEST_F(IsDeclaration, TellsTheLastIndexOfUnitsDeclaredOnOneLine) {
  add(DT_SUBROUTINE, "solve", files.slot(1), 5);
  expect({"solve", 4, 4}, "solve", files.slot(1), 5);
}

TEST_F(IsDeclaration, FindsUnnamedUnitsUnderTheEmptyWord) {
  add(DT_INTERFACE, "", files.slot(1), 3);
  add(DT_INTERFACE, "", files.slot(1), 7);
  expect({"", 0, 2}, "", files.slot(0), 3);
  expect({"", 1, 2}, "", files.slot(1), 3);
  expect({"", 2, 2}, "", files.slot(1), 7);
}

// The bits of the first of ten characters fall on those of the last, one place
// lower, so that in these names the differences of the two cancel out.
const char* const one_hash[] = {"apply_rk_0", "cpply_rk_1", "epply_rk_2",
                                "gpply_rk_3"};

class NamesOfOneHash : public IsDeclaration {
 protected:
  void SetUp() override {
    for (const char* name : one_hash)
      ASSERT_EQ(hash_of(one_hash[0]), hash_of(name));
  }
};

TEST_F(NamesOfOneHash, AreCountedEachByItself) {
  add(DT_TYPE, one_hash[1], files.slot(0), 1);
  add(DT_TYPE, one_hash[0], files.slot(0), 2);
  add(DT_TYPE, "CPPLY_rk_1", files.slot(0), 3);
  add(DT_TYPE, one_hash[0], files.slot(1), 4);
  add(DT_TYPE, one_hash[0], files.slot(1), 5);
  add(DT_TYPE, one_hash[3], files.slot(1), 6);

  expect({"cpply_rk_1", 0, 2}, "cpply_rk_1", files.slot(0), 2);
  expect({"cpply_rk_1", 1, 2}, "cpply_rk_1", files.slot(0), 1);
  expect({"cpply_rk_1", 2, 2}, "CPPLY_RK_1", files.slot(0), 3);
  expect({"apply_rk_0", 0, 3}, "apply_rk_0", files.slot(0), 1);
  expect({"apply_rk_0", 1, 3}, "Apply_RK_0", files.slot(0), 2);
  expect({"apply_rk_0", 2, 3}, "apply_rk_0", files.slot(1), 4);
  expect({"apply_rk_0", 3, 3}, "apply_rk_0", files.slot(1), 5);
  expect({"gpply_rk_3", 1, 1}, "gpply_rk_3", files.slot(1), 6);
  expect({nullptr, 0, 0}, "epply_rk_2", files.slot(1), 6);
}

TEST_F(NamesOfOneHash, AreFoundWhicheverCameFirst) {
  for (const char* first : one_hash) {
    Declaration::forget_all();
    add(DT_TYPE, first, files.slot(0), 1);
    for (const char* name : one_hash)
      if (name != first) add(DT_TYPE, name, files.slot(0), 2);
    for (const char* name : one_hash)
      expect({name, name == first ? 1 : 0, 1}, name, files.slot(0), 1);
  }
}

TEST_F(Names, AreComparedWhole) {
  const std::string known(255, 'n');
  const std::string names[] = {known, known + "a", known + "ab", "", "\1"};
  for (const std::string& name : names) {
    int self = 0;
    int count = 0;
    isDeclaration(name.c_str(), files.slot(0), 1, self, count);
    EXPECT_EQ(0, count) << name;
    add(DT_TYPE, name, files.slot(0), 1);
    isDeclaration(name.c_str(), files.slot(0), 1, self, count);
    EXPECT_EQ(1, count) << name;
  }
}

TEST_F(Names, FilledAnewKnowsNothingOfEarlierRuns) {
  for (int round = 0; round < 3; ++round) {
    const std::string number = std::to_string(round);
    for (int line = 1; line <= 200; ++line)
      add(DT_TYPE, "s" + number + "_" + std::to_string(line % 100),
          files.slot(1), line);
    for (const int other : {0, 1, 2})
      for (int line = 1; line <= 200; ++line) {
        const std::string name =
            "S" + std::to_string(other) + "_" + std::to_string(line % 100);
        int self = -1;
        int count = -1;
        const auto found =
            isDeclaration(name.c_str(), files.slot(1), line, self, count);
        const bool now = other == round;
        EXPECT_EQ(now ? 2 : 0, count) << name;
        EXPECT_EQ(!now          ? 0
                  : line <= 100 ? 1
                                : 2,
                  self)
            << name << " on line " << line;
        EXPECT_EQ(now, found != Declaration::decs.end()) << name;
      }
    Declaration::forget_all();
  }
}

// The registry is no secret of its own lookup.
TEST_F(IsDeclaration, SeesWhatOthersDoToTheRegistry) {
  Declaration::Registry taken_out;
  taken_out.swap(Declaration::decs);
  expect({nullptr, 0, 0}, "solve", files.slot(0), 5);
  taken_out.swap(Declaration::decs);
  expect({"solve", 2, 3}, "solve", files.slot(0), 5);

  Declaration::Registry solvers;
  solvers.insert(Declaration::decs.extract("SOLVE"));
  expect({"Solve", 1, 2}, "solve", files.slot(0), 5);
  Declaration::decs.merge(solvers);
  expect({"Solve", 1, 3}, "solve", files.slot(0), 5);
  expect({"Solve", 3, 3}, "solve", files.slot(1), 5);
}

TEST_F(IsDeclaration, SeesUnitsBuiltOnceOthersHaveEmptiedTheRegistry) {
  const Declaration::Registry before = Declaration::decs;
  Declaration::decs.clear();
  add(DT_TYPE, "SOLVE", files.slot(2), 4);
  expect({"SOLVE", 1, 1}, "solve", files.slot(2), 4);
  expect({nullptr, 0, 0}, "solv", files.slot(0), 1);
  Declaration::decs.insert(before.begin(), before.end());
  expect({"SOLVE", 3, 4}, "solve", files.slot(0), 5);
}

TEST_F(IsDeclaration, SeesARegistryOfTheSizeThatItHadBefore) {
  expect({"solve", 0, 3}, "solve", files.slot(2), 4);
  Declaration* const solv = Declaration::decs.begin()->second;
  Declaration::decs.erase(Declaration::decs.begin());
  add(DT_TYPE, "Solver", files.slot(2), 4);
  expect({nullptr, 0, 0}, "solv", files.slot(0), 1);
  expect({"Solver", 1, 1}, "solver", files.slot(2), 4);
  Declaration::decs.emplace("SOLV", solv);

  const std::size_t size = Declaration::decs.size();
  Declaration::forget_all();
  for (std::size_t i = 0; i < size; ++i)
    add(DT_TYPE, "other", files.slot(0), 1);
  expect({nullptr, 0, 0}, "solve", files.slot(0), 1);
  expect({"other", 0, static_cast<int>(size)}, "other", files.slot(0), 2);
}

TEST_F(IsDeclaration, TellsNamesOfOneLineApart) {
  add(DT_TYPE, "state", files.slot(1), 5);
  add(DT_TYPE, "state", files.slot(1), 5);
  expect({"state", 2, 2}, "state", files.slot(1), 5);
  expect({"solve", 1, 3}, "solve", files.slot(1), 5);
  expect({"solv", 0, 1}, "solv", files.slot(1), 5);
}

class CallersOfNamesakes : public Names {
 protected:
  // As the call pass does with a name that it finds.
  void refer_to_solve(const Calling& from) {
    const Meaning meaning = NameIndex::current().look_up(
        "solve", hash_of("solve"), from.file, from.line);
    add_calling(*meaning.units, from);
  }

  // A unit of that name, in a file that refers to nothing.
  Declaration* add_solve() {
    return add(DT_TYPE, "solve", files.slot(1), next_line++);
  }

  static bool share_records(const Declaration* a, const Declaration* b) {
    return &*a->callers.begin() == &*b->callers.begin();
  }

  const Calling a1{files.slot(0), 1};
  const Calling a2{files.slot(0), 2};
  const Calling a3{files.slot(0), 3};
  int next_line = 1;
  Declaration* const first = add_solve();
  Declaration* const second = add_solve();
  Declaration* const third = add_solve();
};

TEST_F(CallersOfNamesakes, AreTheSame) {
  refer_to_solve(a2);
  refer_to_solve(a1);
  refer_to_solve(a2);
  for (const Declaration* unit : {first, second, third})
    EXPECT_EQ((Texts{"a.f90:1", "a.f90:2"}), places(unit->callers));
}

TEST_F(CallersOfNamesakes, DifferByWhatIsAddedToOneAlone) {
  refer_to_solve(a1);
  second->add_calling(a2.file, a2.line);
  EXPECT_EQ(Texts{"a.f90:1"}, places(first->callers));
  EXPECT_EQ((Texts{"a.f90:1", "a.f90:2"}), places(second->callers));
  EXPECT_EQ(Texts{"a.f90:1"}, places(third->callers));

  refer_to_solve(a3);
  EXPECT_EQ((Texts{"a.f90:1", "a.f90:3"}), places(first->callers));
  EXPECT_EQ((Texts{"a.f90:1", "a.f90:2", "a.f90:3"}), places(second->callers));
  EXPECT_EQ((Texts{"a.f90:1", "a.f90:3"}), places(third->callers));
}

TEST_F(CallersOfNamesakes, DifferByWhatOneHadBefore) {
  third->add_calling(a2.file, a2.line);
  refer_to_solve(a1);
  EXPECT_EQ(Texts{"a.f90:1"}, places(first->callers));
  EXPECT_EQ(Texts{"a.f90:1"}, places(second->callers));
  EXPECT_EQ((Texts{"a.f90:1", "a.f90:2"}), places(third->callers));
}

TEST_F(CallersOfNamesakes, DifferByWhatCameBeforeAUnit) {
  refer_to_solve(a1);
  const Declaration* const fourth = add_solve();
  refer_to_solve(a2);
  for (const Declaration* unit : {first, second, third})
    EXPECT_EQ((Texts{"a.f90:1", "a.f90:2"}), places(unit->callers));
  EXPECT_EQ(Texts{"a.f90:2"}, places(fourth->callers));
}

TEST_F(CallersOfNamesakes, DifferByWhatCameWhileAUnitWasTakenOut) {
  refer_to_solve(a1);
  Declaration::decs.erase(Declaration::decs.begin());
  const Declaration* const fourth = add_solve();
  refer_to_solve(a2);
  EXPECT_EQ(Texts{"a.f90:1"}, places(first->callers));
  EXPECT_EQ((Texts{"a.f90:1", "a.f90:2"}), places(second->callers));
  EXPECT_EQ((Texts{"a.f90:1", "a.f90:2"}), places(third->callers));
  EXPECT_EQ(Texts{"a.f90:2"}, places(fourth->callers));

  Declaration::decs.emplace("SOLVE", first);
  refer_to_solve(a3);
  EXPECT_EQ((Texts{"a.f90:1", "a.f90:3"}), places(first->callers));
  EXPECT_EQ((Texts{"a.f90:1", "a.f90:2", "a.f90:3"}), places(second->callers));
  EXPECT_EQ((Texts{"a.f90:1", "a.f90:2", "a.f90:3"}), places(third->callers));
  EXPECT_EQ((Texts{"a.f90:2", "a.f90:3"}), places(fourth->callers));
}

TEST_F(CallersOfNamesakes, AreNoneInTheNextRun) {
  refer_to_solve(a1);
  Declaration::forget_all();
  const Declaration* const units[] = {add_solve(), add_solve()};
  for (const Declaration* unit : units)
    EXPECT_EQ(Texts{}, places(unit->callers));
  refer_to_solve(a2);
  for (const Declaration* unit : units)
    EXPECT_EQ(Texts{"a.f90:2"}, places(unit->callers));
}

TEST_F(CallersOfNamesakes, AreKeptByAUnitThatIsTakenOutWhenTheRunIsForgotten) {
  static const Declaration* const taken_out = first;
  refer_to_solve(a1);
  Declaration::decs.erase(Declaration::decs.begin());
  Declaration::forget_all();
  add_solve();
  add_solve();
  refer_to_solve(a2);
  EXPECT_EQ(Texts{"a.f90:1"}, places(taken_out->callers));
}

TEST_F(CallersOfNamesakes, StayAsTheyCameFirstWhenAnotherSlotHasThePath) {
  refer_to_solve(a1);
  refer_to_solve({files.slot(2), 1});
  for (const Declaration* unit : {first, second, third}) {
    EXPECT_EQ(1u, unit->callers.size());
    EXPECT_EQ(files.slot(0), unit->callers.begin()->file);
  }
}

// Modern trees register the name PUBLIC in each of hundreds of modules, and
// refer to it in thousands of places.
TEST_F(CallersOfNamesakes, AreKeptOnce) {
  refer_to_solve(a1);
  refer_to_solve(a2);
  EXPECT_TRUE(share_records(first, second));
  EXPECT_TRUE(share_records(first, third));
}

TEST_F(CallersOfNamesakes, AreKeptOnceInEveryRun) {
  Declaration::decs.erase(Declaration::decs.begin());
  refer_to_solve(a1);
  Declaration::decs.emplace("SOLVE", first);
  refer_to_solve(a1);
  EXPECT_FALSE(share_records(first, second));

  Declaration::forget_all();
  add(DT_TYPE, "a", files.slot(1), 10);
  const Declaration* const units[] = {add_solve(), add_solve()};
  refer_to_solve(a1);
  EXPECT_TRUE(share_records(units[0], units[1]));
}

}  // namespace
