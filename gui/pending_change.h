// In some events the toolkit reads the lines of a list after the list's
// callback. A change that replaces the lines, and so frees them, must wait.

#pragma once

#include <functional>

/// A change that replaces a list's lines. At most one is pending.
class PendingChange {
 public:
  /// Makes a change: now if the current event allows it, else as soon as the
  /// event is over. Drops a change that is pending already.
  void make(std::function<void()> change);

  /// Makes the pending change now, if there is one.
  void finish();

  /// Drops the pending change, if there is one.
  void drop();

  /// Shows a message box within the list's callback. Changes wait until the
  /// user answers it; then the toolkit goes on with the event of the callback.
  void hold_during(const std::function<void()>& message_box);

  /// Whether a message box of hold_during() is shown. Events may reach the
  /// window while the box closes; their callbacks must not replace the lines.
  bool held() const { return is_held; }

 private:
  static void make_waiting(void* self);

  std::function<void()> waiting;
  bool is_held = false;
};
