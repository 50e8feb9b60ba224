// The window of a program under test, seen and used from outside.

#pragma once

#include <string>

#include "tests/support/program.h"

struct _XDisplay;  // NOLINT(bugprone-reserved-identifier): Xlib's name

/// The first window with a name that appears on the display in DISPLAY. xdotool
/// moves the mouse and presses keys.
class ProgramWindow {
 public:
  /// Connects to the display. Ignores the windows that are there.
  ProgramWindow();
  ~ProgramWindow();
  ProgramWindow(const ProgramWindow&) = delete;
  ProgramWindow& operator=(const ProgramWindow&) = delete;

  /// Ignores the windows that have appeared so far, such as that of a program
  /// that has ended. Call it before another program starts.
  void pass_over_present();

  /// Waits until the window of a program is drawn; mouse and key events before
  /// that may get lost. Returns false if the program ends first.
  bool wait_for(Program& program);

  /// Its title, after wait_for().
  const std::string& title() const { return text; }

  /// Its number on the display, after wait_for().
  unsigned long id() const { return window; }

  /// Whether it shows anything but one colour.
  bool is_drawn() const;

  void click(int x, int y);
  void press_key(const std::string& name);

  /// Types a text into the field of the output directory.
  void name_output_directory(const std::string& name);

  /// Clicks Generate HTML.
  void press_generate();

  /// Presses a key while the mouse is over no widget.
  void press_key_over_window(const std::string& name);

  /// Asks it to close, as a window manager does.
  void close();

  /// Closes the connection to the display. Nothing else may be called then.
  void disconnect();

 private:
  bool find();

  _XDisplay* connection;
  unsigned long window = 0;
  std::string text;
};

/// A window manager that shows no window, so the X server requests no drawing.
class WindowsKeptOffTheScreen {
 public:
  WindowsKeptOffTheScreen();
  ~WindowsKeptOffTheScreen();
  WindowsKeptOffTheScreen(const WindowsKeptOffTheScreen&) = delete;
  WindowsKeptOffTheScreen& operator=(const WindowsKeptOffTheScreen&) = delete;

  /// Waits for the next request to show a window, and asks it to close.
  void close_next() const;

 private:
  _XDisplay* connection;
};
