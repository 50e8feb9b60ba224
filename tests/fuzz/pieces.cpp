// Compares reading in pieces with fgets(). The first two bytes choose the size
// of the pieces.

#include "analysis/pieces.h"

#include <cstdio>
#include <vector>

#include "tests/fuzz/scratch.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data,
                                      std::size_t size) {
  if (size < 2) return 0;
  enter_scratch_folder();
  const std::size_t sizes[] = {1024, 4096, 2u + data[1]};
  const std::size_t piece_size = sizes[data[0] % 3];
  // The text is repeated to make it longer than a block.
  std::string text;
  for (int i = 0; i <= data[0] / 3 % 8; ++i)
    text += bytes_of(data + 2, size - 2);
  write_source("source", text);

  std::vector<char> buffer(piece_size);
  std::FILE* stream = std::fopen("source", "r");
  Pieces pieces("source", piece_size);
  demand(pieces.is_open(), "the file can be opened");
  std::string_view piece;
  while (std::fgets(buffer.data(), static_cast<int>(piece_size), stream)) {
    demand(pieces.next(piece), "no piece is missing");
    demand(piece == buffer.data(), "the pieces equal those of fgets()");
    demand(piece.data()[piece.size()] == '\0', "a NUL follows");
    demand(pieces.at_end() == (std::feof(stream) != 0),
           "the same read reaches the end of the file");
  }
  demand(!pieces.next(piece), "there are no more pieces");
  std::fclose(stream);
  return 0;
}
