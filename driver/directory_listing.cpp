#include "driver/directory_listing.h"

#include <FL/filename.H>

#include <dirent.h>

#include <cstdlib>

static int by_number(const dirent** a, const dirent** b) {
  return fl_numericsort(const_cast<dirent**>(a), const_cast<dirent**>(b));
}

// Uses scandir() because fl_filename_list(), from FLTK 1.3 on, recodes names
// where the locale is not UTF-8.
std::vector<std::string> list_directory(const char* dir) {
  dirent** entries = nullptr;
  const int count = scandir(dir, &entries, nullptr, by_number);

  std::vector<std::string> names;
  for (int i = 0; i < count; ++i) {
    names.emplace_back(entries[i]->d_name);
    std::free(entries[i]);
  }
  if (count >= 0) std::free(entries);
  return names;
}

// The toolkit copies a path that ends in "/" into a buffer of fixed size
// without checking its length. It does not copy other paths.
bool is_directory(const std::string& path) {
  std::string bare = path;
  while (bare.size() > 1 && bare.back() == '/') bare.pop_back();
  return fl_filename_isdir(bare.c_str()) != 0;
}
