#include "tests/gui/pixels.h"

#include <FL/Fl.H>
#include <FL/fl_draw.H>
#include <FL/x.H>

#include <stdexcept>

Pixels shown(unsigned long drawable, int x, int y, int w, int h) {
  XSync(fl_display, False);
  XImage* image =
      XGetImage(fl_display, drawable, x, y, static_cast<unsigned>(w),
                static_cast<unsigned>(h), AllPlanes, ZPixmap);
  if (image == nullptr) throw std::runtime_error("no picture");
  Pixels result{static_cast<std::size_t>(w), {}};
  for (int row = 0; row < h; ++row)
    for (int column = 0; column < w; ++column)
      result.colours.push_back(XGetPixel(image, column, row));
  XDestroyImage(image);
  return result;
}

Pixels drawn(int w, int h, Fl_Color background,
             const std::function<void()>& calls) {
  Fl::first_window()->make_current();
  const Fl_Offscreen offscreen = fl_create_offscreen(w, h);
  fl_begin_offscreen(offscreen);
  fl_color(background);
  fl_rectf(0, 0, w, h);
  calls();
  fl_end_offscreen();
  Pixels result = shown(offscreen, 0, 0, w, h);
  fl_delete_offscreen(offscreen);
  return result;
}

Pixels shown(const Fl_Window& window, int x, int y, int w, int h) {
  return shown(fl_xid(&window), x, y, w, h);
}
