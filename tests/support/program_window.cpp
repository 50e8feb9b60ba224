#include "tests/support/program_window.h"

#include <gtest/gtest.h>

#include <cstdio>

// Xlib's macros would spoil the headers above if it came first.
#include <X11/Xlib.h>
#include <X11/Xutil.h>

#include "tests/support/capture.h"
#include "tests/support/wait_until.h"

namespace {

void xdotool(std::vector<std::string> words) {
  words.insert(words.begin(), "xdotool");
  // Not in the working directory, which is the program's.
  std::FILE* const errors = std::tmpfile();
  const std::string file = "/dev/fd/" + std::to_string(fileno(errors));
  Program step(words, "/dev/null", file);
  if (step.wait() != 0)
    ADD_FAILURE() << "xdotool " << words[1] << " fails: " << content_of(file);
  std::fclose(errors);
}

// A window may disappear before the server handles a request for it.
class ErrorsIgnored {
 public:
  ErrorsIgnored() = default;
  ~ErrorsIgnored() { XSetErrorHandler(previous); }
  ErrorsIgnored(const ErrorsIgnored&) = delete;
  ErrorsIgnored& operator=(const ErrorsIgnored&) = delete;

 private:
  XErrorHandler previous =
      XSetErrorHandler([](Display*, XErrorEvent*) { return 0; });
};

}  // namespace

ProgramWindow::ProgramWindow() : connection(XOpenDisplay(nullptr)) {
  XSelectInput(connection, DefaultRootWindow(connection),
               SubstructureNotifyMask);
  pass_over_present();
}

ProgramWindow::~ProgramWindow() { disconnect(); }

void ProgramWindow::disconnect() {
  if (connection != nullptr) XCloseDisplay(connection);
  connection = nullptr;
}

bool ProgramWindow::wait_for(Program& program) {
  bool found = false;
  bool drawn = false;
  wait_until([&] {
    found = found || find();
    drawn = found && is_drawn();
    return drawn || !program.running();
  });
  return drawn;
}

// The server reuses the numbers of windows, so a number does not identify an
// old window. The order of the server's events does.
void ProgramWindow::pass_over_present() { XSync(connection, True); }

bool ProgramWindow::find() {
  const ErrorsIgnored ignored;
  while (XPending(connection) > 0) {
    XEvent event{};
    XNextEvent(connection, &event);
    char* name = nullptr;
    if (event.type == MapNotify &&
        XFetchName(connection, event.xmap.window, &name) != 0) {
      window = event.xmap.window;
      text = name;
      XFree(name);
      return true;
    }
  }
  return false;
}

void ProgramWindow::click(int x, int y) {
  xdotool({"mousemove", "--window", std::to_string(window), std::to_string(x),
           std::to_string(y), "click", "1"});
}

void ProgramWindow::press_key(const std::string& name) {
  xdotool({"key", name});
}

void ProgramWindow::name_output_directory(const std::string& name) {
  click(150, 77);
  xdotool({"type", name});
}

void ProgramWindow::press_generate() { click(115, 25); }

void ProgramWindow::press_key_over_window(const std::string& name) {
  click(265, 230);
  press_key(name);
}

bool ProgramWindow::is_drawn() const {
  const ErrorsIgnored ignored;
  XWindowAttributes attributes{};
  if (XGetWindowAttributes(connection, window, &attributes) == 0) return false;
  XImage* image = XGetImage(
      connection, window, 0, 0, static_cast<unsigned>(attributes.width),
      static_cast<unsigned>(attributes.height), AllPlanes, ZPixmap);
  if (image == nullptr) return false;
  bool drawn = false;
  for (int y = 0; y < attributes.height; ++y)
    for (int x = 0; x < attributes.width; ++x)
      drawn = drawn || XGetPixel(image, x, y) != XGetPixel(image, 0, 0);
  XDestroyImage(image);
  return drawn;
}

// Asks a window to close, as a window manager does.
static void ask_to_close(Display* connection, Window window) {
  const ErrorsIgnored ignored;
  XEvent event{};
  event.xclient.type = ClientMessage;
  event.xclient.window = window;
  event.xclient.message_type = XInternAtom(connection, "WM_PROTOCOLS", False);
  event.xclient.format = 32;
  event.xclient.data.l[0] =
      static_cast<long>(XInternAtom(connection, "WM_DELETE_WINDOW", False));
  XSendEvent(connection, window, False, NoEventMask, &event);
  XSync(connection, False);
}

void ProgramWindow::close() { ask_to_close(connection, window); }

WindowsKeptOffTheScreen::WindowsKeptOffTheScreen()
    : connection(XOpenDisplay(nullptr)) {
  XSelectInput(connection, DefaultRootWindow(connection),
               SubstructureRedirectMask);
  XSync(connection, False);
}

WindowsKeptOffTheScreen::~WindowsKeptOffTheScreen() {
  XCloseDisplay(connection);
}

void WindowsKeptOffTheScreen::close_next() const {
  Window window = 0;
  EXPECT_TRUE(wait_until([&] {
    XEvent event{};
    if (XCheckTypedEvent(connection, MapRequest, &event) == 0) return false;
    window = event.xmaprequest.window;
    return true;
  }));
  ask_to_close(connection, window);
}
