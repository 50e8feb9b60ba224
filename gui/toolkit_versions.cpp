#include "gui/toolkit_versions.h"

#include <FL/Enumerations.H>
#include <FL/Fl_RGB_Image.H>
#include <FL/Fl_Window.H>
#include <FL/fl_ask.H>
#include <FL/x.H>

#include <iterator>
#include <vector>

// The icon in the format of the property _NET_WM_ICON: width, height and the
// pixels in rows, each 0xAARRGGBB.
static const unsigned long icon[] = {
    48,
    48,
#include "packaging/artwork/icon.inc"
};

#if FL_MAJOR_VERSION == 1 && FL_MINOR_VERSION < 3

#include <X11/Xatom.h>

// In this version all message boxes share one window, which holds their icon.
void title_message_boxes(const char* title) {
  fl_message_icon()->window()->label(title);
}

void show_with_icon(Fl_Window& window) {
  window.show();
  XChangeProperty(fl_display, fl_xid(&window),
                  XInternAtom(fl_display, "_NET_WM_ICON", False), XA_CARDINAL,
                  32, PropModeReplace,
                  reinterpret_cast<const unsigned char*>(icon),
                  std::size(icon));
}

#else

void title_message_boxes(const char* title) { fl_message_title_default(title); }

void show_with_icon(Fl_Window& window) {
  std::vector<unsigned char> channels;
  for (auto pixel = std::begin(icon) + 2; pixel != std::end(icon); ++pixel)
    for (const int shift : {16, 8, 0, 24})
      channels.push_back(static_cast<unsigned char>(*pixel >> shift));
  const Fl_RGB_Image image(channels.data(), 48, 48, 4);
  window.icon(&image);
  window.show();
}

#endif
