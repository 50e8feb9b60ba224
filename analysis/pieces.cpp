#include "analysis/pieces.h"

#include <algorithm>
#include <cstring>

static const std::size_t block_size = 1 << 15;

Pieces::Pieces(const char* path, std::size_t piece_size)
    : file(std::fopen(path, "r")), longest(piece_size - 1) {
  if (file == nullptr) return;
  // Blocks are read straight into `buffer`, so the stream needs none.
  std::setvbuf(file, nullptr, _IONBF, 0);
  buffer.reset(new char[block_size + piece_size]);
  begin = end = buffer.get();
}

Pieces::~Pieces() {
  if (file != nullptr) std::fclose(file);
}

// Moves the rest of the last block to the front and reads the next block.
void Pieces::fill() {
  const auto left = static_cast<std::size_t>(end - begin);
  begin = static_cast<char*>(std::memmove(buffer.get(), begin, left));
  end = begin + left;
  const std::size_t count = std::fread(end, 1, block_size, file);
  read_all = count < block_size;
  has_nul = has_nul || std::memchr(end, '\0', count) != nullptr;
  end += count;
  *end = '\0';
}

bool Pieces::next(std::string_view& piece) {
  if (begin < end) *begin = hidden;
  char* piece_end = nullptr;
  while (piece_end == nullptr) {
    const auto left = static_cast<std::size_t>(end - begin);
    const std::size_t seen = std::min(left, longest);
    if (auto* line_end = static_cast<char*>(std::memchr(begin, '\n', seen))) {
      piece_end = line_end + 1;
    } else if (seen == longest) {
      piece_end = begin + longest;
    } else if (!read_all) {
      fill();
    } else {
      met_end = true;
      if (left == 0 || std::ferror(file)) return false;
      piece_end = end;
    }
  }
  hidden = *piece_end;
  *piece_end = '\0';
  piece = has_nul ? std::string_view(begin)
                  : std::string_view(
                        begin, static_cast<std::size_t>(piece_end - begin));
  begin = piece_end;
  return true;
}
