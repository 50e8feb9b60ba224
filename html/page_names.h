// The names of pages, and the addresses of places in them.
//
// A page is named after its source file: the last component of the path with
// the extension replaced by a number, which the whole path determines, and
// ".html". A source file is identified by its slot in the run's list.

#pragma once

struct Calling;

/// The page number of a source path, 0 or more. The first path that gets a
/// number keeps it until the program ends, in later runs too. Part of the
/// interface; the program itself uses the names only.
int unique_id(const char* path);

/// The page name of a source file: "solver.f90" of number 123 gives
/// "solver0123.html". Static text, valid until the next call.
const char* HTML_REF(char** file);

/// The output path of a source file's page: html_dir, `slash` and the page
/// name. Static text, valid until the next call.
const char* HTML_NAME(char** file);

/// The address of a reference's line: page name, "#line" and line number.
/// Static text, valid until the next call. Part of the interface; the pages are
/// written without it.
const char* HTML_XREF(const Calling& reference);
