#include "help/help_keys.h"

#include <FL/Fl.H>
#include <FL/Fl_Window.H>
#include <FL/fl_ask.H>

#include <filesystem>
#include <string>

#include "driver/version.h"
#include "gui/about.h"
#include "gui/labels.h"
#include "gui/logo.h"
#include "help/browser.h"
#include "help/install_dir.h"

static const char program_name[] = "zelkor";
static Fl_Window* about_parent = nullptr;

// The handbook installed with this program, which is PREFIX/bin/zelkor. Empty
// when the program's path is unknown.
static std::string own_handbook() {
  std::error_code unknown;
  const auto program = std::filesystem::read_symlink("/proc/self/exe", unknown);
  if (unknown) return "";
  return program.parent_path().parent_path() /
         "share/doc/zelkor/Zelkor_Handbook.html";
}

static void show_handbook() {
  const std::string common = locate_handbook(program_name);
  if (file_exists(common) != 0) {
    launch_handbook(program_name);
    return;
  }
  const std::string own = own_handbook();
  if (file_exists(own) != 0) {
    launch_html(own);
    return;
  }
  fl_message(
      "The handbook is neither\n%s\nnor\n%s\n"
      "QUMBRA_HOME names the directory below which it is sought.",
      label_text(common).c_str(), label_text(own).c_str());
}

static void show_about() {
  const std::string title = "About Zelkor " + version_text(build_date());
  fl_about(logo_xpm(), title.c_str(),
           "Zelkor turns Fortran sources into hyperlinked HTML pages.\n"
           "\n"
           "It is free software under the MIT license, and based in part on "
           "the work of the FLTK project (https://www.fltk.org).\n"
           "\n"
           "F1 shows the handbook.\n",
           about_parent);
}

// Does nothing while a modal dialog is open, which would block the help.
static int help_key_handler(int event) {
  if (event != FL_SHORTCUT || Fl::event_key() != FL_F + 1) return 0;
  if (Fl::modal() != nullptr) return 0;
  if (Fl::event_state(FL_SHIFT) != 0)
    show_about();
  else
    show_handbook();
  return 1;
}

void offer_help_keys(Fl_Window* window) {
  about_parent = window;
  Fl::add_handler(help_key_handler);
}
