#include "gui/directory_menu.h"

#include <FL/Fl_Group.H>
#include <FL/Fl_Menu_Button.H>
#include <gtest/gtest.h>

#include <string>

#include "tests/gui/main_window_fixture.h"

namespace {

class DirMenu : public testing::Test {
 protected:
  DirMenu() : menu(0, 0, 100, 20, "old") { Fl_Group::current(nullptr); }

  Fl_Menu_Button menu;
};

TEST_F(DirMenu, NamesTheDirectoryAndItsParents) {
  const struct {
    const char* path;
    const char* label;
    Texts items;
  } cases[] = {
      {"/home/user/src", "src", {"user", "home"}},
      {"/home/user/src/", "src/", {"user", "home"}},
      {"/", "/", {}},
      {"//", "//", {}},
      {"", "", {}},
      {"/usr", "usr", {}},
      {"/usr/", "usr/", {}},
      {"/usr/lib", "lib", {"usr"}},
      {"//usr/lib", "lib", {"usr"}},
      {"a", "a", {}},
      {"a/b/c", "c", {"b", "a"}},
      {"/a/b//", "b//", {"a"}},
      {"/a//b/c", "c", {"b", "a"}},
      {"/a/b//c", "c", {"b", "a"}},
      {"/a/../b", "b", {"..", "a"}},
      {"./a/b", "b", {"a", "."}},
      {"/home/src/mysrc", "mysrc", {"src", "home"}},
      {"/x/src/y/src/z", "z", {"src", "y", "x"}},  // a repeated name is one
  };
  for (const auto& c : cases) {
    const std::string path = c.path;
    menu.clear_damage();
    dir_menu(&menu, path.c_str());
    EXPECT_NE(0, menu.damage());
    const std::string label = c.label;
    EXPECT_EQ(path.c_str() + path.size() - label.size(), menu.label()) << path;
    EXPECT_STREQ(c.label, menu.label()) << c.path;
    EXPECT_EQ(c.items, items_of(menu)) << c.path;
  }
}

TEST_F(DirMenu, KeepsSpecialCharactersInItems) {
  const std::string longest(255, '\\');
  const std::string names[] = {
      longest, "_hidden", "__init__", "_",   "a\\b",    "\\",    "\\_x",
      "_\\",   "a\\",     "R&D",      "&",   "me@home", "@b",    "a|b",
      "a\tb",  "100%",    " ",        "a b", "\xe9",    "x\\\\", "_&@|\\_"};
  for (const std::string& name : names) {
    const std::string path = "/top/" + name + "/last";
    dir_menu(&menu, path.c_str());
    EXPECT_EQ((Texts{name, "top"}), items_of(menu));
    for (int item = 0; item < 2; ++item)
      EXPECT_EQ(0, menu.mode(item)) << "no divider, no submenu: " << name;
  }
}

}  // namespace
