#include "analysis/declaration.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <string>
#include <tuple>
#include <type_traits>
#include <vector>

#include "tests/support/file_list.h"
#include "tests/support/registered.h"
#include "tests/support/settings_guard.h"

namespace {

using Texts = std::vector<std::string>;

static_assert(std::is_same_v<Declaration::Registry,
                             std::multimap<std::string, Declaration*>>);

class Registry : public ::testing::Test {
 protected:
  static Declaration* add(DecType type, std::string name, char** file,
                          int line) {
    return new Declaration(type, name.data(), file, line);
  }

  FileList files{{"a.f90", "b.f90", "a.f90"}};
  SettingsGuard guard;
};

TEST_F(Registry, IsEmptyAtTheStart) { EXPECT_EQ(Texts{}, registered()); }

TEST_F(Registry, KindsHaveFixedNumbers) {
  EXPECT_EQ(0, static_cast<int>(DT_MODULE));
  EXPECT_EQ(1, static_cast<int>(DT_PROGRAM));
  EXPECT_EQ(2, static_cast<int>(DT_SUBROUTINE));
  EXPECT_EQ(3, static_cast<int>(DT_FUNCTION));
  EXPECT_EQ(4, static_cast<int>(DT_INTERFACE));
  EXPECT_EQ(5, static_cast<int>(DT_TYPE));
}

TEST_F(Registry, TakesAUnitWhenItIsBuilt) {
  char name[] = "Solve_2.x";
  Declaration* const unit =
      new Declaration(DT_FUNCTION, name, files.slot(1), 12);
  EXPECT_EQ(DT_FUNCTION, unit->type);
  EXPECT_EQ(files.slot(1), unit->file);
  EXPECT_STREQ("Solve_2.x", unit->name);
  EXPECT_NE(name, unit->name);
  EXPECT_EQ(12, unit->line);
  EXPECT_TRUE(unit->callers.empty());

  ASSERT_EQ(1u, Declaration::decs.size());
  EXPECT_EQ("SOLVE_2.X", Declaration::decs.begin()->first);
  EXPECT_EQ(unit, Declaration::decs.begin()->second);
}

TEST_F(Registry, KeepsACopyOfTheName) {
  char name[] = "solve";
  const Declaration* const unit =
      new Declaration(DT_TYPE, name, files.slot(0), 1);
  name[0] = 'X';
  EXPECT_STREQ("solve", unit->name);
}

TEST_F(Registry, IsOrderedByTheBytesOfTheUpperCaseName) {
  for (const char* name :
       {"b", "\xe9", "a_b", "ab", "A1", ".cross.", "", "a", "_", "Ab1"})
    add(DT_TYPE, name, files.slot(0), 1);
  EXPECT_EQ((Texts{": type , a.f90:1", ".CROSS.: type .cross., a.f90:1",
                   "A: type a, a.f90:1", "A1: type A1, a.f90:1",
                   "AB: type ab, a.f90:1", "AB1: type Ab1, a.f90:1",
                   "A_B: type a_b, a.f90:1", "B: type b, a.f90:1",
                   "_: type _, a.f90:1", "\xe9: type \xe9, a.f90:1"}),
            registered());
}

TEST_F(Registry, KeepsNamesakesInTheOrderOfTheirBuilding) {
  add(DT_SUBROUTINE, "swap", files.slot(1), 9);
  add(DT_INTERFACE, "SWAP", files.slot(0), 3);
  add(DT_FUNCTION, "Swap", files.slot(0), 1);
  add(DT_FUNCTION, "Swap", files.slot(0), 1);
  EXPECT_EQ(
      (Texts{"SWAP: subroutine swap, b.f90:9", "SWAP: interface SWAP, a.f90:3",
             "SWAP: function Swap, a.f90:1", "SWAP: function Swap, a.f90:1"}),
      registered());
}

TEST_F(Registry, IsEmptyOnceForgotten) {
  add(DT_TYPE, "point", files.slot(0), 1);
  Declaration::forget_all();
  EXPECT_EQ(Texts{}, registered());
  Declaration::forget_all();
  add(DT_TYPE, "state", files.slot(0), 2);
  EXPECT_EQ(Texts{"STATE: type state, a.f90:2"}, registered());
}

TEST_F(Registry, CountsItsChanges) {
  const unsigned before = Declaration::generation();
  Declaration* const unit = add(DT_TYPE, "point", files.slot(0), 1);
  EXPECT_EQ(before + 1, Declaration::generation());
  unit->add_calling(files.slot(0), 2);
  EXPECT_EQ(before + 2, Declaration::generation());
  Declaration::forget_all();
  EXPECT_EQ(before + 3, Declaration::generation());
}

class CallersOfUnits : public Registry {};

TEST_F(CallersOfUnits, AreOrderedByFileAndLineHoweverTheyCome) {
  std::vector<Calling> calls = {{files.slot(0), 2},
                                {files.slot(0), 10},
                                {files.slot(1), 1},
                                {files.slot(1), 3},
                                {files.slot(2), 10}};
  do {
    Declaration::forget_all();
    Declaration* const unit = add(DT_TYPE, "point", files.slot(0), 1);
    for (const Calling& call : calls) unit->add_calling(call.file, call.line);
    ASSERT_EQ((Texts{"a.f90:2", "a.f90:10", "b.f90:1", "b.f90:3"}),
              places(unit->callers));
  } while (std::next_permutation(
      calls.begin(), calls.end(), [](const Calling& a, const Calling& b) {
        return std::tie(a.file, a.line) < std::tie(b.file, b.line);
      }));
}

TEST_F(CallersOfUnits, AreNoneInTheNextRun) {
  for (int round = 1; round <= 3; ++round) {
    Declaration* const units[] = {add(DT_TYPE, "a", files.slot(0), 1),
                                  add(DT_TYPE, "b", files.slot(0), 2)};
    for (Declaration* unit : units)
      EXPECT_EQ(Texts{}, places(unit->callers)) << round;
    for (int line = 5000; line > 0; --line)
      for (Declaration* unit : units) unit->add_calling(files.slot(1), line);
    for (Declaration* unit : units) EXPECT_EQ(5000u, unit->callers.size());
    Declaration::forget_all();
  }
}

}  // namespace
