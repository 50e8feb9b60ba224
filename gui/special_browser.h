// The list of selected files, grouped by directory.

#pragma once

#include <FL/Fl_Multi_Browser.H>

#include <string>

/// A multi-selection browser of file paths. Each line shows the name of a file
/// without its directory. A line whose directory differs from that of the line
/// above is twice as high and shows the directory in its upper half. The text
/// of a line is always the whole path.
///
/// The toolkit adds up the heights of lines as they are inserted and removed.
/// Here a line's height depends on the line above, so the total is right only
/// when lines are added at the end. To remove lines, clear the list and add the
/// others again.
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
/// to it. The colour is `color`, or for a selected line one that contrasts with
/// `selection_color`.
void draw_special_line(const std::string& text, bool selected, int x, int y,
                       int w, int h, int size, Fl_Font font, Fl_Color color,
                       Fl_Color selection_color, Fl_Align align);
