// The pass that finds the references to program units.

#pragma once

/// The call pass over one file: every word that is the name of a registered
/// unit becomes a reference to all units of that name, unless a unit of that
/// name is declared on the very line. Reports the file on standard output when
/// `verbose` is above 0. A file that cannot be opened is skipped silently.
///
///   file        its slot in the run's list
///   fixed_form  the comment rule, see hide_F90_strings_comments()
void gather_calls(char** file, bool fixed_form);

/// Sorts the references to all units. Their paths must still be there; from
/// then on the references can be walked without them.
void sort_references();
