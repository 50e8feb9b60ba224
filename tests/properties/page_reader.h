// The mark-up of a source page, told apart from the source text that the page
// shows.

#ifndef ZELKOR_TESTS_PROPERTIES_PAGE_READER_H
#define ZELKOR_TESTS_PROPERTIES_PAGE_READER_H

#include <optional>
#include <string>
#include <tuple>
#include <vector>

#include "tests/properties/tree.h"

struct Link {
  std::string page;
  std::string fragment;
  std::string path;  ///< shown by the items of menus and panes
  int line = 0;      ///< likewise

  auto members() const { return std::tie(page, fragment, path, line); }
};

inline bool operator==(const Link& a, const Link& b) {
  return a.members() == b.members();
}

inline bool operator<(const Link& a, const Link& b) {
  return a.members() < b.members();
}

/// What is laid over one word.
struct Mark {
  enum Kind { reference, pane, definition, keyword };
  Kind kind;
  int line;
  std::size_t column;
  std::string word;
  std::string anchor;        ///< empty for a keyword
  std::vector<Link> links;   ///< of the reference, or of the menu or pane
  std::vector<int> columns;  ///< the number of items in each of its columns
};

/// The lines of a source that its page is to show.
std::vector<std::string> shown_lines(const std::string& source);

/// Takes the mark-up out of a page.
///
///   source  the text of the source; the page's text has to be its lines
///
/// Returns the marks in the order of the page, and nothing when no mark-up can
/// be taken out so that exactly the lines remain. Source text that looks like
/// mark-up counts as source.
std::optional<std::vector<Mark>> read_page(const FinishedRun& run,
                                           const std::string& title,
                                           const std::string& source,
                                           const std::string& page);

#endif
