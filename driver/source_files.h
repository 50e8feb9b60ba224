// The search for source files by extension.

#pragma once

#include <set>
#include <string>
#include <vector>

/// Finds the files of a directory whose extension is one of a set.
///
///   dir         the directory, ending in "/"; it begins every path found
///   extensions  without their leading point, compared exactly; the extension
///               of a name is what follows its last point, hidden files
///               included, and is empty for a name without a point
///   recursive   search the directories below, too; links to directories are
///               followed, without a guard against cycles but the system's
///               limit on links and path lengths
///
/// Returns the paths in the toolkit's numeric order: a directory's own files
/// first, then what each of its directories holds, depth first. A directory
/// that cannot be listed contributes nothing.
std::vector<std::string> collect_files(const char* dir,
                                       std::set<std::string> extensions,
                                       bool recursive);
