#include "gui/dialog.h"

#include <FL/Fl.H>
#include <FL/Fl_Box.H>
#include <FL/Fl_Button.H>
#include <FL/Fl_Pack.H>

// clang-format off
Fl_Dialog::Fl_Dialog(int x, int y, int w, int h, const char* label)
    : Fl_Window(w, h, label), window(this) {
  resize(x - w / 2, y - h / 2, w, h);
  { area = new Fl_Window(0, 0, w, h - 60);
    area->end();
  } // Fl_Window* area
  { Fl_Box* o = new Fl_Box(10, h - 50, w - 20, 4, "");
    o->box(FL_UP_FRAME);
  } // Fl_Box* o
  { row = new Fl_Pack(15, h - 40, w - 30, 25);
    row->type(Fl_Pack::HORIZONTAL);
    { cancel_button = new Fl_Button(15, h - 35, 60, 25, "cancel");
    } // Fl_Button* cancel_button
    { Fl_Box* o = new Fl_Box(75, h - 35, 10, 25);
      row->resizable(o);
    } // Fl_Box* o
    { okay_button = new Fl_Button(w - 75, h - 35, 60, 25, "okay");
      // Return and the keypad's Enter both produce this character.
      okay_button->shortcut('\r');
    } // Fl_Button* okay_button
    // Deliberate: this takes the place of the spacer set above.
    row->resizable(row);
    row->end();
  } // Fl_Pack* row
  resizable(area);
  end();
  set_modal();
}
// clang-format on

// The buttons keep the toolkit's default callback, which puts a widget on the
// read queue; closing a window does the same.
int Fl_Dialog::run() {
  window->show();
  for (;;) {
    const Fl_Widget* answer = Fl::readqueue();
    if (answer == nullptr) {
      Fl::wait();
    } else if (answer == okay_button) {
      window->hide();
      return 1;
    } else if (answer == window || answer == cancel_button) {
      window->hide();
      return 0;
    }
  }
}
