#include "html/page_names.h"

#include <cstdio>
#include <map>
#include <string>
#include <string_view>
#include <unordered_map>

#include "analysis/calling.h"
#include "analysis/words.h"
#include "driver/settings.h"

// Deliberate: a sum over the path's bytes as signed values, cut to 21 bits.
// Paths of the same bytes in another order have the same hash; Pages::of()
// gives them different numbers.
static int path_hash(std::string_view path) {
  const int mask = 0x1FFFFF;
  int hash = 0;
  for (const char c : path)
    hash = (hash + static_cast<signed char>(c) * 5003) & mask;
  return hash;
}

namespace {

struct Page {
  int number = 0;
  std::string path;  // the owner of the number; empty while it is free
  std::string name;
  char name_slash = '\0';  // the `slash` that `name` was made with
};

// Most look-ups ask for the same page as the one before. The empty path owns
// no number: it gets the first free page, until another path takes that page.
class Pages {
 public:
  Page& of(std::string_view path) {
    if (last != nullptr && last->path == path) return *last;
    const auto known = by_path.find(path);
    if (known != by_path.end()) return *(last = known->second);

    int number = path_hash(path);
    while (!by_number[number].path.empty()) ++number;
    last = &by_number[number];
    *last = {number, std::string(path), "", '\0'};
    if (!path.empty()) by_path[last->path] = last;
    return *last;
  }

 private:
  std::map<int, Page> by_number;
  std::unordered_map<std::string_view, Page*> by_path;
  Page* last = nullptr;
};

Pages pages;

}  // namespace

int unique_id(const char* path) { return pages.of(path).number; }

const char* HTML_REF(char** file) {
  Page& page = pages.of(*file);
  if (page.name_slash != slash) {
    const std::string_view part = file_part(file);
    char ending[32];
    std::snprintf(ending, sizeof ending, "%04d.html", page.number);
    page.name = part.substr(0, part.rfind('.'));
    page.name += ending;
    page.name_slash = slash;
  }
  return page.name.c_str();
}

const char* HTML_NAME(char** file) {
  static std::string path;
  path = html_dir + slash + HTML_REF(file);
  return path.c_str();
}

const char* HTML_XREF(const Calling& reference) {
  static std::string address;
  address =
      HTML_REF(reference.file) + ("#line" + std::to_string(reference.line));
  return address.c_str();
}
