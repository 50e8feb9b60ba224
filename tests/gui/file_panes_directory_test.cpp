#include <FL/Fl.H>
#include <FL/Fl_Button.H>
#include <FL/Fl_Menu_Button.H>
#include <FL/Fl_Multi_Browser.H>
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <string>

#include "gui/file_panes.h"
#include "gui/special_browser.h"
#include "tests/gui/main_window_fixture.h"
#include "tests/gui/user.h"

namespace fs = std::filesystem;

namespace {

// --- change_dir_to ---

// What a change of directory changes: the current directory, the label and the
// items of the menu, and the list.
class ChangeDir : public MainWindowTest {
 protected:
  void SetUp() override {
    MainWindowTest::SetUp();
    fs::create_directories("src/deep");
    write_file("src/deep/d.f90", "");
    write_file("top.f90", "");
    build();
  }

  void expect_at(const std::string& dir, const std::string& label, Texts items,
                 const Texts& lines) const {
    EXPECT_EQ(expanded(dir), directory());
    EXPECT_EQ(expanded(label), ui.dir_menu_button->label());
    for (std::string& item : items) item = expanded(item);
    for (fs::path above = folder.path().parent_path(); above != "/";
         above = above.parent_path())
      items.push_back(above.filename());
    EXPECT_EQ(items, items_of(*ui.dir_menu_button));
    EXPECT_EQ(lines, potential());
  }

  const Texts top_lines = {"@b.", "@b..", "@bsrc", "top.f90"};
  const Texts src_lines = {"@b.", "@b..", "@bdeep"};
};

TEST_F(ChangeDir, StoresTheToolkitsAbsoluteForm) {
  const struct {
    const char* dir;
    const char* current;
    const char* label;
    Texts items;
    const Texts& lines;
  } cases[] = {
      {"./", "~/", "^/", {}, top_lines},
      {".", "~/", "^/", {}, top_lines},
      {"", "~/", "^/", {}, top_lines},
      {"/", "~/", "^/", {}, top_lines},  // cut to the empty text
      {"src", "~/src", "src", {"^"}, src_lines},
      {"src/", "~/src", "src", {"^"}, src_lines},
      {"src//", "~/src/", "src/", {"^"}, src_lines},
      {"~//src", "~//src", "src", {"^"}, src_lines},
      {"src/deep/..", "~/src/deep/..", "..", {"deep", "src", "^"}, src_lines},
      {"src/../src", "~/src/../src", "src", {"..", "src", "^"}, src_lines},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.dir);
    go_to(c.dir);
    expect_at(c.current, c.label, c.items, c.lines);
  }
  go_to("//");
  EXPECT_EQ("/", directory());
  EXPECT_STREQ("/", ui.dir_menu_button->label());
  EXPECT_EQ(Texts{}, items_of(*ui.dir_menu_button));
}

TEST_F(ChangeDir, ChangesNothingWhenADirectoryCannotBeListed) {
  go_to("src");
  fs::create_symlink("loop", "loop");
  const std::string deep = std::string(200, 'd') + "/" + std::string(200, 'e');
  fs::create_directories(deep);
  const MessageBoxes boxes;
  for (const char* dir :
       {"nowhere", "top.f90", "loop", "src/nowhere", deep.c_str()}) {
    SCOPED_TRACE(dir);
    go_to(dir);
    expect_at("~/src", "src", {"^"}, src_lines);
  }
  EXPECT_EQ(Texts{}, boxes.seen());
}

TEST_F(ChangeDir, CutsAbsolutePathsTo255Characters) {
  const std::string name(255 - path_of("").size(), 'd');
  write_file(name + "/inside", "");
  go_to(path_of(name) + "xyz");
  EXPECT_EQ(path_of(name), directory());
  EXPECT_EQ((Texts{"@b.", "@b..", "inside"}), potential());
}

// The absolute form of the working directory ends in "/" and is cut to 255
// characters. The toolkit does not find that of a longer one.
TEST_F(ChangeDir, ListsWorkingDirectoriesOfAbout255Characters) {
  for (const std::size_t length : {253u, 254u, 255u, 256u, 257u}) {
    const std::string name(length - path_of("").size(), 'd');
    write_file(name + "/inside", "");
    fs::current_path(name);
    go_to("./");
    EXPECT_EQ(length < 256 ? (path_of(name) + "/").substr(0, 255) : ".",
              directory());
    EXPECT_EQ((Texts{"@b.", "@b..", "inside"}), potential());
    fs::current_path(folder.path());
    fs::remove_all(name);
  }
}

// --- store_current_directory ---

TEST_F(ChangeDir, StoresAtMost2047CharactersOfTheDirectory) {
  Texts alerts;
  for (const std::size_t length : {2047u, 2048u, 2049u, 10000u}) {
    const MessageBoxes boxes;
    store_current_directory(&ui, std::string(length, 'x').c_str());
    EXPECT_EQ(std::string(2047, 'x'), directory());
    EXPECT_EQ(alerts, boxes.seen());
    alerts = {
        "! current_directory buffer too short to contain path\n"
        " maximum length is 2047"};
  }
  store_current_directory(&ui, "/abc/def");
  store_current_directory(&ui, ui.current_directory);
  EXPECT_EQ("/abc/def", directory());
  store_current_directory(&ui, ui.current_directory + 4);
  EXPECT_EQ("/def", directory());
  store_current_directory(&ui, "");
  EXPECT_EQ("", directory());
}

// --- change_dir_menu_cb ---

using ChangeDirByMenu = MainWindowTest;

// Deliberate: the last occurrence of the text counts, even inside a name.
TEST_F(ChangeDirByMenu, GoesToTheChosenParent) {
  const struct {
    const char* from;
    const char* name;
    const char* to;
  } cases[] = {
      {"home/user/src", "home", "~/home"},
      {"home/src/mysrc", "src", "~/home/src/mysrc"},
      {"src/srcs", "src", "~/src/src"},
      {"aa/baaa", "aa", "~/aa/baaa"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.from);
    fs::create_directories(c.from);
    fs::create_directories(expanded(c.to) + "/inside");
    build();
    go_to(c.from);
    pick(c.name);
    EXPECT_EQ(expanded(c.to), directory());
    const Texts lines = potential();
    EXPECT_EQ(1, std::count(lines.begin(), lines.end(), "@binside"));
    EXPECT_EQ(fs::path(expanded(c.to)).filename(), ui.dir_menu_button->label());
  }
}

TEST_F(ChangeDirByMenu, ChangesNothingWithoutAChoiceOrAnExistingParent) {
  fs::create_directories("home/src");
  build();
  go_to("home/src");
  change_dir_menu_cb(ui.dir_menu_button, &ui);
  EXPECT_EQ(path_of("home/src"), directory());
  fs::remove_all("home");
  pick("home");
  EXPECT_EQ(path_of("home/src"), directory());
  EXPECT_EQ((Texts{"@b.", "@b.."}), potential());
}

using ChangeDirByMenuDeathTest = ChangeDirByMenu;

TEST_F(ChangeDirByMenuDeathTest, AbortsOnANameThatIsNotInTheCurrentDirectory) {
  build();
  ui.dir_menu_button->add("no such name", 0, nullptr);
  EXPECT_DEATH(pick("no such name"),
               "zelkor_fltk: .*change_dir_menu_cb.*`d!=__null' failed");
}

// --- a change that waits for the end of its event ---

// Other events may be handled before it happens.
class WaitingChange : public MainWindowTest {
 protected:
  void SetUp() override {
    MainWindowTest::SetUp();
    for (const char* file : {"here/d1/x1", "here/f1", "here/f2"})
      write_file(file, "");
    show();
    go_to("here");
    Fl::check();
  }

  // A click with Shift, after which the change to d1 waits.
  void ask_for_d1() {
    Fl_Multi_Browser& list = *ui.potential_files;
    const int line = line_of(list, "@bd1");
    list.select(line, 0);
    click(list, line, FL_SHIFT);
    ASSERT_EQ(path_of("here"), directory());
  }

  void expect_in_d1() const {
    EXPECT_EQ(path_of("here/d1"), directory());
    EXPECT_EQ((Texts{"@b.", "@b..", "x1"}), potential());
  }
};

TEST_F(WaitingChange, HappensOnceBeforeFilesAreAdded) {
  ask_for_d1();
  click(*ui.add_button);
  expect_in_d1();
  EXPECT_EQ(Texts{}, selected());
  EXPECT_FALSE(ui.generate_button->active());
  go_to("here");
  Fl::check();
  EXPECT_EQ(path_of("here"), directory());
}

TEST_F(WaitingChange, HappensWhenFilesAreRemovedFirst) {
  ui.selected_files->add(path_of("here/d1/x1").c_str());
  ui.selected_files->select(1);
  ask_for_d1();
  click(*ui.remove_button);
  EXPECT_EQ(Texts{}, selected());
  Fl::check();
  expect_in_d1();
}

TEST_F(WaitingChange, IsDiscardedWhenAParentIsChosen) {
  ask_for_d1();
  pick(folder.path().filename());
  EXPECT_EQ(folder.path(), directory());
  Fl::check();
  EXPECT_EQ(folder.path(), directory());
}

// The change would free the items that are on screen.
TEST_F(WaitingChange, WaitsWhileTheDirectoryMenuIsOpen) {
  const Texts items = items_of(*ui.dir_menu_button);
  ask_for_d1();
  bool opened = false;
  {
    const ModalWatcher user([&](Fl_Window& menu) {
      opened = true;
      EXPECT_EQ(items, items_of(*ui.dir_menu_button));
      press_key(menu, FL_Escape);
    });
    click(*ui.dir_menu_button);
  }
  EXPECT_TRUE(opened);
  EXPECT_TRUE(comes_true([&] { return directory() == path_of("here/d1"); }));
}

}  // namespace
