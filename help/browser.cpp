#include "help/browser.h"

#include <FL/Fl.H>
#include <FL/Fl_Help_Dialog.H>
#include <FL/fl_ask.H>

#include <cstdio>
#include <cstdlib>

#include "gui/labels.h"
#include "help/install_dir.h"

static void show_in_viewer(const std::string& path) {
  static auto* viewer = new Fl_Help_Dialog;
  viewer->load(path.c_str());
  viewer->show();
}

// The command that shows a file in the user's browser, or "" if none is set.
static std::string browser_command(const std::string& path) {
  const char* browser = std::getenv("BROWSER");
  if (browser == nullptr) return "";
  const bool absolute = !path.empty() && path.front() == '/';
  return std::string(browser) + " file://" + (absolute ? "" : "/") + path +
         " &";
}

// Runs a command and copies its output piece by piece, because the browser may
// run for hours. Returns whether the command could be started.
static bool run_command(const std::string& command) {
  std::FILE* output = popen(command.c_str(), "r");
  if (output == nullptr) return false;
  Fl::check();
  char piece[1024];
  while (std::fgets(piece, sizeof piece, output) != nullptr) {
    std::fputs(piece, stdout);
    std::fflush(stdout);
  }
  pclose(output);
  return true;
}

// Asks what to do about a command that could not be started. `command` becomes
// empty if the user chooses the internal viewer, or the text that the user
// enters. Returns false if the user cancels.
static bool ask_about(std::string& command) {
  enum { INTERNAL_BROWSER, EDIT, CANCEL };
  const std::string shown = label_text(command);
  switch (fl_choice("Could not connect to external browser\n%s",
                    "Use Internal Browser", "Edit...", "Cancel Browser",
                    shown.c_str())) {
    case INTERNAL_BROWSER:
      command.clear();
      return true;
    case EDIT:
      if (const char* edited = fl_input("edit the command", command.c_str())) {
        command = edited;
        return true;
      }
      return false;
    default:
      return false;
  }
}

void launch_html(const std::string& path) {
  std::string command = browser_command(path);
  while (!command.empty()) {
    if (run_command(command)) return;
    if (!ask_about(command)) return;
  }
  show_in_viewer(path);
}

void launch_handbook(const std::string& program) {
  launch_html(locate_handbook(program));
}
