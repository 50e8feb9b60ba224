#include "gui/special_browser.h"

#include <FL/fl_draw.H>

#include <string_view>

// The directory part of a path, without its "/"; empty for a path without "/".
static std::string_view directory_of(std::string_view path) {
  const std::size_t last_slash = path.rfind('/');
  return path.substr(0, last_slash == std::string::npos ? 0 : last_slash);
}

// What a heading shows: the directory part with its "/".
static std::string heading(const char* path) {
  return std::string(directory_of(path)) + "/";
}

// What a line shows. Deliberate: the first character of a path without "/" is
// dropped, as every path of this list contains one.
static std::string indented_name(const char* path) {
  return "  " + std::string(path).erase(0, directory_of(path).size() + 1);
}

// Getting the text by the line's number works in every version of the toolkit.
// Both calls start at the line used last, so a neighbour is found at once.
const char* SpecialBrowser::item_path(void* item) const {
  const char* path = text(lineno(item));
  return path == nullptr ? "" : path;
}

bool SpecialBrowser::starts_group(void* item) const {
  void* previous = item_prev(item);
  return previous == nullptr ||
         directory_of(item_path(previous)) != directory_of(item_path(item));
}

int SpecialBrowser::item_height(void* item) const {
  const int height = Fl_Multi_Browser::item_height(item);
  return starts_group(item) ? 2 * height : height;
}

// The toolkit's own quick height calls the virtual item_height, which doubles
// the height of a heading line already.
int SpecialBrowser::item_quick_height(void* item) const {
  return item_height(item);
}

int SpecialBrowser::item_width(void* item) const {
  return Fl_Multi_Browser::item_width(item);
}

void SpecialBrowser::item_draw(void* item, int x, int y, int w, int h) const {
  const char* path = item_path(item);
  if (starts_group(item)) {
    const auto bold = static_cast<Fl_Font>(textfont() | FL_BOLD);
    draw_special_line(heading(path), false, x, y, w, h / 2, textsize(), bold,
                      textcolor(), selection_color(), FL_ALIGN_LEFT);
    y += h / 2;
    h -= h / 2;
  }
  draw_special_line(indented_name(path), selected(lineno(item)) != 0, x, y, w,
                    h, textsize(), textfont(), textcolor(), selection_color(),
                    FL_ALIGN_LEFT);
}

void draw_special_line(const std::string& text, bool selected, int x, int y,
                       int w, int h, int size, Fl_Font font, Fl_Color color,
                       Fl_Color selection_color, Fl_Align align) {
  fl_font(font, size);
  fl_color(selected ? fl_contrast(color, selection_color) : color);
  fl_draw(text.c_str(), x + 3, y, w - 6, h,
          static_cast<Fl_Align>(align | FL_ALIGN_CLIP), nullptr, 1);
}
