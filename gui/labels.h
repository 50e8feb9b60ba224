// Showing file names literally: in the toolkit's own labels "@" begins a
// symbol, and "&" underlines a letter.

#pragma once

#include <FL/Enumerations.H>

#include <string>

/// Escapes a text for a label or a message box of the toolkit: every "@" is
/// doubled.
std::string label_text(const std::string& text);

/// The label type that shows a text literally, for widgets and menu items.
Fl_Labeltype literal_label();

/// The label type of the status line: the literal text in one line, clipped to
/// its box. If the font is taller than the space inside the border, the text is
/// drawn one pixel higher than by the toolkit. Without that, a 14-point font
/// would lose its underscores in a box of 20 pixels.
Fl_Labeltype status_label();
