// The handbook, taken apart for the tests of what it says.

#pragma once

#include <string>
#include <vector>

/// The folder of the handbook and its pictures.
std::string handbook_folder();

/// The handbook as it stands in its file.
const std::string& handbook();

/// Whether a reader finds these words in it.
bool handbook_says(const std::string& words);

/// The pieces of a text from each `begin` to the next `end`, without these.
std::vector<std::string> pieces(const std::string& text,
                                const std::string& begin,
                                const std::string& end);

/// The pieces of a text between separators.
std::vector<std::string> split(const std::string& text,
                               const std::string& separator);

/// The rows below the header of the one table whose header reads so, each cell
/// as a reader sees it. Fails the test, and gives no rows, when there is no
/// such table.
using Rows = std::vector<std::vector<std::string>>;
Rows table(const std::vector<std::string>& header);
