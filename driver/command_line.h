// The program's own options, read from the end of the argument list.
//
// The full form is: toolkit switches, then -r, then any number of -e with an
// extension, then -v with a level, then -h. Whatever comes before the
// recognised options is left to the toolkit's parser.

#pragma once

#include <optional>
#include <set>
#include <string>

/// The options that were given.
struct CommandLine {
  bool help = false;                 ///< print the usage and do nothing else
  std::optional<int> verbosity;      ///< level given with -v
  std::set<std::string> extensions;  ///< given with -e, without the point
  bool recursive = false;            ///< -r
  int remaining = 0;  ///< leading arguments, program name included, that are
                      ///< left for the toolkit's parser
};

/// Reads the options from main()'s arguments. Reports nothing and does not
/// change argv. Words that are not recognised stay in `remaining`.
CommandLine read_command_line(int argc, const char* const* argv);

/// Prints the usage text on standard output; `program` is argv[0] as given.
void print_usage(const char* program);
