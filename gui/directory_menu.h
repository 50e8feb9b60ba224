// The menu of the directories above the one that Potential Files shows.

#pragma once

class Fl_Menu_;

/// Labels a menu with the last name of a path and fills it with the names
/// before it, nearest first.
///
///   path  one trailing "/" is ignored, but appears in the label. The label
///         points into this text, which must live as long as the label
void dir_menu(Fl_Menu_* menu, const char* path);
