#include "tests/support/program_window.h"

#include <gtest/gtest.h>

// Xlib's macros would spoil the headers above if it came first.
#include <X11/Xlib.h>
#include <X11/Xutil.h>

#include "tests/support/wait_until.h"

static void xdotool(std::vector<std::string> words) {
  words.insert(words.begin(), "xdotool");
  Program step(words, "/dev/null", "/dev/null");
  if (step.wait() != 0) ADD_FAILURE() << "xdotool " << words[1] << " fails";
}

ProgramWindow::ProgramWindow() : connection(XOpenDisplay(nullptr)) {
  XSetErrorHandler([](Display*, XErrorEvent*) { return 0; });
}

ProgramWindow::~ProgramWindow() { disconnect(); }

void ProgramWindow::disconnect() {
  if (connection != nullptr) XCloseDisplay(connection);
  connection = nullptr;
}

bool ProgramWindow::wait_for(Program& program) {
  bool found = false;
  wait_until([&] { return (found = find()) || !program.running(); });
  return found;
}

bool ProgramWindow::find() {
  Window root = 0;
  Window parent = 0;
  Window* windows = nullptr;
  unsigned int count = 0;
  XQueryTree(connection, DefaultRootWindow(connection), &root, &parent,
             &windows, &count);
  bool found = false;
  for (unsigned int i = 0; i < count && !found; ++i) {
    XWindowAttributes attributes{};
    XGetWindowAttributes(connection, windows[i], &attributes);
    char* name = nullptr;
    if (attributes.map_state == IsViewable &&
        XFetchName(connection, windows[i], &name) != 0) {
      found = true;
      window = windows[i];
      text = name;
      XFree(name);
    }
  }
  if (windows != nullptr) XFree(windows);
  return found;
}

void ProgramWindow::click(int x, int y) {
  xdotool({"mousemove", "--window", std::to_string(window), std::to_string(x),
           std::to_string(y), "click", "1"});
}

void ProgramWindow::type(const std::string& keys) { xdotool({"type", keys}); }

void ProgramWindow::press_key(const std::string& name) {
  xdotool({"key", name});
}

bool ProgramWindow::is_drawn() const {
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
