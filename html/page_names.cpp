#include "html/page_names.h"

#include <algorithm>
#include <cstdio>
#include <deque>
#include <map>
#include <string>
#include <string_view>
#include <unordered_map>

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

static std::string page_name(char** file) {
  std::string name = file_part(file);
  name.resize(std::min(name.rfind('.'), name.size()));
  char ending[32];
  std::snprintf(ending, sizeof ending, "%04d.html", unique_id(*file));
  return name + ending;
}

namespace {

// The page name of a path, as long as `slash` stays the same. The empty path
// takes no number, so another one may come to own the number it had.
struct PageName {
  char slash;
  std::string text;
};

}  // namespace

// Names are asked for again and again, most often for the file of the last one.
const char* HTML_REF(char** file) {
  static std::deque<std::string> paths;
  static std::unordered_map<std::string_view, PageName> names;
  static auto last = names.end();

  if (last == names.end() || last->first != *file) {
    last = names.find(*file);
    if (last == names.end())
      last = names.try_emplace(paths.emplace_back(*file)).first;
  }
  PageName& name = last->second;
  if (name.slash != slash || **file == '\0') name = {slash, page_name(file)};
  return name.text.c_str();
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
