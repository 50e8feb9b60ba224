#include "html/page_names.h"

#include <algorithm>
#include <cstdio>
#include <map>
#include <string>

#include "analysis/calling.h"
#include "analysis/words.h"
#include "driver/settings.h"

// Deliberate: a plain sum of the path's bytes, each taken as a signed value, in
// 21 bits. Paths of the same bytes in another order share it; unique_id() tells
// them apart.
static int path_hash(const char* path) {
  const int mask = 0x1FFFFF;
  int hash = 0;
  for (; *path != '\0'; ++path)
    hash = (hash + static_cast<signed char>(*path) * 5003) & mask;
  return hash;
}

int unique_id(const char* path) {
  static std::map<int, std::string> owners;
  for (int number = path_hash(path);; ++number) {
    std::string& owner = owners[number];
    if (owner.empty()) owner = path;
    if (owner == path) return number;
  }
}

const char* HTML_REF(char** file) {
  static std::string name;
  name = file_part(file);
  name.resize(std::min(name.rfind('.'), name.size()));
  char ending[32];
  std::snprintf(ending, sizeof ending, "%04d.html", unique_id(*file));
  name += ending;
  return name.c_str();
}

const char* HTML_NAME(char** file) {
  static std::string path;
  path = html_dir + slash + HTML_REF(file);
  return path.c_str();
}

const char* HTML_XREF(const Calling& calling) {
  static std::string address;
  address = HTML_REF(calling.file);
  address += "#line" + std::to_string(calling.line);
  return address.c_str();
}
