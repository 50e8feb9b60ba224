// Blanking of strings and comments, and joining of continuation lines.
//
// Blanking overwrites characters and deletes none, so a word has the same
// column in the blanked line as in the source.

#pragma once

class ramFILE;

/// Overwrites the strings and comments of a line with blanks.
///
///   line        NUL-terminated, with or without its line end; rewritten in
///               place
///   fixed_form  false: blanks "!" comments, and the text between double
///               quotes but not the quotes. Every line begins outside a string.
///               An unclosed string is blanked to the end of the buffer.
///               true: blanks the whole line when it begins with "c" or "C"
void hide_F90_strings_comments(char* line, bool fixed_form);

/// Does the same to every line of a file and leaves it rewound. A null file is
/// ignored.
void hide_F90_strings_comments(ramFILE* file, bool fixed_form);

/// Joins lines that end in "&" with the line that follows. The number of lines
/// does not change: the joined text replaces the last of its lines, and only a
/// line end is left of the others. Leaves the file rewound; a null file is
/// ignored.
void merge_F90_continuations(ramFILE* file);

/// Sets the path separator `slash` to '/', whatever the hint.
void config_dos_or_unix(const char* hint);
