// The About box: a logo above a text.

#pragma once

class Fl_Window;

/// The number of line breaks that a text needs at a width in pixels, in the
/// current font of the toolkit. A word that does not fit starts a new line; a
/// word wider than the width gets its own line. The last line does not count
/// unless it ends in a newline.
int est_num_lines(const char* text, int width);

/// Shows the About box centred over a window and waits for its answer.
///
///   xpm    the logo, as the rows of an XPM image
///   title  of the box, also shown above the text
///   text   word-wrapped at about 400 pixels
///
/// Returns whether the user pressed "okay".
bool fl_about(char** xpm, const char* title, const char* text,
              Fl_Window* parent);
