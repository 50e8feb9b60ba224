#include <FL/Fl.H>
#include <FL/Fl_Multi_Browser.H>
#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <string>
#include <vector>

#include "gui/file_panes.h"
#include "tests/gui/main_window_fixture.h"
#include "tests/gui/user.h"

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
    select_texts(*ui.potential_files, {text});
    ui.potential_files->do_callback();
  }

  const MessageBoxes boxes;
};

// Every "@" and the character after it belong to the prefix, even in the names
// of files. Deliberate: in a text that ends in "/", ".." only removes that "/",
// and it never leads to the root.
TEST_F(ClickDirectory, EntersTheDirectory) {
  const struct {
    Texts files;
    const char* from;
    Texts selected;
    const char* clicked;
    const char* to;
  } cases[] = {
      {{"src/a"}, "~", {}, "@bsrc", "~/src"},
      {{"src/a"}, "./", {}, "@bsrc", "~//src"},
      {{"src/a"}, "src", {}, "@b.", "~/src"},
      {{"src/deep/a"}, "src/deep", {}, "@b..", "~/src"},
      {{}, "./", {}, "@b..", "~"},
      {{}, "//", {}, "@b..", "~/"},
      {{}, "/usr", {}, "@b..", "~/"},
      {{"src/@x/a"}, "src", {}, "@b@x", "~/src"},
      {{"src/@/a"}, "src", {}, "@b@", "~/src"},
      {{"src/@xy/a", "src/y/a"}, "src", {}, "@b@xy", "~/src/y"},
      {{"src/@x"}, "src", {}, "@x", "~/src"},
      {{"src/@"}, "src", {}, "@", "~/src"},
      {{"src/@xy", "src/y/a"}, "src", {}, "@xy", "~/src/y"},
      // A selected last line does not count.
      {{"src/f"}, "src", {"f"}, "@b..", "~"},
  };
  build();
  for (const auto& c : cases) {
    SCOPED_TRACE(c.clicked);
    fs::remove_all("src");
    for (const std::string& file : c.files) write_file(file, "");
    go_to(c.from);
    select_texts(*ui.potential_files, c.selected);
    act_on(c.clicked);
    EXPECT_EQ(expanded(c.to), directory());
    EXPECT_EQ(Lines{}, selected_lines(*ui.potential_files));
  }
  EXPECT_EQ(Texts{}, boxes.seen());

  store_current_directory(&ui, "relative");
  act_on("@b..");
  EXPECT_EQ(path_of(""), directory());
}

TEST_F(ClickDirectory, IgnoresLinesThatAreNotDirectories) {
  write_file("a", "");
  fs::create_directories("src");
  build();
  ui.potential_files->do_callback();
  act_on("a");
  ui.potential_files->format_char('#');
  act_on("@bsrc");
  EXPECT_EQ(path_of(""), directory());
}

TEST_F(ClickDirectory, DropsADirectoryWhenOtherLinesAreSelected) {
  for (const char* name : {"a", "b", "c"}) write_file(name, "");
  for (const char* name : {"d", "me@home", "50%s", "\xe9"})
    fs::create_directories(name);
  build();
  Texts messages;
  for (const Texts& selected : {Texts{"a", "b"}, Texts{"@bd"}})
    for (const char* name : {"me@home", "50%s", "\xe9", ".", ".."}) {
      ui.potential_files->deselect();
      select_texts(*ui.potential_files, selected);
      const Lines before = selected_lines(*ui.potential_files);
      act_on(std::string("@b") + name);
      const bool home = name == std::string("me@home");
      messages.push_back(dropping_message(home ? "me@@home" : name));
      EXPECT_EQ(messages, boxes.seen());
      EXPECT_EQ(path_of(""), directory());
      EXPECT_EQ(before, selected_lines(*ui.potential_files));
    }
  EXPECT_EQ(reinterpret_cast<Fl_Callback*>(change_dir_click_cb),
            ui.potential_files->callback());
  EXPECT_EQ(&ui, ui.potential_files->user_data());
}

// --- the same by mouse and keyboard ---

// Lines: 1 "." 2 ".." 3 "d1" 4 "d2" 5 "f1" 6 "f2" 7 "f3"
class UserInDirectory : public MainWindowTest {
 protected:
  void SetUp() override {
    MainWindowTest::SetUp();
    for (const char* name :
         {"d1/x1", "d1/x2", "d1/x3", "d2/y1", "d2/y2", "f1", "f2", "f3"})
      write_file(std::string("here/") + name, "");
    show();
    go_here();
  }

  void go_here() {
    go_to("here");
    Fl::check();
    ASSERT_EQ(here_lines, potential());
  }

  Fl_Multi_Browser& list() { return *ui.potential_files; }
  Lines selection() { return selected_lines(list()); }

  // A negative number makes a line the current one and leaves it deselected.
  void select(const Lines& lines) {
    for (const int line : lines) list().select(abs(line), line > 0 ? 1 : 0);
  }

  void expect_still_here() {
    EXPECT_EQ(path_of("here"), directory());
    EXPECT_EQ(here_lines, potential());
  }

  // The list is refilled after the end of the event.
  void expect_change_after_event(const std::string& path) {
    expect_still_here();
    EXPECT_TRUE(comes_true([&] { return directory() == path; })) << directory();
  }

  const Texts here_lines = {"@b.", "@b..", "@bd1", "@bd2", "f1", "f2", "f3"};
};

// The button is still down when the list is refilled: a further move must
// neither select nor enter anything.
TEST_F(UserInDirectory, MouseSelectsLinesAndDropsOrEntersDirectories) {
  enum When { NEVER, AT_ONCE, AFTER_EVENT };
  const struct {
    Lines selected;
    int modifiers;
    int push;     // 0: the blank area below the lines
    int drag_to;  // 0: nowhere
    Texts dropped;
    Lines selection;
    When when;
    const char* entered;
  } cases[] = {
      // A click: lines that it deselects do not count.
      {{}, 0, 3, 0, {}, {}, AT_ONCE, "d1"},
      {{5, 6}, 0, 4, 0, {}, {}, AT_ONCE, "d2"},
      {{}, FL_CTRL, 4, 0, {}, {}, AT_ONCE, "d2"},
      {{5}, FL_CTRL, 3, 0, {"d1"}, {5}, NEVER, ""},
      {{7}, FL_CTRL, 3, 0, {}, {}, AT_ONCE, "d1"},
      {{3}, FL_CTRL, 3, 0, {}, {}, AT_ONCE, "d1"},
      // A range: the toolkit selects d2 before d1.
      {{-3}, FL_SHIFT, 3, 0, {}, {3}, AFTER_EVENT, "d1"},
      {{7}, FL_SHIFT, 3, 0, {"d1"}, {4, 5, 6, 7}, AFTER_EVENT, "d2"},
      {{5}, FL_SHIFT, 7, 0, {}, {5, 6, 7}, NEVER, ""},
      {{5}, FL_SHIFT, 3, 0, {"d2", "d1"}, {5}, NEVER, ""},
      {{3, 5, 2}, FL_SHIFT, 5, 0, {".."}, {}, AFTER_EVENT, "d1"},
      // A drag: with Ctrl it deselects.
      {{}, 0, 5, 4, {"d2"}, {5}, NEVER, ""},
      {{}, 0, 7, 4, {}, {4, 5, 6, 7}, AFTER_EVENT, "d2"},
      {{3, 4, 5}, FL_CTRL, 5, 3, {}, {}, AFTER_EVENT, "d2"},
      {{2, 3, 4, 5}, FL_CTRL, 5, 2, {".."}, {}, AFTER_EVENT, "d2"},
      {{5}, 0, 0, 4, {}, {4, 5, 6}, AFTER_EVENT, "d2"},
  };
  for (std::size_t i = 0; i < std::size(cases); ++i) {
    const auto& c = cases[i];
    SCOPED_TRACE(i);
    go_here();
    select(c.selected);
    const MessageBoxes boxes;
    if (c.push == 0)
      push_below(list());
    else
      push(list(), c.push, c.modifiers);
    if (c.drag_to != 0) drag_to(list(), c.drag_to, c.modifiers);
    Texts messages;
    for (const std::string& name : c.dropped)
      messages.push_back(dropping_message(name));
    EXPECT_EQ(messages, boxes.seen());
    EXPECT_EQ(c.selection, selection());
    if (c.when == NEVER) {
      release(list(), 5, c.modifiers);
      Fl::check();
      expect_still_here();
      continue;
    }
    const std::string entered = path_of("here/") + c.entered;
    if (c.when == AFTER_EVENT) expect_change_after_event(entered);
    const Texts lines = c.entered == std::string("d1")
                            ? Texts{"@b.", "@b..", "x1", "x2", "x3"}
                            : Texts{"@b.", "@b..", "y1", "y2"};
    EXPECT_EQ(lines, potential());
    for (const int line : {2, 1, 4, 3}) {
      drag_to(list(), line, c.modifiers);
      Fl::check();
    }
    release(list(), 3, c.modifiers);
    Fl::check();
    EXPECT_EQ(entered, directory());
    EXPECT_EQ(lines, potential());
    EXPECT_EQ(Lines{}, selection());
    EXPECT_EQ(messages, boxes.seen());
    click(list(), 4);
    EXPECT_EQ(Lines{4}, selection());
  }
}

TEST_F(UserInDirectory, KeysSelectLinesAndEnterDirectoriesAfterTheEvent) {
  const struct {
    Lines selected;
    int modifiers;
    std::vector<int> keys;
    Lines selection;
    const char* entered;
  } cases[] = {
      {{}, 0, {FL_Down, FL_Down, ' '}, {3}, "~/here/d1"},
      {{}, 0, {FL_Down, FL_Down, FL_Down, FL_Enter}, {4}, "~/here/d2"},
      {{}, FL_SHIFT, {FL_Down}, {2}, "~"},
      {{5}, 0, {FL_Down, ' '}, {5, 6}, "~/here"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.entered);
    go_here();
    list().take_focus();
    select(c.selected);
    for (const int key : c.keys) press_key(*window, key, c.modifiers);
    EXPECT_EQ(c.selection, selection());
    expect_change_after_event(expanded(c.entered));
  }
}

// The box is closed, but the list has not finished its event.
TEST_F(UserInDirectory, ListIsNotRefilledWhileTheMessageBoxCloses) {
  click(list(), 5);
  {
    bool clicked = false;
    const ModalWatcher user([&](Fl_Window& box) {
      if (clicked) return;
      clicked = true;
      box.hide();
      write_file("here/new", "");
      add({});
      remove({});
      pick(folder.path().filename());
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

}  // namespace
