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

using FilePanesDirectory = MainWindowTest;

// --- change_dir_to ---

// What follows a change of directory: the current directory, the menu's label
// and its first items. "~" stands for the scratch folder, "^" for its name.
class ChangeDir : public MainWindowTest {
 protected:
  void SetUp() override {
    MainWindowTest::SetUp();
    fs::create_directories("src/deep");
    write_file("src/deep/d.f90", "");
    write_file("top.f90", "");
    build();
  }

  std::string expanded(std::string text) const {
    const auto put = [&text](char sign, const std::string& value) {
      const std::size_t place = text.find(sign);
      if (place != std::string::npos) text.replace(place, 1, value);
    };
    put('~', folder.path());
    put('^', folder.path().filename());
    return text;
  }

  // The names of the folders above the scratch folder, nearest first.
  Texts folders_above() const {
    Texts names;
    for (fs::path above = folder.path().parent_path(); above != "/";
         above = above.parent_path())
      names.push_back(above.filename());
    return names;
  }

  void expect_at(const std::string& dir, const std::string& label,
                 Texts items) const {
    EXPECT_EQ(expanded(dir), directory());
    EXPECT_EQ(expanded(label), ui.dir_menu_button->label());
    for (std::string& item : items) item = expanded(item);
    const Texts above = folders_above();
    items.insert(items.end(), above.begin(), above.end());
    EXPECT_EQ(items, items_of(*ui.dir_menu_button));
  }

  const Texts top_lines = {"@b.", "@b..", "@bsrc", "top.f90"};
  const Texts src_lines = {"@b.", "@b..", "@bdeep"};
};

TEST_F(ChangeDir, TakesTheToolkitsAbsoluteForm) {
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
      {"~/src", "~/src", "src", {"^"}, src_lines},
      {"~//src", "~//src", "src", {"^"}, src_lines},
      {"src/deep/..", "~/src/deep/..", "..", {"deep", "src", "^"}, src_lines},
      {"src/../src", "~/src/../src", "src", {"..", "src", "^"}, src_lines},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.dir);
    change_dir_to(&ui, expanded(c.dir).c_str());
    expect_at(c.current, c.label, c.items);
    EXPECT_EQ(c.lines, potential());
  }
}

TEST_F(ChangeDir, TwoSlashesAreTheRoot) {
  change_dir_to(&ui, "//");
  EXPECT_EQ("/", directory());
  EXPECT_STREQ("/", ui.dir_menu_button->label());
  EXPECT_EQ(Texts{}, items_of(*ui.dir_menu_button));
  Texts lines = potential();
  EXPECT_EQ(1, std::count(lines.begin(), lines.end(), "@btmp"));
}

TEST_F(ChangeDir, LabelPointsIntoTheCurrentDirectory) {
  change_dir_to(&ui, "src");
  EXPECT_EQ(ui.current_directory + path_of("").size(),
            ui.dir_menu_button->label());
}

TEST_F(ChangeDir, WhatCannotBeListedChangesNothing) {
  change_dir_to(&ui, "src");
  fs::create_symlink("loop", "loop");
  for (const char* dir : {"nowhere", "top.f90", "loop", "src/nowhere"}) {
    SCOPED_TRACE(dir);
    const MessageBoxes boxes;
    change_dir_to(&ui, dir);
    expect_at("~/src", "src", {"^"});
    EXPECT_EQ(src_lines, potential());
    EXPECT_EQ(Texts{}, boxes.seen());
  }
}

TEST_F(ChangeDir, MayBeGivenTheCurrentDirectorysOwnText) {
  change_dir_to(&ui, "src");
  change_dir_to(&ui, ui.current_directory);
  expect_at("~/src", "src", {"^"});
  EXPECT_EQ(src_lines, potential());
}

TEST_F(ChangeDir, AbsolutePathsAreCutTo255Characters) {
  const std::size_t length = 255 - path_of("").size();
  const std::string name(length, 'd');
  fs::create_directory(name);
  write_file(name + "/inside", "");
  change_dir_to(&ui, (path_of(name) + "xyz").c_str());
  EXPECT_EQ(path_of(name), directory());
  EXPECT_EQ(255u, directory().size());
  EXPECT_EQ((Texts{"@b.", "@b..", "inside"}), potential());
}

// Of the working directory's absolute form, which ends in "/", 255 characters
// are kept; a longer one the toolkit cannot tell at all.
TEST_F(ChangeDir, WorkingDirectoriesOfAbout255CharactersAreListed) {
  for (const std::size_t length : {253u, 254u, 255u, 256u, 257u}) {
    const std::string name(length - path_of("").size(), 'd');
    write_file(name + "/inside", "");
    fs::current_path(name);
    change_dir_to(&ui, "./");
    EXPECT_EQ(length < 256 ? (path_of(name) + "/").substr(0, 255) : ".",
              directory());
    EXPECT_EQ((Texts{"@b.", "@b..", "inside"}), potential());
    fs::current_path(folder.path());
    fs::remove_all(name);
  }
}

TEST_F(ChangeDir, PathsOver255CharactersWhoseCutFormIsNoDirectoryStay) {
  const std::string deep = std::string(200, 'd') + "/" + std::string(200, 'e');
  fs::create_directories(deep);
  change_dir_to(&ui, deep.c_str());
  expect_at("~/", "^/", {});
  EXPECT_EQ("top.f90", potential().back());
}

TEST_F(ChangeDir, LeavesOutSelectedFiles) {
  ui.selected_files->add(path_of("src/deep/d.f90").c_str());
  change_dir_to(&ui, "src/deep");
  EXPECT_EQ((Texts{"@b.", "@b.."}), potential());
}

// --- store_current_directory ---

TEST_F(FilePanesDirectory, LongestCurrentDirectoryHas2047Characters) {
  const MessageBoxes boxes;
  const std::string longest(2047, 'x');
  store_current_directory(&ui, longest.c_str());
  EXPECT_EQ(longest, directory());
  EXPECT_EQ(Texts{}, boxes.seen());
}

TEST_F(FilePanesDirectory, LongerCurrentDirectoryIsCutWithAnAlert) {
  build();
  for (const std::size_t length : {2048u, 2049u, 10000u}) {
    const MessageBoxes boxes;
    store_current_directory(&ui, std::string(length, 'x').c_str());
    EXPECT_EQ(std::string(2047, 'x'), directory());
    EXPECT_EQ(Texts{"! current_directory buffer too short to contain path\n"
                    " maximum length is 2047"},
              boxes.seen());
  }
}

TEST_F(FilePanesDirectory, CurrentDirectoryMayBeStoredFromItsOwnText) {
  store_current_directory(&ui, "/abc/def");
  store_current_directory(&ui, ui.current_directory + 4);
  EXPECT_EQ("/def", directory());
  store_current_directory(&ui, "");
  EXPECT_EQ("", directory());
}

// --- change_dir_menu_cb ---

class ChangeDirByMenu : public MainWindowTest {
 protected:
  void pick(const std::string& name) {
    const Fl_Menu_Button& menu = *ui.dir_menu_button;
    for (int item = 0; item + 1 < menu.size(); ++item)
      if (menu.text(item) == name) {
        ui.dir_menu_button->picked(&menu.menu()[item]);
        return;
      }
    FAIL() << "no item " << name;
  }
};

TEST_F(ChangeDirByMenu, GoesUpToTheChosenParent) {
  fs::create_directories("home/user/src");
  build();
  change_dir_to(&ui, "home/user/src");
  pick("home");
  EXPECT_EQ(path_of("home"), directory());
  EXPECT_EQ((Texts{"@b.", "@b..", "@buser"}), potential());
  EXPECT_STREQ("home", ui.dir_menu_button->label());
}

// Deliberate: the last occurrence of the name's text counts.
TEST_F(ChangeDirByMenu, FindsTheNameInsideALaterOne) {
  fs::create_directories("home/src/mysrc/inside");
  build();
  change_dir_to(&ui, "home/src/mysrc");
  pick("src");
  EXPECT_EQ(path_of("home/src/mysrc"), directory());
  EXPECT_EQ((Texts{"@b.", "@b..", "@binside"}), potential());
}

TEST_F(ChangeDirByMenu, CutsBehindTheNameInsideALongerOne) {
  fs::create_directories("src/srcs");
  fs::create_directories("src/src/found");
  build();
  change_dir_to(&ui, "src/srcs");
  pick("src");
  EXPECT_EQ(path_of("src/src"), directory());
  EXPECT_EQ((Texts{"@b.", "@b..", "@bfound"}), potential());
}

TEST_F(ChangeDirByMenu, OverlappingOccurrencesCountFromTheirLastBegin) {
  fs::create_directories("aa/baaa");
  fs::create_directories("aa/baa");
  build();
  change_dir_to(&ui, "aa/baaa");
  pick("aa");
  EXPECT_EQ(path_of("aa/baaa"), directory());
}

TEST_F(ChangeDirByMenu, EveryNameLeadsToItsDirectory) {
  for (const std::string name :
       {"_hidden", "__init__", "_", "a\\b", "\\", "\\_x", "R&D", "me@home",
        "@b", "a|b", "a\tb", "100%", " ", "\xe9", "_&@|\\_"}) {
    fs::create_directories(name + "/=/-");
    build();
    change_dir_to(&ui, (name + "/=/-").c_str());
    pick(name);
    EXPECT_EQ(path_of(name), directory());
    EXPECT_EQ((Texts{"@b.", "@b..", "@b="}), potential());
  }
}

TEST_F(ChangeDirByMenu, ParentThatVanishedChangesNothing) {
  fs::create_directories("gone/sub");
  build();
  change_dir_to(&ui, "gone/sub");
  fs::remove_all("gone");
  pick("gone");
  EXPECT_EQ(path_of("gone/sub"), directory());
  EXPECT_EQ((Texts{"@b.", "@b.."}), potential());
}

TEST_F(ChangeDirByMenu, WithoutAChoiceNothingChanges) {
  fs::create_directories("home/src");
  build();
  change_dir_to(&ui, "home/src");
  const Texts before = potential();
  change_dir_menu_cb(ui.dir_menu_button, &ui);
  EXPECT_EQ(path_of("home/src"), directory());
  EXPECT_EQ(before, potential());
}

using ChangeDirByMenuDeathTest = ChangeDirByMenu;

TEST_F(ChangeDirByMenuDeathTest, NameThatIsNotInTheCurrentDirectoryAborts) {
  build();
  ui.dir_menu_button->add("no such name", 0, nullptr);
  EXPECT_DEATH(pick("no such name"),
               "zelkor_fltk: .*change_dir_menu_cb.*`d!=__null' failed");
}

// --- a change that waits for the end of its event ---

// Other events may be dealt with before it comes.
class WaitingChange : public ChangeDirByMenu {
 protected:
  void SetUp() override {
    ChangeDirByMenu::SetUp();
    for (const char* file : {"here/d1/x1", "here/f1", "here/f2"})
      write_file(file, "");
    show();
    change_dir_to(&ui, "here");
    Fl::check();
  }

  // A click with shift, after which the change to d1 waits.
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

TEST_F(WaitingChange, ComesBeforeFilesAreAdded) {
  ask_for_d1();
  click(*ui.add_button);
  expect_in_d1();
  EXPECT_EQ(Texts{}, selected());
  EXPECT_FALSE(ui.generate_button->active());
}

TEST_F(WaitingChange, ComesOnceWhenFilesAreAdded) {
  ask_for_d1();
  click(*ui.add_button);
  change_dir_to(&ui, "here");
  Fl::check();
  EXPECT_EQ(path_of("here"), directory());
}

TEST_F(WaitingChange, ComesNoSecondTimeWhenFilesAreAddedLater) {
  ask_for_d1();
  Fl::check();
  expect_in_d1();
  change_dir_to(&ui, "here");
  ui.potential_files->select(line_of(*ui.potential_files, "f1"));
  click(*ui.add_button);
  EXPECT_EQ(path_of("here"), directory());
  EXPECT_EQ(Texts{path_of("here/f1")}, selected());
}

TEST_F(WaitingChange, ComesAllTheSameWhenFilesAreRemoved) {
  ui.selected_files->add(path_of("here/d1/x1").c_str());
  ui.selected_files->select(1);
  ask_for_d1();
  click(*ui.remove_button);
  EXPECT_EQ(Texts{}, selected());
  Fl::check();
  expect_in_d1();
}

TEST_F(WaitingChange, IsDroppedForTheParentChosenAfterIt) {
  ask_for_d1();
  pick(folder.path().filename());
  EXPECT_EQ(folder.path(), directory());
  Fl::check();
  EXPECT_EQ(folder.path(), directory());
}

// It would free the items that are on screen.
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
