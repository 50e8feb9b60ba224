// The entry point of the engine: a run over a list of source files.

#pragma once

/// Resets the state of a run: sets date_time to the current time and empties
/// the registry of declarations.
void init_statics();

/// Writes the pages of a run, and the index page when html_style asks for it,
/// into html_dir. Reports to progress() after every file of every pass.
///
///   count  number of files; 0 or less writes the index of an empty registry
///   files  their paths, in the order in which they are processed. The caller
///          owns the array and the texts. They must not change until gen_html
///          returns: declarations and references identify a file by the address
///          of its slot, its element of this array.
///
/// Files that cannot be read are skipped. A page that cannot be created stops
/// the process. Not re-entrant.
void gen_html(int count, char** files);
