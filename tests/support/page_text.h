// The fixed texts of the pages, written without the code under test.

#pragma once

#include <ctime>
#include <string>
#include <vector>

inline const std::string pane_opening =
    "<table class=\"pane\"><tr><td style=\"vertical-align:top;\">\n";
inline const std::string menu_opening =
    "<span id=\"nav\"><span class=\"popup\"><big>"
    "<big style=\"color: rgb(204, 0, 0);\">&#134;</big></big>" +
    pane_opening;
inline const std::string menu_closing = "</td></tr></table></span></span>";
inline const std::string new_column =
    "</td><td style=\"vertical-align:top;\">\n";
inline const std::string multiref_opening =
    "<span id=\"nav\"><b class=\"multiref\">";
inline const std::string multiref_closing = "</td></tr></table></b></span>";

/// The head of every page, from "<html>" to "<body>".
const std::string& page_head();

/// The end of every page of a run, from the rule on.
std::string page_tail(std::time_t time_stamp);

/// Whether a file exists and is a page with its head and its end.
bool is_whole_page(const std::string& path);

/// A whole source page.
///
///   title    the last component of the source's path
///   content  the text between "<pre>" and "</pre>"
std::string source_page(const std::string& title, const std::string& content,
                        std::time_t time_stamp);

/// The "Referenced By..." menu with these items.
std::string callers_menu(const std::string& items);

/// The item of such a menu for one reference.
std::string caller(const std::string& page, const std::string& path, int line);

/// The "Definitions:" pane over a word, with these items.
std::string definitions_pane(const std::string& word, const std::string& items);

/// The item of such a pane for the unit of this index.
std::string pane_item(const std::string& page, const std::string& path,
                      const std::string& name, int index, int line);

/// The keywords of the kinds of units, in the order of the index.
inline const std::vector<std::string> unit_kinds = {
    "PROGRAM", "MODULE", "SUBROUTINE", "FUNCTION", "INTERFACE", "TYPE"};

/// What the index shows of a kind in its navigation, and in its lists.
std::string index_menu(const std::string& kind, const std::string& items = "");
std::string index_list(const std::string& kind,
                       const std::string& bullets = "");
