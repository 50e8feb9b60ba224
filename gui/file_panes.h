// The two file lists of the main window and the directory menu above the right
// one: picking files, directory by directory.
//
// Lines of a list count from 1. Potential Files shows the entries of one
// directory, its sub-directories first and in bold (a line's text is then "@b"
// and the name); Selected Files holds paths in the order in which they were
// added. Both texts are the toolkit's copies.

#pragma once

#include <string>
#include <vector>

class Fl_Browser;
class Fl_Button;
class Fl_Menu_;
class Fl_Multi_Browser;
class ZelkorUserInterface;

/// Copies of the texts of a list, from its first line to its last.
std::vector<std::string> texts_of(const Fl_Browser* list);

/// Refills a list with the entries of a directory, without the files that are
/// in the Selected Files of gui_instance. Returns false and does not change the
/// list when the directory cannot be listed.
bool fill_files(Fl_Multi_Browser* list, const char* dir);

/// Lists a directory in Potential Files, makes it the current directory and
/// updates the directory menu. Nothing changes when it cannot be listed.
/// Absolute paths are cut to 255 characters.
void change_dir_to(ZelkorUserInterface* ui, const char* dir);

/// Makes an absolute path the current directory's text. A path that does not
/// fit is cut, with an alert.
void store_current_directory(ZelkorUserInterface* ui, const char* path);

/// Whether a path is a line of the Selected Files of gui_instance. Part of the
/// interface; the lists themselves look up many paths at once.
bool already_included(const std::string& path);

/// The number of selected lines. Deliberate: the last line is not examined, so
/// a selected one does not count.
int select_count(Fl_Browser* list);

/// "<<<": adds the selected Potential Files to Selected Files, once each.
void add_files_cb(Fl_Button* button, ZelkorUserInterface* ui);

/// ">>>": removes the selected lines from Selected Files.
void remove_files_cb(Fl_Button* button, ZelkorUserInterface* ui);

/// A name of the directory menu was chosen: lists that parent directory.
/// Deliberate: the parent's path ends with the last occurrence of the name in
/// the current directory's path, even in the middle of a longer name.
void change_dir_menu_cb(Fl_Menu_* menu, void* ui);

/// The selection in Potential Files changed. A clicked file is only selected. A
/// clicked directory is entered, unless other lines are selected, too: then it
/// is deselected, and a message says so.
///
/// The list must not be refilled while the toolkit still reads it. Then the
/// directory is entered after the event (see PendingChange), but before "<<<"
/// adds files. A parent directory chosen before that is entered instead.
void change_dir_click_cb(Fl_Multi_Browser* list, void* ui);
