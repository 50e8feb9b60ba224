// How names of files are shown as they are: in the toolkit's own labels "@"
// begins a symbol, and "&" underlines a letter.

#pragma once

#include <FL/Enumerations.H>

#include <string>

/// A text in the form in which a label or a message box of the toolkit shows it
/// as it is: every "@" is doubled.
std::string label_text(const std::string& text);

/// Our own way of drawing a label: the text alone. For widgets and menu items.
Fl_Labeltype literal_label();

/// The status line's: the text alone in one line, clipped to its box. If the
/// font is taller than the space inside the border, the text is drawn one pixel
/// further up than the toolkit would draw it. Otherwise a 14-point font would
/// lose its underscores in a box of 20 pixels.
Fl_Labeltype status_label();
