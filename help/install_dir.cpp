#include "help/install_dir.h"

#include <sys/stat.h>

#include <algorithm>
#include <cstdlib>

#include "driver/ascii.h"

void fix_path(std::string& path) {
  std::replace(path.begin(), path.end(), '\\', '/');
  if (!path.empty() && path.back() == '/') path.pop_back();
}

off_t file_exists(const std::string& path) {
  struct stat status {};
  stat(path.c_str(), &status);
  return status.st_size;
}

std::string find_file(const std::string& file, const char* variable) {
  const char* value = std::getenv(variable);
  const std::string list = ":" + std::string(value == nullptr ? "" : value);
  std::size_t begin = 0;
  for (;;) {
    const std::size_t end = list.find(':', begin);
    if (end == std::string::npos) return "";
    std::string candidate = list.substr(begin, end - begin);
    if (!candidate.empty()) candidate += '/';
    candidate += file;
    fix_path(candidate);
    if (file_exists(candidate) != 0) return candidate;
    begin = end + 1;
  }
}

static std::string find_install_dir() {
  std::string directory;
  if (const char* home_of_qumbra = std::getenv("QUMBRA_HOME")) {
    directory = home_of_qumbra;
    fix_path(directory);
    return directory;
  }
  if (const char* home = std::getenv("HOME")) {
    directory = std::string(home) + "/.qumbra";
    fix_path(directory);
    if (file_exists(directory) != 0) return directory;
  }
  const std::string sibling = find_file("plomvek", "PATH");
  const std::size_t place = sibling.rfind("/bin/plomvek");
  return place == std::string::npos ? "/qumbra" : sibling.substr(0, place);
}

const std::string& QUMBRA_DIR() {
  static std::string directory;
  if (directory.empty()) directory = find_install_dir();
  return directory;
}

std::string locate_handbook(const std::string& program) {
  std::string capitalised = program;
  if (!capitalised.empty()) capitalised[0] = to_upper(capitalised[0]);
  return QUMBRA_DIR() + "/share/doc/" + program + "/" + capitalised +
         "_Handbook.html";
}
