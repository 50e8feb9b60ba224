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

/// Refills a list with the entries of a directory, without the files that stand
/// in the Selected Files of gui_instance. Returns false, and leaves the list as
/// it is, when the directory cannot be listed.
bool fill_files(Fl_Multi_Browser* list, const char* dir);

/// Lists a directory in Potential Files and makes it the current directory,
/// menu included. Nothing changes when it cannot be listed. Absolute paths are
/// cut to 255 characters.
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

/// ">>>": takes the selected lines out of Selected Files.
void remove_files_cb(Fl_Button* button, ZelkorUserInterface* ui);

/// A name of the directory menu was chosen: lists that parent directory.
/// Deliberate: the name is sought as a mere piece of the current directory's
/// text, and its last occurrence is taken.
void change_dir_menu_cb(Fl_Menu_* menu, void* ui);

/// The selection in Potential Files changed. A clicked file is just selected. A
/// clicked directory is entered, unless other lines are selected, too: then a
/// message says that it is dropped from the selection.
///
/// The list cannot be refilled while the toolkit reads it. Then the directory
/// is entered after the event (see PendingChange), but before "<<<" adds files.
/// A parent directory chosen meanwhile is entered in its place.
void change_dir_click_cb(Fl_Multi_Browser* list, void* ui);
