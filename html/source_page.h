// The page of one source file.

#pragma once

#include <cstdio>

/// Writes the page of a source file at HTML_NAME(file): its text unchanged,
/// with links on references to units, anchors and menus on the definitions of
/// units, and keywords highlighted as html_style asks. Reports the file on
/// standard output when `verbose` is above 0.
///
///   file        the file's slot in the run's list
///   fixed_form  the comment rule, see hide_F90_strings_comments()
///
/// A source that cannot be opened gets no page, silently; a page that cannot be
/// created stops the process with a failed assertion.
void print_links(char** file, bool fixed_form);

/// Writes the characters of a line from column `start` up to, not including,
/// `end`, in bold, italic or both as html_style asks.
void print_syntax(const char* line, int start, int end, std::FILE* html);
