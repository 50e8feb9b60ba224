#include "analysis/declarations.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <map>
#include <sstream>
#include <string>
#include <tuple>
#include <type_traits>
#include <vector>

#include "analysis/words.h"
#include "tests/support/capture.h"
#include "tests/support/file_list.h"
#include "tests/support/settings_guard.h"
#include "tests/support/temporary_folder.h"

using namespace std::string_literals;

using Texts = std::vector<std::string>;

static_assert(std::is_same_v<Declaration::Registry,
                             std::multimap<std::string, Declaration*>>);

static const char* kind_name(DecType type) {
  switch (static_cast<int>(type)) {
    case 0:
      return "module";
    case 1:
      return "program";
    case 2:
      return "subroutine";
    case 3:
      return "function";
    case 4:
      return "interface";
    case 5:
      return "type";
    default:
      return "unknown kind";
  }
}

// The registry in its order, each unit as "KEY: kind name, file:line".
static Texts registered() {
  Texts units;
  for (const auto& entry : Declaration::decs) {
    const Declaration& unit = *entry.second;
    std::ostringstream text;
    text << entry.first << ": " << kind_name(unit.type) << ' ' << unit.name
         << ", " << *unit.file << ':' << unit.line;
    units.push_back(text.str());
  }
  return units;
}

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

// Lookups of several units named solve and one of each neighbour.
class IsDeclaration : public Registry {
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
static const char* const one_hash[] = {"apply_rk_0", "cpply_rk_1", "epply_rk_2",
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

TEST_F(NamesOfOneHash, AreThoseOfTheSame255CharactersAndTheEmptyOne) {
  const std::string known(255, 'n');
  const std::string names[] = {known, known + "a", "", "\1"};
  EXPECT_EQ(hash_of(names[0].c_str()), hash_of(names[1].c_str()));
  for (const bool backwards : {false, true}) {
    for (int i = 0; i < 4; ++i)
      add(DT_TYPE, names[backwards ? 3 - i : i], files.slot(0), 1);
    for (const std::string& name : names)
      expect({name.c_str(), 1, 1}, name, files.slot(0), 1);
    expect({nullptr, 0, 0}, known + "b", files.slot(0), 1);
    Declaration::forget_all();
  }

  add(DT_TYPE, known, files.slot(0), 1);
  expect({nullptr, 0, 0}, known + "a", files.slot(0), 1);
  add(DT_TYPE, "", files.slot(0), 1);
  expect({nullptr, 0, 0}, "\1", files.slot(0), 1);
}

TEST_F(Registry, FilledAnewKnowsNothingOfEarlierRuns) {
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

TEST_F(Registry, CountsHowOftenItWasEmptied) {
  const unsigned before = Declaration::run();
  add(DT_TYPE, "point", files.slot(0), 1);
  EXPECT_EQ(before, Declaration::run());
  Declaration::forget_all();
  Declaration::forget_all();
  EXPECT_EQ(before + 2, Declaration::run());
}

TEST_F(Registry, TellsAtOnceThatAHashIsOfNoName) {
  const char* const names[] = {"solve", "", "\xe9", ".a b."};
  for (const char* name : names) {
    EXPECT_FALSE(may_be_declared(hash_of(name))) << name;
    add(DT_TYPE, name, files.slot(0), 1);
    EXPECT_TRUE(may_be_declared(hash_of(name))) << name;
  }
  EXPECT_TRUE(may_be_declared(hash_of("SOLVE")));
  Declaration::forget_all();
  for (const char* name : names)
    EXPECT_FALSE(may_be_declared(hash_of(name))) << name;
}

// The registry is no secret of its own lookup.
TEST_F(IsDeclaration, SeesWhatOthersDoToTheRegistry) {
  Declaration::Registry taken_out;
  const unsigned before = Declaration::run();
  taken_out.swap(Declaration::decs);
  expect({nullptr, 0, 0}, "solve", files.slot(0), 5);
  EXPECT_NE(before, Declaration::run());
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

class CallersOfUnits : public Registry {
 protected:
  static Texts places(const Declaration& unit) {
    Texts texts;
    for (const Calling& place : unit.callers)
      texts.push_back(*place.file + ":"s + std::to_string(place.line));
    return texts;
  }
};

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
              places(*unit));
  } while (std::next_permutation(
      calls.begin(), calls.end(), [](const Calling& a, const Calling& b) {
        return std::tie(a.file, a.line) < std::tie(b.file, b.line);
      }));
}

TEST_F(CallersOfUnits, AreNoneInTheNextRun) {
  for (int round = 1; round <= 3; ++round) {
    Declaration* const units[] = {add(DT_TYPE, "a", files.slot(0), 1),
                                  add(DT_TYPE, "b", files.slot(0), 2)};
    for (Declaration* unit : units) EXPECT_EQ(Texts{}, places(*unit)) << round;
    for (int line = 5000; line > 0; --line)
      for (Declaration* unit : units) unit->add_calling(files.slot(1), line);
    for (Declaration* unit : units) EXPECT_EQ(5000u, unit->callers.size());
    Declaration::forget_all();
  }
}

class CallersOfNamesakes : public CallersOfUnits {
 protected:
  // As the call pass does with a name that it finds.
  void refer_to_solve(const Calling& from) {
    int self = 0;
    int count = 0;
    const auto units =
        isDeclaration("solve", from.file, from.line, self, count);
    Declaration::add_calling_to_all(units, count, from.file, from.line);
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
    EXPECT_EQ((Texts{"a.f90:1", "a.f90:2"}), places(*unit));
}

TEST_F(CallersOfNamesakes, DifferByWhatIsAddedToOneAlone) {
  refer_to_solve(a1);
  second->add_calling(a2.file, a2.line);
  EXPECT_EQ(Texts{"a.f90:1"}, places(*first));
  EXPECT_EQ((Texts{"a.f90:1", "a.f90:2"}), places(*second));
  EXPECT_EQ(Texts{"a.f90:1"}, places(*third));

  refer_to_solve(a3);
  EXPECT_EQ((Texts{"a.f90:1", "a.f90:3"}), places(*first));
  EXPECT_EQ((Texts{"a.f90:1", "a.f90:2", "a.f90:3"}), places(*second));
  EXPECT_EQ((Texts{"a.f90:1", "a.f90:3"}), places(*third));
}

TEST_F(CallersOfNamesakes, DifferByWhatOneHadBefore) {
  third->add_calling(a2.file, a2.line);
  refer_to_solve(a1);
  EXPECT_EQ(Texts{"a.f90:1"}, places(*first));
  EXPECT_EQ(Texts{"a.f90:1"}, places(*second));
  EXPECT_EQ((Texts{"a.f90:1", "a.f90:2"}), places(*third));
}

TEST_F(CallersOfNamesakes, DifferByWhatCameBeforeAUnit) {
  refer_to_solve(a1);
  const Declaration* const fourth = add_solve();
  refer_to_solve(a2);
  for (const Declaration* unit : {first, second, third})
    EXPECT_EQ((Texts{"a.f90:1", "a.f90:2"}), places(*unit));
  EXPECT_EQ(Texts{"a.f90:2"}, places(*fourth));
}

TEST_F(CallersOfNamesakes, DifferByWhatCameWhileAUnitWasTakenOut) {
  refer_to_solve(a1);
  Declaration::decs.erase(Declaration::decs.begin());
  const Declaration* const fourth = add_solve();
  refer_to_solve(a2);
  EXPECT_EQ(Texts{"a.f90:1"}, places(*first));
  EXPECT_EQ((Texts{"a.f90:1", "a.f90:2"}), places(*second));
  EXPECT_EQ((Texts{"a.f90:1", "a.f90:2"}), places(*third));
  EXPECT_EQ(Texts{"a.f90:2"}, places(*fourth));

  Declaration::decs.emplace("SOLVE", first);
  refer_to_solve(a3);
  EXPECT_EQ((Texts{"a.f90:1", "a.f90:3"}), places(*first));
  EXPECT_EQ((Texts{"a.f90:1", "a.f90:2", "a.f90:3"}), places(*second));
  EXPECT_EQ((Texts{"a.f90:1", "a.f90:2", "a.f90:3"}), places(*third));
  EXPECT_EQ((Texts{"a.f90:2", "a.f90:3"}), places(*fourth));
}

TEST_F(CallersOfNamesakes, AreNoneInTheNextRun) {
  refer_to_solve(a1);
  Declaration::forget_all();
  const Declaration* const units[] = {add_solve(), add_solve()};
  for (const Declaration* unit : units) EXPECT_EQ(Texts{}, places(*unit));
  refer_to_solve(a2);
  for (const Declaration* unit : units)
    EXPECT_EQ(Texts{"a.f90:2"}, places(*unit));
}

TEST_F(CallersOfNamesakes, AreKeptByAUnitThatIsTakenOutWhenTheRunIsForgotten) {
  static const Declaration* const taken_out = first;
  refer_to_solve(a1);
  Declaration::decs.erase(Declaration::decs.begin());
  Declaration::forget_all();
  add_solve();
  add_solve();
  refer_to_solve(a2);
  EXPECT_EQ(Texts{"a.f90:1"}, places(*taken_out));
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

class GatherDeclarations : public ::testing::Test {
 protected:
  // What the pass registers for these files, in this order.
  static Texts gathered_from(const Texts& paths) {
    FileList files(paths);
    for (std::size_t i = 0; i < paths.size(); ++i)
      gather_declarations(files.slot(i), false);
    Texts units = registered();
    Declaration::forget_all();
    return units;
  }

  // What it registers for a file with this content.
  static Texts gathered(const std::string& content) {
    write_file("a.f90", content);
    return gathered_from({"a.f90"});
  }

  // The unit that a line opens, as "kind name"; empty when it opens nothing.
  static std::string opened(const std::string& line, bool fixed_form = false) {
    write_file("a.f90", line + "\nend\n");
    FileList files({"a.f90"});
    gather_declarations(files.slot(0), fixed_form);
    std::string units;
    for (const auto& entry : Declaration::decs) {
      EXPECT_EQ(1, entry.second->line) << line;
      units += kind_name(entry.second->type) + " "s + entry.second->name;
    }
    Declaration::forget_all();
    return units;
  }

  // What the pass prints for a file with this content.
  static std::string report(int verbosity, const std::string& path,
                            const std::string& content) {
    write_file(path, content);
    return report(verbosity, path);
  }

  static std::string report(int verbosity, std::string path) {
    verbose = verbosity;
    char* slot = path.data();
    std::string text = printed([&] { gather_declarations(&slot, false); });
    Declaration::forget_all();
    return text;
  }

  TemporaryFolder folder;
  SettingsGuard guard;
};

TEST_F(GatherDeclarations, RecordsAUnitWithItsLineUnderItsUpperCaseName) {
  EXPECT_EQ(Texts{"SOLVE: subroutine solve, a.f90:12"},
            gathered(std::string(11, '\n') + "subroutine solve(a, b)\nend\n"));
}

TEST_F(GatherDeclarations, RecordsNamesakesInTheOrderOfTheFiles) {
  write_file("z.f90", "\nModule Physics\nend\n");
  write_file("b.f90", "MODULE physics\nend\n");
  EXPECT_EQ((Texts{"PHYSICS: module Physics, z.f90:2",
                   "PHYSICS: module physics, b.f90:1"}),
            gathered_from({"z.f90", "b.f90"}));
}

TEST_F(GatherDeclarations, RecordsNamesakesOfOneFileInTheOrderOfTheirLines) {
  EXPECT_EQ(
      (Texts{"SWAP: interface swap, a.f90:1", "SWAP: subroutine SWAP, a.f90:3",
             "SWAP: function swap, a.f90:4"}),
      gathered("interface swap\nend interface\nsubroutine SWAP\n"
               "function swap\nend\n"));
}

TEST_F(GatherDeclarations, TakesAFileTwiceWhenItIsListedTwice) {
  write_file("b.f90", "type point\nend\n");
  EXPECT_EQ((Texts{"POINT: type point, b.f90:1", "POINT: type point, b.f90:1"}),
            gathered_from({"b.f90", "b.f90"}));
}

TEST_F(GatherDeclarations, LeavesTheRegistryAsItIs) {
  write_file("b.f90", "type point\nend\n");
  FileList files({"b.f90", "c.f90"});
  char name[] = "state";
  new Declaration(DT_TYPE, name, files.slot(1), 7);
  gather_declarations(files.slot(0), false);
  EXPECT_EQ((Texts{"POINT: type point, b.f90:1", "STATE: type state, c.f90:7"}),
            registered());
  Declaration::forget_all();
}

struct OpeningLine {
  const char* line;
  const char* unit;  // empty: opens nothing
};

// clang-format off
static const OpeningLine unit_statements[] = {
  { "program heat",                       "program heat" },
  { "module physics",                     "module physics" },
  { "subroutine solve(a, b)",             "subroutine solve" },
  { "function f(x) result(y)",            "function f" },
  { "interface swap",                     "interface swap" },
  { "type state",                         "type state" },
  { " \tSUBROUTINE  \t Solve",            "subroutine Solve" },
  { "TyPe StAtE\r",                       "type StAtE" },
  { "subroutine solve;call f",            "subroutine solve" },
  { "subroutine(solve)",                  "subroutine solve" },
  { "subroutine a.b_1",                   "subroutine a.b_1" },
  { "function 2nd",                       "function 2nd" },
  { "subroutine d\xe9" "but",             "subroutine d" },
  { "subroutine procedure",               "subroutine procedure" },
  { "function operator (.x.)",            "function operator" },
  { "type assignment",                    "type assignment" },
  { "module procedures",                  "module procedures" },
};

static const OpeningLine separators[] = {
  { "type :: point",                      "type point" },
  { "type, public :: point",              "type public" },
  { "TYPE,EXTENDS(base) :: point",        "type EXTENDS" },
  { "type = 3",                           "type 3" },
};

static const OpeningLine no_unit_statements[] = {
  { "",                                   "" },
  { "   ",                                "" },
  { "end",                                "" },
  { "end subroutine solve",               "" },
  { "endsubroutine solve",                "" },
  { "recursive subroutine walk(n)",       "" },
  { "pure function f(x)",                 "" },
  { "INTEGER FUNCTION f(x)",              "" },
  { "abstract interface",                 "" },
  { "x = type",                           "" },
  { "typedef x",                          "" },
  { "type.x y",                           "" },
  { "program_x y",                        "" },
  { "10 subroutine solve",                "" },
  { ";subroutine solve",                  "" },
  { "\xef\xbb\xbfprogram heat",           "" },   // the mark of UTF-8
};

static const OpeningLine module_procedures[] = {
  { "module procedure swap_int, swap_real", "" },
  { "MODULE PROCEDURE :: swap",           "" },
  { "module procedure",                   "" },
};

static const OpeningLine derived_type_variables[] = {
  { "type(state) :: s",                   "" },
  { "TYPE (state) :: s",                  "" },
  { "type \t (state), pointer :: s",      "" },
  { "type(",                              "" },
};

static const OpeningLine unnamed_units[] = {
  { "interface",                          "interface " },
  { "interface \r",                       "interface " },
  { "program",                            "program " },
  { "module",                             "module " },
  { "subroutine ()",                      "subroutine " },
  { "function +",                         "function " },
  { "type ::",                            "type " },
};

static const OpeningLine assignments[] = {
  { "interface assignment(=)",            "" },
  { "INTERFACE ASSIGNMENT (=)",           "" },
  { "interface assignments",              "interface assignments" },
};

static const OpeningLine operators[] = {
  { "interface operator (.cross.)",       "interface .cross." },
  { "INTERFACE OPERATOR (.CROSS.)",       "interface .CROSS." },
  { "interface \t operator \t( \t.x. )",  "interface .x." },
  { "interface operator\t(.x.)",          "interface .x." },
  { "interface operator (.x.y.)",         "interface .x." },
  { "interface operator (.a b.)",         "interface .a b." },
  { "interface operator (..)",            "interface .." },
  { "interface operator (.\xe9.)",        "interface .\xe9." },
  { "interface operator-(.x.)",           "interface .x." },  // a step of 9
  { "interface operator((.x.)",           "interface .x." },
  { "interface operators (.x.)",          "interface operators" },
};

static const OpeningLine no_user_operators[] = {
  { "interface operator (+)",             "" },
  { "interface operator (==)",            "" },
  { "interface operator(.cross.)",        "" },   // the step takes the "("
  { "interface operator(+)",              "" },
  { "interface operator",                 "" },
  { "interface operator ",                "" },
  { "interface operator x(.x.)",          "" },
  { "interface operator (",               "" },
  { "interface operator (  ",             "" },
  { "interface operator ( \r",            "" },
  { "interface operator (x.)",            "" },
  { "interface :: operator (.x.)",        "" },   // the step counts from "::"
};

// Without a closing dot the name goes on, line end included.
static const OpeningLine unclosed_operators[] = {
  { "interface operator (.cross",         "interface .cross\n" },
  { "interface operator (.cross)",        "interface .cross)\n" },
  { "interface operator (.cross) \r",     "interface .cross) \r\n" },
  { "interface operator (.",              "interface .\n" },
};

static const OpeningLine hidden[] = {
  { "! subroutine old",                   "" },
  { "!subroutine old",                    "" },
  { "print *, \"program x\"",             "" },
  { "\"\" program x",                     "" },
  { "subroutine ! solve",                 "subroutine " },
  { "subroutine \"old\" solve",           "subroutine solve" },
  { "subroutine \"open",                  "subroutine " },
  { "subroutine 'old' solve",             "subroutine old" },  // visible
  { "interface operator (.a!b.)",         "interface .a    \n" },
};
// clang-format on

template <std::size_t count>
static void expect_opened(std::string (*opened)(const std::string&, bool),
                          const OpeningLine (&lines)[count]) {
  for (const OpeningLine& c : lines)
    EXPECT_EQ(c.unit, opened(c.line, false)) << c.line;
}

TEST_F(GatherDeclarations, RecordsEachKindOfUnit) {
  expect_opened(opened, unit_statements);
}

TEST_F(GatherDeclarations, SkipsSeparatorsBeforeTheNameUnseen) {
  expect_opened(opened, separators);
}

TEST_F(GatherDeclarations, NeedsAUnitKeywordAsTheFirstWordOfTheLine) {
  expect_opened(opened, no_unit_statements);
}

TEST_F(GatherDeclarations, RecordsNothingForModuleProcedures) {
  expect_opened(opened, module_procedures);
}

TEST_F(GatherDeclarations, RecordsNothingForVariablesOfADerivedType) {
  expect_opened(opened, derived_type_variables);
}

TEST_F(GatherDeclarations, RecordsUnitsWithoutANameUnderTheEmptyKey) {
  expect_opened(opened, unnamed_units);
  EXPECT_EQ((Texts{": interface , a.f90:1", ": interface , a.f90:2"}),
            gathered("interface\ninterface\nend\n"));
}

TEST_F(GatherDeclarations, RecordsNothingForAssignmentInterfaces) {
  expect_opened(opened, assignments);
}

TEST_F(GatherDeclarations, RecordsUserDefinedOperatorsWithTheirDots) {
  expect_opened(opened, operators);
}

TEST_F(GatherDeclarations, RecordsNoOtherOperators) {
  expect_opened(opened, no_user_operators);
}

// The step past "operator" goes beyond the end of these.
TEST_F(GatherDeclarations, TakesAStepBeyondTheLineForItsEnd) {
  EXPECT_EQ("", opened("interface operator\0 (.x.)"s));
  EXPECT_EQ("", opened(std::string(1005, ' ') + "interface operator (.x.)"));
  EXPECT_EQ("", opened(std::string(1004, ' ') + "interface operator (.x.)"));
  EXPECT_EQ("", opened(std::string(1003, ' ') + "interface operator (.x.)"));
  EXPECT_EQ("interface .",
            opened(std::string(1002, ' ') + "interface operator (.x.)"));
}

TEST_F(GatherDeclarations, RecordsAnUnclosedOperatorWithTheRestOfItsLine) {
  expect_opened(opened, unclosed_operators);
}

TEST_F(GatherDeclarations, SeesNothingInCommentsAndDoubleQuotedStrings) {
  expect_opened(opened, hidden);
}

TEST_F(GatherDeclarations, HidesCommentsAndStringsWhateverTheOutputOptions) {
  for (const std::uint32_t style : {0u, 1u, 0xffffffffu}) {
    html_style = style;
    EXPECT_EQ("subroutine solve", opened("subroutine \"old\" solve")) << style;
  }
}

TEST_F(GatherDeclarations, HandsTheFixedFormRuleOn) {
  EXPECT_EQ("subroutine old", opened("subroutine \"old\" solve", true));
  EXPECT_EQ("subroutine old", opened("subroutine ! old", true));
  EXPECT_EQ("", opened("C\rsubroutine old", true));
}

// One line per byte: it belongs to the word, or it separates the keyword from
// the name.
TEST_F(GatherDeclarations, TakesAnyByteAfterAKeyword) {
  const std::string word_characters =
      "._0123456789abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ";
  for (int b = 0; b < 256; ++b) {
    const char c = static_cast<char>(b);
    std::string unit = "subroutine s";
    if (word_characters.find(c) != std::string::npos) unit = "";
    if (c == '\0' || c == '\n' || c == '!' || c == '"') unit = "subroutine ";
    EXPECT_EQ(unit, opened("subroutine"s + c + "s")) << "byte " << b;
  }
}

TEST_F(GatherDeclarations, TakesAnyByteBeforeAKeyword) {
  for (int b = 1; b < 256; ++b) {
    const char c = static_cast<char>(b);
    if (c == '\n') continue;
    const bool white_space = c == ' ' || (b >= 9 && b <= 13);
    EXPECT_EQ(white_space ? "type s" : "", opened(c + "type s"s))
        << "byte " << b;
  }
}

TEST_F(GatherDeclarations, NeverExaminesTheLastLine) {
  EXPECT_EQ(Texts{}, gathered("subroutine solve\n"));
  EXPECT_EQ(Texts{}, gathered("subroutine solve"));
  EXPECT_EQ(Texts{}, gathered("! only\n\ntype state\n"));
  EXPECT_EQ(Texts{"A: type a, a.f90:1"}, gathered("type a\ntype b"));
  EXPECT_EQ(Texts{"A: type a, a.f90:1"}, gathered("type a\n\n"));
}

TEST_F(GatherDeclarations, SkipsFilesThatCannotBeReadSilently) {
  write_file("empty.f90", "");
  EXPECT_EQ(Texts{}, gathered_from({"missing.f90", "empty.f90", "."}));
  for (const char* path : {"missing.f90", "empty.f90", "."})
    EXPECT_EQ("", report(5, path)) << path;
}

TEST_F(GatherDeclarations, ReadsDosLineEnds) {
  EXPECT_EQ((Texts{"A: type a, a.f90:1", "B: type b, a.f90:3"}),
            gathered("type a\r\n\r\ntype b\r\nend\r\n"));
}

TEST_F(GatherDeclarations, DoesNotJoinContinuedLines) {
  EXPECT_EQ(Texts{": subroutine , a.f90:1"},
            gathered("subroutine &\n  solve\nend\n"));
}

TEST_F(GatherDeclarations, CarriesNoStringIntoTheNextLine) {
  EXPECT_EQ(Texts{"A: type a, a.f90:2"}, gathered("x = \"\ntype a\nend\n"));
}

// A line of so many characters, then a unit on the next line.
TEST_F(GatherDeclarations, CountsThePiecesOfLongLines) {
  const struct {
    std::size_t characters;
    int next_line;
  } cases[] = {{1022, 2}, {1023, 3}, {1024, 3}, {2045, 3},   {2046, 4},
               {4094, 6}, {4095, 6}, {4096, 6}, {100000, 99}};
  for (const auto& c : cases)
    EXPECT_EQ(Texts{"A: type a, a.f90:" + std::to_string(c.next_line)},
              gathered(std::string(c.characters, 'x') + "\ntype a\nend\n"))
        << c.characters;
}

TEST_F(GatherDeclarations, TakesEveryPieceOfALongLineForALine) {
  EXPECT_EQ((Texts{"A: type a, a.f90:2"}),
            gathered(std::string(1023, 'x') + "type a\nend\n"));
  EXPECT_EQ((Texts{"A: type a, a.f90:2"}),
            gathered("!" + std::string(1022, 'x') + "type a\nend\n"));
}

TEST_F(GatherDeclarations, ExaminesNotTheLastPieceOfALongLastLine) {
  const std::string x(1023 - 6, ' ');
  EXPECT_EQ(Texts{}, gathered("type a" + x));
  EXPECT_EQ(Texts{"A: type a, a.f90:1"}, gathered("type a" + x + "\n"));
  EXPECT_EQ(Texts{"A: type a, a.f90:1"}, gathered("type a" + x + "x"));
}

TEST_F(GatherDeclarations, SeesNothingOfALineBeyondANul) {
  EXPECT_EQ((Texts{": type , a.f90:1", "B: type b, a.f90:2"}),
            gathered("type \0a\ntype b\nend\n"s));
  EXPECT_EQ((Texts{"A: type a, a.f90:1", "B: type b, a.f90:2"}),
            gathered("type a\0\ntype b\nend\n"s));
}

TEST_F(GatherDeclarations, EndsAtALineThatBeginsWithANul) {
  EXPECT_EQ(Texts{"A: type a, a.f90:1"},
            gathered("type a\n\0\ntype b\nend\n"s));
  EXPECT_EQ(Texts{}, gathered("\0type a\ntype b\nend\n"s));
}

TEST_F(GatherDeclarations, ReadsFilesOfEveryByte) {
  std::string rising;
  for (int b = 0; b < 256; ++b) rising += static_cast<char>(b);
  const std::string falling(rising.rbegin(), rising.rend());
  EXPECT_EQ(Texts{}, gathered(rising + "\ntype a\nend\n"));
  // The first line end ends 255 to 11; what follows begins with 9 to 1.
  EXPECT_EQ(Texts{"A: type a, a.f90:3"}, gathered(falling + "\ntype a\nend\n"));
  EXPECT_EQ(Texts{}, gathered(rising + rising + falling));
}

// A line counts once a character of the next one is there.
TEST_F(GatherDeclarations, ReadsSourcesThatEndAnywhere) {
  const std::string first = "program x\n";
  const std::string second = " type(a) :: \"b\r\n";
  const std::string third = "interface operator (.c.)\n";
  const std::string source = first + second + third + " type \0 ! d\n"s;
  for (std::size_t length = 0; length <= source.size(); ++length) {
    Texts expected;
    if (length > first.size() + second.size() + third.size())
      expected.push_back(".C.: interface .c., a.f90:3");
    if (length > first.size()) expected.push_back("X: program x, a.f90:1");
    EXPECT_EQ(expected, gathered(source.substr(0, length))) << length;
  }
}

TEST_F(GatherDeclarations, KnowsLongNamesByTheirFirst255Characters) {
  for (const std::size_t length : {254u, 255u, 256u, 300u}) {
    std::string name;
    while (name.size() < length) name += "abcdefghij_0123456789.";
    name.resize(length);
    EXPECT_EQ("subroutine " + name.substr(0, 255),
              opened("subroutine " + name + "(x)"))
        << length;
  }
}

TEST_F(GatherDeclarations, KnowsLongOperatorsByTheirFirst255Characters) {
  for (const std::size_t length : {254u, 255u, 256u, 300u}) {
    const std::string name = "." + std::string(length - 2, 'x') + ".";
    EXPECT_EQ("interface " + name.substr(0, 255),
              opened("interface operator (" + name + ")"))
        << length;
  }
  EXPECT_EQ("interface ." + std::string(254, 'x'),
            opened("interface operator (." + std::string(900, 'x')));
}

TEST_F(GatherDeclarations, MakesNamesakesOfLongNamesThatBeginAlike) {
  const std::string name(255, 'n');
  EXPECT_EQ((Texts{std::string(255, 'N') + ": type " + name + ", a.f90:1",
                   std::string(255, 'N') + ": type " + name + ", a.f90:2"}),
            gathered("type " + name + "a\ntype " + name + "b\nend\n"));
}

static const char* const reported_source =
    "subroutine solve(a, b)\n"
    "\n"
    "  type State ! \"s\"\n"
    "type(state) :: s\r\n"
    "print *, \"x\"\n"
    "end subroutine\n";

TEST_F(GatherDeclarations, PrintsNothingAtVerbosityZeroOrLess) {
  for (const int verbosity : {0, -1, -2147483647 - 1})
    EXPECT_EQ("", report(verbosity, "src/a.f90", reported_source)) << verbosity;
}

TEST_F(GatherDeclarations, ReportsEachUnitAndTheEndInVerboseMode) {
  for (const int verbosity : {1, 2, 4})
    EXPECT_EQ(
        "SUBROUTINE          ***\tsolve\tin src/a.f90\n"
        "TYPE                ***\tState\tin src/a.f90\n"
        "END OF FILE\n",
        report(verbosity, "src/a.f90", reported_source))
        << verbosity;
}

TEST_F(GatherDeclarations, EchoesEveryExaminedLineFromVerbosityFiveOn) {
  for (const int verbosity : {5, 6, 2147483647})
    EXPECT_EQ(
        "---subroutine solve(a, b)\n"
        "SUBROUTINE          ***\tsolve\tin src/a.f90\n"
        "---\n"
        "---  type State      \n"
        "TYPE                ***\tState\tin src/a.f90\n"
        "---type(state) :: s\r\n"
        "---print *, \" \"\n"
        "END OF FILE\n",
        report(verbosity, "src/a.f90", reported_source))
        << verbosity;
}

TEST_F(GatherDeclarations, PadsTheKeywordsOfItsReport) {
  EXPECT_EQ(
      "PROGRAM             ***\ta\tin a.f90\n"
      "MODULE              ***\tB\tin a.f90\n"
      "SUBROUTINE          ***\tc\tin a.f90\n"
      "FUNCTION            ***\td\tin a.f90\n"
      "INTERFACE           ***\t\tin a.f90\n"
      "INTERFACE           ***\t.e.\tin a.f90\n"
      "TYPE                ***\tpublic\tin a.f90\n"
      "END OF FILE\n",
      report(1, "a.f90",
             "program a\nModule B\nSUBROUTINE c\nfunction d\ninterface\n"
             "interface operator (.e.)\ntype, public :: f\nend\n"));
}

TEST_F(GatherDeclarations, ReportsOnlyTheEndOfAFileOfOneLine) {
  for (const int verbosity : {1, 4, 5})
    EXPECT_EQ("END OF FILE\n", report(verbosity, "a.f90", "type a\n"));
}

TEST_F(GatherDeclarations, ReportsNoEndAtALineThatBeginsWithANul) {
  EXPECT_EQ(
      "---type a\n"
      "TYPE                ***\ta\tin a.f90\n",
      report(5, "a.f90", "type a\n\0\ntype b\nend\n"s));
}

TEST_F(GatherDeclarations, EchoesPiecesAndUnclosedStringsWithoutLineEnd) {
  const std::string x(1023, 'x');
  EXPECT_EQ("---" + x + "---y\n---\"  ---a" + "END OF FILE\n",
            report(5, "a.f90", x + "y\n\"z\na\0b\nend\n"s));
}

TEST_F(GatherDeclarations, ReportsLongNamesCut) {
  EXPECT_EQ("TYPE                ***\t" + std::string(255, 'n') +
                "\tin a.f90\nEND OF FILE\n",
            report(1, "a.f90", "type " + std::string(300, 'n') + "\nend\n"));
}

TEST_F(GatherDeclarations, TakesNoTextForAFormat) {
  EXPECT_EQ(
      "---interface operator (.%s%n.) %d\n"
      "INTERFACE           ***\t.%s%n.\tin %s%n.f90\n"
      "END OF FILE\n",
      report(5, "%s%n.f90", "interface operator (.%s%n.) %d\nend\n"));
}
