// Modal windows of our own in tests.

#ifndef ZELKOR_TESTS_GUI_MODAL_H
#define ZELKOR_TESTS_GUI_MODAL_H

#include <FL/Fl_Window.H>

#include <functional>
#include <optional>

#include "tests/gui/user.h"

/// Whether a window is on screen with all that it shows.
bool is_drawn(Fl_Window& window);

/// Closes a window as a window manager does: by its message to the window.
void close_by_window_manager(Fl_Window& window);

/// Calls an action each time the toolkit waits while a modal window is drawn.
/// Until there is one it makes no events, so that code that waits for the
/// events to settle can do so.
class WhenModal {
 public:
  explicit WhenModal(ModalWatcher::Action action);
  ~WhenModal();
  WhenModal(const WhenModal&) = delete;
  WhenModal& operator=(const WhenModal&) = delete;

 private:
  static void look(void* self);

  ModalWatcher::Action action;
  std::optional<ModalWatcher> watcher;
};

#endif
