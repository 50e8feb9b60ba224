// The callbacks of the main window, which ZelkorUserInterface::make_window
// builds. Those of the file lists are in gui/file_panes.h.

#pragma once

class Fl_Button;
class Fl_Widget;
class ZelkorUserInterface;

/// A highlighting control was used: changes html_style.
///
///   value  points to an int: the HtmlStyle bit that the control changes. Other
///          values have no effect
void SyntaxStyle_cb(Fl_Widget* widget, void* value);

/// "Browse...": asks for a directory and makes it html_dir.
///
///   input  the Fl_Input that then shows html_dir, even if the user cancelled
void SelectOutput_cb(Fl_Button* button, void* input);

/// "Generate HTML": writes the pages of the selected files into the directory
/// named in the window. Shows an alert instead if that is no directory. Does
/// nothing if no file is selected or a run is already in progress.
void GenerateHTML_cb(Fl_Button* button, ZelkorUserInterface* ui);
