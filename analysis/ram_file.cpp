// A physical line that is too long is stored in pieces, each of them as one
// line. Deliberate: the line numbers of the declaration pass count the pieces.

#include "analysis/ram_file.h"

#include <cstdio>
#include <cstring>
#include <memory>
#include <string_view>

#include "analysis/pieces.h"

ramFILE* ramFILE::New(const char* path) {
  auto file = std::make_unique<ramFILE_imp>(path);
  return file->ok() ? file.release() : nullptr;
}

ramFILE_imp::ramFILE_imp(const char* source_path) : path(source_path) {
  reload();
}

void ramFILE_imp::reload() {
  release();
  Pieces pieces(path.c_str(), stored_line_size);
  std::string_view piece;
  while (pieces.is_open() && pieces.next(piece)) lines.push_back(copy(piece));
  rewind();
}

char* ramFILE_imp::copy(std::string_view text) {
  auto* line = static_cast<char*>(memory.allocate(text.size() + 1, 1));
  std::memcpy(line, text.data(), text.size());
  line[text.size()] = '\0';
  return line;
}

bool ramFILE_imp::ok() const { return !path.empty() && !lines.empty(); }

void ramFILE_imp::rewind() { cursor = lines.begin(); }

int ramFILE_imp::fgets(char* buffer, int size) {
  if (size < 1) return 0;
  buffer[0] = '\0';
  if (at_eof()) return 0;
  const auto limit = static_cast<std::size_t>(size);
  std::strncpy(buffer, *cursor, limit);
  ++cursor;
  return static_cast<int>(strnlen(buffer, limit));
}

bool ramFILE_imp::at_eof() { return !ok() || cursor == lines.end(); }

void ramFILE_imp::release() {
  lines.clear();
  memory.release();
}

int fgets(char* buffer, int size, ramFILE* file) {
  return file->fgets(buffer, size);
}

void fclose(ramFILE* /*file*/) {}

bool at_eof(ramFILE* file, bool report) {
  const bool ended = file->at_eof();
  if (report && ended) std::fputs("END OF FILE\n", stdout);
  return ended;
}
