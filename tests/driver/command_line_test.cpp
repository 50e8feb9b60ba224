#include "driver/command_line.h"

#include <gtest/gtest.h>

#include <optional>
#include <set>
#include <sstream>
#include <string>
#include <vector>

#include "tests/support/capture.h"

namespace {

using Words = std::vector<const char*>;

CommandLine read(Words arguments) {
  arguments.insert(arguments.begin(), "zelkor");
  return read_command_line(static_cast<int>(arguments.size()),
                           arguments.data());
}

std::string shown(const Words& arguments) {
  std::ostringstream text;
  text << "arguments:";
  for (const char* word : arguments) text << " \"" << word << '"';
  return text.str();
}

// clang-format off
const struct {
  Words arguments;
  std::optional<int> verbosity;
  std::set<std::string> extensions;
  bool recursive;
  int remaining;  // with the program's name
} option_cases[] = {
    {{}, {}, {}, false, 1},
    // the full form, and parts of it
    {{"-r", "-e", "f90", "-e", "F90", "-v", "2"}, 2, {"f90", "F90"}, true, 1},
    {{"-r"}, {}, {}, true, 1},
    {{"-e", "f90"}, {}, {"f90"}, false, 1},
    {{"-v", "1"}, 1, {}, false, 1},
    {{"-r", "-e", "f90"}, {}, {"f90"}, true, 1},
    {{"-r", "-v", "1"}, 1, {}, true, 1},
    {{"-e", "f90", "-v", "1"}, 1, {"f90"}, false, 1},
    {{"-e", "f90", "-e", "f90"}, {}, {"f90"}, false, 1},
    // values are taken as they stand
    {{"-e", ".f90"}, {}, {".f90"}, false, 1},
    {{"-e", ""}, {}, {""}, false, 1},
    {{"-e", "-r"}, {}, {"-r"}, false, 1},
    {{"-e", "-e"}, {}, {"-e"}, false, 1},
    {{"-e", "-v"}, {}, {"-v"}, false, 1},
    {{"-r", "-e", "-r"}, {}, {"-r"}, true, 1},
    {{"-v", "abc"}, 0, {}, false, 1},
    {{"-v", ""}, 0, {}, false, 1},
    {{"-v", "-v"}, 0, {}, false, 1},
    {{"-v", "-e"}, 0, {}, false, 1},
    {{"-v", "-3"}, -3, {}, false, 1},
    {{"-v", "+4"}, 4, {}, false, 1},
    {{"-v", " 7x"}, 7, {}, false, 1},
    {{"-v", "010"}, 10, {}, false, 1},
    {{"-v", "2147483647"}, 2147483647, {}, false, 1},
    // what stands before the options is left to the toolkit
    {{"-scheme", "plastic", "-r", "-e", "f90"}, {}, {"f90"}, true, 3},
    {{"main.f90"}, {}, {}, false, 2},
    {{"main.f90", "-e", "f90", "-v", "1"}, 1, {"f90"}, false, 2},
    {{"-"}, {}, {}, false, 2},
    {{""}, {}, {}, false, 2},
    // a missing value
    {{"-e"}, {}, {}, false, 2},
    {{"-v"}, {}, {}, false, 2},
    {{"-r", "-e"}, {}, {}, false, 3},
    {{"-r", "-v"}, {}, {}, false, 3},
    {{"-e", "-e", "f90"}, {}, {"f90"}, false, 2},
    {{"-v", "-e", "f90"}, {}, {"f90"}, false, 2},
    {{"-e", "-v", "1"}, 1, {}, false, 2},
    // out of place
    {{"-v", "2", "-e", "f90"}, {}, {"f90"}, false, 3},
    {{"-v", "2", "-v", "3"}, 3, {}, false, 3},
    {{"-e", "f90", "-r"}, {}, {}, true, 3},
    {{"-v", "1", "-r"}, {}, {}, true, 3},
    {{"-r", "-r"}, {}, {}, true, 2},
    {{"-h", "-e", "f90"}, {}, {"f90"}, false, 2},
    {{"-h", "-v", "1"}, 1, {}, false, 2},
    {{"-h", "-r"}, {}, {}, true, 2},
    {{"-e", "f90", "main.f90"}, {}, {}, false, 4},
    // an option equals its text exactly
    {{"-R"}, {}, {}, false, 2},
    {{"-E", "f90"}, {}, {}, false, 3},
    {{"-V", "1"}, {}, {}, false, 3},
    {{"-ef90"}, {}, {}, false, 2},
    {{"-v1"}, {}, {}, false, 2},
    {{"--r"}, {}, {}, false, 2},
    {{"--e", "f90"}, {}, {}, false, 3},
    {{"-r "}, {}, {}, false, 2},
    {{"-re", "f90"}, {}, {}, false, 3},
    {{"-H"}, {}, {}, false, 2},
    {{"- h"}, {}, {}, false, 2},
    {{"h"}, {}, {}, false, 2},
};
// clang-format on

TEST(ReadCommandLine, ReadsTheOptionsFromTheEnd) {
  for (const auto& c : option_cases) {
    SCOPED_TRACE(shown(c.arguments));
    const CommandLine options = read(c.arguments);
    EXPECT_FALSE(options.help);
    EXPECT_EQ(c.verbosity, options.verbosity);
    EXPECT_EQ(c.extensions, options.extensions);
    EXPECT_EQ(c.recursive, options.recursive);
    EXPECT_EQ(c.remaining, options.remaining);
  }
}

TEST(ReadCommandLine, TakesAnyLastWordWithTheLettersOfHelpForHelp) {
  const Words cases[] = {
      {"-h"},         {"--h"},
      {"-help"},      {"--help"},
      {"data-h"},     {"data-h.f90"},
      {"-e", "-h"},   {"-v", "-h"},
      {"-r", "-h"},   {"-e", "f90", "-h"},
      {"x", "--h--"}, {"-e", "f90", "-e", "my-header"},
  };
  for (const Words& arguments : cases)
    EXPECT_TRUE(read(arguments).help) << shown(arguments);
}

TEST(ReadCommandLine, HelpLeavesEverythingElseUndone) {
  const CommandLine options = read({"-r", "-e", "f90", "-v", "-h"});
  EXPECT_TRUE(options.help);
  EXPECT_EQ(std::nullopt, options.verbosity);
  EXPECT_TRUE(options.extensions.empty());
  EXPECT_FALSE(options.recursive);
}

TEST(ReadCommandLine, DoesNotTakeTheProgramsNameForAnOption) {
  for (const char* name : {"-h", "./x-h/zelkor", "-r", "-e", "-v"}) {
    const CommandLine options = read_command_line(1, &name);
    EXPECT_FALSE(options.help) << name;
    EXPECT_FALSE(options.recursive) << name;
    EXPECT_EQ(1, options.remaining) << name;
  }
  const char* recursion[] = {"-r", "-e", "f90"};
  EXPECT_EQ(1, read_command_line(3, recursion).remaining);
  EXPECT_FALSE(read_command_line(3, recursion).recursive);
  const char* pair[] = {"-e", "f90"};
  EXPECT_EQ(2, read_command_line(2, pair).remaining);
  EXPECT_TRUE(read_command_line(2, pair).extensions.empty());
  const char* level[] = {"-v", "1"};
  EXPECT_EQ(2, read_command_line(2, level).remaining);
  EXPECT_EQ(std::nullopt, read_command_line(2, level).verbosity);
}

TEST(ReadCommandLine, ReadsAnEmptyListOfArguments) {
  const char* const none[] = {nullptr};
  EXPECT_EQ(0, read_command_line(0, none).remaining);
  EXPECT_FALSE(read_command_line(0, none).help);
}

TEST(PrintUsage, WritesTheWholeText) {
  EXPECT_EQ(
      "usage: (order of options is important)\n"
      "\tzelkor"
      " [-r] [-e <ext> [-e <ext> ...]] [-v <level>] [-h|--h|-help|--help]\n"
      " -r           initiates a recursive search in the current directory for"
      " the extensions\n"
      " -e <ext>     adds an extension to the search list\n"
      " -v <level>   turns on verbose reporting to desired level (>0)\n"
      " -h           generates this help message\n",
      printed([] { print_usage("zelkor"); }));
}

TEST(PrintUsage, ShowsTheProgramsNameAsGiven) {
  const std::string text = printed([] { print_usage("./a b/100%s%n"); });
  EXPECT_EQ(0u, text.find("usage: (order of options is important)\n"
                          "\t./a b/100%s%n [-r] [-e <ext> "));
}

}  // namespace
