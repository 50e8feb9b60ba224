// Source files read line by line from disk.
//
// The reference pass and the page pass must see the same lines with the same
// numbers: a reference becomes a link to its line's anchor. So both passes use
// this class.

#pragma once

#include <string_view>

#include "analysis/pieces.h"

/// Size of the passes' line buffers, closing NUL included.
constexpr int line_size = 4096;

/// The lines of a file. A physical line that does not fit into the passes'
/// buffers is read in pieces, each of which counts as one line.
class SourceLines {
 public:
  /// Opens a file. The first next() moves to its first line.
  ///
  ///   fixed_form  the comment rule, see hide_F90_strings_comments()
  SourceLines(const char* path, bool fixed_form);

  /// Whether the file could be opened.
  bool is_open() const { return pieces.is_open(); }

  /// Moves to the next line. Returns false when nothing is left. Deliberate: it
  /// also returns false when the read reached the end of the file, so a last
  /// line without a line end is never examined.
  bool next();

  /// The number of the line, from 1.
  int number() const { return line_number; }

  /// The line as read, line end included. Like scanned(), valid until next().
  std::string_view raw() const { return raw_text; }

  /// The text to search for words: the line, with strings and comments blanked
  /// if html_style asks for it. Its columns are those of raw().
  const char* scanned() const { return scanned_text; }

 private:
  Pieces pieces;
  const bool is_fixed_form;
  int line_number = 0;
  std::string_view raw_text;
  const char* scanned_text = nullptr;
  char blanked[line_size];
};
