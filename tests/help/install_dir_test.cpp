#include "help/install_dir.h"

#include <gtest/gtest.h>

#include <sys/wait.h>
#include <unistd.h>

#include <cstdint>
#include <filesystem>
#include <functional>
#include <map>
#include <optional>
#include <regex>
#include <stdexcept>
#include <string>
#include <type_traits>
#include <vector>

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

// --- Files ---

using Names = std::vector<std::string>;

class Files : public testing::Test {
 protected:
  static void write_files(const Names& names, const Names& empty = {}) {
    for (const std::string& name : names) write_file(name, "x");
    for (const std::string& name : empty) write_file(name, "");
  }

  TemporaryFolder folder;
};

// A link counts as its target, and a file without status as missing.
TEST_F(Files, ExistWhenTheirSizeIsNotZero) {
  write_files({"a", "directory/file"}, {"empty"});
  write_file("b", std::string(5000, '\0'));
  for (const char* target : {"b", "empty", "nowhere"})
    fs::create_symlink(target, std::string("link to ") + target);
  EXPECT_EQ(1, file_exists("a"));
  EXPECT_EQ(1, file_exists(folder.path() / "a"));
  for (const char* path : {"b", "link to b"})
    EXPECT_EQ(5000, file_exists(path)) << path;
  for (const char* path : {"directory", "directory/"})
    EXPECT_NE(0, file_exists(path)) << path;
  for (const std::string& path :
       {std::string("empty"), std::string("link to empty"), std::string(),
        std::string("none"), std::string("a/below"),
        std::string("link to nowhere"), std::string(100000, 'x')})
    EXPECT_EQ(0, file_exists(path)) << path.substr(0, 20);
}

TEST_F(Files, ExistWhenTheirSizeNeedsMoreThan32Bits) {
  write_file("huge", "");
  fs::resize_file("huge", std::uintmax_t{1} << 32);  // a hole, no blocks
  EXPECT_EQ(std::intmax_t{1} << 32, file_exists("huge"));
}

std::string found(const std::string& file,
                  const std::optional<std::string>& list) {
  const EnvironmentGuard guard("ZELKOR_TEST_LIST");
  set_environment("ZELKOR_TEST_LIST", list);
  return find_file(file, "ZELKOR_TEST_LIST");
}

TEST_F(Files, AreFoundInAListOfDirectories) {
  const struct {
    Names files, empty_files;
    const char* name;
    std::optional<std::string> list;
    const char* found;
  } rows[] = {
      {{"a/other", "b/tool"}, {}, "tool", "a:b:c", "b/tool"},
      {{"a/tool", "b/tool"}, {}, "tool", "b:a:c", "b/tool"},
      // The last directory is never tried.
      {{"b/tool"}, {}, "tool", "a:b", ""},
      {{"b/tool"}, {}, "tool", "b", ""},
      {{"b/tool"}, {}, "tool", "a:b:", "b/tool"},
      // The name by itself is tried first.
      {{"tool", "a/tool"}, {}, "tool", "a:b", "tool"},
      {{"tool"}, {}, "tool", std::nullopt, "tool"},
      {{"tool"}, {}, "tool", "", "tool"},
      {{"tool"}, {}, "none", std::nullopt, ""},
      {{"a/tool"}, {}, "tool", "::a::", "a/tool"},
      {{"a/tool"}, {}, "tool", ":::", ""},
      {{"b/tool"}, {"tool", "a/tool"}, "tool", "a:b:c", "b/tool"},
      {{"b/tool"}, {"tool", "a/tool"}, "tool", "a:c", ""},
      // The result is a clean path.
      {{"a/b/tool"}, {}, "tool", "a\\b:c", "a/b/tool"},
      {{"a/b/tool"}, {}, "b\\tool\\", "a:c", "a/b/tool"},
      {{"a/b/tool"}, {}, "tool", "a/b/:c", "a/b//tool"},
  };
  for (const auto& row : rows) {
    const TemporaryFolder of_the_row;
    write_files(row.files, row.empty_files);
    EXPECT_EQ(row.found, found(row.name, row.list))
        << row.name << " in " << row.list.value_or("no list");
  }
}

TEST_F(Files, AreFoundInLongLists) {
  write_files({"a/tool"});
  std::string list;
  for (int i = 0; i < 20000; ++i) list += "none:";
  EXPECT_EQ("a/tool", found("tool", list + "a:"));
  EXPECT_EQ("", found(std::string(100000, 'x'), "a:b"));
}

// --- The installation directory ---

// The answer to a question in a new process, because the directory is
// determined once in a process.
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

// Replaces "~" by the working directory.
std::string expanded(const std::string& text) {
  return std::regex_replace(text, std::regex("~"), fs::current_path().string());
}

// Sets the variables that matter, and unsets the others of them.
void enter(const Environment& environment) {
  for (const char* name : {"QUMBRA_HOME", "HOME", "PATH"}) unsetenv(name);
  for (const auto& [name, value] : environment)
    set_environment(name, expanded(value));
}

static_assert(std::is_reference_v<decltype(QUMBRA_DIR())>);

using InstallDir = Files;

TEST_F(InstallDir, PrefersTheVariableThenTheHomeThenTheSearchPath) {
  const Environment home_and_path = {{"HOME", "~"}, {"PATH", "~/x/bin:/bin"}};
  // clang-format off
  const struct {
    Names files, empty_files;
    Environment environment;
    const char* directory;
  } rows[] = {
      // The value of QUMBRA_HOME, as a clean path.
      {{}, {}, {{"QUMBRA_HOME", "C:\\tools\\x\\"}}, "C:/tools/x"},
      {{}, {}, {{"QUMBRA_HOME", "/opt/x//"}}, "/opt/x/"},
      {{}, {}, {{"QUMBRA_HOME", "/opt/q@ a%s"}}, "/opt/q@ a%s"},
      {{".qumbra/file", "x/bin/plomvek"}, {},
       {{"QUMBRA_HOME", "/nowhere"}, {"HOME", "~"}, {"PATH", "~/x/bin:"}},
       "/nowhere"},
      // .qumbra in the home directory.
      {{".qumbra/file"}, {}, {{"HOME", "~/"}}, "~//.qumbra"},
      {{"me/.qumbra/file"}, {}, {{"HOME", ".\\me"}}, "./me/.qumbra"},
      {{".qumbra/file", "x/bin/plomvek"}, {}, home_and_path, "~/.qumbra"},
      // Above the bin where the sibling program is.
      {{"x/bin/plomvek"}, {}, home_and_path, "~/x"},
      {{"x/bin/plomvek"}, {".qumbra"}, home_and_path, "~/x"},
      {{"x/bin/plomvek"}, {}, {{"PATH", "x\\bin:/usr/bin"}}, "x"},
      {{"x/bin/plomvek"}, {}, {{"PATH", "/usr/bin:~/x/bin"}}, "/qumbra"},
      {{"y/bin/plomvek"}, {"x/bin/plomvek"}, {{"PATH", "~/x/bin:~/y/bin:"}},
       "~/y"},
      // The last occurrence of the sibling's name counts.
      {{"bin/plomvek/bin/plomvek"}, {}, {{"PATH", "~/bin/plomvek/bin:"}},
       "~/bin/plomvek"},
      {{"bin/plomvek.d/plomvek"}, {}, {{"PATH", "~/bin/plomvek.d:"}}, "~"},
      // A sibling whose path has no "/bin/plomvek" is of no use.
      {{"plomvek", "x/bin/plomvek"}, {}, home_and_path, "/qumbra"},
      {{"x/tools/plomvek", "y/bin/plomvek"}, {},
       {{"PATH", "x/tools:~/y/bin:"}}, "/qumbra"},
      {{"bin/plomvek", "y/bin/plomvek"}, {}, {{"PATH", "bin:~/y/bin:"}},
       "/qumbra"},
      {{}, {}, {}, "/qumbra"},
      {{}, {}, home_and_path, "/qumbra"},
  };
  // clang-format on
  for (const auto& row : rows) {
    const TemporaryFolder of_the_row;
    write_files(row.files, row.empty_files);
    EXPECT_EQ(expanded(row.directory), in_new_process([&] {
                enter(row.environment);
                return QUMBRA_DIR();
              }))
        << testing::PrintToString(row.environment);
  }
}

// The directory in an environment, and the one after QUMBRA_HOME has become
// /opt/x and the first one has been removed.
std::string two_answers(const Environment& environment) {
  enter(environment);
  const std::string first = QUMBRA_DIR();
  fs::remove_all(".qumbra");
  enter({{"QUMBRA_HOME", "/opt/x"}});
  return "[" + first + "] [" + QUMBRA_DIR() + "]";
}

// The empty text is not kept.
TEST_F(InstallDir, IsDeterminedOnce) {
  const struct {
    Environment environment;
    const char* answers;
  } rows[] = {
      {{{"QUMBRA_HOME", ""}, {"HOME", "~"}}, "[] [/opt/x]"},
      {{{"QUMBRA_HOME", "/"}, {"HOME", "~"}}, "[] [/opt/x]"},
      {{{"HOME", "."}}, "[./.qumbra] [./.qumbra]"},
      {{}, "[/qumbra] [/qumbra]"},
  };
  for (const auto& row : rows) {
    write_files({".qumbra/file"});
    EXPECT_EQ(row.answers,
              in_new_process([&] { return two_answers(row.environment); }));
  }
}

// The scratch folder becomes the root.
TEST_F(InstallDir, CanBeTheRoot) {
  const auto entered = [this] {
    return chroot(folder.path().c_str()) == 0 && chdir("/") == 0;
  };
  if (in_new_process([&] { return entered() ? "yes" : "no"; }) == "no")
    GTEST_SKIP() << "chroot is not allowed";
  const struct {
    Environment environment;
    const char* answers;
  } rows[] = {
      {{{"PATH", "/bin:/usr/bin"}}, "[] [/opt/x]"},
      {{{"PATH", "/bin/:/usr/bin"}}, "[/qumbra] [/qumbra]"},
      {{{"HOME", ""}}, "[/.qumbra] [/.qumbra]"},
  };
  for (const auto& row : rows) {
    write_files({"bin/plomvek", ".qumbra/file"});
    EXPECT_EQ(row.answers, in_new_process([&] {
                return entered() ? two_answers(row.environment) : "";
              }));
  }
}

// --- The handbook ---

TEST(Handbook, IsBelowTheInstallationDirectory) {
  const struct {
    const char* program;
    const char* path;
  } rows[] = {
      {"zelkor", "/opt/x/share/doc/zelkor/Zelkor_Handbook.html"},
      {"Zelkor", "/opt/x/share/doc/Zelkor/Zelkor_Handbook.html"},
      {"zELKOR", "/opt/x/share/doc/zELKOR/ZELKOR_Handbook.html"},
      {"z", "/opt/x/share/doc/z/Z_Handbook.html"},
      {"9tool x", "/opt/x/share/doc/9tool x/9tool x_Handbook.html"},
      {"\xe9t", "/opt/x/share/doc/\xe9t/\xe9t_Handbook.html"},
      {"", "/opt/x/share/doc//_Handbook.html"},
  };
  for (const auto& row : rows)
    EXPECT_EQ(row.path, in_new_process([&] {
                enter({{"QUMBRA_HOME", "/opt/x"}});
                return locate_handbook(row.program);
              }));
}

}  // namespace
