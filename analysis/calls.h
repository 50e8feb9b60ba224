// The pass that finds the references to program units.

#pragma once

/// The reference pass over one file. Every word that names a registered unit is
/// recorded as a reference to all units of that name, unless a unit of that
/// name is declared on the same line. Reports the file on standard output when
/// `verbose` is above 0. A file that cannot be opened is skipped silently.
///
///   file        its slot in the run's list
///   fixed_form  the comment rule, see hide_F90_strings_comments()
void gather_calls(char** file, bool fixed_form);

/// Sorts the references to all units. Sorting needs their paths; reading the
/// sorted references does not.
void sort_references();
