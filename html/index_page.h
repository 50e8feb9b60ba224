// The index of all declarations.

#pragma once

/// Writes the index page: all registered units by kind, first as pop-up menus
/// in a navigation bar, then as lists. Reports on standard output when
/// `verbose` is above 0.
///
///   name  the page's base name: the page is "<name>.html" in html_dir
///
/// A page that cannot be opened is skipped silently.
void print_tree(const char* name);
