// Our own ways of drawing a label, for texts that the toolkit's would not show
// as they are. They draw names of files: "@" begins no symbol, "&" underlines
// no letter.

#ifndef ZELKOR_GUI_LABEL_TYPES_H
#define ZELKOR_GUI_LABEL_TYPES_H

#include <FL/Enumerations.H>

/// The text alone. For widgets and menu items.
Fl_Labeltype literal_label();

/// The text alone in one line, clipped to its box. Where the font is higher
/// than the box, the text is drawn one pixel higher than the toolkit would: a
/// 20-pixel box with a border would cut off the underscores of a 14-point font.
Fl_Labeltype status_label();

#endif
