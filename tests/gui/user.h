// What a user does and sees: mouse, keys and message boxes.

#pragma once

#include <FL/Fl_Browser.H>
#include <FL/Fl_Help_View.H>
#include <FL/Fl_Window.H>

#include <functional>
#include <optional>
#include <set>
#include <string>
#include <vector>

// Mouse events at the middle of a list's line, which must be in view. The
// toolkit handles them before the return, like events of the X server;
// `modifiers` are FL_CTRL or FL_SHIFT.
void push(Fl_Browser& list, int line, int modifiers = 0);
void drag_to(Fl_Browser& list, int line, int modifiers = 0);
void release(Fl_Browser& list, int line, int modifiers = 0);

/// Push and release.
void click(Fl_Browser& list, int line, int modifiers = 0);

/// A push, a release or both, at the middle of a widget.
void push(Fl_Widget& widget);
void release(Fl_Widget& widget);
void click(Fl_Widget& widget);

/// A push near a list's lower edge, below its lines.
void push_below(Fl_Browser& list);

/// A key, such as ' ' or FL_Down, for the widget that has the focus.
void press_key(Fl_Window& window, int key, int modifiers = 0);

/// Runs the event loop until a condition is true. Returns whether it became
/// true within ten seconds.
bool comes_true(const std::function<bool()>& condition);

/// The height of a line on screen, and where it begins in the window.
int height_of(const Fl_Browser& list, int line);
int top_of(const Fl_Browser& list, int line);

/// The height of all lines as the list computes it.
int total_height_of(const Fl_Browser& list);

/// Calls an action with the modal window, if there is one, each time the
/// toolkit waits for events. The action runs during the handling of events,
/// like the actions of a user, and never in a timeout.
class ModalWatcher {
 public:
  using Action = std::function<void(Fl_Window&)>;
  explicit ModalWatcher(Action action);
  ~ModalWatcher();
  ModalWatcher(const ModalWatcher&) = delete;
  ModalWatcher& operator=(const ModalWatcher&) = delete;

 private:
  static void look(int pipe, void* watcher);

  Action action;
  int pipe_ends[2];
};

/// What a box that pops up shows.
struct Question {
  std::string icon;
  std::string text;
  std::set<std::string> buttons;
};
Question question_in(Fl_Window& window);

/// Releases the mouse and clicks the one button of every message box that
/// appears during its lifetime. Records what each box shows: the icon, which is
/// "!" for an alert and "i" for a message, a blank, and the text.
class MessageBoxes {
 public:
  /// A box stays open until `ready` is true.
  explicit MessageBoxes(std::function<bool()> ready = [] { return true; });

  const std::vector<std::string>& seen() const { return boxes; }

 private:
  void answer(Fl_Window& window);

  std::function<bool()> ready;
  std::vector<std::string> boxes;
  ModalWatcher watcher;
};

/// A visible button of a window, or of the groups in it, by its label; null
/// when there is none.
Fl_Widget* button_of(Fl_Group& group, const std::string& label);

/// The content of the help viewer; null when it is not shown.
Fl_Help_View* help_view();

/// Whether a window is shown and completely drawn.
bool is_drawn(Fl_Window& window);

/// Closes a window as a window manager does: by its message to the window.
void close_by_window_manager(Fl_Window& window);

/// Calls an action each time the toolkit waits while a modal window is drawn.
/// It creates no events before a modal window opens, so code that waits until
/// no events are left can finish.
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
