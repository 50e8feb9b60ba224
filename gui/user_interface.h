// The main window's object: its widgets and the directory that it lists.

#pragma once

#include <string>

class Fl_Box;
class Fl_Button;
class Fl_Check_Button;
class Fl_Input;
struct Fl_Menu_Item;
class Fl_Menu_Button;
class Fl_Multi_Browser;
class Fl_Slider;
class Fl_Window;
class SpecialBrowser;

/// The widgets that callbacks use. They belong to the window, which must not
/// outlive this object, as the directory menu's label points into
/// current_directory.
class ZelkorUserInterface {
 public:
  Fl_Slider* progress_bar = nullptr;  ///< 0.0 to 1.0
  Fl_Box* status_box = nullptr;  ///< set by progress(), drawn by status_label()
  SpecialBrowser* selected_files = nullptr;  ///< paths of the files to process
  Fl_Multi_Browser* potential_files = nullptr;  ///< the directory's entries
  Fl_Button* add_button = nullptr;              ///< "<<<"
  Fl_Button* remove_button = nullptr;           ///< ">>>"
  Fl_Button* generate_button = nullptr;         ///< "Generate HTML"
  Fl_Check_Button* bold_button = nullptr;
  Fl_Check_Button* italic_button = nullptr;
  Fl_Input* output_dir_input = nullptr;
  Fl_Menu_Button* dir_menu_button = nullptr;  ///< the parent directories

  /// Size of current_directory, closing NUL included.
  static constexpr int directory_size = 2048;
  /// The absolute path of the directory listed in Potential Files; it may end
  /// in "/".
  char current_directory[directory_size] = "";

  /// Builds the main window with all its widgets, lists the working directory
  /// and makes this object the gui_instance. The window is not shown yet and
  /// belongs to the caller.
  Fl_Window* make_window(const std::string& title);

  /// The items of the Level choice, closed by an empty one.
  static Fl_Menu_Item menu_Level[];
};
