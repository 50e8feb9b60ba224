// The lists of source files that the benchmarks read.

#ifndef ZELKOR_BENCH_FILE_LIST_H
#define ZELKOR_BENCH_FILE_LIST_H

#include <fstream>
#include <string>
#include <vector>

/// The lines of a text file, each of them a path.
inline std::vector<std::string> read_file_list(const char* path) {
  std::ifstream list(path);
  std::vector<std::string> paths;
  for (std::string line; std::getline(list, line);) paths.push_back(line);
  return paths;
}

#endif
