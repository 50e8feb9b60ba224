// A modal dialog with room for the caller's widgets above a "cancel" and an
// "okay" button.

#pragma once

#include <FL/Fl_Window.H>

class Fl_Button;
class Fl_Pack;

/// The dialog's window. Its children belong to it.
class Fl_Dialog : public Fl_Window {
 public:
  /// Builds a dialog of w x h pixels centred on the point x, y of the screen.
  /// The label is not copied and must outlive the dialog.
  Fl_Dialog(int x, int y, int w, int h, const char* label);

  /// The upper part, w x (h - 60) pixels, which receives the caller's widgets.
  Fl_Window* work_area() const { return area; }
  /// The row of the buttons. Part of the interface; not used here.
  Fl_Pack* button_row() const { return row; }

  /// Shows the dialog and waits for an answer, then hides it. Returns 1 for
  /// "okay", 0 for "cancel" or a closed window. The toolkit's read queue is
  /// emptied meanwhile.
  int run();

 private:
  Fl_Window* window;
  Fl_Window* area;
  Fl_Pack* row;
  Fl_Button* okay_button;
  Fl_Button* cancel_button;
};
