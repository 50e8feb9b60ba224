#include "tests/support/capture.h"

#include <gtest/gtest.h>

#include <sys/stat.h>
#include <unistd.h>

#include <cstdlib>
#include <sstream>

std::string written(const std::function<void(std::FILE*)>& writer) {
  char* text = nullptr;
  std::size_t size = 0;
  std::FILE* stream = open_memstream(&text, &size);
  writer(stream);
  std::fclose(stream);
  std::string result(text, size);
  std::free(text);
  return result;
}

static std::string rest_of(std::FILE* stream) {
  std::string text;
  char piece[4096];
  std::size_t count = 0;
  while ((count = std::fread(piece, 1, sizeof piece, stream)) > 0)
    text.append(piece, count);
  return text;
}

std::string printed(const std::function<void()>& action) {
  std::fflush(stdout);
  std::FILE* file = std::tmpfile();
  const int standard_output = dup(STDOUT_FILENO);
  dup2(fileno(file), STDOUT_FILENO);
  action();
  std::fflush(stdout);
  dup2(standard_output, STDOUT_FILENO);
  close(standard_output);
  std::rewind(file);
  std::string text = rest_of(file);
  std::fclose(file);
  return text;
}

long bytes_printed() {
  struct stat status {};
  fstat(STDOUT_FILENO, &status);
  return status.st_size;
}

std::string content_of(const std::string& path) {
  std::FILE* file = std::fopen(path.c_str(), "rb");
  if (file == nullptr) {
    ADD_FAILURE() << "cannot read " << path;
    return "";
  }
  std::string text = rest_of(file);
  std::fclose(file);
  return text;
}

std::string errors_in(const std::string& path) {
  std::istringstream lines(content_of(path));
  std::string errors;
  for (std::string line; std::getline(lines, line);)
    if (line.find("Fontconfig error: ") != 0 &&
        line.find("Fontconfig warning: ") != 0)
      errors += line + (lines.eof() ? "" : "\n");
  return errors;
}
