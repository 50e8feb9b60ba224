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
