// The maker's installation directory, and the handbooks in it.

#pragma once

#include <sys/types.h>

#include <string>

/// The common installation directory, without a trailing "/": the value of
/// QUMBRA_HOME; else ".qumbra" in the home directory, if it exists; else the
/// directory whose "bin/plomvek" is found by PATH; else "/qumbra". The first
/// call determines it for the life of the process.
const std::string& QUMBRA_DIR();

/// Looks for a file in the directories of an environment variable, which are
/// separated by ":". Returns the first path that exists, or the empty text.
///
/// The plain name, relative to the working directory, is tried first.
/// Deliberate: the last directory of the variable is never tried.
std::string find_file(const std::string& file, const char* variable);

/// Turns backslashes into slashes, then removes one trailing "/".
void fix_path(std::string& path);

/// The size of a file or directory, 0 when there is none. Deliberate: an empty
/// file looks as if there were none.
off_t file_exists(const std::string& path);

/// The path of a program's handbook in the installation directory, whether or
/// not it exists.
std::string locate_handbook(const std::string& program);
