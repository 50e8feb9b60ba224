#include "driver/source_files.h"

#include <FL/filename.H>

#include "driver/directory_listing.h"

// The extension of a path's last component, without its leading point.
static std::string extension(const std::string& path) {
  const char* text = fl_filename_ext(path.c_str());
  return *text == '.' ? text + 1 : text;
}

std::vector<std::string> collect_files(
    const char* dir,
    std::set<std::string> extensions,  // NOLINT(performance-*): interface
    bool recursive) {
  std::vector<std::string> files;
  std::vector<std::string> directories;
  for (const std::string& name : list_directory(dir)) {
    const std::string path = dir + name;
    if (!is_directory(path)) {
      if (extensions.count(extension(path)) != 0) files.push_back(path);
    } else if (name != "." && name != "..") {
      directories.push_back(path + "/");
    }
  }
  if (!recursive) return files;

  for (const std::string& directory : directories) {
    const std::vector<std::string> below =
        collect_files(directory.c_str(), extensions, true);
    files.insert(files.end(), below.begin(), below.end());
  }
  return files;
}
