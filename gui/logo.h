// The program's logo.

#ifndef ZELKOR_GUI_LOGO_H
#define ZELKOR_GUI_LOGO_H

/// The rows of the logo as an XPM image of 180 x 108 pixels. Static text, not
/// to be changed.
char** logo_xpm();

#endif
