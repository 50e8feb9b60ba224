// The window of a program under test, seen and used from outside.

#pragma once

#include <string>
#include <vector>

#include "tests/support/program.h"

struct _XDisplay;  // NOLINT(bugprone-reserved-identifier): Xlib's name

/// The first window with a name that comes on the display that DISPLAY names.
/// Mouse and keys are those of xdotool.
class ProgramWindow {
 public:
  /// Connects to the display. Passes over the windows that are there.
  ProgramWindow();
  ~ProgramWindow();
  ProgramWindow(const ProgramWindow&) = delete;
  ProgramWindow& operator=(const ProgramWindow&) = delete;

  /// Passes over the windows that have come meanwhile: that of a program that
  /// has ended may still be there. To be called before a further program
  /// starts.
  void pass_over_present();

  /// Waits until the window of a program is drawn; what the mouse and the keys
  /// do before that may get lost. Returns whether it came to that before the
  /// program ended.
  bool wait_for(Program& program);

  /// Its title, once it has been waited for.
  const std::string& title() const { return text; }

  /// Its number on the display, likewise.
  unsigned long id() const { return window; }

  /// Whether it shows anything but one colour.
  bool is_drawn() const;

  void click(int x, int y);
  void press_key(const std::string& name);

  /// Types a text into the field of the output directory.
  void name_output_directory(const std::string& name);

  /// Clicks at Generate HTML.
  void press_generate();

  /// Presses a key with the mouse where no widget is.
  void press_key_over_window(const std::string& name);

  /// Asks it to close, as a window manager does.
  void close();

  /// Leaves the display, which may go away then; nothing else can be done
  /// afterwards.
  void disconnect();

 private:
  bool find();

  _XDisplay* connection;
  unsigned long window = 0;
  std::string text;
};

/// A window manager that puts no window on the screen, so that the X server
/// asks for no drawing.
class WindowsKeptOffTheScreen {
 public:
  WindowsKeptOffTheScreen();
  ~WindowsKeptOffTheScreen();
  WindowsKeptOffTheScreen(const WindowsKeptOffTheScreen&) = delete;
  WindowsKeptOffTheScreen& operator=(const WindowsKeptOffTheScreen&) = delete;

  /// Waits for the next window that wants to be shown, and asks it to close.
  void close_next() const;

 private:
  _XDisplay* connection;
};
