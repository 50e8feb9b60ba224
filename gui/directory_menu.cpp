#include "gui/directory_menu.h"

#include <FL/Fl_Menu_.H>
#include <FL/Fl_Menu_Item.H>

#include <string>

#include "gui/labels.h"

// Escapes a name for Fl_Menu_::add(), which drops backslashes and treats a
// leading "_" as a divider.
static std::string menu_text(const std::string& name) {
  std::string text;
  if (name[0] == '_') text += '\\';
  for (const char c : name) {
    if (c == '\\') text += '\\';
    text += c;
  }
  return text;
}

// Makes a menu and its items show their names literally. Call it after the last
// add(), because each add() moves the items.
static void draw_literally(Fl_Menu_* menu) {
  menu->labeltype(literal_label());
  auto* items = const_cast<Fl_Menu_Item*>(menu->menu());
  for (int i = 0; i + 1 < menu->size(); ++i)
    items[i].labeltype(literal_label());
  menu->redraw();
}

void dir_menu(Fl_Menu_* menu, const char* path) {
  std::string names = path;
  if (!names.empty() && names.back() == '/') names.pop_back();
  std::size_t end =
      names.size() < 2 ? std::string::npos : names.rfind('/', names.size() - 2);
  menu->label(end == std::string::npos ? path : path + end + 1);
  menu->clear();
  // The root is never an item. A doubled "/" has no name in between.
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
