// A new main window for each test, in a scratch working directory.

#pragma once

#include <FL/Fl_Browser.H>
#include <FL/Fl_Group.H>
#include <FL/Fl_Menu_.H>
#include <FL/Fl_Widget.H>
#include <FL/Fl_Window.H>
#include <gtest/gtest.h>

#include <memory>
#include <ostream>
#include <string>
#include <vector>

#include "gui/user_interface.h"
#include "tests/support/settings_guard.h"
#include "tests/support/temporary_folder.h"

using Texts = std::vector<std::string>;
using Lines = std::vector<int>;

class MainWindowTest : public testing::Test {
 protected:
  void SetUp() override;
  /// Lets the toolkit finish its pending work, then destroys the window.
  void TearDown() override;

  /// Builds the window; it lists the working directory.
  void build();
  /// Lists another directory.
  void go_to(const std::string& directory);
  /// Chooses an item of the directory menu.
  void pick(const std::string& name);
  /// Moves lines by the buttons "<<<" and ">>>".
  void add(const Texts& texts);
  void remove(const Texts& texts);
  /// Builds it and waits until it is drawn on screen.
  void show();

  /// A path below the scratch folder.
  std::string path_of(const std::string& name) const {
    return folder.path().string() + "/" + name;
  }
  /// A text with "~" replaced by that folder and "^" by its name.
  std::string expanded(std::string text) const;
  std::string directory() const { return ui.current_directory; }
  Texts potential() const;
  Texts selected() const;

  TemporaryFolder folder;
  SettingsGuard settings;
  ZelkorUserInterface ui;
  std::unique_ptr<Fl_Window> window;
};

/// Shows a window and waits until it is drawn.
void show_and_wait(Fl_Window& window);

/// The visible widgets in a group and in the groups below it, in the order in
/// which they were made. The parts of a list are the toolkit's.
std::vector<Fl_Widget*> widgets_in(Fl_Group& group);

/// The first of them that is of a class; null when there is none.
template <class Widget>
Widget* first_in(Fl_Group& group) {
  for (Fl_Widget* widget : widgets_in(group))
    if (auto* found = dynamic_cast<Widget*>(widget)) return found;
  return nullptr;
}

/// The texts of all lines of a list.
Texts lines_of(const Fl_Browser& list);

/// The numbers of its selected lines.
Lines selected_lines(const Fl_Browser& list);

/// The number of the line with a text; fails the test when there is none.
int line_of(const Fl_Browser& list, const std::string& text);

/// Selects lines by their texts. The last one becomes the current line.
void select_texts(Fl_Browser& list, const Texts& texts);

/// The texts of a menu's items.
Texts items_of(const Fl_Menu_& menu);

/// Where a widget is.
struct Place {
  int x, y, w, h;
};

inline bool operator==(const Place& a, const Place& b) {
  return a.x == b.x && a.y == b.y && a.w == b.w && a.h == b.h;
}

inline std::ostream& operator<<(std::ostream& s, const Place& p) {
  return s << p.x << ", " << p.y << ", " << p.w << ", " << p.h;
}

inline Place place_of(const Fl_Widget& o) {
  return {o.x(), o.y(), o.w(), o.h()};
}
