// The list of selected files, drawn in groups of one directory each.

#pragma once

#include <FL/Fl_Multi_Browser.H>

#include <string>

/// A multi-selection browser of file paths. A line whose directory differs from
/// the one above it is twice as high and shows the directory in its upper half;
/// all lines show the file's name alone. The lines' texts stay whole paths.
///
/// The toolkit keeps the list's total height as a running sum of line heights,
/// taken when a line is inserted or removed. Here a line's height depends on
/// its neighbour, so that sum is right only for lines added at the end: to take
/// lines out, clear the list and add those that stay.
class SpecialBrowser : public Fl_Multi_Browser {
 public:
  using Fl_Multi_Browser::Fl_Multi_Browser;

 protected:
  int item_height(void* item) const override;
  int item_width(void* item) const override;
  int item_quick_height(void* item) const override;
  void item_draw(void* item, int x, int y, int w, int h) const override;

 private:
  const char* item_path(void* item) const;
  bool starts_group(void* item) const;
};

/// Draws one line of text in a rectangle, 3 pixels from its sides and clipped
/// to it, in `color` or, when selected, in what contrasts with
/// `selection_color`.
void draw_special_line(const std::string& text, bool selected, int x, int y,
                       int w, int h, int size, Fl_Font font, Fl_Color color,
                       Fl_Color selection_color, Fl_Align align);
