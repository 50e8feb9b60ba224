#include "driver/command_line.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>

static bool is_option(const char* argument, const char* option) {
  return std::strcmp(argument, option) == 0;
}

// Like atoi(), but defined for numbers of any size. A text without a number
// gives 0.
static int read_level(const char* text) {
  return static_cast<int>(std::strtol(text, nullptr, 10));
}

CommandLine read_command_line(int argc, const char* const* argv) {
  CommandLine options;
  int n = argc;
  if (n > 1) {
    // Deliberate: any last argument that contains "-h" asks for help: -h, --h,
    // -help and --help, but also a name like data-h.
    if (std::strstr(argv[n - 1], "-h") != nullptr) {
      options.help = true;
      return options;
    }
    if (n >= 3 && is_option(argv[n - 2], "-v")) {
      options.verbosity = read_level(argv[n - 1]);
      n -= 2;
    }
    while (n >= 3 && is_option(argv[n - 2], "-e")) {
      options.extensions.insert(argv[n - 1]);
      n -= 2;
    }
    if (n >= 2 && is_option(argv[n - 1], "-r")) {
      options.recursive = true;
      --n;
    }
  }
  options.remaining = n;
  return options;
}

void print_usage(const char* program) {
  std::fputs("usage: (order of options is important)\n\t", stdout);
  std::fputs(program, stdout);
  std::fputs(
      " [-r] [-e <ext> [-e <ext> ...]] [-v <level>] [-h|--h|-help|--help]\n"
      " -r           initiates a recursive search in the current directory for "
      "the extensions\n"
      " -e <ext>     adds an extension to the search list\n"
      " -v <level>   turns on verbose reporting to desired level (>0)\n"
      " -h           generates this help message\n",
      stdout);
}
