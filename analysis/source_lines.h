// Source files read line by line from disk.
//
// The call pass and the page pass read the same files one after the other and
// have to see the same lines with the same numbers, for the one's references
// are links to the other's anchors. So both read through here.

#ifndef ZELKOR_ANALYSIS_SOURCE_LINES_H
#define ZELKOR_ANALYSIS_SOURCE_LINES_H

#include <cstdio>

/// Size of the passes' line buffers, closing NUL included.
constexpr int line_size = 4096;

/// One line, twice. Both texts have the same length, so that columns in one are
/// columns in the other.
struct SourceLine {
  char raw[line_size];      ///< as read, line end included
  char scanned[line_size];  ///< what is searched for words
};

/// Reads the next line of a stream. A physical line that does not fit into the
/// buffer is read in pieces, each of which is a line of its own. In the scanned
/// text strings and comments are blanked if html_style asks for it, by the rule
/// that `fixed_form` picks.
///
/// Returns false, and the line is of no use, when nothing is left and also,
/// deliberately, when the end of the file was reached by this read: a last line
/// without a line end is not seen.
bool read_source_line(std::FILE* source, bool fixed_form, SourceLine& line);

#endif
