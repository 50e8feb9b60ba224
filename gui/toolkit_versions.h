// What differs between the toolkit's versions. Only this module checks the
// version.

#pragma once

class Fl_Window;

/// Gives the boxes of fl_message, fl_alert, fl_choice and fl_input a title,
/// which must outlive them.
void title_message_boxes(const char* title);

/// Shows a window and gives it the program's icon.
void show_with_icon(Fl_Window& window);
