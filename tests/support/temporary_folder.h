// A scratch folder that is the working directory while it lives.

#pragma once

#include <filesystem>
#include <string>

/// Makes a new, empty folder and enters it; goes back and removes it with all
/// that it holds when destroyed. Relative paths of a test are inside it.
class TemporaryFolder {
 public:
  TemporaryFolder();
  ~TemporaryFolder();
  TemporaryFolder(const TemporaryFolder&) = delete;
  TemporaryFolder& operator=(const TemporaryFolder&) = delete;

  /// Its absolute path, links resolved, without a trailing "/".
  const std::filesystem::path& path() const { return folder; }

 private:
  std::filesystem::path folder;
  std::filesystem::path previous;
};

/// Writes a file, making the folders that its path names. The text may hold
/// any bytes.
void write_file(const std::string& path, const std::string& text);
