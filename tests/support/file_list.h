// The list of source paths that a run works on.

#pragma once

#include <string>
#include <utility>
#include <vector>

/// Paths, and the slots by which the passes know them.
class FileList {
 public:
  explicit FileList(std::vector<std::string> list) : paths(std::move(list)) {
    for (std::string& path : paths) slots.push_back(path.data());
  }
  FileList(const FileList&) = delete;
  FileList& operator=(const FileList&) = delete;

  /// The slot of a path, counted from 0.
  char** slot(std::size_t i) { return &slots.at(i); }
  char** data() { return slots.data(); }
  int count() const { return static_cast<int>(slots.size()); }

 private:
  std::vector<std::string> paths;
  std::vector<char*> slots;
};
