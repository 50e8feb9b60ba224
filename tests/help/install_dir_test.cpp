#include "help/install_dir.h"

#include <gtest/gtest.h>

#include <sys/wait.h>
#include <unistd.h>

#include <cstdint>
#include <filesystem>
#include <functional>
#include <map>
#include <optional>
#include <string>

#include "tests/support/environment.h"
#include "tests/support/temporary_folder.h"

namespace fs = std::filesystem;

namespace {

// --- Clean paths ---

TEST(FixPath, TurnsBackslashesAndRemovesOneTrailingSlash) {
  const struct {
    const char* path;
    const char* fixed;
  } rows[] = {
      {"", ""},
      {"/opt/x", "/opt/x"},
      {"/opt/x/", "/opt/x"},
      {"/opt/x//", "/opt/x/"},
      {"C:\\tools\\x\\", "C:/tools/x"},
      {"\\\\host\\x\\\\", "//host/x/"},
      {"a/b\\c", "a/b/c"},
      {"/", ""},
      {"\\", ""},
      {"//", "/"},
      {"x", "x"},
      {"/a//b/../c", "/a//b/../c"},
      {"\xe9\\\xff", "\xe9/\xff"},
  };
  for (const auto& row : rows) {
    std::string path = row.path;
    fix_path(path);
    EXPECT_EQ(row.fixed, path) << row.path;
  }
}

// --- Files that exist ---

class Files : public testing::Test {
 protected:
  std::string path_of(const std::string& name) const {
    return folder.path().string() + "/" + name;
  }

  TemporaryFolder folder;
};

TEST_F(Files, ExistenceIsTheSize) {
  write_file("a", "x");
  write_file("b", std::string(5000, '\0'));
  EXPECT_EQ(1, file_exists("a"));
  EXPECT_EQ(1, file_exists(path_of("a")));
  EXPECT_EQ(5000, file_exists("b"));
}

TEST_F(Files, SizesThatNeedMoreThan32BitsAreNoZero) {
  write_file("huge", "");
  fs::resize_file("huge", std::uintmax_t{1} << 32);  // a hole, no blocks
  EXPECT_EQ(std::intmax_t{1} << 32, file_exists("huge"));
}

TEST_F(Files, EmptyFileCountsAsMissing) {
  write_file("empty", "");
  EXPECT_EQ(0, file_exists("empty"));
}

TEST_F(Files, WhatCannotBeExaminedIsMissing) {
  write_file("file", "x");
  fs::create_symlink("nowhere", "link");
  for (const std::string& path :
       {std::string(), std::string("none"), std::string("file/below"),
        std::string("link"), std::string(100000, 'x')})
    EXPECT_EQ(0, file_exists(path)) << path.substr(0, 20);
}

TEST_F(Files, DirectoryCountsAsPresent) {
  write_file("directory/file", "x");
  EXPECT_NE(0, file_exists("directory"));
  EXPECT_NE(0, file_exists("directory/"));
}

TEST_F(Files, LinkCountsAsWhatItLeadsTo) {
  write_file("file", "12345");
  write_file("empty", "");
  fs::create_symlink("file", "link");
  fs::create_symlink("empty", "link_to_empty");
  EXPECT_EQ(5, file_exists("link"));
  EXPECT_EQ(0, file_exists("link_to_empty"));
}

// --- Files found in a list of directories ---

class FindFile : public Files {
 protected:
  static constexpr const char* variable = "ZELKOR_TEST_LIST";

  std::string found(const std::string& file,
                    const std::optional<std::string>& list) const {
    const EnvironmentGuard guard(variable);
    set_environment(variable, list);
    return find_file(file, variable);
  }
};

TEST_F(FindFile, FindsAFileInADirectoryOfTheList) {
  write_file("a/other", "x");
  write_file("b/tool", "x");
  EXPECT_EQ("b/tool", found("tool", "a:b:c"));
  EXPECT_EQ(path_of("b/tool"),
            found("tool", path_of("a") + ":" + path_of("b") + ":/usr/bin"));
}

TEST_F(FindFile, FirstDirectoryWins) {
  write_file("a/tool", "x");
  write_file("b/tool", "x");
  EXPECT_EQ("b/tool", found("tool", "b:a:c"));
}

TEST_F(FindFile, LastDirectoryIsNeverTried) {
  write_file("b/tool", "x");
  EXPECT_EQ("", found("tool", "a:b"));
  EXPECT_EQ("", found("tool", "b"));
  EXPECT_EQ("b/tool", found("tool", "a:b:"));
}

TEST_F(FindFile, NameByItselfIsTriedFirst) {
  write_file("tool", "x");
  write_file("a/tool", "x");
  EXPECT_EQ("tool", found("tool", "a:b"));
}

TEST_F(FindFile, NameByItselfIsTriedWithoutAList) {
  write_file("tool", "x");
  for (const auto& list :
       {std::optional<std::string>(), std::optional<std::string>("")}) {
    EXPECT_EQ("tool", found("tool", list));
    EXPECT_EQ("", found("none", list));
    EXPECT_EQ(path_of("tool"), found(path_of("tool"), list));
  }
}

TEST_F(FindFile, EmptyPiecesStandForTheNameByItself) {
  write_file("a/tool", "x");
  EXPECT_EQ("a/tool", found("tool", "::a::"));
  EXPECT_EQ("", found("tool", ":::"));
}

TEST_F(FindFile, EmptyFileIsPassedOver) {
  write_file("tool", "");
  write_file("a/tool", "");
  write_file("b/tool", "x");
  EXPECT_EQ("b/tool", found("tool", "a:b:c"));
  EXPECT_EQ("", found("tool", "a:c"));
}

TEST_F(FindFile, ResultIsACleanPath) {
  write_file("a/b/tool", "x");
  EXPECT_EQ("a/b/tool", found("tool", "a\\b:c"));
  EXPECT_EQ("a/b/tool", found("b\\tool\\", "a:c"));
  EXPECT_EQ("a/b//tool", found("tool", "a/b/:c"));
}

TEST_F(FindFile, LongListsAndNamesEnd) {
  write_file("a/tool", "x");
  std::string list;
  for (int i = 0; i < 20000; ++i) list += "none:";
  EXPECT_EQ("a/tool", found("tool", list + "a:"));
  EXPECT_EQ("", found(std::string(100000, 'x'), "a:b"));
}

// --- The installation directory ---

// What a question about a process that asks it first is answered. This process
// never asks itself.
std::string in_new_process(const std::function<std::string()>& question) {
  int ends[2];
  if (pipe(ends) != 0) throw std::runtime_error("no pipe");
  const pid_t process = fork();
  if (process == 0) {
    const std::string answer = question();
    const bool told = write(ends[1], answer.data(), answer.size()) ==
                      static_cast<ssize_t>(answer.size());
    _exit(told ? 0 : 1);
  }
  close(ends[1]);
  std::string answer;
  for (char c = '\0'; read(ends[0], &c, 1) == 1;) answer += c;
  close(ends[0]);
  int status = -1;
  waitpid(process, &status, 0);
  EXPECT_EQ(0, status);
  return answer;
}

using Environment = std::map<std::string, std::string>;

// The variables that matter have these values only.
void enter(const Environment& environment) {
  for (const char* name : {"QUMBRA_HOME", "HOME", "PATH"}) unsetenv(name);
  for (const auto& [name, value] : environment) set_environment(name, value);
}

std::string directory_for(const Environment& environment) {
  return in_new_process([&] {
    enter(environment);
    return QUMBRA_DIR();
  });
}

using InstallDir = Files;

TEST_F(InstallDir, IsTheValueOfQumbraHomeMadeClean) {
  const struct {
    const char* value;
    const char* directory;
  } rows[] = {
      {"C:\\tools\\x\\", "C:/tools/x"}, {"/opt/x", "/opt/x"},
      {"/opt/x//", "/opt/x/"},          {"relative", "relative"},
      {"/opt/q@ a%s", "/opt/q@ a%s"},
  };
  for (const auto& row : rows)
    EXPECT_EQ(row.directory, directory_for({{"QUMBRA_HOME", row.value}}))
        << row.value;
}

TEST_F(InstallDir, QumbraHomeComesBeforeAllOthers) {
  write_file(".qumbra/file", "x");
  write_file("x/bin/plomvek", "x");
  EXPECT_EQ("/nowhere", directory_for({{"QUMBRA_HOME", "/nowhere"},
                                       {"HOME", folder.path()},
                                       {"PATH", path_of("x/bin") + ":"}}));
}

TEST_F(InstallDir, IsDotQumbraInTheHomeDirectory) {
  write_file(".qumbra/file", "x");
  EXPECT_EQ(path_of(".qumbra"), directory_for({{"HOME", folder.path()}}));
  EXPECT_EQ(path_of("/.qumbra"),
            directory_for({{"HOME", folder.path().string() + "/"}}));
}

TEST_F(InstallDir, DotQumbraIsMadeCleanBeforeItIsLookedFor) {
  write_file("home/me/.qumbra/file", "x");
  EXPECT_EQ("home/me/.qumbra", directory_for({{"HOME", "home\\me"}}));
}

TEST_F(InstallDir, DotQumbraComesBeforeTheSearchPath) {
  write_file(".qumbra/file", "x");
  write_file("x/bin/plomvek", "x");
  EXPECT_EQ(path_of(".qumbra"),
            directory_for({{"HOME", folder.path()},
                           {"PATH", path_of("x/bin") + ":/usr/bin"}}));
}

TEST_F(InstallDir, MissingOrEmptyDotQumbraIsPassedOver) {
  write_file("x/bin/plomvek", "x");
  const Environment environment{{"HOME", folder.path()},
                                {"PATH", path_of("x/bin") + ":/usr/bin"}};
  EXPECT_EQ(path_of("x"), directory_for(environment));
  write_file(".qumbra", "");
  EXPECT_EQ(path_of("x"), directory_for(environment));
}

TEST_F(InstallDir, IsAboveTheBinWhereTheSiblingProgramLies) {
  write_file("x/bin/plomvek", "x");
  EXPECT_EQ(path_of("x"),
            directory_for({{"PATH", path_of("x/bin") + ":/usr/bin"}}));
  EXPECT_EQ("./x", directory_for({{"PATH", "./x/bin:/usr/bin"}}));
  EXPECT_EQ("x", directory_for({{"PATH", "x\\bin:/usr/bin"}}));
}

TEST_F(InstallDir, SiblingInTheLastDirectoryOfThePathIsNotFound) {
  write_file("x/bin/plomvek", "x");
  EXPECT_EQ("/qumbra",
            directory_for({{"PATH", "/usr/bin:" + path_of("x/bin")}}));
}

TEST_F(InstallDir, SiblingInTheWorkingDirectoryIsFoundFirstAndLeadsNowhere) {
  write_file("plomvek", "x");
  write_file("x/bin/plomvek", "x");
  EXPECT_EQ("/qumbra",
            directory_for({{"PATH", path_of("x/bin") + ":/usr/bin"}}));
}

TEST_F(InstallDir, SiblingOutsideABinLeadsNowhere) {
  write_file("x/tools/plomvek", "x");
  write_file("bin/plomvek", "x");
  write_file("y/bin/plomvek", "x");
  for (const char* first : {"x/tools", "bin"})
    EXPECT_EQ("/qumbra", directory_for({{"PATH", std::string(first) + ":" +
                                                     path_of("y/bin") + ":"}}))
        << first;
}

TEST_F(InstallDir, LastPlaceOfTheSiblingsNameCounts) {
  write_file("bin/plomvek/bin/plomvek", "x");
  EXPECT_EQ(path_of("bin/plomvek"),
            directory_for({{"PATH", path_of("bin/plomvek/bin") + ":"}}));
  write_file("bin/plomvek.d/plomvek", "x");
  EXPECT_EQ(folder.path(),
            directory_for({{"PATH", path_of("bin/plomvek.d") + ":"}}));
}

TEST_F(InstallDir, EmptySiblingCountsAsMissing) {
  write_file("x/bin/plomvek", "");
  write_file("y/bin/plomvek", "x");
  EXPECT_EQ(path_of("y"),
            directory_for(
                {{"PATH", path_of("x/bin") + ":" + path_of("y/bin") + ":"}}));
}

TEST_F(InstallDir, IsQumbraAtTheRootWhenNothingIsFound) {
  EXPECT_EQ("/qumbra", directory_for({}));
  EXPECT_EQ("/qumbra", directory_for({{"HOME", folder.path()},
                                      {"PATH", "/usr/bin:/bin"}}));
}

TEST_F(InstallDir, IsDeterminedOnce) {
  write_file(".qumbra/file", "x");
  EXPECT_EQ(path_of(".qumbra") + " " + path_of(".qumbra") + " same",
            in_new_process([&] {
              enter({{"HOME", folder.path()}});
              const std::string& first = QUMBRA_DIR();
              const std::string before = first;
              fs::remove_all(".qumbra");
              enter({{"QUMBRA_HOME", "/opt/x"}});
              const std::string& second = QUMBRA_DIR();
              return before + " " + second +
                     (&first == &second ? " same" : " another");
            }));
}

TEST_F(InstallDir, FallbackIsKeptToo) {
  EXPECT_EQ("/qumbra", in_new_process([] {
              enter({});
              QUMBRA_DIR();
              enter({{"QUMBRA_HOME", "/opt/x"}});
              return QUMBRA_DIR();
            }));
}

TEST_F(InstallDir, EmptyValueOfQumbraHomeIsTakenButNotKept) {
  write_file(".qumbra/file", "x");
  for (const char* value : {"", "/"})
    EXPECT_EQ("[] [/opt/x]", in_new_process([&] {
                enter({{"QUMBRA_HOME", value}, {"HOME", folder.path()}});
                const std::string first = QUMBRA_DIR();
                enter({{"QUMBRA_HOME", "/opt/x"}});
                return "[" + first + "] [" + QUMBRA_DIR() + "]";
              }))
        << value;
}

// --- At the root, which is the scratch folder here ---

class InstallDirAtTheRoot : public Files {
 protected:
  void SetUp() override {
    const std::string answer = in_new_process([this] { return entered(); });
    if (answer != "entered") GTEST_SKIP() << "chroot is not allowed";
  }
  std::string entered() const {
    const bool done = chroot(folder.path().c_str()) == 0 && chdir("/") == 0;
    return done ? "entered" : "not entered";
  }
  std::string directory_for(const Environment& environment) const {
    return in_new_process([&] {
      if (entered() != "entered") return entered();
      enter(environment);
      const std::string first = QUMBRA_DIR();
      enter({{"QUMBRA_HOME", "/opt/x"}});
      return "[" + first + "] [" + QUMBRA_DIR() + "]";
    });
  }
};

TEST_F(InstallDirAtTheRoot, SiblingInBinGivesTheEmptyTextThatIsNotKept) {
  write_file("bin/plomvek", "x");
  EXPECT_EQ("[] [/opt/x]", directory_for({{"PATH", "/bin:/usr/bin"}}));
}

TEST_F(InstallDirAtTheRoot, SiblingAfterADoubledSlashLeadsNowhere) {
  write_file("bin/plomvek", "x");
  EXPECT_EQ("[/qumbra] [/qumbra]", directory_for({{"PATH", "/bin/:/usr/bin"}}));
}

TEST_F(InstallDirAtTheRoot, EmptyHomeIsAHomeAllTheSame) {
  write_file(".qumbra/file", "x");
  EXPECT_EQ("[/.qumbra] [/.qumbra]", directory_for({{"HOME", ""}}));
}

// --- The handbook ---

std::string handbook_for(const std::string& program) {
  return in_new_process([&] {
    enter({{"QUMBRA_HOME", "/opt/x"}});
    return locate_handbook(program);
  });
}

TEST(Handbook, LiesBelowTheInstallationDirectory) {
  const struct {
    const char* program;
    const char* path;
  } rows[] = {
      {"zelkor", "/opt/x/share/doc/zelkor/Zelkor_Handbook.html"},
      {"Zelkor", "/opt/x/share/doc/Zelkor/Zelkor_Handbook.html"},
      {"zELKOR", "/opt/x/share/doc/zELKOR/ZELKOR_Handbook.html"},
      {"z", "/opt/x/share/doc/z/Z_Handbook.html"},
      {"9tool x", "/opt/x/share/doc/9tool x/9tool x_Handbook.html"},
      {"_tool", "/opt/x/share/doc/_tool/_tool_Handbook.html"},
      {"\xe9t", "/opt/x/share/doc/\xe9t/\xe9t_Handbook.html"},
      {"", "/opt/x/share/doc//_Handbook.html"},
  };
  for (const auto& row : rows)
    EXPECT_EQ(row.path, handbook_for(row.program)) << row.program;
}

TEST(Handbook, BelowTheFallbackIsNamedThoughItDoesNotExist) {
  EXPECT_EQ("/qumbra/share/doc/zelkor/Zelkor_Handbook.html", in_new_process([] {
              enter({});
              return locate_handbook("zelkor");
            }));
}

}  // namespace
