#include "gui/file_panes.h"

#include <FL/Fl.H>
#include <FL/Fl_Button.H>
#include <FL/Fl_Menu_Button.H>
#include <FL/Fl_Multi_Browser.H>
#include <FL/filename.H>
#include <FL/fl_ask.H>

#include <unistd.h>

#include <cstring>
#include <set>

#include "driver/assertion.h"
#include "driver/directory_listing.h"
#include "driver/settings.h"
#include "gui/directory_menu.h"
#include "gui/labels.h"
#include "gui/pending_change.h"
#include "gui/special_browser.h"
#include "gui/user_interface.h"

// The change to the directory that was clicked in Potential Files.
static PendingChange pending_change;

static std::string without_trailing_slash(const char* path) {
  std::string text = path;
  if (!text.empty() && text.back() == '/') text.pop_back();
  return text;
}

static std::string with_trailing_slash(const char* path) {
  std::string text = path;
  if (text.empty() || text.back() != '/') text += '/';
  return text;
}

std::vector<std::string> texts_of(const Fl_Browser* list) {
  std::vector<std::string> texts;
  for (int line = 1; list->text(line) != nullptr; ++line)
    texts.emplace_back(list->text(line));
  return texts;
}

static std::set<std::string> included_paths() {
  const auto paths = texts_of(gui_instance->selected_files);
  return {paths.begin(), paths.end()};
}

bool already_included(const std::string& path) {
  return included_paths().count(path) != 0;
}

int select_count(Fl_Browser* list) {
  int count = 0;
  for (int line = 0; line < list->size(); ++line)
    if (list->selected(line)) ++count;
  return count;
}

bool fill_files(Fl_Multi_Browser* list, const char* dir) {
  const std::vector<std::string> names = list_directory(dir);
  if (names.empty()) return false;

  const std::string prefix = with_trailing_slash(dir);
  const std::set<std::string> included = included_paths();
  std::vector<std::string> files;
  list->clear();
  for (const std::string& name : names) {
    const std::string path = prefix + name;
    if (is_directory(path))
      list->add(("@b" + name).c_str());
    else if (included.count(path) == 0)
      files.push_back(name);
  }
  for (const std::string& name : files) list->add(name.c_str());
  list->redraw();
  return true;
}

void store_current_directory(ZelkorUserInterface* ui, const char* path) {
  const int longest = ZelkorUserInterface::directory_size - 1;
  if (std::strlen(path) > longest) {
    fl_alert(
        "current_directory buffer too short to contain path\n"
        " maximum length is %d",
        longest);
  }
  // The path may point into current_directory.
  const std::string text(path, strnlen(path, longest));
  std::memcpy(ui->current_directory, text.c_str(), text.size() + 1);
}

// A path in the toolkit's absolute form, cut to 255 characters. If the working
// directory has more characters, the path stays relative: FLTK 1.4 would make
// it absolute with a cut name of that directory. If the working directory has
// exactly 255, the toolkit writes beyond the size that it is given, so the
// buffer is larger.
static std::string absolute_form(const std::string& path) {
  const int size = 256;
  char absolute[2 * size];
  if (getcwd(absolute, size) == nullptr) return path.substr(0, size - 1);
  const bool brimful = std::strlen(absolute) == size - 1;
  fl_filename_absolute(absolute, brimful ? 2 * size : size, path.c_str());
  return {absolute, strnlen(absolute, size - 1)};
}

void change_dir_to(ZelkorUserInterface* ui, const char* dir) {
  const std::string absolute = absolute_form(without_trailing_slash(dir));
  if (!fill_files(ui->potential_files,
                  with_trailing_slash(absolute.c_str()).c_str()))
    return;
  store_current_directory(ui, absolute.c_str());
  dir_menu(ui->dir_menu_button, ui->current_directory);
}

// The name that a line of a list shows, without the format prefixes.
static const char* without_format(const Fl_Browser* list, const char* text) {
  while (*text == list->format_char() && text[1] != '\0') text += 2;
  return *text == list->format_char() ? text + 1 : text;
}

static void drop_from_selection(Fl_Multi_Browser* list, int line,
                                const char* name) {
  pending_change.hold_during([name] {
    fl_message(
        "Dropping the directory '%s' from your selection.\n"
        "Only select that one item if you want to switch to that directory.",
        label_text(name).c_str());
  });
  Fl_Callback* callback = list->callback();
  void* user_data = list->user_data();
  list->callback(static_cast<Fl_Callback*>(nullptr), nullptr);
  list->select(line, 0);
  list->callback(callback, user_data);
}

// The path of an entry of a directory.
static std::string joined(std::string directory, const std::string& name) {
  if (name == ".") return directory;
  if (name == "..") {
    const std::size_t last_slash = directory.rfind('/');
    return directory.erase(last_slash == std::string::npos ? 0 : last_slash);
  }
  return directory + "/" + name;
}

void change_dir_click_cb(Fl_Multi_Browser* list, void* ui) {
  const int line = list->value();
  const char* text = list->text(line);
  if (text == nullptr || *text != list->format_char()) return;
  const char* name = without_format(list, text);
  if (select_count(list) >= 2) {
    drop_from_selection(list, line, name);
    return;
  }

  auto* interface = static_cast<ZelkorUserInterface*>(ui);
  const std::string directory = joined(interface->current_directory, name);
  pending_change.make([=] {
    change_dir_to(interface, directory.c_str());
    // A mouse button may still be pressed. Without this, the slightest move of
    // the mouse would select a line of the new list.
    Fl::pushed(nullptr);
  });
}

void change_dir_menu_cb(Fl_Menu_* menu, void* ui) {
  const char* name = menu->text();
  if (name == nullptr || pending_change.held()) return;
  pending_change.drop();
  auto* interface = static_cast<ZelkorUserInterface*>(ui);
  const std::string directory = interface->current_directory;
  const std::size_t found = directory.rfind(name);
  if (found == std::string::npos) {
    assertion_failed("d!=__null", "zelkor_fltk",
                     "void change_dir_menu_cb(Fl_Menu_*, void*)");
  }
  change_dir_to(interface,
                directory.substr(0, found + std::strlen(name)).c_str());
}

// Lists the current directory again and keeps the scroll position.
static void refill_potential_files(ZelkorUserInterface* ui) {
  const int top = ui->potential_files->topline();
  fill_files(ui->potential_files, ui->current_directory);
  ui->potential_files->topline(top);
}

void add_files_cb(Fl_Button* /*button*/, ZelkorUserInterface* ui) {
  if (pending_change.held()) return;
  pending_change.finish();
  const std::string directory = without_trailing_slash(ui->current_directory);
  std::set<std::string> included = included_paths();
  int count = 0;
  for (int line = 1; line <= ui->potential_files->size(); ++line) {
    if (!ui->potential_files->selected(line)) continue;
    ++count;
    const std::string path = directory + "/" + ui->potential_files->text(line);
    if (included.insert(path).second) ui->selected_files->add(path.c_str());
  }
  if (count > 0) ui->generate_button->activate();
  refill_potential_files(ui);
}

void remove_files_cb(Fl_Button* /*button*/, ZelkorUserInterface* ui) {
  if (pending_change.held()) return;
  SpecialBrowser* list = ui->selected_files;
  std::vector<std::string> kept;
  for (int line = 1; line <= list->size(); ++line)
    if (!list->selected(line)) kept.emplace_back(list->text(line));

  // SpecialBrowser cannot remove single lines, so the others are added again.
  const int top = list->topline();
  list->clear();
  for (const std::string& path : kept) list->add(path.c_str());
  list->topline(top);
  if (kept.empty()) ui->generate_button->deactivate();
  refill_potential_files(ui);
}
