// Small programs that tests write.

#pragma once

#include <algorithm>
#include <filesystem>
#include <string>

#include "tests/support/temporary_folder.h"

/// Writes a shell script that can be run; returns its absolute path.
inline std::string write_script(const std::string& path,
                                const std::string& commands) {
  write_file(path, "#!/bin/sh\n" + commands);
  std::filesystem::permissions(path, std::filesystem::perms::owner_all);
  return std::filesystem::absolute(path);
}

/// A path as one word of a shell command, even if it contains blanks.
inline std::string quoted(const std::string& path) { return "'" + path + "'"; }

/// The words into which a shell splits a text without quotes, each followed by
/// a line end.
inline std::string words_of(std::string text) {
  std::replace(text.begin(), text.end(), ' ', '\n');
  return text + "\n";
}

/// Writes a browser that only writes its arguments to the file "words" beside
/// it, one in a line. Returns the command that starts it.
inline std::string write_browser(const std::string& path = "browser") {
  const std::string words =
      std::filesystem::absolute(path).parent_path() / "words";
  return quoted(write_script(path, "printf '%s\\n' \"$@\" >'" + words +
                                       ".new'\n" + "mv '" + words + ".new' '" +
                                       words + "'\n"));
}
