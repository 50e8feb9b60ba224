// The toolkit's message boxes: fl_message, fl_alert, fl_choice and fl_input.
// The one place that asks for the toolkit's version.

#ifndef ZELKOR_GUI_MESSAGE_BOXES_H
#define ZELKOR_GUI_MESSAGE_BOXES_H

#include <FL/Enumerations.H>
#include <FL/Fl_Widget.H>
#include <FL/Fl_Window.H>
#include <FL/fl_ask.H>

/// Gives all of them a title, which must outlive them.
inline void title_message_boxes(const char* title) {
#if FL_MAJOR_VERSION == 1 && FL_MINOR_VERSION < 3
  // They are one window, the one that their icon is in.
  fl_message_icon()->window()->label(title);
#else
  fl_message_title_default(title);
#endif
}

#endif
