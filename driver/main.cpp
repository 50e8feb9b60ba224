// The start-up order: options, toolkit switches, window, selected files. A run
// starts only when the user presses Generate HTML.

#include <FL/Fl.H>
#include <FL/Fl_Button.H>
#include <FL/Fl_Window.H>

#include <fcntl.h>
#include <signal.h>
#include <stdlib.h>
#include <unistd.h>

#include <chrono>
#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <memory>

#include "driver/command_line.h"
#include "driver/settings.h"
#include "driver/source_files.h"
#include "driver/version.h"
#include "gui/special_browser.h"
#include "gui/toolkit_versions.h"
#include "gui/user_interface.h"
#include "help/help_keys.h"

// A file opened while a standard stream is closed becomes that stream. Reports
// would then go into a page, or to the X server.
static void open_standard_streams() {
  int stream = open("/dev/null", O_RDWR);
  while (stream >= 0 && stream <= STDERR_FILENO)
    stream = open("/dev/null", O_RDWR);
  close(stream);
}

// Writing a report into a pipe that nobody reads raises SIGPIPE, which would
// end the program. The signal gets a handler: a browser started here would
// inherit an ignored signal. A signal ignored at the start stays ignored.
static void survive_broken_pipes() {
  if (signal(SIGPIPE, [](int) {}) == SIG_IGN) signal(SIGPIPE, SIG_IGN);
}

// FLTK 1.4 would prefer a Wayland session to its X server. Other versions do
// not look at this variable.
static void prefer_x11() { setenv("FLTK_BACKEND", "x11", 0); }

static void print_and_exit(const char* format, ...) {
  va_list arguments;
  va_start(arguments, format);
  std::vfprintf(stderr, format, arguments);
  va_end(arguments);
  std::fputc('\n', stderr);
  std::exit(1);
}

// The toolkit's parser only prints its switches when it meets a word that it
// does not know, and returns. So its error hook ends the program.
static void read_toolkit_switches(int count, char** arguments) {
  void (*const hook)(const char*, ...) = Fl::error;
  Fl::error = print_and_exit;
  Fl::args(count, arguments);
  Fl::error = hook;
}

// Draws the window now, because the search for files handles no events. A
// window on another workspace is never drawn, so the wait is limited.
static void draw_now(Fl_Window& window) {
  using Clock = std::chrono::steady_clock;
  const auto deadline = Clock::now() + std::chrono::seconds(2);
  while (window.shown() != 0 && window.damage() != 0 && Clock::now() < deadline)
    Fl::wait(0.02);
  Fl::flush();
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
  open_standard_streams();
  survive_broken_pipes();
  const CommandLine options = read_command_line(argc, argv);
  if (options.help) {
    print_usage(argv[0]);
    return 0;
  }
  if (options.verbosity) verbose = *options.verbosity;
  prefer_x11();
  read_toolkit_switches(options.remaining, argv);

  ZelkorUserInterface ui;
  const std::unique_ptr<Fl_Window> window(
      ui.make_window("Zelkor  " + version_text(build_date())));
  show_with_icon(*window);
  draw_now(*window);
  if (window->shown() == 0) return 0;
  select_files(ui, options);
  offer_help_keys(window.get());
  Fl::run();
  return 0;
}
