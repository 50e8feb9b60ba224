// Where a widget is.

#ifndef ZELKOR_TESTS_GUI_PLACE_H
#define ZELKOR_TESTS_GUI_PLACE_H

#include <FL/Fl_Widget.H>

#include <ostream>

struct Place {
  int x, y, w, h;
};

inline bool operator==(const Place& a, const Place& b) {
  return a.x == b.x && a.y == b.y && a.w == b.w && a.h == b.h;
}

inline std::ostream& operator<<(std::ostream& s, const Place& p) {
  return s << p.x << ", " << p.y << ", " << p.w << ", " << p.h;
}

inline Place place_of(const Fl_Widget& o) {
  return {o.x(), o.y(), o.w(), o.h()};
}

#endif
