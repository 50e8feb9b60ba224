// Blanking of strings and comments, and joining of continuation lines.
//
// Blanking in place keeps every column where it was, so that what is found in
// the rewritten line stands at the same place in the source. A blanked line has
// the length it had before.

#pragma once

class ramFILE;

/// Overwrites with blanks what must not be taken for words in a line.
///
///   line        NUL-terminated, with or without its line end; rewritten in
///               place
///   fixed_form  false: blanks "!" comments, and the text between double
///               quotes but not the quotes. A call begins outside any string.
///               An unclosed string is blanked to the end of the buffer.
///               true: blanks the whole line when it begins with "c" or "C"
void hide_F90_strings_comments(char* line, bool fixed_form);

/// Does the same to every line of a file and leaves it rewound. A null file is
/// ignored.
void hide_F90_strings_comments(ramFILE* file, bool fixed_form);

/// Joins lines that end in "&" with the line that follows. The number of lines
/// stays: the joined text stands in the slot of its last physical line, and
/// the lines continued there hold a line end only. Leaves the file rewound; a
/// null file is ignored.
void merge_F90_continuations(ramFILE* file);

/// Sets the path separator `slash` to '/', whatever the hint.
void config_dos_or_unix(const char* hint);
