// The pass that registers the units which a file declares.

#pragma once

/// The declaration pass over one file: registers every unit that it opens,
/// reporting them on standard output as `verbose` asks. A file that cannot be
/// read is skipped silently.
///
///   file        its slot in the run's list
///   fixed_form  the comment rule, see hide_F90_strings_comments()
void gather_declarations(char** file, bool fixed_form);
