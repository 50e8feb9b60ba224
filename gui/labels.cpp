#include "gui/labels.h"

#include <FL/Fl.H>
#include <FL/Fl_Widget.H>
#include <FL/fl_draw.H>

std::string label_text(const std::string& text) {
  std::string label;
  for (const char c : text) label.append(c == '@' ? 2 : 1, c);
  return label;
}

// Draws or measures text without symbols and without underlined letters. Menus
// turn underlining on by a variable of the toolkit.
template <typename Action>
static void literally(const Fl_Label* label, Action action) {
  const char underline = fl_draw_shortcut;
  fl_draw_shortcut = 0;
  fl_font(label->font, label->size);
  action();
  fl_draw_shortcut = underline;
}

static void draw_literally(const Fl_Label* label, int x, int y, int w, int h,
                           Fl_Align align) {
  literally(label, [=] {
    fl_color(static_cast<Fl_Color>(label->color));
    fl_draw(label->value, x, y, w, h, align, nullptr, 0);
  });
}

static void measure_literally(const Fl_Label* label, int& w, int& h) {
  literally(label, [&] { fl_measure(label->value, w, h, 0); });
}

// Clips to the box here, because the clip of fl_draw() would move up with the
// text.
static void draw_status(const Fl_Label* label, int x, int y, int w, int h,
                        Fl_Align align) {
  fl_font(label->font, label->size);
  const int cut_off = fl_height() > h ? 1 : 0;
  fl_push_clip(x, y, w, h);
  draw_literally(label, x, y - cut_off, w, h,
                 static_cast<Fl_Align>(align & ~FL_ALIGN_CLIP));
  fl_pop_clip();
}

Fl_Labeltype literal_label() {
  const Fl_Labeltype type = FL_FREE_LABELTYPE;
  Fl::set_labeltype(type, draw_literally, measure_literally);
  return type;
}

Fl_Labeltype status_label() {
  const auto type = static_cast<Fl_Labeltype>(FL_FREE_LABELTYPE + 1);
  Fl::set_labeltype(type, draw_status, measure_literally);
  return type;
}
