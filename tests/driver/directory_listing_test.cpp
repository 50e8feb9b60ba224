#include "driver/directory_listing.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <clocale>
#include <cstddef>
#include <filesystem>
#include <string>
#include <vector>

#include "tests/support/alone.h"
#include "tests/support/heap_in_use.h"
#include "tests/support/latin_1_locale.h"
#include "tests/support/temporary_folder.h"

namespace fs = std::filesystem;

namespace {

using Names = std::vector<std::string>;

class ListDirectory : public testing::Test {
 protected:
  TemporaryFolder folder;
};

TEST_F(ListDirectory, AddsNoSlashToDirectories) {
  fs::create_directory("sub");
  fs::create_directory_symlink("sub", "link");
  write_file("file", "");
  fs::create_symlink("nothing", "dangling");
  EXPECT_EQ((Names{".", "..", "dangling", "file", "link", "sub"}),
            list_directory("."));
  EXPECT_EQ((Names{".", ".."}), list_directory("sub"));
}

TEST_F(ListDirectory, SortsNamesByByteAndNumbersByValue) {
  for (const char* name :
       {"m10.f90", "m2.f90", "m1", "b", "B", "a", ".hidden", "Z", "_", "10",
        "9", " blank ", "100%s", "@b", "back\\slash"})
    write_file(name, "");
  EXPECT_EQ(
      (Names{" blank ", ".", "..", ".hidden", "9", "10", "100%s", "@b", "B",
             "Z", "_", "a", "b", "back\\slash", "m1", "m2.f90", "m10.f90"}),
      list_directory("./"));
}

// The toolkit sorts a byte above 127 as a negative number up to 1.3 and as a
// positive one from 1.4 on, so its name comes first or last.
TEST_F(ListDirectory, KeepsNamesThatAreNotUtf8InEveryLocale) {
  alone([] {
    write_file("d/a", "");
    write_file("d/\xe9", "");
    for (const char* locale : {"C", "C.utf8", latin_1_locale()}) {
      ASSERT_NE(nullptr, std::setlocale(LC_ALL, locale)) << locale;
      Names names = list_directory("d/");
      std::sort(names.begin(), names.end());
      EXPECT_EQ((Names{".", "..", "a", "\xe9"}), names) << locale;
    }
  });
}

TEST_F(ListDirectory, ReturnsNoNamesWhenADirectoryCannotBeListed) {
  write_file("file", "");
  for (const char* path : {"missing", "missing/", "file", "file/", ""})
    EXPECT_EQ(Names{}, list_directory(path)) << path;
  fs::create_directory("gone");
  fs::current_path("gone");
  fs::remove(folder.path() / "gone");
  EXPECT_EQ(Names{}, list_directory("./"));
  fs::current_path(folder.path());
}

TEST_F(ListDirectory, AcceptsNamesAndPathsAsLongAsTheSystemAllows) {
  const std::string name(255, 'n');
  std::string path;
  for (int level = 0; level < 15; ++level) path += name + "/";
  write_file(path + "x", "");
  EXPECT_EQ((Names{".", "..", name}), list_directory("./"));
  EXPECT_EQ((Names{".", "..", "x"}), list_directory(path.c_str()));
}

// A block that is lost in each listing takes at least 16 bytes.
TEST_F(ListDirectory, FreesTheMemoryOfTheListing) {
  const std::size_t lost_by_each = 100 * 16;
  fs::create_directory("empty");
  for (const char* path : {"empty", "missing"}) {
    for (int i = 0; i < 100; ++i) list_directory(path);
    const std::size_t before = heap_in_use();
    for (int i = 0; i < 100; ++i) list_directory(path);
    EXPECT_GT(before + lost_by_each, heap_in_use()) << path;
  }
}

using IsDirectory = ListDirectory;

TEST_F(IsDirectory, AcceptsDirectoriesAndLinksToThemWithOrWithoutASlash) {
  write_file("file", "");
  fs::create_directory("sub");
  fs::create_directory_symlink("sub", "link");
  fs::create_symlink("nothing", "dangling");
  const struct {
    const char* path;
    bool directory;
  } cases[] = {
      {".", true},         {"./", true},         {"..", true},
      {"/", true},         {"//", true},         {"sub", true},
      {"sub/", true},      {"sub//", true},      {"./sub/../sub/", true},
      {"link", true},      {"link/", true},      {"", false},
      {"file", false},     {"missing", false},   {"missing/", false},
      {"dangling", false}, {"dangling/", false},
  };
  for (const auto& c : cases)
    EXPECT_EQ(c.directory, is_directory(c.path)) << '"' << c.path << '"';
  EXPECT_TRUE(is_directory(folder.path()));
}

TEST_F(IsDirectory, AcceptsPathsOfAnyLength) {
  std::string path;
  for (int level = 0; level < 15; ++level) path += std::string(200, 'd') + "/";
  fs::create_directories(path);
  EXPECT_TRUE(is_directory(path));
  EXPECT_FALSE(is_directory(path + "missing/"));
  EXPECT_FALSE(is_directory(std::string(100000, 'd') + "/"));
}

}  // namespace
