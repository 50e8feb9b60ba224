#include "tests/gui/main_window_fixture.h"

#include <FL/Fl.H>
#include <FL/Fl_Multi_Browser.H>

#include "gui/progress.h"
#include "gui/special_browser.h"

void MainWindowTest::SetUp() { Fl::e_number = FL_NO_EVENT; }

void MainWindowTest::TearDown() {
  Fl::check();
  window.reset();
  Fl::check();
  progress_target = nullptr;
  gui_instance = nullptr;
}

void MainWindowTest::build() { window.reset(ui.make_window("Zelkor  test")); }

void MainWindowTest::show() {
  build();
  show_and_wait(*window);
}

Texts MainWindowTest::potential() const {
  return lines_of(*ui.potential_files);
}

Texts MainWindowTest::selected() const { return lines_of(*ui.selected_files); }

void show_and_wait(Fl_Window& window) {
  window.show();
  while (window.damage() != 0) Fl::wait(0.02);
}

Texts lines_of(const Fl_Browser& list) {
  Texts texts;
  for (int line = 1; list.text(line) != nullptr; ++line)
    texts.emplace_back(list.text(line));
  return texts;
}

Lines selected_lines(const Fl_Browser& list) {
  Lines lines;
  for (int line = 1; line <= list.size(); ++line)
    if (list.selected(line)) lines.push_back(line);
  return lines;
}

int line_of(const Fl_Browser& list, const std::string& text) {
  for (int line = 1; line <= list.size(); ++line)
    if (list.text(line) == text) return line;
  ADD_FAILURE() << "no line " << text;
  return 0;
}

void select_texts(Fl_Browser& list, const Texts& texts) {
  for (const std::string& text : texts) list.select(line_of(list, text));
}

Texts items_of(const Fl_Menu_& menu) {
  Texts texts;
  for (int item = 0; item + 1 < menu.size(); ++item)
    texts.emplace_back(menu.text(item));
  return texts;
}
