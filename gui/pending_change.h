// The toolkit goes on to read the lines of a list after the list's callback, in
// some events. What would replace the lines, and so free them, has to wait.

#pragma once

#include <functional>

/// A change that replaces a list's lines. At most one waits.
class PendingChange {
 public:
  /// Makes a change: now if the event at hand allows it, else as soon as the
  /// event is over. A change that waits is dropped for it.
  void make(std::function<void()> change);

  /// Makes the change that waits, if there is one, now.
  void finish();

  /// Forgets the change that waits, if there is one.
  void drop();

  /// Shows a message box within the list's callback. Changes wait until it is
  /// answered; then the toolkit goes on with the event of the callback.
  void hold_during(const std::function<void()>& message_box);

  /// Whether a message box of hold_during() is shown. Events may reach the
  /// window as the box closes; their callbacks must not replace the lines.
  bool held() const { return is_held; }

 private:
  static void make_waiting(void* self);

  std::function<void()> waiting;
  bool is_held = false;
};
