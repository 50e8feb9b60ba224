// Pictures of drawing calls and windows.

#pragma once

#include <FL/Enumerations.H>
#include <FL/Fl_Window.H>

#include <functional>

#include "tests/support/same_picture.h"

/// What drawing calls draw on a background of one colour. A window must have
/// been shown before.
Pixels drawn(int w, int h, Fl_Color background,
             const std::function<void()>& calls);

/// The content of a rectangle of a window that is drawn.
Pixels shown(const Fl_Window& window, int x, int y, int w, int h);

/// The same of a window of another program, by its number on the display.
Pixels shown(unsigned long window, int x, int y, int w, int h);
