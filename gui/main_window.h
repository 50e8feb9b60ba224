// The callbacks of the main window, which ZelkorUserInterface::make_window
// builds. Those of the file lists stand in gui/file_panes.h.

#pragma once

class Fl_Button;
class Fl_Widget;
class ZelkorUserInterface;

/// A highlighting control was used: changes html_style.
///
///   value  points to the int value of the HtmlStyle bit that the control
///          stands for; any other value does nothing
void SyntaxStyle_cb(Fl_Widget* widget, void* value);

/// "Browse...": asks for a directory and makes it html_dir.
///
///   input  the Fl_Input that shows html_dir afterwards, even when the user
///          cancelled
void SelectOutput_cb(Fl_Button* button, void* input);

/// "Generate HTML": writes the pages of the selected files into the directory
/// that the window names. Refused with an alert when that is no directory, and
/// silently when no file is selected or a run is going on already.
void GenerateHTML_cb(Fl_Button* button, ZelkorUserInterface* ui);
