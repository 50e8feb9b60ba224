// The real program, from its start to its end, through its real window: keys
// and buttons are pressed by xdotool, and what the window shows is compared
// with what the toolkit draws for the expected text.

#include <FL/Fl.H>
#include <FL/Fl_Box.H>
#include <FL/Fl_Window.H>
#include <gtest/gtest.h>

#include <stdlib.h>

#include <filesystem>
#include <map>
#include <memory>
#include <sstream>
#include <string>
#include <vector>

#include "driver/version.h"
#include "gui/label_types.h"
#include "tests/support/capture.h"
#include "tests/support/program.h"
#include "tests/support/temporary_folder.h"
#include "tests/support/virtual_display.h"
#include "tests/support/wait_until.h"

// Xlib's macros would spoil the headers above if it came first.
#include <FL/x.H>

namespace fs = std::filesystem;

namespace {

const int status_x = 105;
const int status_y = 337;
const int status_width = 414;
const int status_height = 20;

using Pixels = std::vector<unsigned long>;

// What the status line of a window shows; nothing while that is not on screen.
Pixels status_pixels(Window window) {
  XImage* image = XGetImage(fl_display, window, status_x, status_y,
                            status_width, status_height, AllPlanes, ZPixmap);
  if (image == nullptr) return {};
  Pixels pixels;
  for (int y = 0; y < status_height; ++y)
    for (int x = 0; x < status_width; ++x)
      pixels.push_back(XGetPixel(image, x, y));
  XDestroyImage(image);
  return pixels;
}

// What the status line looks like when it shows a text, drawn by the toolkit in
// a window of this process, apart from the program's own.
Pixels pixels_of_status(const std::string& text) {
  Fl_Window window(600, 500, 529, 363);
  window.color(static_cast<Fl_Color>(48));
  Fl_Box box(status_x, status_y, status_width, status_height, text.c_str());
  box.box(FL_ENGRAVED_BOX);
  box.color(static_cast<Fl_Color>(52));
  box.labelfont(FL_TIMES_ITALIC);
  box.align(FL_ALIGN_LEFT | FL_ALIGN_INSIDE | FL_ALIGN_CLIP);
  box.labeltype(status_label());
  window.end();
  window.show();
  while (window.damage() != 0) Fl::wait(0.02);
  XSync(fl_display, False);
  Pixels pixels = status_pixels(fl_xid(&window));
  window.hide();
  Fl::check();
  return pixels;
}

// xdotool may report a step that came too early; the conditions that tests wait
// for tell whether the steps had their effect.
std::string xdotool(const std::string& step) {
  Program program({"sh", "-c", "xdotool " + step}, "xdotool.out",
                  "xdotool.err");
  program.wait();
  return content_of("xdotool.out");
}

// The texts of the files of a folder, by name.
std::map<std::string, std::string> folder_content(const fs::path& folder) {
  std::map<std::string, std::string> files;
  for (const auto& entry : fs::directory_iterator(folder))
    files[entry.path().filename()] = content_of(entry.path());
  return files;
}

std::string with_head(std::string page) {
  const std::string mark = "{{head}}\n";
  return page.replace(page.find(mark), mark.size(),
                      content_of(ZELKOR_PAGE_HEAD));
}

std::string with_date_mark(std::string page) {
  const std::string before = "<small>Generated ";
  return page.replace(page.rfind(before) + before.size(), 24, "{{date}}");
}

class WindowRun : public testing::Test {
 protected:
  void SetUp() override {
    setenv("HOME", folder.path().c_str(), 1);
    fs::copy(fs::path(ZELKOR_E2E_FOLDER) / "plume", ".",
             fs::copy_options::recursive);
    Fl::args(0, nullptr);
    fl_open_display();
  }

  // Starts the program and waits until its window is drawn.
  void start(std::vector<std::string> words) {
    words.insert(words.begin(), ZELKOR_PROGRAM);
    program = std::make_unique<Program>(words, "output", "errors");
    window = std::stoul(
        xdotool("search --sync --onlyvisible --name '^Zelkor  [0-9.]*$'"));
    ASSERT_TRUE(
        shows_status("F1: handbook. Copyright (C) Qumbra " + build_year()));
  }

  bool shows_status(const std::string& text) {
    const Pixels expected = pixels_of_status(text);
    return wait_until([&] { return status_pixels(window) == expected; });
  }

  void click(int x, int y) {
    std::ostringstream step;
    step << "mousemove --window " << window << ' ' << x << ' ' << y
         << " click 1";
    xdotool(step.str());
  }

  void press_keys(const std::string& keys) { xdotool("key " + keys); }

  TemporaryFolder folder;
  VirtualDisplay display;
  std::unique_ptr<Program> program;
  Window window = 0;
};

TEST_F(WindowRun, WritesTheExpectedPagesAndReports) {
  fs::create_directory("pages");
  start({"-r", "-e", "f90", "-v", "1"});

  click(480, 72);  // italic
  click(395, 62);  // the Level choice, at "None"
  press_keys("Down Return");
  click(150, 77);  // the output directory
  xdotool("type pages");
  click(115, 25);  // Generate HTML
  EXPECT_TRUE(shows_status("HTML complete!"));

  const auto pages = folder_content("pages");
  const auto expected =
      folder_content(fs::path(ZELKOR_E2E_FOLDER) / "plume_pages");
  EXPECT_EQ(expected.size(), pages.size());
  for (const auto& [name, page] : expected) {
    ASSERT_EQ(1u, pages.count(name)) << name;
    EXPECT_EQ(with_head(page), with_date_mark(pages.at(name))) << name;
  }
  EXPECT_EQ(content_of(fs::path(ZELKOR_E2E_FOLDER) / "plume_report.txt"),
            content_of("output"));
  EXPECT_EQ("", errors_in("errors"));

  press_keys("Escape");
  EXPECT_EQ(0, program->wait());
}

}  // namespace
