// Files read in pieces, as fgets() reads them, without copying each piece.

#pragma once

#include <cstddef>
#include <cstdio>
#include <memory>
#include <string_view>

/// Yields the pieces that calls of fgets() would read into a buffer of
/// `piece_size` bytes: a piece ends after a line end, at the end of the file or
/// when the buffer is full. The file is read in large blocks. A piece that a
/// read error cuts short is dropped.
class Pieces {
 public:
  /// Opens a file for reading.
  ///
  ///   piece_size  counts the closing NUL; at least 2
  Pieces(const char* path, std::size_t piece_size);
  ~Pieces();
  Pieces(const Pieces&) = delete;
  Pieces& operator=(const Pieces&) = delete;

  /// Whether the file could be opened.
  bool is_open() const { return file != nullptr; }

  /// Moves to the next piece. It is followed by a NUL and is valid until the
  /// next call. A NUL byte in the file hides the rest of its piece. Returns
  /// false when nothing is left.
  bool next(std::string_view& piece);

  /// Whether the last piece ended at the end of the file, not after a line end
  /// and not because the buffer was full.
  bool at_end() const { return met_end; }

 private:
  void fill();

  std::FILE* file;
  std::size_t longest;             // piece, without its NUL
  std::unique_ptr<char[]> buffer;  // room for a block, a piece and a NUL
  char* begin = nullptr;           // of the text that no piece has covered yet
  char* end = nullptr;
  char hidden = '\0';  // the character that the last piece's NUL replaces
  bool read_all = false;
  bool has_nul = false;
  bool met_end = false;
};
