#include "tests/support/temporary_folder.h"

#include <gtest/gtest.h>

#include <stdlib.h>

#include <fstream>

namespace fs = std::filesystem;

TemporaryFolder::TemporaryFolder() : previous(fs::current_path()) {
  std::string name = fs::canonical(fs::temp_directory_path()) / "zelkor-XXXXXX";
  if (mkdtemp(name.data()) == nullptr)
    throw fs::filesystem_error("mkdtemp", name, std::error_code());
  folder = name;
  fs::current_path(folder);
}

TemporaryFolder::~TemporaryFolder() {
  std::error_code ignored;
  fs::current_path(previous, ignored);
  fs::remove_all(folder, ignored);
}

void write_file(const std::string& path, const std::string& text) {
  const fs::path parent = fs::path(path).parent_path();
  if (!parent.empty()) fs::create_directories(parent);
  std::ofstream file(path, std::ios::binary);
  file << text;
  file.close();
  if (!file) ADD_FAILURE() << "cannot write " << path;
}
