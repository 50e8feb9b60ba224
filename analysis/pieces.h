// Files read in pieces, as fgets() reads them, without a copy of each.

#pragma once

#include <cstddef>
#include <cstdio>
#include <memory>
#include <string_view>

/// Hands out the pieces that fgets() would read one by one into a buffer of
/// `piece_size` bytes: each is as long as the buffer and its closing NUL allow
/// unless a line end or the end of the file ends it before. The file is read in
/// large blocks. What a read error cuts off is dropped.
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

  /// Moves on to the next piece. It is followed by a NUL and stays until the
  /// next call; a NUL byte in the file ends it early. Returns false when
  /// nothing is left.
  bool next(std::string_view& piece);

  /// Whether the end of the file was met in reading the last piece: nothing
  /// else ended it.
  bool at_end() const { return met_end; }

 private:
  void fill();

  std::FILE* file;
  std::size_t longest;             // piece, without its NUL
  std::unique_ptr<char[]> buffer;  // a block, a piece and a NUL
  char* begin = nullptr;           // what has been read and not been handed out
  char* end = nullptr;
  char hidden = '\0';  // the character that the last piece's NUL took away
  bool read_all = false;
  bool has_nul = false;
  bool met_end = false;
};
