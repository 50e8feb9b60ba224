#include "analysis/name_index.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "tests/support/file_list.h"
#include "tests/support/settings_guard.h"

using namespace std::string_literals;

namespace {

using Texts = std::vector<std::string>;

enum Slot : std::size_t { a, b, a_again };

class Names : public testing::Test {
 protected:
  Declaration* add(const std::string& name, Slot slot, int line) {
    return new Declaration(DT_TYPE, name.c_str(), files.slot(slot), line);
  }

  FileList files{{"a.f90", "b.f90", "a.f90"}};
  SettingsGuard guard;
};

struct Lookup {
  std::string word;
  Slot slot;
  int line;
  const char* first;  // the name of the first unit; null if there is none
  int self;
  int count;
};

// Three units are named solve, two others have similar names.
class IsDeclaration : public Names {
 protected:
  void SetUp() override {
    add("solv", a, 1);
    add("solve2", a, 1);
    add("solve", b, 5);
    add("Solve", a, 5);
    add("SOLVE", a, 9);
  }

  void expect(const std::vector<Lookup>& lookups) {
    for (const Lookup& c : lookups) {
      SCOPED_TRACE(c.word + " on line " + std::to_string(c.line));
      int self = -1;
      int count = -1;
      const auto found = isDeclaration(c.word.c_str(), files.slot(c.slot),
                                       c.line, self, count);
      EXPECT_EQ(c.self, self);
      EXPECT_EQ(c.count, count);
      ASSERT_EQ(c.first == nullptr, found == Declaration::decs.end());
      if (c.first == nullptr) continue;
      EXPECT_STREQ(c.first, found->second->name);
    }
  }
};

TEST_F(IsDeclaration, FindsTheFirstNamesakeAndTheIndexOfTheOneDeclaredThere) {
  expect({{"solve", a, 1, "solve", 0, 3},
          {"sOLVe", a, 1, "solve", 0, 3},
          {"solv", a, 2, "solv", 0, 1},
          {"solve", b, 5, "solve", 1, 3},
          {"solve", a, 5, "solve", 2, 3},
          {"solve", a, 9, "solve", 3, 3},
          {"solve", b, 9, "solve", 0, 3},
          {"solve", a, 6, "solve", 0, 3},
          {"solve", a_again, 5, "solve", 0, 3}});
  for (const char* unknown :
       {"", "s", "sol", "solve1", "solve22", "zzz", "a", "solve.", "\xe9"})
    expect({{unknown, a, 1, nullptr, 0, 0}});
}

TEST_F(IsDeclaration, ReturnsTheEndOfAnEmptyRegistry) {
  Declaration::forget_all();
  expect({{"solve", a, 5, nullptr, 0, 0}, {"", a, 5, nullptr, 0, 0}});
}

TEST_F(IsDeclaration, ReturnsTheLastIndexOfNamesakesDeclaredOnOneLine) {
  add("solve", b, 5);
  add("state", b, 5);
  add("state", b, 5);
  expect({{"solve", b, 5, "solve", 4, 4},
          {"state", b, 5, "state", 2, 2},
          {"solv", b, 5, "solv", 0, 1}});
}

// The hash rotates by 7 bits for each character. After ten characters the first
// one is one bit below the last, so the differences in the two cancel out.
const char* const one_hash[] = {"apply_rk_0", "cpply_rk_1", "epply_rk_2",
                                "gpply_rk_3"};

TEST_F(IsDeclaration, DistinguishesNamesWithEqualHashes) {
  for (const char* name : one_hash)
    ASSERT_EQ(hash_of(one_hash[0]), hash_of(name));
  add(one_hash[1], a, 1);
  add(one_hash[0], a, 2);
  add("CPPLY_rk_1", a, 3);
  add(one_hash[0], b, 4);
  add(one_hash[0], b, 5);
  add(one_hash[3], b, 6);
  expect({{"cpply_rk_1", a, 2, "cpply_rk_1", 0, 2},
          {"cpply_rk_1", a, 1, "cpply_rk_1", 1, 2},
          {"CPPLY_RK_1", a, 3, "cpply_rk_1", 2, 2},
          {"apply_rk_0", a, 1, "apply_rk_0", 0, 3},
          {"Apply_RK_0", a, 2, "apply_rk_0", 1, 3},
          {"apply_rk_0", b, 4, "apply_rk_0", 2, 3},
          {"apply_rk_0", b, 5, "apply_rk_0", 3, 3},
          {"gpply_rk_3", b, 6, "gpply_rk_3", 1, 1},
          {"epply_rk_2", b, 6, nullptr, 0, 0}});
}

TEST_F(IsDeclaration, ComparesWholeNamesIncludingTheEmptyOne) {
  const std::string known(255, 'n');
  for (const std::string& name :
       {known, known + "a", known + "ab", ""s, "\1"s}) {
    expect({{name, a, 2, nullptr, 0, 0}});
    add(name, a, 1);
    expect(
        {{name, a, 2, name.c_str(), 0, 1}, {name, a, 1, name.c_str(), 1, 1}});
  }
}

TEST_F(IsDeclaration, FindsNoUnitsOfEarlierRuns) {
  for (int round = 0; round < 3; ++round) {
    Declaration::forget_all();
    for (int line = 1; line <= 200; ++line)
      add("s" + std::to_string(round) + "_" + std::to_string(line % 100), b,
          line);
    for (int line = 1; line <= 200; ++line) {
      const std::string number = "_" + std::to_string(line % 100);
      const std::string known = "s" + std::to_string(round) + number;
      const std::string unknown =
          "s" + std::to_string((round + 2) % 3) + number;
      expect({{known, b, line, known.c_str(), line <= 100 ? 1 : 2, 2},
              {unknown, b, line, nullptr, 0, 0}});
    }
  }
}

TEST_F(IsDeclaration, NoticesUnitsThatAreTakenOutAndPutBack) {
  Declaration::Registry taken_out;
  taken_out.swap(Declaration::decs);
  expect({{"solve", a, 5, nullptr, 0, 0}});
  taken_out.swap(Declaration::decs);
  expect({{"solve", a, 5, "solve", 2, 3}});

  Declaration::Registry solvers;
  solvers.insert(Declaration::decs.extract("SOLVE"));
  expect({{"solve", a, 5, "Solve", 1, 2}});
  Declaration::decs.merge(solvers);
  expect({{"solve", a, 5, "Solve", 1, 3}, {"solve", b, 5, "Solve", 3, 3}});
}

// Three units are named solve.
class CallersOfNamesakes : public Names {
 protected:
  // Adds a reference as the reference pass does.
  void refer_to_solve(int line, Slot slot = a) {
    const Word solve{0, 0, "solve", hash_of("solve")};
    const Meaning meaning =
        NameIndex::current().look_up(solve, files.slot(slot), line);
    add_reference(*meaning.units, {files.slot(slot), line});
  }

  Declaration* add_solve() { return add("solve", b, next_line++); }

  // The lines that refer to each unit.
  static Texts lines_of(const std::vector<const Declaration*>& units) {
    Texts lines;
    for (const Declaration* unit : units) {
      lines.emplace_back();
      for (const Calling& calling : unit->callers)
        lines.back() += std::to_string(calling.line) + ' ';
    }
    return lines;
  }

  static bool share_records(const Declaration* one, const Declaration* other) {
    return &*one->callers.begin() == &*other->callers.begin();
  }

  int next_line = 1;
  Declaration* const first = add_solve();
  Declaration* const second = add_solve();
  Declaration* const third = add_solve();
};

TEST_F(CallersOfNamesakes, DifferByReferencesAddedToOnlyOneUnit) {
  refer_to_solve(1);
  second->add_calling(files.slot(a), 2);
  EXPECT_EQ((Texts{"1 ", "1 2 ", "1 "}), lines_of({first, second, third}));
  refer_to_solve(3);
  EXPECT_EQ((Texts{"1 3 ", "1 2 3 ", "1 3 "}),
            lines_of({first, second, third}));
}

TEST_F(CallersOfNamesakes, DifferByReferencesThatOneUnitAlreadyHad) {
  third->add_calling(files.slot(a), 2);
  refer_to_solve(1);
  EXPECT_EQ((Texts{"1 ", "1 ", "1 2 "}), lines_of({first, second, third}));
}

TEST_F(CallersOfNamesakes, DifferByReferencesAddedWhileAUnitIsTakenOut) {
  refer_to_solve(1);
  Declaration::decs.erase(Declaration::decs.begin());
  const Declaration* const fourth = add_solve();
  refer_to_solve(2);
  EXPECT_EQ((Texts{"1 ", "1 2 ", "1 2 ", "2 "}),
            lines_of({first, second, third, fourth}));

  Declaration::decs.emplace("SOLVE", first);
  refer_to_solve(3);
  EXPECT_EQ((Texts{"1 3 ", "1 2 3 ", "1 2 3 ", "2 3 "}),
            lines_of({first, second, third, fourth}));
}

// Modern sources declare the name PUBLIC in hundreds of modules and refer to it
// in thousands of places.
TEST_F(CallersOfNamesakes, AreStoredOnceInEveryRun) {
  for (const int line : {2, 1, 2}) refer_to_solve(line);
  EXPECT_EQ((Texts{"1 2 ", "1 2 ", "1 2 "}), lines_of({first, second, third}));
  EXPECT_TRUE(share_records(first, second));
  EXPECT_TRUE(share_records(first, third));
  second->add_calling(files.slot(a), 4);
  EXPECT_FALSE(share_records(first, second));

  Declaration::forget_all();
  add("a", b, 10);
  const Declaration* const fourth = add_solve();
  const Declaration* const fifth = add_solve();
  EXPECT_EQ((Texts{"", ""}), lines_of({fourth, fifth}));
  refer_to_solve(3);
  EXPECT_EQ((Texts{"3 ", "3 "}), lines_of({fourth, fifth}));
  EXPECT_TRUE(share_records(fourth, fifth));
}

}  // namespace
