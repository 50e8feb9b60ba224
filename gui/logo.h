// The program's logo.

#pragma once

/// The rows of the logo as an XPM image of 180 x 108 pixels. Static text, not
/// to be changed.
char** logo_xpm();
