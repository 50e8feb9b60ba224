// The frame that all pages share, and the mark-up of their pop-up menus.
//
// The menus need only the style sheet in the head, no script. All operations
// write to an open stream; none checks for write errors, and no character is
// ever turned into an entity.

#pragma once

#include <cstdio>

class Declaration;
struct Calling;

/// Writes the page head with the style sheet and opens the body (1644 bytes).
void html_header(std::FILE* html);

/// Writes the page trailer with the run's time stamp and closes the body.
void html_footer(std::FILE* html);

/// Writes a mark and opens the pop-up menu that it reveals. The title line is
/// left out when title is null.
void begin_menu(std::FILE* html, const char* title);

/// Closes a pop-up menu.
void end_menu(std::FILE* html);

/// Starts a word that reveals a pop-up pane. The caller writes the word next,
/// then calls begin_multiref().
void open_multiref(std::FILE* html);

/// Opens the pane after its word. The title line is left out when title is
/// null.
void begin_multiref(std::FILE* html, const char* title);

/// Closes the pane and its word.
void close_multiref(std::FILE* html);

/// Writes one character of source text, unchanged. Part of the interface; the
/// pages themselves are written in longer pieces.
void print_html_char(char c, std::FILE* html);

/// Writes a menu item: a link to a declaration that shows its name.
///
///   index       its definition index
///   new_column  start a new column of the menu first
void menu_item(std::FILE* html, const Declaration& declaration, int index,
               bool new_column);

/// Writes a menu item: a link to the line of a reference that shows the path
/// and line number.
void menu_item(std::FILE* html, const Calling& reference, bool new_column);

/// Writes an item of a word's pane: a link to a declaration that shows its path
/// and line number.
///
///   index  its definition index
void multiref_item(std::FILE* html, const Declaration& declaration, int index);
