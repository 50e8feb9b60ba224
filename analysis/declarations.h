// The pass that registers the units that a file declares.

#pragma once

/// The declaration pass over one file: registers every unit that the file
/// declares. Reports the units on standard output when `verbose` is above 0,
/// and every line when it is above 4. Skips an unreadable file silently.
///
///   file        its slot in the run's list
///   fixed_form  the comment rule, see hide_F90_strings_comments()
void gather_declarations(char** file, bool fixed_form);
