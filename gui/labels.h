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

/// The status line's: the text alone in one line, clipped to its box. Where the
/// font is higher than the box, the text is drawn one pixel higher than the
/// toolkit would: a 20-pixel box with a border would cut off the underscores of
/// a 14-point font.
Fl_Labeltype status_label();
