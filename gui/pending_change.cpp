#include "gui/pending_change.h"

#include <FL/Fl.H>

#include <utility>

// After the callback of a drag, a key press or a click with Shift the toolkit
// reads the lines again.
static bool event_needs_lines() {
  const int event = Fl::event();
  return event == FL_DRAG || event == FL_KEYBOARD || event == FL_SHORTCUT ||
         (event == FL_PUSH && Fl::event_state(FL_SHIFT) != 0);
}

void PendingChange::make(std::function<void()> change) {
  drop();
  waiting = std::move(change);
  if (is_held || event_needs_lines())
    Fl::add_timeout(0.0, make_waiting, this);
  else
    finish();
}

// The change waits longer while the callback of the event waits in a message
// box, and while a menu is open, whose items the change would free.
void PendingChange::make_waiting(void* self) {
  auto* pending = static_cast<PendingChange*>(self);
  if (pending->is_held || Fl::modal() != nullptr)
    Fl::repeat_timeout(0.05, make_waiting, self);
  else
    pending->finish();
}

// A timeout that is left over finds no change, and does nothing.
void PendingChange::finish() {
  const std::function<void()> change = std::exchange(waiting, nullptr);
  if (change) change();
}

void PendingChange::drop() {
  Fl::remove_timeout(make_waiting, this);
  waiting = nullptr;
}

void PendingChange::hold_during(const std::function<void()>& message_box) {
  const int event = Fl::e_number;
  const int state = Fl::e_state;
  const bool was_held = is_held;
  is_held = true;
  message_box();
  is_held = was_held;
  Fl::e_number = event;
  Fl::e_state = state;
}
