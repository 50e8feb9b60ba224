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

// The set is passed by value, so the caller's set does not change.
static_assert(std::is_same_v<decltype(collect_files),
                             Paths(const char*, std::set<std::string>, bool)>);

class CollectFiles : public testing::Test {
 protected:
  void write_files(const Paths& paths) {
    for (const std::string& path : paths) write_file(path, "");
  }

  TemporaryFolder folder;
};

// clang-format off
const struct {
  Paths files;
  const char* directory;
  std::set<std::string> extensions;
  bool recursive;
  Paths found;
} cases[] = {
    // a directory's own files come before those of any directory in it
    {{"b.f90", "a.F90", "c.f90", "sub/d.f90"}, "./", {"f90"}, true,
     {"./b.f90", "./c.f90", "./sub/d.f90"}},
    {{"b.f90", "a.F90", "c.f90", "sub/d.f90"}, "./", {"f90"}, false,
     {"./b.f90", "./c.f90"}},
    {{"z.f90", "a/z.f90", "a/a/x.f90", "a/b.f90", "b/y.f90"}, "./", {"f90"},
     true, {"./z.f90", "./a/b.f90", "./a/z.f90", "./a/a/x.f90", "./b/y.f90"}},
    {{".hidden/x.f90", "..dots/y.f90"}, "./", {"f90"}, true,
     {"./..dots/y.f90", "./.hidden/x.f90"}},
    {{"dir.f90/x.f90"}, "./", {"f90"}, false, {}},
    {{"dir.f90/x.f90"}, "./", {"f90"}, true, {"./dir.f90/x.f90"}},
    // numbers are ordered by value
    {{"m10.f90", "m2.f90", "m1.f90"}, "./", {"f90"}, false,
     {"./m1.f90", "./m2.f90", "./m10.f90"}},
    {{"d10/x.f90", "d9/x.f90", "D10/x.f90"}, "./", {"f90"}, true,
     {"./D10/x.f90", "./d9/x.f90", "./d10/x.f90"}},
    // paths begin with the directory as given
    {{"src/x.f90", "src/sub/y.f90"}, "src/", {"f90"}, true,
     {"src/x.f90", "src/sub/y.f90"}},
    {{"src/x.f90"}, "./src/../src/", {"f90"}, false, {"./src/../src/x.f90"}},
    // the text after the last point is compared exactly
    {{"a.f95", "b.f90", "c.F90", "d.f"}, "./", {"F90", "f90", "f95"}, false,
     {"./a.f95", "./b.f90", "./c.F90"}},
    {{"b.f90", "sub/d.f90", "noext"}, "./", {}, true, {}},
    {{"solver.old.f90", ".setup.f90", ".f90", "x.f900", "x.F90", "xf90", "f90",
      "x.f90.", "x.f90~", "x.f9", "x. f90", "d.f90/y"}, "./", {"f90"}, true,
     {"./.f90", "./.setup.f90", "./solver.old.f90"}},
    {{"x.f90", "x..f90"}, "./", {".f90", "x.f90"}, true, {}},
    {{"x.f90", "x.f95", "y.*"}, "./", {"*", "f9?", "f9[05]"}, false, {"./y.*"}},
    {{"Makefile", "x.", "x.f90", "d.x/noext"}, "./", {""}, true,
     {"./Makefile", "./x.", "./d.x/noext"}},
    // names are not changed
    {{"a b.f90", "100%s.f90", "@x.f90", "d/\xe9.f90"}, "./", {"f90"}, true,
     {"./100%s.f90", "./@x.f90", "./a b.f90", "./d/\xe9.f90"}},
    // directories that cannot be listed yield nothing
    {{"file.f90"}, "missing/", {"f90"}, true, {}},
    {{"file.f90"}, "file.f90/", {"f90"}, true, {}},
};
// clang-format on

TEST_F(CollectFiles, ReturnsFilesWithTheExtensionsInOrder) {
  for (const auto& c : cases) {
    const TemporaryFolder of_the_case;
    write_files(c.files);
    EXPECT_EQ(c.found, collect_files(c.directory, c.extensions, c.recursive))
        << testing::PrintToString(c.files);
  }
}

TEST_F(CollectFiles, FollowsLinks) {
  write_files({"elsewhere/x.f90", "start/own.f90"});
  fs::create_directory_symlink("../elsewhere", "start/dir");
  fs::create_symlink("../elsewhere/x.f90", "start/file.f90");
  EXPECT_EQ((Paths{"start/file.f90", "start/own.f90", "start/dir/x.f90"}),
            collect_files("start/", {"f90"}, true));
}

TEST_F(CollectFiles, TreatsAnEntryWithoutStatusAsAFile) {
  fs::create_symlink("nothing", "gone.f90");
  fs::create_symlink("nothing", "gone.txt");
  EXPECT_EQ((Paths{"./gone.f90"}), collect_files("./", {"f90"}, true));
}

// The system's limit on links in a path ends the search: the next link has no
// status, so it is not a directory.
TEST_F(CollectFiles, FollowsALinkToAnAncestorUpToTheSystemsLimit) {
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

// A directory without search permission can be listed, but its entries have no
// status.
TEST_F(CollectFiles, ContinuesAfterADirectoryWithoutPermission) {
  write_files({"a/x.f90", "locked/y.f90", "r/x.f90", "r/y.txt",
               "r/dir.f90/z.f90", "z/z.f90"});
  fs::permissions(folder.path(), fs::perms(0755));
  fs::permissions("locked", fs::perms::none);
  fs::permissions("r", fs::perms(0444));
  {
    const AsOrdinaryUser user;
    EXPECT_EQ((Paths{"./a/x.f90", "./r/dir.f90", "./r/x.f90", "./z/z.f90"}),
              collect_files("./", {"f90"}, true));
  }
  for (const char* path : {"locked", "r"})
    fs::permissions(path, fs::perms::owner_all);
}

}  // namespace
