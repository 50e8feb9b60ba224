// The handbook and its parts, for the tests of what it says.

#pragma once

#include <string>
#include <vector>

/// The folder of the handbook and its pictures.
std::string handbook_folder();

/// The HTML of the handbook.
const std::string& handbook();

/// Whether a reader finds these words in it.
bool handbook_says(const std::string& words);

/// The pieces of a text between each `begin` and the next `end`.
std::vector<std::string> pieces(const std::string& text,
                                const std::string& begin,
                                const std::string& end);

/// The pieces of a text between separators.
std::vector<std::string> split(const std::string& text,
                               const std::string& separator);

/// The rows of the table with this header, without the header, each cell as a
/// reader sees it. Fails the test and returns no rows if there is no such
/// table.
using Rows = std::vector<std::vector<std::string>>;
Rows table(const std::vector<std::string>& header);
