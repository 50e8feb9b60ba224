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
  int remaining;  // including the program's name
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
    // values are used unchanged
    {{"-e", ".f90"}, {}, {".f90"}, false, 1},
    {{"-e", ""}, {}, {""}, false, 1},
    {{"-e", "-r"}, {}, {"-r"}, false, 1},
    {{"-e", "-e"}, {}, {"-e"}, false, 1},
    {{"-r", "-e", "-r"}, {}, {"-r"}, true, 1},
    {{"-v", "abc"}, 0, {}, false, 1},
    {{"-v", ""}, 0, {}, false, 1},
    {{"-v", "-e"}, 0, {}, false, 1},
    {{"-v", "-3"}, -3, {}, false, 1},
    {{"-v", " 7x"}, 7, {}, false, 1},
    {{"-v", "2147483647"}, 2147483647, {}, false, 1},
    // words before the options are left to the toolkit
    {{"-scheme", "plastic", "-r", "-e", "f90"}, {}, {"f90"}, true, 3},
    {{"main.f90"}, {}, {}, false, 2},
    {{"main.f90", "-e", "f90", "-v", "1"}, 1, {"f90"}, false, 2},
    {{""}, {}, {}, false, 2},
    // a missing value
    {{"-e"}, {}, {}, false, 2},
    {{"-v"}, {}, {}, false, 2},
    {{"-r", "-e"}, {}, {}, false, 3},
    {{"-e", "-e", "f90"}, {}, {"f90"}, false, 2},
    {{"-v", "-e", "f90"}, {}, {"f90"}, false, 2},
    {{"-e", "-v", "1"}, 1, {}, false, 2},
    // out of place
    {{"-v", "2", "-e", "f90"}, {}, {"f90"}, false, 3},
    {{"-v", "2", "-v", "3"}, 3, {}, false, 3},
    {{"-e", "f90", "-r"}, {}, {}, true, 3},
    {{"-r", "-r"}, {}, {}, true, 2},
    {{"-h", "-e", "f90"}, {}, {"f90"}, false, 2},
    {{"-e", "f90", "main.f90"}, {}, {}, false, 4},
    // an option must equal its text exactly
    {{"-R"}, {}, {}, false, 2},
    {{"-ef90"}, {}, {}, false, 2},
    {{"-v1"}, {}, {}, false, 2},
    {{"--r"}, {}, {}, false, 2},
    {{"-r "}, {}, {}, false, 2},
    {{"-re", "f90"}, {}, {}, false, 3},
    {{"- h"}, {}, {}, false, 2},
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

TEST(ReadCommandLine, TreatsAnyLastWordThatContainsTheHelpOptionAsHelp) {
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

TEST(ReadCommandLine, IgnoresAllOtherOptionsWithHelp) {
  const CommandLine options = read({"-r", "-e", "f90", "-v", "-h"});
  EXPECT_TRUE(options.help);
  EXPECT_EQ(std::nullopt, options.verbosity);
  EXPECT_TRUE(options.extensions.empty());
  EXPECT_FALSE(options.recursive);
}

TEST(ReadCommandLine, DoesNotTreatTheProgramsNameAsAnOption) {
  const struct {
    Words words;
    int remaining;
  } cases[] = {
      {{"-h"}, 1},        {{"./x-h/zelkor"}, 1}, {{"-r"}, 1},
      {{"-e"}, 1},        {{"-v"}, 1},           {{"-r", "-e", "f90"}, 1},
      {{"-e", "f90"}, 2}, {{"-v", "1"}, 2},
  };
  for (const auto& c : cases) {
    const CommandLine options =
        read_command_line(static_cast<int>(c.words.size()), c.words.data());
    EXPECT_FALSE(options.help) << shown(c.words);
    EXPECT_FALSE(options.recursive) << shown(c.words);
    EXPECT_EQ(std::nullopt, options.verbosity) << shown(c.words);
    EXPECT_EQ(c.remaining, options.remaining) << shown(c.words);
  }
}

TEST(ReadCommandLine, AcceptsAnEmptyListOfArguments) {
  const char* const none[] = {nullptr};
  EXPECT_EQ(0, read_command_line(0, none).remaining);
  EXPECT_FALSE(read_command_line(0, none).help);
}

TEST(PrintUsage, PrintsTheProgramsNameAsGiven) {
  EXPECT_EQ(
      "usage: (order of options is important)\n"
      "\t./a b/100%s%n"
      " [-r] [-e <ext> [-e <ext> ...]] [-v <level>] [-h|--h|-help|--help]\n"
      " -r           initiates a recursive search in the current directory for"
      " the extensions\n"
      " -e <ext>     adds an extension to the search list\n"
      " -v <level>   turns on verbose reporting to desired level (>0)\n"
      " -h           generates this help message\n",
      printed([] { print_usage("./a b/100%s%n"); }));
}

}  // namespace
