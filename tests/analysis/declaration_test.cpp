#include "analysis/declaration.h"

#include <gtest/gtest.h>

#include <map>
#include <string>
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
  FileList files{{"a.f90", "b.f90", "a.f90"}};
  SettingsGuard guard;
};

TEST_F(Registry, ContainsAUnitOnceItIsConstructed) {
  char name[] = "Solve_2.x";
  Declaration* const unit =
      new Declaration(DT_FUNCTION, name, files.slot(1), 12);
  name[0] = 'X';
  EXPECT_EQ(DT_FUNCTION, unit->type);
  EXPECT_EQ(files.slot(1), unit->file);
  EXPECT_STREQ("Solve_2.x", unit->name);
  EXPECT_EQ(12, unit->line);
  EXPECT_TRUE(unit->callers.empty());

  ASSERT_EQ(1u, Declaration::decs.size());
  EXPECT_EQ("SOLVE_2.X", Declaration::decs.begin()->first);
  EXPECT_EQ(unit, Declaration::decs.begin()->second);
}

TEST_F(Registry, IsSortedByTheBytesOfTheUpperCaseNames) {
  for (const char* name :
       {"b", "\xe9", "a_b", "ab", "A1", ".cross.", "", "a", "_", "Ab1"})
    new Declaration(DT_TYPE, name, files.slot(0), 1);
  EXPECT_EQ((Texts{": type , a.f90:1", ".CROSS.: type .cross., a.f90:1",
                   "A: type a, a.f90:1", "A1: type A1, a.f90:1",
                   "AB: type ab, a.f90:1", "AB1: type Ab1, a.f90:1",
                   "A_B: type a_b, a.f90:1", "B: type b, a.f90:1",
                   "_: type _, a.f90:1", "\xe9: type \xe9, a.f90:1"}),
            registered());
}

TEST_F(Registry, CountsItsChangesAndCanBeEmptied) {
  const unsigned before = Declaration::generation();
  Declaration* const unit = new Declaration(DT_TYPE, "point", files.slot(0), 1);
  EXPECT_EQ(before + 1, Declaration::generation());
  unit->add_calling(files.slot(0), 2);
  EXPECT_EQ(before + 1, Declaration::generation());
  Declaration::forget_all();
  EXPECT_EQ(before + 2, Declaration::generation());
  EXPECT_EQ(Texts{}, registered());
  new Declaration(DT_TYPE, "state", files.slot(0), 2);
  EXPECT_EQ(Texts{"STATE: type state, a.f90:2"}, registered());
}

}  // namespace
