#include <FL/Fl.H>
#include <FL/Fl_Button.H>
#include <FL/Fl_Menu_Button.H>
#include <FL/Fl_Multi_Browser.H>
#include <gtest/gtest.h>

#include <sys/stat.h>

#include <filesystem>
#include <string>

#include "gui/file_panes.h"
#include "tests/gui/main_window_fixture.h"
#include "tests/gui/user.h"
#include "tests/support/ordinary_user.h"

namespace fs = std::filesystem;

namespace {

std::string dropping_message(const std::string& name) {
  return "i Dropping the directory '" + name +
         "' from your selection.\n"
         "Only select that one item if you want to switch to that directory.";
}

// --- change_dir_click_cb, called as the toolkit would ---

class ClickDirectory : public MainWindowTest {
 protected:
  // Makes a line the current one and selects it, then calls back.
  void act_on(const std::string& text) {
    ui.potential_files->select(line_of(*ui.potential_files, text));
    ui.potential_files->do_callback();
  }
};

TEST_F(ClickDirectory, FilesAreSimplySelected) {
  write_file("a.f90", "");
  write_file("b.f90", "");
  build();
  const std::string before = directory();
  const MessageBoxes boxes;
  act_on("a.f90");
  act_on("b.f90");
  EXPECT_EQ(before, directory());
  EXPECT_EQ((Lines{3, 4}), selected_lines(*ui.potential_files));
  EXPECT_EQ(Texts{}, boxes.seen());
}

TEST_F(ClickDirectory, SubdirectoryIsEntered) {
  write_file("src/a.f90", "");
  build();
  change_dir_to(&ui, folder.path().c_str());
  act_on("@bsrc");
  EXPECT_EQ(path_of("src"), directory());
  EXPECT_EQ((Texts{"@b.", "@b..", "a.f90"}), potential());
  EXPECT_EQ(Lines{}, selected_lines(*ui.potential_files));
}

TEST_F(ClickDirectory, DoubledSlashesFromJoiningStay) {
  fs::create_directories("src");
  build();
  act_on("@bsrc");
  EXPECT_EQ(path_of("/src"), directory());
}

TEST_F(ClickDirectory, PointListsTheSameDirectoryAgain) {
  fs::create_directories("src");
  build();
  change_dir_to(&ui, "src");
  write_file("src/new", "");
  act_on("@b.");
  EXPECT_EQ(path_of("src"), directory());
  EXPECT_EQ((Texts{"@b.", "@b..", "new"}), potential());
}

TEST_F(ClickDirectory, TwoPointsGoUp) {
  fs::create_directories("src/deep");
  build();
  change_dir_to(&ui, "src/deep");
  act_on("@b..");
  EXPECT_EQ(path_of("src"), directory());
  act_on("@b..");
  EXPECT_EQ(folder.path(), directory());
}

// Deliberate: from a text that ends in "/", ".." only takes that away.
TEST_F(ClickDirectory, FirstTwoPointsOnlyTakeATrailingSlashAway) {
  build();
  EXPECT_EQ(path_of(""), directory());
  act_on("@b..");
  EXPECT_EQ(folder.path(), directory());
  act_on("@b..");
  EXPECT_EQ(folder.path().parent_path(), directory());
}

TEST_F(ClickDirectory, TwoPointsFromTheRootListTheWorkingDirectory) {
  build();
  change_dir_to(&ui, "//");
  ASSERT_EQ("/", directory());
  act_on("@b..");
  EXPECT_EQ(path_of(""), directory());
}

TEST_F(ClickDirectory, TwoPointsFromUsrListTheWorkingDirectory) {
  build();
  change_dir_to(&ui, "/usr");
  EXPECT_EQ("/usr", directory());
  act_on("@b..");
  EXPECT_EQ(path_of(""), directory());
}

TEST_F(ClickDirectory, TwoPointsFromATextWithoutSlashListTheWorkingDirectory) {
  build();
  store_current_directory(&ui, "relative");
  act_on("@b..");
  EXPECT_EQ(path_of(""), directory());
}

// Every "@" and the character after it belong to the prefix.
TEST_F(ClickDirectory, NamesThatBeginWithAnAtSignAreTakenForPrefixes) {
  fs::create_directories("src/@x");
  fs::create_directories("src/@xy/inside");
  fs::create_directories("src/y/target");
  fs::create_directories("src/@");
  build();
  change_dir_to(&ui, "src");
  act_on("@b@x");
  EXPECT_EQ(path_of("src"), directory());
  act_on("@b@");
  EXPECT_EQ(path_of("src"), directory());
  act_on("@b@xy");
  EXPECT_EQ(path_of("src/y"), directory());
  EXPECT_EQ((Texts{"@b.", "@b..", "@btarget"}), potential());
}

TEST_F(ClickDirectory, FilesThatBeginWithAnAtSignAreTakenForDirectories) {
  write_file("src/@", "");
  write_file("src/@x", "");
  write_file("src/@xy", "");
  fs::create_directories("src/y");
  build();
  change_dir_to(&ui, "src");
  act_on("@x");
  EXPECT_EQ(path_of("src"), directory());
  act_on("@");
  EXPECT_EQ(path_of("src"), directory());
  act_on("@xy");
  EXPECT_EQ(path_of("src/y"), directory());
}

TEST_F(ClickDirectory, TheListsOwnFormatCharacterCounts) {
  fs::create_directories("src");
  build();
  ui.potential_files->format_char('#');
  act_on("@bsrc");
  EXPECT_EQ(path_of(""), directory());
}

TEST_F(ClickDirectory, DirectoryThatVanishedChangesNothing) {
  fs::create_directories("src");
  build();
  const Texts lines = potential();
  fs::remove("src");
  const MessageBoxes boxes;
  act_on("@bsrc");
  EXPECT_EQ(path_of(""), directory());
  EXPECT_EQ(lines, potential());
  EXPECT_EQ(Texts{}, boxes.seen());
}

TEST_F(ClickDirectory, UnreadableDirectoryChangesNothing) {
  ASSERT_EQ(0, chmod(folder.path().c_str(), 0755));
  fs::create_directories("locked");
  ASSERT_EQ(0, chmod("locked", 0));
  build();
  {
    const AsOrdinaryUser user;
    act_on("@blocked");
  }
  EXPECT_EQ(path_of(""), directory());
  ASSERT_EQ(0, chmod("locked", 0755));
}

TEST_F(ClickDirectory, NothingHappensWithoutALine) {
  build();
  ui.potential_files->do_callback();
  EXPECT_EQ(path_of(""), directory());
}

TEST_F(ClickDirectory, DirectoryAmongOtherSelectedLinesIsDropped) {
  fs::create_directories("src");
  for (const char* name : {"a", "b", "c"}) write_file(name, "");
  build();
  const MessageBoxes boxes;
  select_texts(*ui.potential_files, {"a", "b"});
  act_on("@bsrc");
  EXPECT_EQ(Texts{dropping_message("src")}, boxes.seen());
  EXPECT_EQ(path_of(""), directory());
  EXPECT_EQ((Lines{4, 5}), selected_lines(*ui.potential_files));
  EXPECT_EQ(reinterpret_cast<Fl_Callback*>(change_dir_click_cb),
            ui.potential_files->callback());
  EXPECT_EQ(&ui, ui.potential_files->user_data());
}

TEST_F(ClickDirectory, TwoDirectoriesAreDroppedOneByOne) {
  fs::create_directories("d1");
  fs::create_directories("d2");
  write_file("last", "");
  build();
  const MessageBoxes boxes;
  select_texts(*ui.potential_files, {"@bd1"});
  act_on("@bd2");
  EXPECT_EQ(Texts{dropping_message("d2")}, boxes.seen());
  EXPECT_EQ(Lines{3}, selected_lines(*ui.potential_files));
}

TEST_F(ClickDirectory, MessageShowsNamesAsTheyAre) {
  write_file("a", "");
  write_file("b", "");
  for (const char* name : {"me@home", "50%s", "\xe9"})
    fs::create_directories(name);
  build();
  const MessageBoxes boxes;
  select_texts(*ui.potential_files, {"a"});
  for (const char* text : {"@bme@home", "@b50%s", "@b\xe9", "@b.", "@b.."})
    act_on(text);
  EXPECT_EQ((Texts{dropping_message("me@@home"), dropping_message("50%s"),
                   dropping_message("\xe9"), dropping_message("."),
                   dropping_message("..")}),
            boxes.seen());
}

TEST_F(ClickDirectory, SelectedLastLineDoesNotCount) {
  write_file("src/f", "");
  build();
  change_dir_to(&ui, "src");
  ASSERT_EQ((Texts{"@b.", "@b..", "f"}), potential());
  const MessageBoxes boxes;
  select_texts(*ui.potential_files, {"f"});
  act_on("@b..");
  EXPECT_EQ(Texts{}, boxes.seen());
  EXPECT_EQ(folder.path(), directory());
}

TEST_F(ClickDirectory, DirectoryOnTheLastLineIsEnteredNextToOneSelectedFile) {
  fs::create_directories("src/z");
  build();
  change_dir_to(&ui, "src");
  ui.potential_files->add("file");
  ui.potential_files->move(3, 4);
  ASSERT_EQ((Texts{"@b.", "@b..", "file", "@bz"}), potential());
  const MessageBoxes boxes;
  select_texts(*ui.potential_files, {"file"});
  act_on("@bz");
  EXPECT_EQ(Texts{}, boxes.seen());
  EXPECT_EQ(path_of("src/z"), directory());
}

// --- the same by mouse and keyboard ---

// Lines: 1 "." 2 ".." 3 "d1" 4 "d2" 5 "f1" 6 "f2" 7 "f3"
class UserInDirectory : public MainWindowTest {
 protected:
  void SetUp() override {
    MainWindowTest::SetUp();
    for (const char* name : {"d1/x1", "d1/x2", "d1/x3", "d2/y1", "d2/y2"})
      write_file(std::string("here/") + name, "");
    for (const char* name : {"f1", "f2", "f3"})
      write_file(std::string("here/") + name, "");
    show();
    change_dir_to(&ui, "here");
    Fl::check();
    ASSERT_EQ(here_lines, potential());
  }

  Fl_Multi_Browser& list() { return *ui.potential_files; }
  Lines selection() { return selected_lines(list()); }

  void expect_still_here() {
    EXPECT_EQ(path_of("here"), directory());
    EXPECT_EQ(here_lines, potential());
  }

  // The refill waits for the end of the event, and then comes.
  void expect_change_after_event(const std::string& path) {
    expect_still_here();
    EXPECT_TRUE(comes_true([&] { return directory() == path; })) << directory();
  }

  const Texts here_lines = {"@b.", "@b..", "@bd1", "@bd2", "f1", "f2", "f3"};
  const Texts d1_lines = {"@b.", "@b..", "x1", "x2", "x3"};
  const Texts d2_lines = {"@b.", "@b..", "y1", "y2"};
};

TEST_F(UserInDirectory, ClickEntersTheDirectoryAtOnce) {
  push(list(), 3);
  EXPECT_EQ(path_of("here/d1"), directory());
  EXPECT_EQ(d1_lines, potential());
  EXPECT_EQ(Lines{}, selection());
}

TEST_F(UserInDirectory, ClickOnADirectoryDeselectsTheFilesBefore) {
  const MessageBoxes boxes;
  click(list(), 5);
  EXPECT_EQ(Lines{5}, selection());
  click(list(), 4);
  EXPECT_EQ(path_of("here/d2"), directory());
  EXPECT_EQ(Texts{}, boxes.seen());
}

TEST_F(UserInDirectory, CtrlClickEntersALoneDirectoryAtOnce) {
  click(list(), 4, FL_CTRL);
  EXPECT_EQ(path_of("here/d2"), directory());
  EXPECT_EQ(d2_lines, potential());
}

TEST_F(UserInDirectory, CtrlClickNextToASelectedFileDropsTheDirectory) {
  const MessageBoxes boxes;
  click(list(), 5);
  click(list(), 3, FL_CTRL);
  EXPECT_EQ(Texts{dropping_message("d1")}, boxes.seen());
  EXPECT_EQ(Lines{5}, selection());
  expect_still_here();
}

// The box is gone, and the list's event has yet to go on.
TEST_F(UserInDirectory, NothingRefillsTheListAsTheMessageBoxCloses) {
  click(list(), 5);
  {
    bool clicked = false;
    const ModalWatcher user([&](Fl_Window& box) {
      if (clicked) return;
      clicked = true;
      box.hide();
      write_file("here/new", "");
      ui.add_button->do_callback();
      ui.remove_button->do_callback();
      ui.dir_menu_button->picked(&ui.dir_menu_button->menu()[0]);
      list().deselect();
      click(list(), 4);
      expect_still_here();
      EXPECT_EQ(Texts{}, selected());
      button_of(box, "Close")->do_callback();
    });
    click(list(), 3, FL_CTRL);
    EXPECT_TRUE(clicked);
  }
  expect_change_after_event(path_of("here/d2"));
}

TEST_F(UserInDirectory, CtrlClickNextToTheSelectedLastFileEnters) {
  const MessageBoxes boxes;
  click(list(), 7);
  click(list(), 3, FL_CTRL);
  EXPECT_EQ(Texts{}, boxes.seen());
  EXPECT_EQ(path_of("here/d1"), directory());
}

TEST_F(UserInDirectory, CtrlClickThatDeselectsALoneDirectoryEntersIt) {
  list().select(3);
  click(list(), 3, FL_CTRL);
  EXPECT_EQ(path_of("here/d1"), directory());
}

TEST_F(UserInDirectory, MovingOnAfterAClickChangesNothing) {
  const MessageBoxes boxes;
  push(list(), 3);
  Fl::check();
  for (const int line : {2, 1, 4, 5, 3}) {
    drag_to(list(), line);
    Fl::check();
  }
  release(list(), 3);
  Fl::check();
  EXPECT_EQ(path_of("here/d1"), directory());
  EXPECT_EQ(d1_lines, potential());
  EXPECT_EQ(Lines{}, selection());
  EXPECT_EQ(Texts{}, boxes.seen());
}

TEST_F(UserInDirectory, ListTakesClicksAgainAfterEntering) {
  click(list(), 3);
  Fl::check();
  click(list(), 4);
  EXPECT_EQ(Lines{4}, selection());
  click(list(), 2);
  expect_still_here();
}

TEST_F(UserInDirectory, ShiftClickOnADirectoryEntersItAfterTheEvent) {
  list().select(3, 0);
  click(list(), 3, FL_SHIFT);
  expect_change_after_event(path_of("here/d1"));
  EXPECT_EQ(d1_lines, potential());
}

TEST_F(UserInDirectory, ShiftRangeUpToADirectory) {
  const MessageBoxes boxes;
  click(list(), 7);
  click(list(), 3, FL_SHIFT);
  // d2 is met first and is alone but for the last line; d1 comes last.
  EXPECT_EQ(Texts{dropping_message("d1")}, boxes.seen());
  EXPECT_EQ((Lines{4, 5, 6, 7}), selection());
  expect_change_after_event(path_of("here/d2"));
  EXPECT_EQ(d2_lines, potential());
}

TEST_F(UserInDirectory, ShiftRangeOfFilesEntersNothing) {
  const MessageBoxes boxes;
  click(list(), 5);
  click(list(), 7, FL_SHIFT);
  Fl::check();
  EXPECT_EQ((Lines{5, 6, 7}), selection());
  EXPECT_EQ(Texts{}, boxes.seen());
  expect_still_here();
}

TEST_F(UserInDirectory, ShiftRangeOverDirectoriesFromAFileDropsThemAll) {
  const MessageBoxes boxes;
  click(list(), 5);
  click(list(), 3, FL_SHIFT);
  EXPECT_EQ((Texts{dropping_message("d2"), dropping_message("d1")}),
            boxes.seen());
  EXPECT_EQ(Lines{5}, selection());
  Fl::check();
  expect_still_here();
}

// The toolkit is not done with an event while a callback waits in a box.
TEST_F(UserInDirectory, RefillWaitsWhileAMessageBoxIsOpen) {
  static bool time_enough = false;
  time_enough = false;
  Fl::add_timeout(0.25, [](void*) { time_enough = true; });
  const MessageBoxes boxes([&] {
    EXPECT_EQ(here_lines, potential());
    return time_enough;
  });
  click(list(), 7);
  click(list(), 3, FL_SHIFT);
  EXPECT_EQ(Texts{dropping_message("d1")}, boxes.seen());
  expect_change_after_event(path_of("here/d2"));
}

TEST_F(UserInDirectory, DragOverADirectoryNextToASelectedFileDropsIt) {
  const MessageBoxes boxes;
  push(list(), 5);
  drag_to(list(), 4);
  EXPECT_EQ(Texts{dropping_message("d2")}, boxes.seen());
  EXPECT_EQ(Lines{5}, selection());
  release(list(), 4);
  Fl::check();
  expect_still_here();
}

TEST_F(UserInDirectory, DragFromTheLastLineEntersADirectoryAfterTheEvent) {
  push(list(), 7);
  drag_to(list(), 4);
  EXPECT_EQ((Lines{4, 5, 6, 7}), selection());
  expect_change_after_event(path_of("here/d2"));
  release(list(), 4);
  EXPECT_EQ(d2_lines, potential());
  EXPECT_EQ(Lines{}, selection());
}

TEST_F(UserInDirectory, DragThatDeselectsDirectoriesEntersTheLastOne) {
  for (const int line : {3, 4, 5}) list().select(line);
  push(list(), 5, FL_CTRL);
  EXPECT_EQ((Lines{3, 4}), selection());
  const MessageBoxes boxes;
  drag_to(list(), 3, FL_CTRL);
  EXPECT_EQ(Lines{}, selection());
  EXPECT_EQ(Texts{}, boxes.seen());
  expect_change_after_event(path_of("here/d2"));
}

// The events that close a message box come in the midst of the drag.
TEST_F(UserInDirectory, DragEntersADirectoryAfterADroppedOneAfterTheEvent) {
  for (const int line : {2, 3, 4, 5}) list().select(line);
  push(list(), 5, FL_CTRL);
  EXPECT_EQ((Lines{2, 3, 4}), selection());
  const MessageBoxes boxes;
  drag_to(list(), 2, FL_CTRL);
  EXPECT_EQ(Texts{dropping_message("..")}, boxes.seen());
  EXPECT_EQ(Lines{}, selection());
  expect_change_after_event(path_of("here/d2"));
}

TEST_F(UserInDirectory, ShiftRangeEntersADirectoryAfterADroppedOneAfterIt) {
  for (const int line : {3, 5, 2}) list().select(line);
  const MessageBoxes boxes;
  click(list(), 5, FL_SHIFT);
  EXPECT_EQ(Texts{dropping_message("..")}, boxes.seen());
  EXPECT_EQ(Lines{}, selection());
  expect_change_after_event(path_of("here/d1"));
}

TEST_F(UserInDirectory, DragFromTheBlankAreaBelow) {
  push(list(), 5);
  release(list(), 5);
  push_below(list());
  EXPECT_EQ(Lines{}, selection());
  drag_to(list(), 4);
  expect_change_after_event(path_of("here/d2"));
  release(list(), 4);
}

// The button is still down when the list is refilled: moving on must neither
// select nor enter anything.
TEST_F(UserInDirectory, MovingOnAfterADragIntoADirectoryChangesNothing) {
  const MessageBoxes boxes;
  push(list(), 7);
  drag_to(list(), 4);
  expect_change_after_event(path_of("here/d2"));
  for (const int line : {3, 2, 1, 4}) {
    drag_to(list(), line);
    Fl::check();
  }
  release(list(), 4);
  Fl::check();
  EXPECT_EQ(path_of("here/d2"), directory());
  EXPECT_EQ(d2_lines, potential());
  EXPECT_EQ(Lines{}, selection());
  EXPECT_EQ(Texts{}, boxes.seen());
}

TEST_F(UserInDirectory, MovingOnAfterAShiftClickOnADirectoryChangesNothing) {
  const MessageBoxes boxes;
  list().select(3, 0);
  push(list(), 3, FL_SHIFT);
  expect_change_after_event(path_of("here/d1"));
  for (const int line : {2, 1, 4, 5}) {
    drag_to(list(), line, FL_SHIFT);
    Fl::check();
  }
  release(list(), 5, FL_SHIFT);
  Fl::check();
  EXPECT_EQ(path_of("here/d1"), directory());
  EXPECT_EQ(d1_lines, potential());
  EXPECT_EQ(Lines{}, selection());
  EXPECT_EQ(Texts{}, boxes.seen());
}

// Of several changes that wait, the last one counts.
TEST_F(UserInDirectory, LaterClickTakesThePlaceOfAWaitingChange) {
  push(list(), 7);
  drag_to(list(), 4);
  release(list(), 4);
  click(list(), 3);
  EXPECT_EQ(path_of("here/d1"), directory());
  Fl::check();
  Fl::check();
  EXPECT_EQ(path_of("here/d1"), directory());
}

TEST_F(UserInDirectory, SpaceBarEntersTheDirectoryAfterTheEvent) {
  list().take_focus();
  press_key(*window, FL_Down);
  press_key(*window, FL_Down);
  press_key(*window, ' ');
  expect_change_after_event(path_of("here/d1"));
  EXPECT_EQ(d1_lines, potential());
}

TEST_F(UserInDirectory, EnterKeyEntersTheDirectoryAfterTheEvent) {
  list().take_focus();
  press_key(*window, FL_Down);
  press_key(*window, FL_Down);
  press_key(*window, FL_Down);
  press_key(*window, FL_Enter);
  expect_change_after_event(path_of("here/d2"));
}

TEST_F(UserInDirectory, ShiftAndCursorKeysOverDirectories) {
  list().take_focus();
  const MessageBoxes boxes;
  press_key(*window, FL_Down, FL_SHIFT);
  expect_change_after_event(folder.path());
}

TEST_F(UserInDirectory, KeysOnFilesSelectThem) {
  const MessageBoxes boxes;
  click(list(), 5);
  press_key(*window, FL_Down);
  press_key(*window, ' ');
  Fl::check();
  EXPECT_EQ((Lines{5, 6}), selection());
  expect_still_here();
  EXPECT_EQ(Texts{}, boxes.seen());
}

}  // namespace
