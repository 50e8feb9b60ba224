// The window with unusual paths and names.

#include <FL/Fl.H>
#include <FL/Fl_Box.H>
#include <FL/Fl_Button.H>
#include <FL/Fl_Input.H>
#include <FL/Fl_Multi_Browser.H>
#include <gtest/gtest.h>

#include <filesystem>
#include <string>

#include "driver/settings.h"
#include "gui/progress.h"
#include "gui/special_browser.h"
#include "tests/gui/main_window_fixture.h"
#include "tests/gui/user.h"

namespace fs = std::filesystem;

namespace {

class WindowFaults : public MainWindowTest {
 protected:
  // Generates pages in a directory and draws the window.
  void generate_in(const std::string& output) {
    ui.output_dir_input->value(output.c_str());
    ui.generate_button->do_callback();
    draw();
  }

  void draw() {
    window->redraw();
    while (window->damage() != 0) Fl::wait(0.02);
  }

  // Enters directories by clicks and selects a file.
  void select(const Texts& directories, const std::string& file) {
    for (const std::string& name : directories) {
      click(*ui.potential_files, line_of(*ui.potential_files, "@b" + name));
      draw();
    }
    EXPECT_EQ((Texts{"@b.", "@b..", file}), potential());
    add({file});
    draw();
  }

  static int page_count(const std::string& output) {
    return static_cast<int>(std::distance(fs::directory_iterator(output),
                                          fs::directory_iterator()));
  }
};

// A path of some length to a file that does not exist.
std::string path_of_length(std::size_t length) {
  std::string path;
  while (path.size() < length) path += "/" + std::string(200, 'd');
  path.resize(length - 4);
  return path + ".f90";
}

TEST_F(WindowFaults, PathsOfAnyLengthAreShownAndProcessed) {
  fs::create_directory("out");
  show();
  for (const std::size_t length : {255u, 1024u, 4096u, 100000u}) {
    ui.selected_files->add(path_of_length(length).c_str());
    ui.selected_files->add(("/" + std::string(length - 1, '@')).c_str());
  }
  draw();
  // The toolkit's alert has room for a part of a long text.
  const std::string nowhere = path_of_length(100000);
  {
    const MessageBoxes boxes;
    generate_in(nowhere);
    ASSERT_EQ(1u, boxes.seen().size());
    EXPECT_EQ("! '" + nowhere.substr(0, 200), boxes.seen()[0].substr(0, 203));
    EXPECT_EQ(nowhere, html_dir);
  }
  // The status line shows every path.
  generate_in("out");
  EXPECT_STREQ("HTML complete!", ui.status_box->label());
  EXPECT_EQ(1, page_count("out"));
  progress(0.5, nowhere.c_str(), nullptr);
  draw();
  ui.status_box->label("");
}

// The toolkit makes no absolute path of more than 255 characters. Below a
// longer working directory, paths are relative to it.
TEST_F(WindowFaults, WorkingDirectoriesCanHaveAnyLength) {
  std::size_t length = folder.path().string().size();
  for (const std::size_t least : {300u, 1100u, 2100u, 5000u}) {
    SCOPED_TRACE(least);
    for (; length < least; length += 101) {
      fs::create_directory(std::string(100, 'd'));
      fs::current_path(std::string(100, 'd'));
    }
    write_file("sub/x.f90", "program x\nend\n");
    fs::create_directory("out");
    show();
    select({"sub"}, "x.f90");
    EXPECT_EQ(Texts{"./sub/x.f90"}, selected());
    {
      const ModalWatcher cancel([](Fl_Window& chooser) {
        button_of(chooser, "Cancel")->do_callback();
      });
      button_of(*window, "Browse...")->do_callback();
    }
    generate_in("out");
    EXPECT_EQ(2, page_count("out"));
    click(*ui.potential_files, line_of(*ui.potential_files, "@b.."));
    EXPECT_EQ((Texts{"@b.", "@b..", "@bout", "@bsub"}), potential());
    window.reset();
    fs::remove_all("sub");
    fs::remove_all("out");
  }
  fs::current_path(folder.path());
}

TEST_F(WindowFaults, DirectoryNamesCanHaveSpecialCharacters) {
  for (const std::string name : {"a\\b", "\\", "_under", "_", "R&D", "&",
                                 "me@home", "a@", "a|b", "%s"}) {
    SCOPED_TRACE(name);
    write_file(name + "/below/x.f90", "program x\nend\n");
    fs::create_directory(name + "/out");
    show();
    select({name, "below"}, "x.f90");
    // The first directory has a "/" at its end, which is kept.
    EXPECT_EQ(Texts{path_of("/" + name + "/below/x.f90")}, selected());
    generate_in(name + "/out");
    EXPECT_EQ(2, page_count(name + "/out"));

    pick(name);
    EXPECT_EQ(path_of("/" + name), directory());
    EXPECT_EQ((Texts{"@b.", "@b..", "@bbelow", "@bout"}), potential());
    window.reset();
    fs::remove_all(name);
  }
}

TEST_F(WindowFaults, TwentyThousandFilesCanBeSelectedAndRemoved) {
  const int count = 20000;
  // Links to one file are created much faster than files.
  write_file("many/0.f90", "");
  for (int i = 1; i < count; ++i)
    fs::create_hard_link("many/0.f90", "many/" + std::to_string(i) + ".f90");
  show();
  click(*ui.potential_files, line_of(*ui.potential_files, "@bmany"));
  ASSERT_EQ(count + 2, ui.potential_files->size());
  for (int line = 3; line <= count + 2; ++line)
    ui.potential_files->select(line);
  add({});
  draw();
  EXPECT_EQ(count, ui.selected_files->size());
  EXPECT_EQ((Texts{"@b.", "@b.."}), potential());

  for (int line = 1; line <= count; ++line) ui.selected_files->select(line);
  remove({});
  draw();
  EXPECT_EQ(0, ui.selected_files->size());
  EXPECT_EQ(count + 2, ui.potential_files->size());
}

}  // namespace
