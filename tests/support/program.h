// A program under test, run as a user would run it.

#pragma once

#include <sys/types.h>

#include <string>
#include <vector>

/// Starts a program in the working directory and ends it when destroyed, if it
/// still runs then. Its outputs go to files.
class Program {
 public:
  /// The first word is the program's path, or a name to be found in PATH.
  Program(const std::vector<std::string>& words, const std::string& output_file,
          const std::string& error_file);
  ~Program();
  Program(const Program&) = delete;
  Program& operator=(const Program&) = delete;

  pid_t id() const { return process; }

  bool running();

  /// Waits for the end. Returns the exit status, or minus the number of the
  /// signal that ended it.
  int wait();

 private:
  pid_t process;
  bool ended = false;
  int status = 0;
};
