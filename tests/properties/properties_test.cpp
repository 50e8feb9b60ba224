// Properties of every run, checked over random trees.
//
// ZELKOR_PROPERTY_FILES is the number of source files to check (300), and
// ZELKOR_PROPERTY_SEED the seed of the first tree (1). Each further tree has
// the next seed. A failure names the seed of its tree, so that the test can be
// repeated with this tree.

#include "tests/properties/properties.h"

#include <gtest/gtest.h>

#include <stdlib.h>

#include <clocale>
#include <functional>

#include "tests/properties/random_tree.h"
#include "tests/support/alone.h"
#include "tests/support/environment.h"
#include "tests/support/fixed_clock.h"
#include "tests/support/latin_1_locale.h"
#include "tests/support/settings_guard.h"
#include "tests/support/temporary_folder.h"

namespace fs = std::filesystem;

namespace {

std::uint64_t number_of(const char* variable, std::uint64_t otherwise) {
  const char* value = getenv(variable);
  return value == nullptr ? otherwise : std::strtoull(value, nullptr, 10);
}

const std::uint64_t files_to_check = number_of("ZELKOR_PROPERTY_FILES", 300);
const std::uint64_t first_seed = number_of("ZELKOR_PROPERTY_SEED", 1);

// Checks random trees, each in a new folder, until they have enough files.
// Stops at the first tree that fails.
void for_trees(const std::function<void(Tree&, Dice&)>& check) {
  const TimeZone zone;
  const SettingsGuard settings;
  std::uint64_t files = 0;
  for (std::uint64_t seed = first_seed; files < files_to_check; ++seed) {
    Dice dice(seed);
    Tree tree = random_tree(dice);
    const TemporaryFolder folder;
    tree.write();
    check(tree, dice);
    files += tree.sources.size();
    if (!testing::Test::HasFailure()) continue;
    FAIL() << "in the tree of ZELKOR_PROPERTY_SEED=" << seed;
  }
}

void expect_no_faults(const Tree& tree) {
  for (const std::string& fault : faults_of(run_over(tree)))
    ADD_FAILURE() << fault;
}

TEST(Runs, FollowTheRulesForRandomTrees) {
  for_trees([](const Tree& tree, Dice& dice) {
    expect_no_faults(tree);
    // A run over another tree must not change the next run.
    Tree other = tree;
    other.style = random_tree(dice).style;
    dice.shuffle(other.list);
    other.list.pop_back();
    expect_no_faults(other);
    expect_no_faults(tree);
  });
}

TEST(Runs, DoNotDependOnTheLocale) {
  alone([] {
    for_trees([](const Tree& tree, Dice&) {
      static const char* const latin_1 = latin_1_locale();
      for (const char* locale : {latin_1, "C.utf8"}) {
        ASSERT_NE(nullptr, std::setlocale(LC_ALL, locale)) << locale;
        expect_no_faults(tree);
      }
    });
  });
}

// Enters folders until the path of the working directory is longer than
// PATH_MAX.
void go_deep_down() {
  const std::string name(200, 'd');
  for (int i = 0; i < 25; ++i) {
    fs::create_directory(name);
    fs::current_path(name);
  }
}

TEST(Runs, DoNotDependOnTheDepthOfTheWorkingDirectory) {
  for_trees([](const Tree& tree, Dice&) {
    go_deep_down();
    tree.write();
    expect_no_faults(tree);
  });
}

// Except on the time zone, which the date needs.
TEST(Runs, DoNotDependOnTheEnvironment) {
  alone([] {
    for_trees([](const Tree& tree, Dice& dice) {
      for (const char* name :
           {"LANG", "LC_ALL", "LC_CTYPE", "HOME", "PATH", "BROWSER",
            "QUMBRA_HOME", "COLUMNS", "TMPDIR", "USER", "POSIXLY_CORRECT",
            "PWD", "DISPLAY", "SOURCE_DATE_EPOCH"}) {
        static const std::vector<std::string> values = {
            "", "/", "0", "de_DE.ISO-8859-1", "%s%n", "1e9"};
        set_environment(name, dice.one_of(values));
      }
      expect_no_faults(tree);
      clearenv();
      setenv("TZ", "UTC0", 1);
      expect_no_faults(tree);
    });
  });
}

}  // namespace
