#include "gui/progress.h"

#include <FL/Fl.H>
#include <FL/Fl_Box.H>
#include <FL/Fl_Slider.H>

#include "gui/user_interface.h"

ZelkorUserInterface* progress_target = nullptr;

int progress(double fraction, const char* message, void* ui) {
  if (ui != nullptr) progress_target = static_cast<ZelkorUserInterface*>(ui);
  progress_target->progress_bar->value(fraction);
  progress_target->status_box->label(message);
  progress_target->status_box->redraw();
  return Fl::check();
}
