// What the toolkit's versions do in different ways. The one place that asks for
// the version.

#pragma once

class Fl_Window;

/// Gives the boxes of fl_message, fl_alert, fl_choice and fl_input a title,
/// which must outlive them.
void title_message_boxes(const char* title);

/// Shows a window that window managers list with the program's icon.
void show_with_icon(Fl_Window& window);
