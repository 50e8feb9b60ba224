// Runs twice over up to five files and compares the pages with the model. The
// first two bytes are settings. "\x1e" separates files, and "\x1f" at the end
// lists the first file a second time.

#include <cstdio>

#include "driver/settings.h"
#include "tests/fuzz/scratch.h"
#include "tests/properties/properties.h"

static Tree tree_of(std::string_view text) {
  static const char* const paths[] = {"a.f90", "d/a.f90", "ab.f90", "ba.f90",
                                      "README"};
  Tree tree;
  tree.style = html_style;
  const bool is_first_twice = !text.empty() && text.back() == '\x1f';
  if (is_first_twice) text.remove_suffix(1);
  for (const char* path : paths) {
    const std::size_t end = text.find('\x1e');
    tree.list.emplace_back(path);
    tree.sources[path] = text.substr(0, end);
    if (end == std::string_view::npos) break;
    text.remove_prefix(end + 1);
  }
  if (is_first_twice) tree.list.emplace_back(paths[0]);
  return tree;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data,
                                      std::size_t size) {
  enter_scratch_folder();
  const Tree tree = tree_of(take_settings(bytes_of(data, size)));
  tree.write();
  for (int i = 0; i < 2; ++i) {
    const auto faults = faults_of(run_over(tree));
    for (const std::string& fault : faults)
      std::fprintf(stderr, "%s\n", fault.c_str());
    demand(faults.empty(), "registry and pages equal those of the model");
  }
  return 0;
}
