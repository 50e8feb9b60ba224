#include "driver/source_files.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <set>
#include <string>
#include <type_traits>
#include <vector>

#include "tests/support/ordinary_user.h"
#include "tests/support/temporary_folder.h"

namespace fs = std::filesystem;

namespace {

using Paths = std::vector<std::string>;

// The set is a copy, so that the caller's stays as it is.
static_assert(std::is_same_v<decltype(collect_files),
                             Paths(const char*, std::set<std::string>, bool)>);

class CollectFiles : public testing::Test {
 protected:
  void write_files(const Paths& paths) {
    for (const std::string& path : paths) write_file(path, "");
  }

  TemporaryFolder folder;
};

TEST_F(CollectFiles, FindsTheFilesOfADirectoryAndThoseBelow) {
  write_files({"b.f90", "a.F90", "c.f90", "sub/d.f90"});
  EXPECT_EQ((Paths{"./b.f90", "./c.f90", "./sub/d.f90"}),
            collect_files("./", {"f90"}, true));
}

TEST_F(CollectFiles, DoesNotDescendUnlessAsked) {
  write_files({"b.f90", "a.F90", "c.f90", "sub/d.f90"});
  EXPECT_EQ((Paths{"./b.f90", "./c.f90"}), collect_files("./", {"f90"}, false));
}

TEST_F(CollectFiles, OrdersNumbersByValue) {
  write_files({"m10.f90", "m2.f90", "m1.f90"});
  EXPECT_EQ((Paths{"./m1.f90", "./m2.f90", "./m10.f90"}),
            collect_files("./", {"f90"}, false));
}

TEST_F(CollectFiles, OrdersDirectoriesByNumberToo) {
  write_files({"d10/x.f90", "d9/x.f90", "D10/x.f90"});
  EXPECT_EQ((Paths{"./D10/x.f90", "./d9/x.f90", "./d10/x.f90"}),
            collect_files("./", {"f90"}, true));
}

TEST_F(CollectFiles, OwnFilesComeBeforeThoseOfAnyDirectory) {
  write_files({"z.f90", "a/z.f90", "a/a/x.f90", "a/b.f90", "b/y.f90"});
  EXPECT_EQ(
      (Paths{"./z.f90", "./a/b.f90", "./a/z.f90", "./a/a/x.f90", "./b/y.f90"}),
      collect_files("./", {"f90"}, true));
}

TEST_F(CollectFiles, PathsBeginWithTheDirectoryAsGiven) {
  write_files({"src/x.f90", "src/sub/y.f90"});
  EXPECT_EQ((Paths{"src/x.f90", "src/sub/y.f90"}),
            collect_files("src/", {"f90"}, true));
  const std::string absolute = folder.path() / "src/";
  EXPECT_EQ((Paths{absolute + "x.f90", absolute + "sub/y.f90"}),
            collect_files(absolute.c_str(), {"f90"}, true));
  EXPECT_EQ((Paths{"./src/../src/x.f90"}),
            collect_files("./src/../src/", {"f90"}, false));
}

TEST_F(CollectFiles, TakesSeveralExtensionsInOneOrder) {
  write_files({"a.f95", "b.f90", "c.F90", "d.f"});
  EXPECT_EQ((Paths{"./a.f95", "./b.f90", "./c.F90"}),
            collect_files("./", {"F90", "f90", "f95"}, false));
}

TEST_F(CollectFiles, AnEmptySetFindsNothing) {
  write_files({"b.f90", "sub/d.f90", "noext"});
  EXPECT_EQ(Paths{}, collect_files("./", {}, true));
}

TEST_F(CollectFiles, ComparesTheTextAfterTheLastPointExactly) {
  write_files({"solver.old.f90", ".setup.f90", ".f90", "x.f900", "x.F90",
               "xf90", "f90", "x.f90.", "x.f90~", "x.f9", "x. f90", "d.f90/y"});
  EXPECT_EQ((Paths{"./.f90", "./.setup.f90", "./solver.old.f90"}),
            collect_files("./", {"f90"}, true));
  EXPECT_EQ(Paths{}, collect_files("./", {"old.f90"}, true));
}

TEST_F(CollectFiles, AnExtensionGivenWithItsPointMatchesNothing) {
  write_files({"x.f90", "x..f90"});
  EXPECT_EQ(Paths{}, collect_files("./", {".f90"}, true));
}

TEST_F(CollectFiles, ExtensionsAreNoPatterns) {
  write_files({"x.f90", "x.f95", "y.*"});
  EXPECT_EQ((Paths{"./y.*"}),
            collect_files("./", {"*", "f9?", "f9[05]"}, false));
}

TEST_F(CollectFiles, TheEmptyExtensionIsThatOfNamesWithoutOrEndingInAPoint) {
  write_files({"Makefile", "x.", "x.f90", "d.x/noext"});
  EXPECT_EQ((Paths{"./Makefile", "./x.", "./d.x/noext"}),
            collect_files("./", {""}, true));
}

TEST_F(CollectFiles, ADirectoryIsNeverAFileWhateverItsName) {
  write_files({"dir.f90/x.f90"});
  EXPECT_EQ(Paths{}, collect_files("./", {"f90"}, false));
  EXPECT_EQ((Paths{"./dir.f90/x.f90"}), collect_files("./", {"f90"}, true));
}

TEST_F(CollectFiles, DescendsIntoHiddenDirectories) {
  write_files({".hidden/x.f90", "..dots/y.f90"});
  EXPECT_EQ((Paths{"./..dots/y.f90", "./.hidden/x.f90"}),
            collect_files("./", {"f90"}, true));
}

TEST_F(CollectFiles, FollowsLinks) {
  write_files({"elsewhere/x.f90", "start/own.f90"});
  fs::create_directory_symlink("../elsewhere", "start/dir");
  fs::create_symlink("../elsewhere/x.f90", "start/file.f90");
  EXPECT_EQ((Paths{"start/file.f90", "start/own.f90", "start/dir/x.f90"}),
            collect_files("start/", {"f90"}, true));
}

TEST_F(CollectFiles, JudgesAnEntryWithoutStatusByItsExtension) {
  fs::create_symlink("nothing", "gone.f90");
  fs::create_symlink("nothing", "gone.txt");
  EXPECT_EQ((Paths{"./gone.f90"}), collect_files("./", {"f90"}, true));
}

// The system's limit on links in a path is what ends the search: the link
// beyond it has no status and so is no directory.
TEST_F(CollectFiles, FollowsALinkToAnAncestorUntilTheSystemRefuses) {
  write_files({"sub/x.f90"});
  fs::create_directory_symlink("..", "sub/up");
  const Paths files = collect_files("./", {"f90"}, true);
  ASSERT_LT(3u, files.size());
  std::string directory = "./";
  for (const std::string& file : files) {
    directory += "sub/";
    EXPECT_EQ(directory + "x.f90", file);
    directory += "up/";
  }
}

TEST_F(CollectFiles, ADirectoryThatCannotBeListedYieldsNothing) {
  write_files({"file.f90"});
  EXPECT_EQ(Paths{}, collect_files("missing/", {"f90"}, true));
  EXPECT_EQ(Paths{}, collect_files("file.f90/", {"f90"}, true));
}

TEST_F(CollectFiles, DirectoriesWithoutRightsYieldNothing) {
  write_files({"a/x.f90", "locked/y.f90", "z/z.f90"});
  fs::permissions(folder.path(), fs::perms(0755));
  fs::permissions("locked", fs::perms::none);
  {
    const AsOrdinaryUser user;
    EXPECT_EQ((Paths{"./a/x.f90", "./z/z.f90"}),
              collect_files("./", {"f90"}, true));
  }
  fs::permissions("locked", fs::perms::owner_all);
}

// Without the right to search a directory its names can be listed, but nothing
// can be told of what bears them.
TEST_F(CollectFiles, JudgesEntriesOfAnUnsearchableDirectoryByTheirExtensions) {
  write_files({"r/x.f90", "r/y.txt", "r/dir.f90/z.f90"});
  fs::permissions(folder.path(), fs::perms(0755));
  fs::permissions("r", fs::perms(0444));
  {
    const AsOrdinaryUser user;
    EXPECT_EQ((Paths{"./r/dir.f90", "./r/x.f90"}),
              collect_files("./", {"f90"}, true));
  }
  fs::permissions("r", fs::perms::owner_all);
}

TEST_F(CollectFiles, ARemovedWorkingDirectoryYieldsNothing) {
  fs::create_directory("gone");
  fs::current_path("gone");
  fs::remove(folder.path() / "gone");
  EXPECT_EQ(Paths{}, collect_files("./", {"f90"}, true));
  fs::current_path(folder.path());
}

TEST_F(CollectFiles, OddNamesAreCollectedAsTheyAre) {
  write_files({"a b.f90", "100%s.f90", "@x.f90", "d/\xe9.f90",
               std::string(251, 'n') + ".f90"});
  EXPECT_EQ((Paths{"./100%s.f90", "./@x.f90", "./a b.f90",
                   "./" + std::string(251, 'n') + ".f90", "./d/\xe9.f90"}),
            collect_files("./", {"f90"}, true));
}

TEST_F(CollectFiles, PathsMayBeLong) {
  std::string deep;
  for (int level = 0; level < 12; ++level)
    deep += std::string(100, static_cast<char>('a' + level)) + "/";
  write_files({deep + "x.f90"});
  EXPECT_EQ((Paths{"./" + deep + "x.f90"}), collect_files("./", {"f90"}, true));
}

// A path of the system has 4095 bytes at most.
TEST_F(CollectFiles, FindsNothingBelowTheLongestPath) {
  const std::string name(200, 'd');
  std::string found = "./x.f90";
  Paths expected;
  for (int level = 0; level < 25; ++level) {
    write_file("x.f90", "");
    if (found.size() <= 4095) expected.push_back(found);
    fs::create_directory(name);
    fs::current_path(name);
    found.insert(2, name + "/");
  }
  fs::current_path(folder.path());
  EXPECT_EQ(21u, expected.size());
  EXPECT_EQ(expected, collect_files("./", {"f90"}, true));
}

}  // namespace
