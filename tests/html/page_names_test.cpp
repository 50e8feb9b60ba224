#include "html/page_names.h"

#include <gtest/gtest.h>

#include <string>

#include "analysis/calling.h"
#include "driver/settings.h"
#include "tests/support/alone.h"
#include "tests/support/file_list.h"
#include "tests/support/settings_guard.h"

using namespace std::string_literals;

// A path keeps its number as long as the process runs, so no two tests use
// paths with equal numbers.

namespace {

int byte_sum(const std::string& text) {
  int sum = 0;
  for (const char c : text) sum += static_cast<signed char>(c);
  return sum;
}

// A path with this number. The inverse of 5003 modulo 2 ^ 21 gives the sum that
// its bytes need, and a directory name makes it up.
std::string path_with_number(long number, const std::string& last_component) {
  const long range = 0x200000;
  const long inverse = 1211427;
  const std::string end = "/" + last_component;
  long fill = ((number * inverse - byte_sum(end)) % range + range) % range;
  std::string path;
  for (; fill > '~'; fill -= '~') path += '~';
  if (fill > 0) path += static_cast<char>(fill);
  return path + end;
}

std::string page_name(const std::string& path) {
  FileList files({path});
  return HTML_REF(files.slot(0));
}

// Later rows need numbers that earlier ones have taken.
TEST(UniqueId, SumsTheSignedBytesOfThePathAndProbesUpwards) {
  const struct {
    std::string path;
    int number;
  } cases[] = {
      {"", 0},
      {"a", 485291},
      {"a.f90", 1751050},
      {"src/a.f90", 1530023},
      {"./a.f90", 119177},
      {"/home/me/a.f90", 1439074},
      {"dir1/a.f90", 1730143},
      {"dir2/a.f90", 1735146},
      {"README", 54138},
      {"README", 54138},
      {"~~~~~", 1054738},     // 630 * 5003 needs more than 21 bits
      {"\xe9.f90", 1150690},  // (-23 + 253) * 5003
      {"\x80", 1456768},      // -128 * 5003 in 21 bits
      {"\xff", 2092149},      // -5003 in 21 bits
      {"ab.f90", 144192},
      {"ba.f90", 144193},
      {"ab.f90", 144192},
      {"ba.f90", 144193},
      {path_with_number(5000, "xyz.f90"), 5000},
      {path_with_number(5000, "zyx.f90"), 5001},
      {path_with_number(5000, "yxz.f90"), 5002},
      {path_with_number(5001, "xyz.f90"), 5003},
      {path_with_number(0x1FFFFF, "pq.f90"), 2097151},
      {path_with_number(0x1FFFFF, "qp.f90"), 2097152},
  };
  for (const auto& c : cases)
    EXPECT_EQ(c.number, unique_id(c.path.c_str())) << c.path;
}

TEST(HtmlRef, ReplacesTheExtensionWithThePageNumber) {
  const struct {
    std::string path;
    std::string name;
  } cases[] = {
      {"", "0000.html"},
      {"a.f90", "a1751050.html"},
      {"src/a.f90", "a1530023.html"},
      {"README", "README54138.html"},
      {"/x/README", "README1124780.html"},
      {"dir.d/Makefile", "Makefile262474.html"},
      {"a.b.f90", "a.b374330.html"},
      {".f90", "1265759.html"},
      {".setup.f90", ".setup108276.html"},
      {"x.", "x830498.html"},
      {"lib/", "1791074.html"},
      {"a b.f90", "a b304288.html"},
      {"caf\xe9.f90",
       "caf\xe9"
       "544432.html"},
      {"100%s%n.f90", "100%s%n1389939.html"},
      {std::string(3000, 'x') + ".f90", std::string(3000, 'x') + "892191.html"},
      // Files can share a page.
      {"xxxxxxxxxxxxxxxxW/a88.f90", "a884636.html"},
      {"cd/a.f90", "a884636.html"},
      // At least four digits.
      {path_with_number(7, "solver.f90"), "solver0007.html"},
      {path_with_number(8, "a.b.f90"), "a.b0008.html"},
      {path_with_number(9, "Makefile"), "Makefile0009.html"},
      {path_with_number(10, ".f90"), "0010.html"},
      {path_with_number(123, "solver.f90"), "solver0123.html"},
      {path_with_number(999, "solver.f90"), "solver0999.html"},
      {path_with_number(1000, "solver.f90"), "solver1000.html"},
      {path_with_number(9999, "solver.f90"), "solver9999.html"},
      {path_with_number(10000, "solver.f90"), "solver10000.html"},
  };
  for (const auto& c : cases) EXPECT_EQ(c.name, page_name(c.path)) << c.path;
}

TEST(HtmlRef, DependsOnThePathAndNotOnItsSlot) {
  char path[] = "a.f90";
  char* slot = path;
  EXPECT_STREQ("a1751050.html", HTML_REF(&slot));
  path[0] = 'b';
  EXPECT_STREQ("b1756053.html", HTML_REF(&slot));
  FileList other({"b.f90", "a.f90"});
  EXPECT_STREQ("b1756053.html", HTML_REF(other.slot(0)));
  EXPECT_STREQ("a1751050.html", HTML_REF(other.slot(1)));
}

TEST(HtmlRef, UsesTheCurrentPathSeparator) {
  const SettingsGuard settings;
  FileList files({"dir/odd\\c.f90", "dir/d.f90"});
  const std::string number = std::to_string(unique_id(*files.slot(0)));
  for (int round = 0; round < 2; ++round) {
    slash = '/';
    EXPECT_EQ("odd\\c" + number + ".html", HTML_REF(files.slot(0)));
    slash = '\\';
    EXPECT_EQ("c" + number + ".html", HTML_REF(files.slot(0)));
    HTML_REF(files.slot(1));
  }
}

TEST(HtmlRef, GivesTheEmptyPathTheFirstFreeNumber) {
  alone([] {
    EXPECT_EQ("0000.html", page_name(""));
    EXPECT_EQ("x0000.html", page_name(path_with_number(0, "x.f90")));
    EXPECT_EQ("0001.html", page_name(""));
    EXPECT_EQ("x0001.html", page_name(path_with_number(1, "x.f90")));
    EXPECT_EQ("0002.html", page_name(""));
  });
}

TEST(HtmlName, JoinsDirectorySeparatorAndPageName) {
  const SettingsGuard settings;
  FileList files({"a.f90"});
  for (const std::string& directory :
       {"HTML"s, "out/"s, ""s, "100%s%n"s, std::string(3000, 'd')})
    for (const char separator : {'/', '\\'}) {
      html_dir = directory;
      slash = separator;
      EXPECT_EQ(directory + separator + "a1751050.html",
                HTML_NAME(files.slot(0)));
    }
}

TEST(PageNames, StayValidUntilTheNextCallOfTheSameOperation) {
  FileList files({"a.f90", "src/a.f90"});
  const char* xref = HTML_XREF(Calling{files.slot(0), 3});
  const char* name = HTML_NAME(files.slot(0));
  const char* ref = HTML_REF(files.slot(1));
  EXPECT_STREQ("a1751050.html#line3", xref);
  EXPECT_STREQ("HTML/a1751050.html", name);
  EXPECT_STREQ("a1530023.html", ref);
  EXPECT_STREQ("a1530023.html#line42", HTML_XREF(Calling{files.slot(1), 42}));
}

}  // namespace
