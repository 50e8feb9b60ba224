// What drawing calls and windows put on the screen.

#pragma once

#include <FL/Enumerations.H>
#include <FL/Fl_Window.H>

#include <functional>

#include "tests/support/same_picture.h"

/// What drawing calls leave in a picture that is filled with a colour before.
/// A window must have been shown.
Pixels drawn(int w, int h, Fl_Color background,
             const std::function<void()>& calls);

/// What a rectangle of a window that is drawn shows.
Pixels shown(const Fl_Window& window, int x, int y, int w, int h);

/// The same of a window of another program, by its number on the display.
Pixels shown(unsigned long window, int x, int y, int w, int h);
