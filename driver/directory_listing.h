// Listing directories and recognising them.

#pragma once

#include <string>
#include <vector>

/// Lists a directory: the bare names of its entries, "." and ".." and hidden
/// ones included, in the order of the toolkit's fl_numericsort (by byte, digit
/// runs by value). Empty when the directory cannot be listed.
std::vector<std::string> list_directory(const char* dir);

/// Whether a path of any length names a directory or a link to one, with or
/// without a trailing "/".
bool is_directory(const std::string& path);
