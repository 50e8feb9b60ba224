#include "gui/about.h"

#include <FL/Fl.H>
#include <FL/Fl_Box.H>
#include <FL/Fl_Multiline_Output.H>
#include <FL/Fl_Pixmap.H>
#include <FL/Fl_Window.H>
#include <FL/fl_draw.H>

#include <algorithm>

#include "driver/ascii.h"
#include "gui/dialog.h"

// FLTK 1.4 measures a text of several lines as wide as its widest line. So the
// text before `line` and the rest are measured separately.
int est_num_lines(const char* text, int width) {
  int count = 0;
  int line_begin = 0;    // where the current line began, in pixels
  int previous_end = 0;  // where the previous word ended, in pixels
  double before = 0;
  for (const char *at = text, *line = text;; ++at) {
    if (*at != '\0' && !is_white_space(*at)) continue;
    const auto length = static_cast<int>(at - line);
    const int end = static_cast<int>(before + fl_width(line, length));
    if (*at == '\n' || end - line_begin > width) {
      line_begin = line_begin < previous_end ? previous_end : end;
      ++count;
    }
    if (*at == '\0') return count;
    previous_end = end;
    if (*at == '\n') {
      before += fl_width(line, length + 1);
      line = at + 1;
    }
  }
}

static void settle_events() {
  Fl::wait(0.5);
  while (Fl::ready()) Fl::wait(0.125);
}

// Keys go to the buttons. The mouse can select text, which then has the focus
// until a key moves the focus away.
static void focus_by_mouse(void* output) {
  auto* text = static_cast<Fl_Multiline_Output*>(output);
  if (Fl::pushed() == text) {
    text->set_visible_focus();
    text->take_focus();
  } else if (Fl::focus() != text) {
    text->clear_visible_focus();
  }
}

bool fl_about(char** xpm, const char* title, const char* text,
              Fl_Window* parent) {
  const int font_size = 12;
  fl_font(FL_HELVETICA, font_size);
  const int text_height = (2 * est_num_lines(text, 394) + 1) * fl_height() / 2;

  Fl_Pixmap logo(xpm);
  const int logo_width = logo.w();
  const int logo_height = logo.h();
  const int width = std::max(logo_width, 400);
  settle_events();

  const auto background = static_cast<Fl_Color>(49);
  Fl_Dialog dialog(parent->x() + parent->w() / 2, parent->y() + parent->h() / 2,
                   width + 20, logo_height + 25 + text_height + 70, title);
  dialog.color(background);
  Fl_Multiline_Output* output = nullptr;
  // clang-format off
  dialog.work_area()->begin();
  { Fl_Box* o = new Fl_Box((width - logo_width) / 2 + 10, 10, logo_width, logo_height);
    o->box(FL_FLAT_BOX);
    o->color(background);
    o->align(FL_ALIGN_INSIDE);
    o->image(logo);
  } // Fl_Box* o
  { Fl_Multiline_Output* o = new Fl_Multiline_Output(10, logo_height + 40, width, text_height, title);
    o->type(FL_MULTILINE_OUTPUT_WRAP);
    o->box(FL_FLAT_BOX);
    o->color(background);
    o->labelsize(16);
    o->align(FL_ALIGN_TOP);
    o->textfont(FL_HELVETICA);
    o->textsize(font_size);
    o->value(text);
    o->clear_visible_focus();
    output = o;
    dialog.work_area()->resizable(o);
  } // Fl_Multiline_Output* o
  dialog.work_area()->end();
  // clang-format on
  Fl::add_check(focus_by_mouse, output);
  const int answer = dialog.run();
  Fl::remove_check(focus_by_mouse, output);
  return answer == 1;
}
