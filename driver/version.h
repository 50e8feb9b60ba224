// The program's version, derived from the date on which it was built.

#pragma once

#include <string>

/// The build date as the compiler's date macro writes it, such as
/// "Mar  1 2009". Static text.
const char* build_date();

/// The four-digit year of the build date.
std::string build_year();

/// The version of a build made on a date: three decimal numbers joined by
/// "."; a later date has a higher version. 1 March 2009 gives "2.0.65".
///
///   date  month abbreviation, day and year, separated by blanks; an unknown
///         month word counts as January, a missing number as 0
std::string version_text(const char* date);
