#include "gui/toolkit_versions.h"

#include <FL/Fl_PNG_Image.H>
#include <FL/Fl_Window.H>
#include <FL/x.H>
#include <X11/Xatom.h>
#include <gtest/gtest.h>

#include <vector>

namespace {

// The icon that window managers receive: width, height, 0xAARRGGBB pixels.
std::vector<unsigned long> icon_of(Fl_Window& window) {
  Atom type = None;
  int format = 0;
  unsigned long count = 0;
  unsigned long left = 0;
  unsigned char* data = nullptr;
  XGetWindowProperty(fl_display, fl_xid(&window),
                     XInternAtom(fl_display, "_NET_WM_ICON", False), 0, 1 << 20,
                     False, XA_CARDINAL, &type, &format, &count, &left, &data);
  const auto* const words = reinterpret_cast<const unsigned long*>(data);
  std::vector<unsigned long> icon;
  // Xlib sign-extends the values.
  for (unsigned long i = 0; i < count; ++i)
    icon.push_back(words[i] & 0xFFFFFFFF);
  if (data != nullptr) XFree(data);
  return icon;
}

TEST(ToolkitVersions, WindowManagersReceiveTheDesktopIcon) {
  Fl_PNG_Image artwork(ZELKOR_ARTWORK_FOLDER "/zelkor-48.png");
  ASSERT_EQ(48, artwork.w());
  ASSERT_EQ(48, artwork.h());
  ASSERT_EQ(4, artwork.d());
  std::vector<unsigned long> expected{48, 48};
  const auto* at = reinterpret_cast<const unsigned char*>(artwork.data()[0]);
  for (int pixel = 0; pixel < 48 * 48; ++pixel, at += 4)
    expected.push_back(static_cast<unsigned long>(at[3]) << 24 | at[0] << 16 |
                       at[1] << 8 | at[2]);

  Fl_Window window(100, 100);
  window.end();
  show_with_icon(window);
  EXPECT_EQ(expected, icon_of(window));
}

}  // namespace
