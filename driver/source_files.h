// The search for source files by extension.

#pragma once

#include <set>
#include <string>
#include <vector>

/// Finds the files of a directory whose extension is one of a set.
///
///   dir         the directory, ending in "/"; it begins every path found
///   extensions  without their leading point, compared exactly; the extension
///               of a name is what follows its last point, even in the name of
///               a hidden file, and is empty for a name without a point
///   recursive   also search sub-directories, and links to directories. Only
///               the system's limits on links and path lengths end a cycle
///
/// Returns the paths in the toolkit's numeric order: first the files in a
/// directory, then the files in its sub-directories, depth first. A directory
/// that cannot be listed contributes nothing.
std::vector<std::string> collect_files(const char* dir,
                                       std::set<std::string> extensions,
                                       bool recursive);
