#include "gui/file_panes.h"

#include <FL/Fl.H>
#include <FL/Fl_Button.H>
#include <FL/Fl_Menu_Button.H>
#include <FL/Fl_Menu_Item.H>
#include <FL/Fl_Multi_Browser.H>
#include <FL/filename.H>
#include <FL/fl_ask.H>

#include <unistd.h>

#include <cstring>
#include <set>
#include <string>
#include <vector>

#include "driver/assertion.h"
#include "driver/directory_listing.h"
#include "driver/settings.h"
#include "gui/label_text.h"
#include "gui/label_types.h"
#include "gui/special_browser.h"
#include "gui/user_interface.h"

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

// As already_included() tells, for many paths.
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
  // The path may be a text that this very buffer holds.
  const std::string text(path, strnlen(path, longest));
  std::memcpy(ui->current_directory, text.c_str(), text.size() + 1);
}

// A path in the toolkit's absolute form, cut to 255 characters. Below a working
// directory of more characters the path stays as it is: FLTK 1.4 would make it
// absolute with a cut name of that directory. The toolkit writes beyond its
// buffer when the working directory fills that to the brim, so it has more room
// than it is to use.
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

// A name in the form that Fl_Menu_::add() turns back into that name: it drops
// backslashes and takes a leading "_" for a divider.
static std::string menu_text(const std::string& name) {
  std::string text;
  if (name[0] == '_') text += '\\';
  for (const char c : name) {
    if (c == '\\') text += '\\';
    text += c;
  }
  return text;
}

// Shows the names of a menu and of its items as they are. Each add() moves the
// items, so this comes after the last one.
static void draw_literally(Fl_Menu_* menu) {
  menu->labeltype(literal_label());
  auto* items = const_cast<Fl_Menu_Item*>(menu->menu());
  for (int i = 0; i + 1 < menu->size(); ++i)
    items[i].labeltype(literal_label());
  menu->redraw();
}

void dir_menu(Fl_Menu_* menu, const char* path) {
  const std::string names = without_trailing_slash(path);
  std::size_t end =
      names.size() < 2 ? std::string::npos : names.rfind('/', names.size() - 2);
  menu->label(end == std::string::npos ? path : path + end + 1);
  menu->clear();
  // The root is never an item, and a doubled "/" has no name between.
  while (end != std::string::npos && end != 0) {
    const std::size_t slash_before = names.rfind('/', end - 1);
    const std::size_t begin =
        slash_before == std::string::npos ? 0 : slash_before + 1;
    if (end > begin) {
      const std::string name = names.substr(begin, end - begin);
      menu->add(menu_text(name).c_str(), 0, nullptr);
    }
    end = slash_before;
  }
  draw_literally(menu);
}

// The name that a line of a list shows, without its format prefixes.
static const char* without_format(const Fl_Browser* list, const char* text) {
  while (*text == list->format_char() && text[1] != '\0') text += 2;
  return *text == list->format_char() ? text + 1 : text;
}

// Whether an event of the right list waits until a message box is answered. As
// the box closes, further events may reach the window before that one goes on,
// and none may refill the list: the toolkit still holds its lines.
static bool list_event_waits = false;

// The message box handles events of its own, but when it is gone the toolkit
// goes on with the event that it was called for.
static void drop_from_selection(Fl_Multi_Browser* list, int line,
                                const char* name) {
  const int event = Fl::e_number;
  const int state = Fl::e_state;
  const bool waited = list_event_waits;
  list_event_waits = true;
  fl_message(
      "Dropping the directory '%s' from your selection.\n"
      "Only select that one item if you want to switch to that directory.",
      label_text(name).c_str());
  list_event_waits = waited;
  Fl::e_number = event;
  Fl::e_state = state;
  Fl_Callback* callback = list->callback();
  void* user_data = list->user_data();
  list->callback(static_cast<Fl_Callback*>(nullptr), nullptr);
  list->select(line, 0);
  list->callback(callback, user_data);
}

// Where an entry of a directory leads.
static std::string joined(std::string directory, const std::string& name) {
  if (name == ".") return directory;
  if (name == "..") {
    const std::size_t last_slash = directory.rfind('/');
    return directory.erase(last_slash == std::string::npos ? 0 : last_slash);
  }
  return directory + "/" + name;
}

namespace {

// A directory to enter as soon as the toolkit is done with the event at hand.
struct DirectoryChange {
  ZelkorUserInterface* ui;
  std::string directory;
};

DirectoryChange pending_change;

}  // namespace

// Enters a directory and forgets that a button is down on its line: otherwise
// the slightest move of the mouse would select a line of the new list.
static void enter_directory(const DirectoryChange& change) {
  change_dir_to(change.ui, change.directory.c_str());
  Fl::pushed(nullptr);
}

static void make_pending_change(void* /*unused*/) {
  // The event is not over while its callback waits in a message box, and the
  // change would free the items of an open menu.
  if (Fl::modal() != nullptr || list_event_waits)
    Fl::repeat_timeout(0.05, make_pending_change);
  else
    enter_directory(pending_change);
}

// Makes a change that waits, before an event that came after it is dealt with.
static void finish_pending_change() {
  if (Fl::has_timeout(make_pending_change) == 0) return;
  Fl::remove_timeout(make_pending_change);
  enter_directory(pending_change);
}

// Within a range of lines, a drag or a key press the toolkit goes on to use the
// lines of the list after the callback, which must not free them then.
static bool toolkit_still_reads_lines() {
  if (list_event_waits) return true;
  switch (Fl::event()) {
    case FL_PUSH:
      return Fl::event_state(FL_SHIFT) != 0;
    case FL_DRAG:
    case FL_KEYBOARD:
    case FL_SHORTCUT:
      return true;
    default:
      return false;
  }
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
  const DirectoryChange change = {interface,
                                  joined(interface->current_directory, name)};
  Fl::remove_timeout(make_pending_change);
  if (toolkit_still_reads_lines()) {
    pending_change = change;
    Fl::add_timeout(0.0, make_pending_change);
  } else {
    enter_directory(change);
  }
}

void change_dir_menu_cb(Fl_Menu_* menu, void* ui) {
  const char* name = menu->text();
  if (name == nullptr || list_event_waits) return;
  Fl::remove_timeout(make_pending_change);
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

// Lists the current directory anew, at the place where it was scrolled to.
static void refill_potential_files(ZelkorUserInterface* ui) {
  const int top = ui->potential_files->topline();
  fill_files(ui->potential_files, ui->current_directory);
  ui->potential_files->topline(top);
}

void add_files_cb(Fl_Button* /*button*/, ZelkorUserInterface* ui) {
  if (list_event_waits) return;
  finish_pending_change();
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
  if (list_event_waits) return;
  SpecialBrowser* list = ui->selected_files;
  std::vector<std::string> kept;
  for (int line = 1; line <= list->size(); ++line)
    if (!list->selected(line)) kept.emplace_back(list->text(line));

  // See SpecialBrowser: lines are taken out by adding the others anew.
  const int top = list->topline();
  list->clear();
  for (const std::string& path : kept) list->add(path.c_str());
  list->topline(top);
  if (kept.empty()) ui->generate_button->deactivate();
  refill_potential_files(ui);
}
