// The real program, from its start to its end, through its real window: keys
// and buttons are pressed by xdotool, and what the window shows is compared
// with what the toolkit draws for the expected text.

#include <FL/Fl.H>
#include <FL/Fl_Box.H>
#include <FL/Fl_Window.H>
#include <gtest/gtest.h>

#include <filesystem>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "driver/version.h"
#include "gui/labels.h"
#include "tests/gui/pixels.h"
#include "tests/support/capture.h"
#include "tests/support/program.h"
#include "tests/support/program_window.h"
#include "tests/support/temporary_folder.h"
#include "tests/support/wait_until.h"

// Xlib's macros would spoil the headers above if it came first.
#include <FL/x.H>

namespace fs = std::filesystem;

namespace {

const int status_x = 105;
const int status_y = 337;
const int status_width = 414;
const int status_height = 20;

Pixels status_of(unsigned long window) {
  return shown(window, status_x, status_y, status_width, status_height);
}

// The status line with a text, drawn by the toolkit in a window of this
// process.
Pixels picture_of_status(const std::string& text) {
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
  Pixels picture = status_of(fl_xid(&window));
  window.hide();
  Fl::check();
  return picture;
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
    fs::copy(fs::path(ZELKOR_E2E_FOLDER) / "plume", ".",
             fs::copy_options::recursive);
    Fl::args(0, nullptr);
    fl_open_display();
  }

  // Starts the program and waits until its window is drawn.
  void start(std::vector<std::string> words) {
    words.insert(words.begin(), ZELKOR_PROGRAM);
    program = std::make_unique<Program>(words, "output", "errors");
    ASSERT_TRUE(window.wait_for(*program));
    wait_for_status("F1: handbook. Copyright (C) Qumbra " + build_year());
  }

  void wait_for_status(const std::string& text) {
    const Pixels expected = picture_of_status(text);
    Pixels status;
    wait_until([&] {
      status = status_of(window.id());
      return status == expected;
    });
    ASSERT_PRED_FORMAT2(same_picture, expected, status);
  }

  TemporaryFolder folder;
  ProgramWindow window;
  std::unique_ptr<Program> program;
};

TEST_F(WindowRun, WritesTheExpectedPagesAndReports) {
  fs::create_directory("pages");
  start({"-r", "-e", "f90", "-v", "1"});

  window.click(480, 72);  // italic
  window.click(395, 62);  // the Level choice, at "None"
  window.press_key("Down");
  window.press_key("Return");
  window.name_output_directory("pages");
  window.press_generate();
  wait_for_status("HTML complete!");

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

  window.press_key("Escape");
  EXPECT_EQ(0, program->wait());
}

}  // namespace
