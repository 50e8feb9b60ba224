// The handbook, taken apart for the tests of what it says.

#ifndef ZELKOR_TESTS_HANDBOOK_HANDBOOK_H
#define ZELKOR_TESTS_HANDBOOK_HANDBOOK_H

#include <string>
#include <vector>

/// The folder of the handbook and its pictures.
std::string handbook_folder();

/// The handbook as it stands in its file.
const std::string& handbook();

/// What a reader sees of some HTML: without tags, entities resolved, each run
/// of blanks and line ends one blank, none at the ends.
std::string plain(const std::string& html);

/// The pieces of a text from each `begin` to the next `end`, without these.
std::vector<std::string> pieces(const std::string& text,
                                const std::string& begin,
                                const std::string& end);

/// The cells of each row, as HTML.
using Rows = std::vector<std::vector<std::string>>;

/// The rows below the header of the one table whose header reads so. Fails the
/// test, and gives no rows, when there is no such table.
Rows table(const std::vector<std::string>& header);

/// The first preformatted block behind a heading, line by line, entities
/// resolved. Fails the test when there is none.
std::vector<std::string> block_below(const std::string& heading);

/// The number that stands between two pieces of the handbook's plain text.
/// Fails the test, and gives 0, when there is none.
int number_between(const std::string& before, const std::string& after);

/// The pieces of a text between separators, blanks at their ends removed.
std::vector<std::string> split(const std::string& text, char separator);

#endif
