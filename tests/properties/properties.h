// What holds for the pages of any run. Each check returns what is wrong, one
// text for each fault; nothing when all is well.

#ifndef ZELKOR_TESTS_PROPERTIES_PROPERTIES_H
#define ZELKOR_TESTS_PROPERTIES_PROPERTIES_H

#include <map>
#include <string>
#include <vector>

#include "tests/properties/page_reader.h"
#include "tests/properties/tree.h"

using Faults = std::vector<std::string>;

/// The pages of a run, taken apart.
class ReadPages {
 public:
  explicit ReadPages(const FinishedRun& run);

  const FinishedRun& run;
  /// The marks of each page that is what it should be, by the page's name.
  std::map<std::string, std::vector<Mark>> marks;
  /// The slot that a page shows: files can share a page, and the last of them
  /// in the list is the one that stays on it.
  std::map<std::string, std::size_t> shown_slots;
  /// A page that is missing, should not be, or does not show its lines.
  Faults faults;
};

/// Why a link to a definition may lead nowhere. Each follows from a rule of the
/// passes.
enum class Exception {
  no_name,       ///< an unnamed unit has no word to bear its anchor
  odd_operator,  ///< an operator's name is not always a word of its line
  long_line,     ///< the declaration pass counts shorter pieces than the others
  listed_twice,  ///< only the last run over a file that is listed twice stays
  shared_page,   ///< likewise of different files with pages of one name
};

/// Every page shows the complete lines of its source once its mark-up is taken
/// out.
Faults pages_show_their_lines(const ReadPages& pages);

/// Every link of every page lands on an anchor. `met` counts the exceptions.
Faults links_land(const ReadPages& pages, std::map<Exception, int>& met);

/// Every word that names a unit is marked as a reference to all units of its
/// name or as the definition that it is; keywords are highlighted; no other
/// word is marked.
Faults words_that_mean_something_are_marked(const ReadPages& pages);

/// A definition's menu lists every line that refers to its name, once each, in
/// order and in columns of the length that the rule gives.
Faults menus_list_all_references(const ReadPages& pages);

/// The index shows every unit once in the menu and once in the list of its
/// kind, in the registry's order, and nothing else.
Faults index_lists_every_unit_once(const FinishedRun& run);

/// Units are registered under their name, namesakes in the order of files and
/// lines, each at a line that begins with its keyword and holds its name; and
/// every line that begins with a keyword opens one, unless a rule says no.
Faults units_are_what_lines_open(const FinishedRun& run);

/// Two runs over the same files in another order have the same pages, but for
/// the numbers by which namesakes are told apart and the order in which they
/// are listed.
Faults order_changes_numbers_alone(const ReadPages& one,
                                   const ReadPages& other);

/// All of them that look at one run.
Faults all_faults(const FinishedRun& run);

#endif
