#include "tests/gui/modal.h"

#include <FL/Fl.H>
#include <FL/x.H>

#include <utility>

// A window that is shown is damaged until the X server has asked for its
// drawing and got it.
bool is_drawn(Fl_Window& window) {
  return window.shown() != 0 && window.damage() == 0;
}

void close_by_window_manager(Fl_Window& window) {
  XEvent event{};
  event.xclient.type = ClientMessage;
  event.xclient.window = fl_xid(&window);
  event.xclient.message_type = XInternAtom(fl_display, "WM_PROTOCOLS", False);
  event.xclient.format = 32;
  event.xclient.data.l[0] =
      static_cast<long>(XInternAtom(fl_display, "WM_DELETE_WINDOW", False));
  XSendEvent(fl_display, fl_xid(&window), False, NoEventMask, &event);
  XSync(fl_display, False);
}

WhenModal::WhenModal(ModalWatcher::Action what) : action(std::move(what)) {
  Fl::add_check(look, this);
}

WhenModal::~WhenModal() { Fl::remove_check(look, this); }

void WhenModal::look(void* self) {
  auto& that = *static_cast<WhenModal*>(self);
  if (Fl::modal() == nullptr)
    that.watcher.reset();
  else if (!that.watcher)
    that.watcher.emplace([&that](Fl_Window& window) {
      if (is_drawn(window)) that.action(window);
    });
}
