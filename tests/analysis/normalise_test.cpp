#include "analysis/normalise.h"

#include <gtest/gtest.h>

#include <unistd.h>

#include <functional>
#include <string>
#include <vector>

#include "analysis/ram_file.h"
#include "tests/support/settings_guard.h"
#include "tests/support/temporary_folder.h"

using namespace std::string_literals;

using Texts = std::vector<std::string>;

static std::string blanks(std::size_t count) { return std::string(count, ' '); }

static std::string every_byte_but(const std::string& exceptions) {
  std::string bytes;
  for (int b = 1; b < 256; ++b) bytes += static_cast<char>(b);
  for (const char c : exceptions) bytes.erase(bytes.find(c), 1);
  return bytes;
}

struct Blanking {
  std::string line;
  std::string blanked;  // including what follows a NUL
};

// clang-format off
static const Blanking free_form[] = {
  { "x = 1 ! set x\n",    "x = 1        \n" },
  { "x = 1 ! set x",      "x = 1        " },
  { "!a ! \n",            "     \n" },
  { "x ! y\r\n",          "x     \n" },         // "\r" belongs to the comment
  { "x\r\n",              "x\r\n" },
  { "a ! \"\nb \"c\"\n",  "a    \nb \" \"\n" },  // goes on after a line end
  { "print *, \"a!b\"\n", "print *, \"   \"\n" },
  { "f(\"\", \"a\") x",   "f(\"\", \" \") x" },
  { "x = \"!\" ! \"a\"",  "x = \" \"      " },
  { "print *, 'a!b'\n",   "print *, 'a   \n" },  // apostrophes do not count
  { "print *, 'solve'\n", "print *, 'solve'\n" },
  { "'\"' ",              "'\"  " },
  { "\"a!\"\"b!\" c",     "\"  \"\"  \" c" },    // a doubled quote
  { "x = \"abc!d\n",      "x = \"      " },      // unclosed
  { "x = \"\r\n",         "x = \"  " },
  { "\"",                 "\"" },
  { "a !\0 !c"s,          "a  \0 !c"s },         // stops at a NUL
  { "\"a\0b\""s,          "\" \0b\""s },
  { "\0!C"s,              "\0!C"s },
  { every_byte_but("!\""), every_byte_but("!\"") },
  { "\"" + every_byte_but("\"") + "\"",   "\"" + blanks(254) + "\"" },
  { "x!" + std::string(100000, 'x') + "\n", "x" + blanks(100001) + "\n" },
};

static const Blanking fixed_form[] = {
  { "C comment\n",        "         \n" },
  { "c comment\n",        "         \n" },
  { "call solve",         "          " },
  { "c\r\n",              "  \n" },
  { "c\nc\n",             " \nc\n" },
  { " ! set x\n",         " ! set x\n" },
  { "! set x\n",          "! set x\n" },
  { "* comment\n",        "* comment\n" },
  { " c comment\n",       " c comment\n" },
  { " f \"a!b\"\n",       " f \"a!b\"\n" },
  { "x = \"abc\n",        "x = \"abc\n" },
  { "\n",                 "\n" },
  { "\0CC"s,              "\0CC"s },
};
// clang-format on

TEST(Hide, BlanksCommentsAndStringsInFreeForm) {
  for (Blanking c : free_form) {
    hide_F90_strings_comments(c.line.data(), false);
    EXPECT_EQ(c.blanked, c.line);
  }
}

TEST(Hide, BlanksOnlyLinesThatBeginWithCInFixedForm) {
  for (Blanking c : fixed_form) {
    hide_F90_strings_comments(c.line.data(), true);
    EXPECT_EQ(c.blanked, c.line);
  }
}

class NormaliseFile : public ::testing::Test {
 protected:
  // The lines of a file after an operation, which has to rewind it.
  static Texts after(const std::function<void(ramFILE*)>& operation,
                     const std::string& content) {
    write_file("a.f90", content);
    ramFILE_imp file("a.f90");
    char line[4096];
    file.fgets(line, sizeof line);
    operation(&file);
    Texts lines;
    while (file.fgets(line, sizeof line) > 0) lines.push_back(line);
    EXPECT_EQ(lines, Texts(file.begin(), file.end()));
    return lines;
  }

  TemporaryFolder folder;
};

TEST_F(NormaliseFile, HideTreatsEachLineSeparatelyAndRewinds) {
  const auto hide_in_free_form = [](ramFILE* file) {
    hide_F90_strings_comments(file, false);
  };
  const auto hide_in_fixed_form = [](ramFILE* file) {
    hide_F90_strings_comments(file, true);
  };
  EXPECT_EQ(Texts{}, after(hide_in_free_form, ""));
  EXPECT_EQ((Texts{"x = \"    ", "a    \n", "\n", "\" \"\n", "  "}),
            after(hide_in_free_form, "x = \"abc\na ! b\n\n\"c\"\n!d"));
  EXPECT_EQ((Texts{"      \n", " ! \"a\"\n"}),
            after(hide_in_fixed_form, "C rule\n ! \"a\"\n"));
  EXPECT_EQ((Texts{blanks(1023), "solve\n"}),
            after(hide_in_free_form, "!" + std::string(1022, 'x') + "solve\n"));
}

TEST(NormaliseFileDeathTest, IgnoresNullFiles) {
  ramFILE* const null = nullptr;
  const auto survives = testing::ExitedWithCode(0);
  EXPECT_EXIT((hide_F90_strings_comments(null, false), _exit(0)), survives, "");
  EXPECT_EXIT((hide_F90_strings_comments(null, true), _exit(0)), survives, "");
  EXPECT_EXIT((merge_F90_continuations(null), _exit(0)), survives, "");
}

static const std::string long_text(1000, 'x');

// clang-format off
static const struct {
  std::string content;
  Texts lines;
} joined[] = {
  { "",                                  {} },
  { "call f(a, &\n       b)\nend\n",     {"\n", "call f(a, b)\n", "end\n"} },
  { "call f(a, &\r\n       b)\r\n",      {"\n", "call f(a, b)\r\n"} },
  { "call f(a, &\n  b)",                 {"\n", "call f(a, b)"} },
  { "call f(a, &\n  b, &\n  c)\n",       {"\n", "\n", "call f(a, b, c)\n"} },
  { "f(& \nb, & ! why\na & b\nc)\n",     {"f(& \n", "b, & ! why\n", "a & b\n",
                                          "c)\n"} },
  { "call sol&\n   &ve(a)\n",            {"\n", "call sol&ve(a)\n"} },
  { "a &\n \t\v\f\r b\n",                {"\n", "a b\n"} },
  { "a &\n\xa0" "b\n",                   {"\n", "a \xa0" "b\n"} },
  { "a &\n\nb\n",                        {"\n", "a ", "b\n"} },  // white space
  { "&\n  b\n",                          {"\n", "b\n"} },
  { "a &\n",                             {"a &\n"} },
  { "a\nb &",                            {"a\n", "b &"} },
  { "a &\nb &\n",                        {"\n", "a b &\n"} },
  { "a\n\n\r\nb",                        {"a\n", "\n", "\r\n", "b"} },
  { long_text + "&\n" + long_text + "\n", {"\n", long_text + long_text + "\n"} },
};
// clang-format on

TEST_F(NormaliseFile, JoinPutsAStatementIntoItsLastLine) {
  for (const auto& c : joined)
    EXPECT_EQ(c.lines, after(merge_F90_continuations, c.content)) << c.content;
}

TEST_F(NormaliseFile, JoinAcceptsACarriageReturnAsLineEnd) {
  write_file("a.f90", "a\n  b\n");
  ramFILE_imp file("a.f90");
  *file.begin() = file.copy("a &\r");
  merge_F90_continuations(&file);
  EXPECT_EQ((Texts{"\n", "a b\n"}), Texts(file.begin(), file.end()));
}

TEST(ConfigDosOrUnix, SetsTheSlashWhateverTheHint) {
  SettingsGuard guard;
  const char* const hints[] = {"", "unix", "C:\\src\\a.f90", nullptr};
  for (const char* hint : hints) {
    slash = '\\';
    config_dos_or_unix(hint);
    EXPECT_EQ('/', slash);
  }
}
