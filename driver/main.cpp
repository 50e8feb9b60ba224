// The start-up order: options, toolkit switches, window, selected files. A run
// starts only when the user presses Generate HTML.

#include <FL/Fl.H>
#include <FL/Fl_Button.H>
#include <FL/Fl_Window.H>

#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <memory>

#include "driver/command_line.h"
#include "driver/settings.h"
#include "driver/source_files.h"
#include "driver/version.h"
#include "gui/help_keys.h"
#include "gui/special_browser.h"
#include "gui/user_interface.h"

static void print_and_exit(const char* format, ...) {
  va_list arguments;
  va_start(arguments, format);
  std::vfprintf(stderr, format, arguments);
  va_end(arguments);
  std::fputc('\n', stderr);
  std::exit(1);
}

// The toolkit's parser only prints its own switches when it meets a word that
// it does not know, and returns: its error hook ends the program instead.
static void read_toolkit_switches(int count, char** arguments) {
  void (*const hook)(const char*, ...) = Fl::error;
  Fl::error = print_and_exit;
  Fl::args(count, arguments);
  Fl::error = hook;
}

static void select_files(const ZelkorUserInterface& ui,
                         const CommandLine& options) {
  if (options.extensions.empty()) return;
  for (const std::string& path :
       collect_files("./", options.extensions, options.recursive))
    ui.selected_files->add(path.c_str(), nullptr);
  if (ui.selected_files->size() > 0) ui.generate_button->activate();
}

int main(int argc, char** argv) {
  slash = '/';
  const CommandLine options = read_command_line(argc, argv);
  if (options.help) {
    print_usage(argv[0]);
    return 0;
  }
  if (options.verbosity) verbose = *options.verbosity;
  read_toolkit_switches(options.remaining, argv);

  ZelkorUserInterface ui;
  const std::unique_ptr<Fl_Window> window(
      ui.make_window("Zelkor  " + version_text(build_date())));
  window->show();
  offer_help_keys(window.get());
  select_files(ui, options);
  Fl::run();
  return 0;
}
