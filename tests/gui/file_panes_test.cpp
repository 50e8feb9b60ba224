#include "gui/file_panes.h"

#include <FL/Fl.H>
#include <FL/Fl_Button.H>
#include <FL/Fl_Multi_Browser.H>
#include <gtest/gtest.h>

#include <sys/stat.h>

#include <algorithm>
#include <filesystem>
#include <memory>
#include <string>

#include "gui/special_browser.h"
#include "tests/gui/main_window_fixture.h"
#include "tests/gui/user.h"
#include "tests/support/ordinary_user.h"

namespace fs = std::filesystem;

namespace {

using FilePanes = MainWindowTest;

// --- fill_files ---

class FillFiles : public MainWindowTest {
 protected:
  void SetUp() override {
    MainWindowTest::SetUp();
    build();
    Fl_Group::current(nullptr);
    list = std::make_unique<Fl_Multi_Browser>(0, 0, 210, 215);
  }
  Texts lines() const { return lines_of(*list); }

  std::unique_ptr<Fl_Multi_Browser> list;
};

TEST_F(FillFiles, ListsDirectoriesInBoldThenFiles) {
  write_file("z/lib/in.f90", "");
  write_file("z/a.f90", "");
  write_file("z/zoo", "");
  fs::create_directory("z/src");
  EXPECT_TRUE(fill_files(list.get(), "z"));
  EXPECT_EQ((Texts{"@b.", "@b..", "@blib", "@bsrc", "a.f90", "zoo"}), lines());
}

TEST_F(FillFiles, FilesAloneHaveNoHeadings) {
  write_file("files/b", "");
  write_file("files/a", "");
  EXPECT_TRUE(fill_files(list.get(), "files"));
  EXPECT_EQ((Texts{"@b.", "@b..", "a", "b"}), lines());
}

TEST_F(FillFiles, SubdirectoriesAloneAreAllBold) {
  fs::create_directories("dirs/b");
  fs::create_directories("dirs/a");
  EXPECT_TRUE(fill_files(list.get(), "dirs"));
  EXPECT_EQ((Texts{"@b.", "@b..", "@ba", "@bb"}), lines());
}

TEST_F(FillFiles, SortsDigitRunsByValueAndCapitalsFirst) {
  for (const char* name : {"m10", "m9", "M9", "m2", "a"})
    write_file(std::string("d/") + name, "");
  for (const char* name : {"s10", "s9", "S"})
    fs::create_directories(std::string("d/") + name);
  EXPECT_TRUE(fill_files(list.get(), "d"));
  EXPECT_EQ((Texts{"@b.", "@b..", "@bS", "@bs9", "@bs10", "M9", "a", "m2", "m9",
                   "m10"}),
            lines());
}

TEST_F(FillFiles, HiddenEntriesAndFilesOfAnyKindAreListed) {
  fs::create_directories("d/.git");
  for (const char* name : {".setup", "README", "run.sh", "a~"})
    write_file(std::string("d/") + name, "");
  EXPECT_TRUE(fill_files(list.get(), "d"));
  EXPECT_EQ(
      (Texts{"@b.", "@b..", "@b.git", ".setup", "README", "a~", "run.sh"}),
      lines());
}

TEST_F(FillFiles, LinksCountAsWhatTheyLeadTo) {
  fs::create_directories("d/real");
  fs::create_directory_symlink("real", "d/to_directory");
  fs::create_symlink("nowhere", "d/to_nothing");
  EXPECT_TRUE(fill_files(list.get(), "d"));
  EXPECT_EQ((Texts{"@b.", "@b..", "@breal", "@bto_directory", "to_nothing"}),
            lines());
}

TEST_F(FillFiles, NamesStandAsTheyAre) {
  for (const char* name : {"%s", "@bold", "\xe9t\xe9", "a\tb", "x|y"})
    write_file(std::string("d/") + name, "");
  fs::create_directories("d/@dir");
  EXPECT_TRUE(fill_files(list.get(), "d"));
  Texts expected = {"%s",    "@b.",  "@b..", "@b@dir",
                    "@bold", "a\tb", "x|y",  "\xe9t\xe9"};
  Texts actual = lines();
  std::sort(expected.begin(), expected.end());
  std::sort(actual.begin(), actual.end());
  EXPECT_EQ(expected, actual);
}

TEST_F(FillFiles, EntriesCarryNoUserData) {
  write_file("d/a", "");
  fill_files(list.get(), "d");
  for (int line = 1; line <= list->size(); ++line)
    EXPECT_EQ(nullptr, list->data(line));
}

TEST_F(FillFiles, SlashAtTheEndMakesNoDifference) {
  write_file("d/a", "");
  write_file("d/b", "");
  ui.selected_files->add("d/b");
  EXPECT_TRUE(fill_files(list.get(), "d/"));
  EXPECT_EQ((Texts{"@b.", "@b..", "a"}), lines());
  EXPECT_TRUE(fill_files(list.get(), "d"));
  EXPECT_EQ((Texts{"@b.", "@b..", "a"}), lines());
}

TEST_F(FillFiles, SelectedFilesAreComparedAsTexts) {
  for (const char* name : {"a", "b", "c", "d"})
    write_file(std::string("dir/") + name, "");
  for (const char* path : {"./dir/a", "DIR/b", "dir/c", "dir//d", "b"})
    ui.selected_files->add(path);
  EXPECT_TRUE(fill_files(list.get(), "dir"));
  EXPECT_EQ((Texts{"@b.", "@b..", "a", "b", "d"}), lines());
}

TEST_F(FillFiles, DirectoriesAreListedEvenIfSelected) {
  fs::create_directories("d/sub");
  ui.selected_files->add("d/sub");
  EXPECT_TRUE(fill_files(list.get(), "d"));
  EXPECT_EQ((Texts{"@b.", "@b..", "@bsub"}), lines());
}

TEST_F(FillFiles, ReplacesWhatWasListed) {
  write_file("d/a", "");
  list->add("old");
  list->select(1);
  EXPECT_TRUE(fill_files(list.get(), "d"));
  EXPECT_EQ((Texts{"@b.", "@b..", "a"}), lines());
  EXPECT_EQ(Lines{}, selected_lines(*list));
}

TEST_F(FillFiles, WhatCannotBeListedLeavesTheListAsItIs) {
  write_file("file", "");
  fs::create_symlink("loop", "loop");
  list->add("old");
  list->select(1);
  for (const char* dir : {"nowhere", "file", "loop", "", "nowhere/", "file/"}) {
    EXPECT_FALSE(fill_files(list.get(), dir)) << dir;
    EXPECT_EQ(Texts{"old"}, lines()) << dir;
    EXPECT_EQ(Lines{1}, selected_lines(*list)) << dir;
  }
}

TEST_F(FillFiles, UnreadableDirectoryLeavesTheListAsItIs) {
  ASSERT_EQ(0, chmod(folder.path().c_str(), 0755));
  write_file("locked/a", "");
  ASSERT_EQ(0, chmod("locked", 0));
  list->add("old");
  {
    const AsOrdinaryUser user;
    EXPECT_FALSE(fill_files(list.get(), "locked"));
  }
  EXPECT_EQ(Texts{"old"}, lines());
  ASSERT_EQ(0, chmod("locked", 0755));
}

TEST_F(FillFiles, DirectoryWithoutEntriesLeavesTheListAsItIs) {
  const TemporaryFolder removed;
  fs::remove(removed.path());
  list->add("old");
  EXPECT_FALSE(fill_files(list.get(), "."));
  EXPECT_EQ(Texts{"old"}, lines());
}

TEST_F(FillFiles, PathsFarOver256BytesAreTold) {
  const std::string deep = std::string(200, 'd') + "/" + std::string(200, 'e');
  fs::create_directories(deep + "/sub");
  write_file(deep + "/" + std::string(250, 'f'), "");
  EXPECT_TRUE(fill_files(list.get(), deep.c_str()));
  EXPECT_EQ((Texts{"@b.", "@b..", "@bsub", std::string(250, 'f')}), lines());
}

// --- already_included ---

TEST_F(FilePanes, AlreadyIncludedComparesWholeTexts) {
  build();
  ui.selected_files->add("/src/a.f90");
  ui.selected_files->add("/src/b.f90");
  EXPECT_TRUE(already_included("/src/a.f90"));
  EXPECT_TRUE(already_included("/src/b.f90"));
  for (const char* path :
       {"", "/src/c.f90", "/SRC/a.f90", "/src/a.f9", "/src/a.f90 ", "a.f90"})
    EXPECT_FALSE(already_included(path)) << path;
}

// --- select_count ---

TEST_F(FilePanes, SelectCountLeavesOutTheLastLine) {
  const struct {
    Lines selected;
    int count;
  } cases[] = {
      {{}, 0},     {{1}, 1},       {{2}, 1},       {{1, 3}, 2},
      {{4}, 0},    {{1, 4}, 1},    {{1, 2, 3}, 3}, {{1, 2, 3, 4}, 3},
      {{3, 4}, 1}, {{2, 3, 4}, 2},
  };
  Fl_Group::current(nullptr);
  for (const auto& c : cases) {
    Fl_Multi_Browser list(0, 0, 100, 100);
    for (const char* text : {"a", "b", "c", "d"}) list.add(text);
    for (const int line : c.selected) list.select(line);
    EXPECT_EQ(c.count, select_count(&list))
        << testing::PrintToString(c.selected);
  }
}

TEST_F(FilePanes, SelectCountOfShortLists) {
  Fl_Group::current(nullptr);
  Fl_Multi_Browser list(0, 0, 100, 100);
  EXPECT_EQ(0, select_count(&list));
  list.add("only");
  list.select(1);
  EXPECT_EQ(0, select_count(&list));
}

// --- "<<<" and ">>>" ---

class MoveFiles : public MainWindowTest {
 protected:
  void SetUp() override {
    MainWindowTest::SetUp();
    for (const char* name : {"a", "b", "c", "sub/a", "sub/d"})
      write_file(name, "");
    build();
    change_dir_to(&ui, folder.path().c_str());
  }
  void add(const Texts& texts) {
    select_texts(*ui.potential_files, texts);
    ui.add_button->do_callback();
  }
  void remove(const Texts& texts) {
    select_texts(*ui.selected_files, texts);
    ui.remove_button->do_callback();
  }
  bool can_generate() const { return ui.generate_button->active() != 0; }
};

TEST_F(MoveFiles, SelectedEntriesMoveInTheirOrder) {
  EXPECT_FALSE(can_generate());
  add({"c", "a"});
  EXPECT_EQ((Texts{path_of("a"), path_of("c")}), selected());
  EXPECT_EQ((Texts{"@b.", "@b..", "@bsub", "b"}), potential());
  EXPECT_EQ(Lines{}, selected_lines(*ui.potential_files));
  EXPECT_TRUE(can_generate());
}

TEST_F(MoveFiles, LinesCarryNoUserData) {
  add({"a"});
  EXPECT_EQ(nullptr, ui.selected_files->data(1));
}

TEST_F(MoveFiles, SelectedFilesAreNeverSorted) {
  add({"c"});
  change_dir_to(&ui, "sub");
  change_dir_to(&ui, path_of("sub").c_str());
  add({"d"});
  change_dir_to(&ui, folder.path().c_str());
  add({"a"});
  EXPECT_EQ((Texts{path_of("c"), path_of("sub/d"), path_of("a")}), selected());
}

TEST_F(MoveFiles, OneTrailingSlashOfTheDirectoryIsLeftOut) {
  change_dir_to(&ui, ".");
  ASSERT_EQ(path_of(""), directory());
  add({"a"});
  EXPECT_EQ(Texts{path_of("a")}, selected());
  EXPECT_EQ((Texts{"@b.", "@b..", "@bsub", "b", "c"}), potential());
  EXPECT_EQ(path_of(""), directory());
}

TEST_F(MoveFiles, PathsInDirectoriesWithDoubledSlashesKeepThem) {
  change_dir_to(&ui, "sub");
  change_dir_to(&ui, (folder.path().string() + "//sub").c_str());
  add({"d"});
  EXPECT_EQ(Texts{path_of("/sub/d")}, selected());
  EXPECT_EQ((Texts{"@b.", "@b..", "a"}), potential());
}

TEST_F(MoveFiles, NothingSelectedAddsNothingAndKeepsTheButtonInactive) {
  add({});
  EXPECT_EQ(Texts{}, selected());
  EXPECT_FALSE(can_generate());
}

TEST_F(MoveFiles, NothingSelectedListsTheDirectoryAnew) {
  write_file("d", "");
  add({});
  EXPECT_EQ((Texts{"@b.", "@b..", "@bsub", "a", "b", "c", "d"}), potential());
  fs::remove("a");
  remove({});
  EXPECT_EQ((Texts{"@b.", "@b..", "@bsub", "b", "c", "d"}), potential());
}

TEST_F(MoveFiles, SamePathIsNeverAddedTwice) {
  ui.selected_files->add(path_of("a").c_str());
  ASSERT_EQ("a", potential()[3]);
  add({"a", "b"});
  EXPECT_EQ((Texts{path_of("a"), path_of("b")}), selected());
}

TEST_F(MoveFiles, SelectedLineCountsEvenIfItIsIncludedAlready) {
  ui.selected_files->add(path_of("a").c_str());
  add({"a"});
  EXPECT_EQ(Texts{path_of("a")}, selected());
  EXPECT_TRUE(can_generate());
}

TEST_F(MoveFiles, DirectoryLineIsAddedAsItsTextStands) {
  add({"@bsub", "a"});
  EXPECT_EQ((Texts{path_of("@bsub"), path_of("a")}), selected());
  EXPECT_EQ((Texts{"@b.", "@b..", "@bsub", "b", "c"}), potential());
}

TEST_F(MoveFiles, LastLineIsMovedToo) {
  add({"c"});
  EXPECT_EQ(Texts{path_of("c")}, selected());
}

TEST_F(MoveFiles, DirectoryThatVanishedKeepsItsList) {
  change_dir_to(&ui, "sub");
  fs::remove_all("sub");
  add({"d"});
  EXPECT_EQ(Texts{path_of("sub/d")}, selected());
  EXPECT_EQ((Texts{"@b.", "@b..", "a", "d"}), potential());
  EXPECT_TRUE(can_generate());
}

TEST_F(MoveFiles, RemovedFilesOfTheDirectoryReappear) {
  add({"a", "b", "c"});
  remove({path_of("a"), path_of("c")});
  EXPECT_EQ(Texts{path_of("b")}, selected());
  EXPECT_EQ((Texts{"@b.", "@b..", "@bsub", "a", "c"}), potential());
  EXPECT_TRUE(can_generate());
}

TEST_F(MoveFiles, RemovingTheLastFileDeactivatesTheButton) {
  add({"a", "b"});
  remove({path_of("a"), path_of("b")});
  EXPECT_EQ(Texts{}, selected());
  EXPECT_FALSE(can_generate());
  add({"b"});
  EXPECT_TRUE(can_generate());
}

TEST_F(MoveFiles, RemovingNothingKeepsAll) {
  add({"a", "b"});
  remove({});
  EXPECT_EQ((Texts{path_of("a"), path_of("b")}), selected());
  EXPECT_TRUE(can_generate());
}

TEST_F(MoveFiles, RemovingFromAnEmptyListDeactivatesTheButton) {
  ui.generate_button->activate();
  remove({});
  EXPECT_FALSE(can_generate());
}

TEST_F(MoveFiles, RemovingDoesNotActivateTheButton) {
  for (const char* path : {"x", "y"}) ui.selected_files->add(path);
  remove({"x"});
  EXPECT_FALSE(can_generate());
}

TEST_F(MoveFiles, SamePathGivenTwiceIsRemovedLineByLine) {
  for (const char* path : {"x", "y", "x"}) ui.selected_files->add(path);
  ui.selected_files->select(3);
  ui.remove_button->do_callback();
  EXPECT_EQ((Texts{"x", "y"}), selected());
}

TEST_F(MoveFiles, RemainingFilesKeepTheirOrderAndAreNotSelected) {
  for (const char* path : {"z/1", "a/1", "z/2", "m/1"})
    ui.selected_files->add(path);
  remove({"a/1"});
  EXPECT_EQ((Texts{"z/1", "z/2", "m/1"}), selected());
  EXPECT_EQ(Lines{}, selected_lines(*ui.selected_files));
}

TEST_F(MoveFiles, RemovingRefillsFromACurrentDirectoryWithoutIt) {
  change_dir_to(&ui, "sub");
  add({"d"});
  fs::remove_all("sub");
  remove({path_of("sub/d")});
  EXPECT_EQ(Texts{}, selected());
  EXPECT_EQ((Texts{"@b.", "@b..", "a"}), potential());
  EXPECT_FALSE(can_generate());
}

TEST_F(MoveFiles, ButtonsWorkByMouse) {
  show_and_wait(*window);
  click(*ui.potential_files, 4);
  click(*ui.add_button);
  EXPECT_EQ(Texts{path_of("a")}, selected());
  Fl::check();
  click(*ui.selected_files, 1);
  click(*ui.remove_button);
  EXPECT_EQ(Texts{}, selected());
  EXPECT_EQ((Texts{"@b.", "@b..", "@bsub", "a", "b", "c"}), potential());
}

TEST_F(MoveFiles, ListsStayWhereTheyAreScrolledTo) {
  for (int i = 100; i < 160; ++i) write_file("many/" + std::to_string(i), "");
  change_dir_to(&ui, "many");
  show_and_wait(*window);
  Texts all = potential();
  add(Texts(all.begin() + 2, all.begin() + 42));
  ui.selected_files->topline(20);
  ui.potential_files->topline(5);
  Fl::check();
  ASSERT_EQ(20, ui.selected_files->topline());
  ASSERT_EQ(5, ui.potential_files->topline());

  ui.selected_files->select(25);
  ui.remove_button->do_callback();
  Fl::check();
  EXPECT_EQ(20, ui.selected_files->topline());
  EXPECT_EQ(5, ui.potential_files->topline());

  ui.potential_files->select(15);
  ui.add_button->do_callback();
  Fl::check();
  EXPECT_EQ(20, ui.selected_files->topline());
  EXPECT_EQ(5, ui.potential_files->topline());
}

}  // namespace
