#include "tests/gui/user.h"

#include <FL/Fl.H>
#include <FL/Fl_Button.H>

#include <unistd.h>

#include <stdexcept>
#include <utility>

#include "tests/gui/main_window_fixture.h"

// Xlib's macros would spoil the headers above if it came first.
#include <FL/x.H>

namespace {

// Reaches the protected operations of any list by pointers to members.
struct Inside : Fl_Browser {
  static int height(const Fl_Browser& list, int line) {
    if (line < 1 || line > list.size()) throw std::out_of_range("no such line");
    return (list.*(&Inside::item_height))((list.*(&Inside::find_line))(line));
  }
  static int total_height(const Fl_Browser& list) {
    return (list.*(&Inside::full_height))();
  }
  static int top_edge(const Fl_Browser& list) {
    int x = 0, y = 0, w = 0, h = 0;
    (list.*(&Inside::bbox))(x, y, w, h);
    return y;
  }
};

// How far a list is scrolled. FLTK 1.4 calls this vposition() and deprecates
// position(), which is used only where the other is missing.
template <typename List>
auto scrolled_by(const List& list, int) -> decltype(list.vposition()) {
  return list.vposition();
}
template <typename List>
int scrolled_by(const List& list, long) {
  return list.position();
}

void send(int event, Fl_Window& window, int x, int y, int state) {
  Fl::e_x = x;
  Fl::e_y = y;
  Fl::e_x_root = window.x() + x;
  Fl::e_y_root = window.y() + y;
  Fl::e_keysym = FL_Button + FL_LEFT_MOUSE;
  Fl::e_state = state;
  Fl::e_clicks = 0;
  Fl::e_is_click = event == FL_PUSH;
  Fl::handle(event, &window);
}

void send(int event, Fl_Browser& list, int line, int state) {
  send(event, *list.window(), list.x() + list.w() / 2,
       top_of(list, line) + height_of(list, line) / 2, state);
}

}  // namespace

int height_of(const Fl_Browser& list, int line) {
  return Inside::height(list, line);
}

int top_of(const Fl_Browser& list, int line) {
  int y = Inside::top_edge(list) - scrolled_by(list, 0);
  for (int above = 1; above < line; ++above) y += height_of(list, above);
  return y;
}

int total_height_of(const Fl_Browser& list) {
  return Inside::total_height(list);
}

void push(Fl_Browser& list, int line, int modifiers) {
  send(FL_PUSH, list, line, modifiers | FL_BUTTON1);
}

void drag_to(Fl_Browser& list, int line, int modifiers) {
  send(FL_MOVE, list, line, modifiers | FL_BUTTON1);
}

void release(Fl_Browser& list, int line, int modifiers) {
  send(FL_RELEASE, list, line, modifiers);
}

void click(Fl_Browser& list, int line, int modifiers) {
  push(list, line, modifiers);
  send(FL_RELEASE, *list.window(), Fl::e_x, Fl::e_y, modifiers);
}

// The X server hands events to the outermost window.
static void send(int event, Fl_Widget& widget, int state) {
  int x = widget.x() + widget.w() / 2;
  int y = widget.y() + widget.h() / 2;
  Fl_Window* window = widget.window();
  for (; window->window() != nullptr; window = window->window()) {
    x += window->x();
    y += window->y();
  }
  send(event, *window, x, y, state);
}

void push(Fl_Widget& widget) { send(FL_PUSH, widget, FL_BUTTON1); }

void release(Fl_Widget& widget) { send(FL_RELEASE, widget, 0); }

void click(Fl_Widget& widget) {
  push(widget);
  release(widget);
}

void push_below(Fl_Browser& list) {
  send(FL_PUSH, *list.window(), list.x() + list.w() / 2,
       list.y() + list.h() - 10, FL_BUTTON1);
}

void press_key(Fl_Window& window, int key, int modifiers) {
  static char text[2] = "";
  text[0] = key < 0x80 ? static_cast<char>(key) : '\0';
  if (key == FL_Enter || key == FL_KP_Enter) text[0] = '\r';
  Fl::e_text = text;
  Fl::e_length = text[0] == '\0' ? 0 : 1;
  Fl::e_keysym = key;
  Fl::e_state = modifiers;
  Fl::handle(FL_KEYBOARD, &window);
}

bool comes_true(const std::function<bool()>& condition) {
  bool late = false;
  const auto give_up = [](void* flag) { *static_cast<bool*>(flag) = true; };
  Fl::add_timeout(10.0, give_up, &late);
  while (!late && !condition()) Fl::wait(0.01);
  Fl::remove_timeout(give_up, &late);
  return condition();
}

// A pipe that always has something to read calls back from within every wait.
ModalWatcher::ModalWatcher(Action what) : action(std::move(what)) {
  if (pipe(pipe_ends) != 0 || write(pipe_ends[1], "x", 1) != 1)
    throw std::runtime_error("no pipe");
  Fl::add_fd(pipe_ends[0], look, this);
}

ModalWatcher::~ModalWatcher() {
  Fl::remove_fd(pipe_ends[0]);
  close(pipe_ends[0]);
  close(pipe_ends[1]);
}

void ModalWatcher::look(int /*pipe*/, void* watcher) {
  if (Fl::modal() != nullptr)
    static_cast<ModalWatcher*>(watcher)->action(*Fl::modal());
}

MessageBoxes::MessageBoxes(std::function<bool()> until)
    : ready(std::move(until)),
      watcher([this](Fl_Window& window) { answer(window); }) {}

// The icon is a label in a frame, the text is one without.
Question question_in(Fl_Window& window) {
  Question question;
  for (const Fl_Widget* widget : widgets_in(window)) {
    if (widget->label() == nullptr) continue;
    if (dynamic_cast<const Fl_Button*>(widget) != nullptr)
      question.buttons.insert(widget->label());
    else
      (widget->box() == FL_NO_BOX ? question.text : question.icon) =
          widget->label();
  }
  return question;
}

void MessageBoxes::answer(Fl_Window& window) {
  if (!ready()) return;
  const Question box = question_in(window);
  boxes.push_back(box.icon + " " + box.text);
  if (box.buttons.size() != 1) throw std::logic_error("not a message box");
  if (Fl::pushed() != nullptr)
    send(FL_RELEASE, *Fl::pushed()->window(), Fl::e_x, Fl::e_y, 0);
  click(*button_of(window, *box.buttons.begin()));
}

Fl_Widget* button_of(Fl_Group& group, const std::string& label) {
  for (Fl_Widget* widget : widgets_in(group))
    if (dynamic_cast<Fl_Button*>(widget) != nullptr &&
        widget->label() != nullptr && widget->label() == label)
      return widget;
  return nullptr;
}

Fl_Help_View* help_view() {
  for (Fl_Window* w = Fl::first_window(); w != nullptr; w = Fl::next_window(w))
    if (auto* view = first_in<Fl_Help_View>(*w)) return view;
  return nullptr;
}

// A window that is shown is damaged until the X server has requested its
// drawing and the toolkit has done it.
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
