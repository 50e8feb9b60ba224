#include "driver/directory_listing.h"

#include <FL/filename.H>

#include <cstdlib>

std::vector<std::string> list_directory(const char* dir) {
  dirent** entries = nullptr;
  const int count = fl_filename_list(dir, &entries, fl_numericsort);

  std::vector<std::string> names;
  for (int i = 0; i < count; ++i) {
    std::string name = entries[i]->d_name;
    // The toolkit marks directories by a trailing "/".
    if (name.size() > 1 && name.back() == '/') name.pop_back();
    names.push_back(std::move(name));
    std::free(entries[i]);
  }
  if (count >= 0) std::free(entries);
  return names;
}

// The toolkit copies a path that ends in "/" into a buffer of fixed size,
// without a look at its length; other paths it leaves where they are.
bool is_directory(const std::string& path) {
  std::string bare = path;
  while (bare.size() > 1 && bare.back() == '/') bare.pop_back();
  return fl_filename_isdir(bare.c_str()) != 0;
}
