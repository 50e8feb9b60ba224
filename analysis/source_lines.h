// Source files read line by line from disk.
//
// The call pass and the page pass read the same files one after the other and
// have to see the same lines with the same numbers, for the one's references
// are links to the other's anchors. So both read through here.

#pragma once

#include <string_view>

#include "analysis/pieces.h"

/// Size of the passes' line buffers, closing NUL included.
constexpr int line_size = 4096;

/// The lines of a file. A physical line that does not fit into the passes'
/// buffers is read in pieces, each of which is a line of its own.
class SourceLines {
 public:
  /// Opens a file and stands before its first line.
  ///
  ///   fixed_form  the comment rule, see hide_F90_strings_comments()
  SourceLines(const char* path, bool fixed_form);

  /// Whether the file could be opened.
  bool is_open() const { return pieces.is_open(); }

  /// Moves on to the next line. Returns false when nothing is left and also,
  /// deliberately, when the end of the file was reached by this read: a last
  /// line without a line end is not seen.
  bool next();

  /// The number of the line, from 1.
  int number() const { return line_number; }

  /// The line as read, line end included. This and the next stay until next().
  std::string_view raw() const { return raw_text; }

  /// What is searched for words: the line, with strings and comments blanked
  /// if html_style asks for it. Columns are those of the raw text.
  const char* scanned() const { return scanned_text; }

 private:
  Pieces pieces;
  const bool is_fixed_form;
  int line_number = 0;
  std::string_view raw_text;
  const char* scanned_text = nullptr;
  char blanked[line_size];
};
