#include "html/page_names.h"

#include <gtest/gtest.h>

#include <climits>
#include <cstddef>
#include <string>
#include <vector>

#include "analysis/calling.h"
#include "driver/settings.h"
#include "tests/support/alone.h"
#include "tests/support/file_list.h"
#include "tests/support/settings_guard.h"

// A path keeps its number as long as the program runs, so every test asks for
// paths whose numbers no other test takes.

namespace {

int byte_sum(const std::string& text) {
  int sum = 0;
  for (const char c : text) sum += static_cast<signed char>(c);
  return sum;
}

// A path of which the plain sum of its bytes gives a number. The sum is sought
// with the inverse of 5003 in 21 bits, and a directory name fills it up.
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

TEST(UniqueId, SumsTheBytesOfThePathAsSignedValues) {
  const struct {
    const char* path;
    int number;
  } cases[] = {
      {"", 0},
      {"a", 485291},
      {"a.f90", 1751050},
      {"src/a.f90", 1530023},
      {"~~~~~", 1054738},     // 630 * 5003 needs more than 21 bits
      {"\xe9.f90", 1150690},  // (-23 + 253) * 5003
      {"\x80", 1456768},      // -128 * 5003 in 21 bits
      {"\xff", 2092149},      // -5003 in 21 bits
  };
  for (const auto& c : cases)
    EXPECT_EQ(c.number, unique_id(c.path)) << "path \"" << c.path << '"';
}

TEST(UniqueId, GivesTheSamePathTheSameNumberAgain) {
  EXPECT_EQ(54138, unique_id("README"));
  EXPECT_EQ(54138, unique_id(std::string("README").c_str()));
}

TEST(UniqueId, TellsPathsOfTheSameLastComponentApart) {
  EXPECT_EQ(1730143, unique_id("dir1/a.f90"));
  EXPECT_EQ(1735146, unique_id("dir2/a.f90"));
}

TEST(UniqueId, TakesARelativeAndAnAbsolutePathForTwoFiles) {
  EXPECT_NE(unique_id("a.f90"), unique_id("/home/me/a.f90"));
  EXPECT_NE(unique_id("a.f90"), unique_id("./a.f90"));
}

TEST(UniqueId, GivesTheFirstOfTwoPermutationsTheHashAndTheOtherTheNext) {
  EXPECT_EQ(144192, unique_id("ab.f90"));
  EXPECT_EQ(144193, unique_id("ba.f90"));
  EXPECT_EQ(144192, unique_id("ab.f90"));
  EXPECT_EQ(144193, unique_id("ba.f90"));
}

TEST(UniqueId, ProbesUpwardsPastAllTakenNumbers) {
  const std::string first = path_with_number(5000, "xyz.f90");
  const std::string second = path_with_number(5000, "zyx.f90");
  const std::string third = path_with_number(5000, "yxz.f90");
  const std::string late = path_with_number(5001, "xyz.f90");
  EXPECT_EQ(5000, unique_id(first.c_str()));
  EXPECT_EQ(5001, unique_id(second.c_str()));
  EXPECT_EQ(5002, unique_id(third.c_str()));
  EXPECT_EQ(5003, unique_id(late.c_str()));
}

TEST(UniqueId, DoesNotWrapAroundAfterTheLastHash) {
  const std::string first = path_with_number(0x1FFFFF, "pq.f90");
  const std::string second = path_with_number(0x1FFFFF, "qp.f90");
  EXPECT_EQ(2097151, unique_id(first.c_str()));
  EXPECT_EQ(2097152, unique_id(second.c_str()));
}

TEST(UniqueId, StandsApartFromTheListThatHoldsThePath) {
  FileList one({"moved/a.f90"});
  const int number = unique_id(*one.slot(0));
  FileList other({"x.f90", "moved/a.f90"});
  EXPECT_EQ(number, unique_id(*other.slot(1)));
}

TEST(HtmlRef, ReplacesTheExtensionByTheNumber) {
  const struct {
    const char* path;
    const char* name;
  } cases[] = {
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
  };
  for (const auto& c : cases)
    EXPECT_EQ(c.name, page_name(c.path)) << "path \"" << c.path << '"';
}

TEST(HtmlRef, WritesAtLeastFourDigits) {
  const struct {
    int number;
    const char* last_component;
    const char* name;
  } cases[] = {
      {7, "solver.f90", "solver0007.html"},
      {8, "a.b.f90", "a.b0008.html"},
      {9, "Makefile", "Makefile0009.html"},
      {10, ".f90", "0010.html"},
      {123, "solver.f90", "solver0123.html"},
      {999, "solver.f90", "solver0999.html"},
      {1000, "solver.f90", "solver1000.html"},
      {9999, "solver.f90", "solver9999.html"},
      {10000, "solver.f90", "solver10000.html"},
  };
  for (const auto& c : cases)
    EXPECT_EQ(c.name, page_name(path_with_number(c.number, c.last_component)))
        << c.number << ' ' << c.last_component;
}

TEST(HtmlRef, GivesTheEmptyPathTheNumberZero) {
  EXPECT_EQ("0000.html", page_name(""));
}

TEST(HtmlRef, TakesALastComponentOfAnyLength) {
  const std::string base(3000, 'x');
  EXPECT_EQ(base + "892191.html", page_name(base + ".f90"));
}

TEST(HtmlRef, LooksForTheLastSlashOnly) {
  const SettingsGuard settings;
  slash = '\\';
  EXPECT_EQ("b1675110.html", page_name("lib\\b.f90"));
  EXPECT_EQ("lib/b1449975.html", page_name("lib/b.f90"));
}

// Whatever was asked for before, in whatever order.
TEST(HtmlRef, OfAPathIsAlwaysTheSame) {
  std::vector<std::string> paths;
  for (int i = 0; i < 1000; ++i)
    paths.push_back("many/" + std::to_string(i) + ".f90");
  FileList files(paths);
  std::vector<std::string> names;
  for (std::size_t i = 0; i < paths.size(); ++i) {
    names.push_back(HTML_REF(files.slot(i)));
    EXPECT_EQ(std::to_string(i) + std::to_string(unique_id(paths[i].c_str())) +
                  ".html",
              names[i]);
    EXPECT_EQ(names[i], HTML_REF(files.slot(i)));
    EXPECT_EQ(names[0], HTML_REF(files.slot(0)));
  }
  for (std::size_t i = paths.size(); i-- > 0;)
    EXPECT_EQ(names[i], HTML_REF(files.slot(i)));
}

TEST(HtmlRef, GoesByThePathNotByItsSlot) {
  char path[] = "a.f90";
  char* slot = path;
  EXPECT_STREQ("a1751050.html", HTML_REF(&slot));
  path[0] = 'b';
  EXPECT_STREQ("b1756053.html", HTML_REF(&slot));
  FileList other({"b.f90", "a.f90"});
  EXPECT_STREQ("b1756053.html", HTML_REF(other.slot(0)));
  EXPECT_STREQ("a1751050.html", HTML_REF(other.slot(1)));
}

TEST(HtmlRef, TellsPathsApartThatHashAlikeInTheOrderOfAsking) {
  FileList files({path_with_number(7000, "mno.f90"),
                  path_with_number(7000, "onm.f90"),
                  path_with_number(7001, "mno.f90")});
  EXPECT_STREQ("onm7000.html", HTML_REF(files.slot(1)));
  EXPECT_STREQ("mno7001.html", HTML_REF(files.slot(0)));
  EXPECT_STREQ("mno7002.html", HTML_REF(files.slot(2)));
  EXPECT_STREQ("onm7000.html", HTML_REF(files.slot(1)));
  EXPECT_STREQ("mno7001.html", HTML_REF(files.slot(0)));
}

TEST(HtmlRef, FollowsTheSeparatorOfPathsBackAndForth) {
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

TEST(HtmlRef, OfTheEmptyPathHasTheFirstNumberThatIsFree) {
  alone([] {
    EXPECT_EQ("0000.html", page_name(""));
    EXPECT_EQ("x0000.html", page_name(path_with_number(0, "x.f90")));
    EXPECT_EQ("0001.html", page_name(""));
    EXPECT_EQ("x0001.html", page_name(path_with_number(1, "x.f90")));
    EXPECT_EQ("0002.html", page_name(""));
  });
}

TEST(HtmlName, JoinsDirectorySlashAndPageName) {
  const SettingsGuard settings;
  FileList files({"src/a.f90"});
  const struct {
    const char* directory;
    char separator;
    const char* name;
  } cases[] = {
      {"HTML", '/', "HTML/a1530023.html"},
      {"/tmp/out", '/', "/tmp/out/a1530023.html"},
      {"out/", '/', "out//a1530023.html"},
      {"", '/', "/a1530023.html"},
      {"100%s%n", '/', "100%s%n/a1530023.html"},
  };
  for (const auto& c : cases) {
    html_dir = c.directory;
    slash = c.separator;
    EXPECT_STREQ(c.name, HTML_NAME(files.slot(0))) << c.directory;
  }
}

TEST(HtmlName, UsesTheSeparatorOfTheSettings) {
  const SettingsGuard settings;
  slash = '\\';
  FileList files({"src\\a.f90"});
  EXPECT_STREQ("HTML\\a1755158.html", HTML_NAME(files.slot(0)));
}

TEST(HtmlName, TakesADirectoryOfAnyLength) {
  const SettingsGuard settings;
  html_dir = std::string(3000, 'd');
  FileList files({"a.f90"});
  EXPECT_EQ(html_dir + "/a1751050.html", HTML_NAME(files.slot(0)));
}

TEST(HtmlXref, IsThePageWithTheLine) {
  FileList files({"src/a.f90"});
  const struct {
    int line;
    const char* address;
  } cases[] = {
      {1, "a1530023.html#line1"},
      {42, "a1530023.html#line42"},
      {INT_MAX, "a1530023.html#line2147483647"},
  };
  for (const auto& c : cases)
    EXPECT_STREQ(c.address, HTML_XREF(Calling{files.slot(0), c.line}));
}

TEST(PageNames, EachOperationKeepsItsResultUntilItsOwnNextCall) {
  FileList files({"a.f90", "src/a.f90"});
  const char* xref = HTML_XREF(Calling{files.slot(0), 3});
  const char* name = HTML_NAME(files.slot(0));
  const char* ref = HTML_REF(files.slot(1));
  EXPECT_STREQ("a1751050.html#line3", xref);
  EXPECT_STREQ("HTML/a1751050.html", name);
  EXPECT_STREQ("a1530023.html", ref);
}

}  // namespace
