#include "tests/gui/main_window_fixture.h"

#include <FL/Fl.H>
#include <FL/Fl_Button.H>
#include <FL/Fl_Menu_Button.H>
#include <FL/Fl_Multi_Browser.H>

#include <algorithm>
#include <utility>

#include "gui/file_panes.h"
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

std::string MainWindowTest::expanded(std::string text) const {
  for (const auto& [sign, value] : {std::pair('~', folder.path()),
                                    std::pair('^', folder.path().filename())})
    if (const std::size_t place = text.find(sign); place != std::string::npos)
      text.replace(place, 1, value);
  return text;
}

void MainWindowTest::go_to(const std::string& directory) {
  change_dir_to(&ui, expanded(directory).c_str());
}

void MainWindowTest::pick(const std::string& name) {
  const Texts items = items_of(*ui.dir_menu_button);
  const auto item = std::find(items.begin(), items.end(), name);
  ASSERT_NE(items.end(), item) << "no item " << name;
  ui.dir_menu_button->picked(&ui.dir_menu_button->menu()[item - items.begin()]);
}

void MainWindowTest::add(const Texts& texts) {
  select_texts(*ui.potential_files, texts);
  ui.add_button->do_callback();
}

void MainWindowTest::remove(const Texts& texts) {
  select_texts(*ui.selected_files, texts);
  ui.remove_button->do_callback();
}

Texts MainWindowTest::potential() const {
  return lines_of(*ui.potential_files);
}

Texts MainWindowTest::selected() const { return lines_of(*ui.selected_files); }

void show_and_wait(Fl_Window& window) {
  window.show();
  while (window.damage() != 0) Fl::wait(0.02);
}

std::vector<Fl_Widget*> widgets_in(Fl_Group& group) {
  std::vector<Fl_Widget*> widgets;
  for (int i = 0; i < group.children(); ++i) {
    Fl_Widget* const widget = group.child(i);
    if (!widget->visible()) continue;
    widgets.push_back(widget);
    auto* const inner = dynamic_cast<Fl_Group*>(widget);
    if (inner == nullptr || dynamic_cast<Fl_Browser*>(widget) != nullptr)
      continue;
    for (Fl_Widget* below : widgets_in(*inner)) widgets.push_back(below);
  }
  return widgets;
}

Texts lines_of(const Fl_Browser& list) { return texts_of(&list); }

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
