#include "gui/file_panes.h"

#include <FL/Fl.H>
#include <FL/Fl_Button.H>
#include <FL/Fl_Multi_Browser.H>
#include <gtest/gtest.h>

#include <filesystem>
#include <memory>
#include <string>

#include "gui/special_browser.h"
#include "tests/gui/main_window_fixture.h"
#include "tests/support/ordinary_user.h"

namespace fs = std::filesystem;

namespace {

// --- fill_files ---

class FillFiles : public MainWindowTest {
 protected:
  void SetUp() override {
    MainWindowTest::SetUp();
    build();
    Fl_Group::current(nullptr);
    list = std::make_unique<Fl_Multi_Browser>(0, 0, 210, 215);
    list->add("old");
    list->select(1);
  }
  Texts lines() const { return lines_of(*list); }

  std::unique_ptr<Fl_Multi_Browser> list;
};

// Directories come in bold before files, each in the toolkit's order. The paths
// of selected files are compared as texts.
TEST_F(FillFiles, ListsDirectoriesBeforeUnselectedFiles) {
  const std::string deep = std::string(200, 'd') + "/" + std::string(200, 'e');
  const std::string name(250, 'f');
  const struct {
    Texts directories, files, selected;
    std::string dir;
    Texts lines;
  } cases[] = {
      {{"z/src", "z/lib"},
       {"z/a", "z/zoo"},
       {},
       "z",
       {"@blib", "@bsrc", "a", "zoo"}},
      {{}, {"d/b", "d/a"}, {}, "d", {"a", "b"}},
      {{"d/b", "d/a"}, {}, {}, "d", {"@ba", "@bb"}},
      {{"d/s10", "d/s9", "d/S"},
       {"d/m10", "d/m9", "d/M9", "d/a"},
       {},
       "d",
       {"@bS", "@bs9", "@bs10", "M9", "a", "m9", "m10"}},
      {{"d/.git"},
       {"d/.setup", "d/README", "d/a~"},
       {},
       "d",
       {"@b.git", ".setup", "README", "a~"}},
      {{}, {"d/@bold", "d/a\tb", "d/x|y"}, {}, "d", {"@bold", "a\tb", "x|y"}},
      {{}, {"d/a", "d/b"}, {"d/b"}, "d/", {"a"}},
      {{},
       {"d/a", "d/b", "d/c", "d/d"},
       {"./d/a", "D/b", "d/c", "d//d", "b"},
       "d",
       {"a", "b", "d"}},
      {{"d/sub"}, {}, {"d/sub"}, "d", {"@bsub"}},
      {{deep + "/sub"}, {deep + "/" + name}, {}, deep, {"@bsub", name}},
  };
  for (auto c : cases) {
    const TemporaryFolder of_the_case;
    for (const std::string& path : c.directories) fs::create_directories(path);
    for (const std::string& path : c.files) write_file(path, "");
    ui.selected_files->clear();
    for (const std::string& path : c.selected)
      ui.selected_files->add(path.c_str());
    EXPECT_TRUE(fill_files(list.get(), c.dir.c_str()));
    c.lines.insert(c.lines.begin(), {"@b.", "@b.."});
    EXPECT_EQ(c.lines, lines());
    EXPECT_EQ(Lines{}, selected_lines(*list));
    for (int line = 1; line <= list->size(); ++line)
      EXPECT_EQ(nullptr, list->data(line));
  }
}

TEST_F(FillFiles, TreatsLinksAsTheirTargets) {
  fs::create_directories("d/real");
  fs::create_directory_symlink("real", "d/to_directory");
  fs::create_symlink("nowhere", "d/to_nothing");
  EXPECT_TRUE(fill_files(list.get(), "d"));
  EXPECT_EQ((Texts{"@b.", "@b..", "@breal", "@bto_directory", "to_nothing"}),
            lines());
}

TEST_F(FillFiles, LeavesTheListUnchangedWhenADirectoryCannotBeListed) {
  write_file("file", "");
  write_file("locked/a", "");
  fs::create_symlink("loop", "loop");
  fs::permissions(folder.path(), fs::perms(0755));
  fs::permissions("locked", fs::perms::none);
  for (const char* dir :
       {"nowhere", "file", "loop", "", "nowhere/", "file/", "locked"}) {
    const AsOrdinaryUser user;
    EXPECT_FALSE(fill_files(list.get(), dir)) << dir;
    EXPECT_EQ(Texts{"old"}, lines()) << dir;
    EXPECT_EQ(Lines{1}, selected_lines(*list)) << dir;
  }
  fs::permissions("locked", fs::perms::owner_all);
  const TemporaryFolder removed;
  fs::remove(removed.path());
  EXPECT_FALSE(fill_files(list.get(), "."));
  EXPECT_EQ(Texts{"old"}, lines());
}

// --- already_included and select_count ---

using FilePanes = MainWindowTest;

TEST_F(FilePanes, AlreadyIncludedComparesWholeTexts) {
  build();
  for (const char* path : {"/src/a.f90", "/src/b.f90"})
    ui.selected_files->add(path);
  for (const char* path : {"/src/a.f90", "/src/b.f90"})
    EXPECT_TRUE(already_included(path)) << path;
  for (const char* path :
       {"", "/src/c.f90", "/SRC/a.f90", "/src/a.f9", "/src/a.f90 ", "a.f90"})
    EXPECT_FALSE(already_included(path)) << path;
}

TEST_F(FilePanes, SelectCountIgnoresTheLastLine) {
  const struct {
    int lines;
    Lines selected;
    int count;
  } cases[] = {
      {0, {}, 0},  {1, {1}, 0},    {4, {}, 0},
      {4, {1}, 1}, {4, {2}, 1},    {4, {1, 3}, 2},
      {4, {4}, 0}, {4, {1, 4}, 1}, {4, {1, 2, 3, 4}, 3},
  };
  Fl_Group::current(nullptr);
  for (const auto& c : cases) {
    Fl_Multi_Browser list(0, 0, 100, 100);
    for (int i = 0; i < c.lines; ++i) list.add("line");
    for (const int line : c.selected) list.select(line);
    EXPECT_EQ(c.count, select_count(&list))
        << testing::PrintToString(c.selected);
  }
}

// --- "<<<" and ">>>" ---

class MoveFiles : public MainWindowTest {
 protected:
  void SetUp() override {
    MainWindowTest::SetUp();
    for (const char* name : {"a", "b", "c", "sub/a", "sub/d"})
      write_file(name, "");
    build();
    go_to(folder.path());
  }
  bool can_generate() const { return ui.generate_button->active() != 0; }
  // The entries do not include "." and "..".
  void expect(Texts entries, const Texts& paths) const {
    entries.insert(entries.begin(), {"@b.", "@b.."});
    EXPECT_EQ(entries, potential());
    EXPECT_EQ(paths, selected());
    EXPECT_EQ(Lines{}, selected_lines(*ui.potential_files));
    EXPECT_EQ(Lines{}, selected_lines(*ui.selected_files));
    for (int line = 1; line <= ui.selected_files->size(); ++line)
      EXPECT_EQ(nullptr, ui.selected_files->data(line));
  }
};

TEST_F(MoveFiles, MovesEntriesInListOrderAndBack) {
  EXPECT_FALSE(can_generate());
  add({"c", "a"});
  expect({"@bsub", "b"}, {path_of("a"), path_of("c")});
  EXPECT_TRUE(can_generate());
  remove({path_of("a")});
  expect({"@bsub", "a", "b"}, {path_of("c")});
  EXPECT_TRUE(can_generate());
  remove({path_of("c")});
  expect({"@bsub", "a", "b", "c"}, {});
  EXPECT_FALSE(can_generate());
}

TEST_F(MoveFiles, NeverSortsSelectedFiles) {
  add({"c"});
  go_to(path_of("sub"));
  add({"d"});
  go_to(folder.path());
  add({"a", "b"});
  remove({path_of("b")});
  expect({"@bsub", "b"}, {path_of("c"), path_of("sub/d"), path_of("a")});
}

TEST_F(MoveFiles, DropsOneTrailingSlashOfTheDirectory) {
  go_to(".");
  ASSERT_EQ(path_of(""), directory());
  add({"a"});
  expect({"@bsub", "b", "c"}, {path_of("a")});
  EXPECT_EQ(path_of(""), directory());
}

TEST_F(MoveFiles, RefreshesTheListWhenNothingIsSelected) {
  write_file("d", "");
  add({});
  expect({"@bsub", "a", "b", "c", "d"}, {});
  EXPECT_FALSE(can_generate());
  fs::remove("a");
  ui.generate_button->activate();
  remove({});
  expect({"@bsub", "b", "c", "d"}, {});
  EXPECT_FALSE(can_generate());
  add({"b"});
  remove({});
  expect({"@bsub", "c", "d"}, {path_of("b")});
  EXPECT_TRUE(can_generate());
}

// The button becomes active even if the path is already included.
TEST_F(MoveFiles, NeverAddsAPathTwice) {
  ui.selected_files->add(path_of("a").c_str());
  add({"a"});
  expect({"@bsub", "b", "c"}, {path_of("a")});
  EXPECT_TRUE(can_generate());
}

TEST_F(MoveFiles, AddsADirectoryLineWithItsFormatPrefix) {
  add({"@bsub", "a"});
  expect({"@bsub", "b", "c"}, {path_of("@bsub"), path_of("a")});
}

TEST_F(MoveFiles, RemovingNeverActivatesTheGenerateButton) {
  for (const char* path : {"x", "y", "x"}) ui.selected_files->add(path);
  ui.selected_files->select(3);
  remove({});
  EXPECT_EQ((Texts{"x", "y"}), selected());
  EXPECT_FALSE(can_generate());
}

TEST_F(MoveFiles, KeepsTheScrollPositionOfBothLists) {
  for (int i = 100; i < 160; ++i) write_file("many/" + std::to_string(i), "");
  go_to("many");
  show_and_wait(*window);
  const Texts all = potential();
  add(Texts(all.begin() + 2, all.begin() + 42));
  ui.selected_files->topline(20);
  ui.potential_files->topline(5);
  const auto expect_same_places = [this] {
    Fl::check();
    EXPECT_EQ(20, ui.selected_files->topline());
    EXPECT_EQ(5, ui.potential_files->topline());
  };
  expect_same_places();
  ui.selected_files->select(25);
  remove({});
  expect_same_places();
  ui.potential_files->select(15);
  add({});
  expect_same_places();
}

}  // namespace
