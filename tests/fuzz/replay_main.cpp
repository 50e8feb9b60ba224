// Runs a fuzz target once over each of some files and folders, without a
// fuzzer.

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <vector>

#include "tests/fuzz/scratch.h"

namespace fs = std::filesystem;

static void run_target(const fs::path& path) {
  std::ifstream file(path, std::ios::binary);
  const std::vector<char> bytes{std::istreambuf_iterator<char>(file), {}};
  std::fprintf(stderr, "%s: %zu bytes\n", path.c_str(), bytes.size());
  LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t*>(bytes.data()),
                         bytes.size());
}

int main(int argc, char** argv) {
  // Targets change the working directory.
  std::vector<fs::path> files;
  for (int i = 1; i < argc; ++i) {
    const fs::path path = fs::absolute(argv[i]);
    if (!fs::is_directory(path)) {
      files.push_back(path);
      continue;
    }
    for (const auto& entry : fs::directory_iterator(path))
      files.push_back(entry.path());
  }
  for (const fs::path& file : files) run_target(file);
  std::fprintf(stderr, "%zu inputs ran.\n", files.size());
  return files.empty() ? 1 : 0;
}
