// Where the versions of the toolkit differ for the tests.

#ifndef ZELKOR_TESTS_SUPPORT_EXPOSE_H
#define ZELKOR_TESTS_SUPPORT_EXPOSE_H

#include <FL/Fl.H>
#include <FL/Fl_Window.H>
#include <FL/x.H>

/// Waits until the X server has put a shown window on the screen. FLTK 1.3 has
/// a call for that; 1.1 tells it in a record that 1.3 keeps to itself.
inline void wait_for_expose(Fl_Window& window) {
#if FL_MAJOR_VERSION == 1 && FL_MINOR_VERSION < 3
  while (Fl_X::i(&window)->wait_for_expose != 0) Fl::wait();
#else
  window.wait_for_expose();
#endif
}

#endif
