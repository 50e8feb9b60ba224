// What the handbook says about the window's controls and levels.

#include <FL/Fl_Box.H>
#include <FL/Fl_Check_Button.H>
#include <FL/Fl_Choice.H>
#include <FL/Fl_Menu_Button.H>
#include <gtest/gtest.h>

#include <cstdint>
#include <set>
#include <string>
#include <vector>

#include "analysis/keywords.h"
#include "driver/settings.h"
#include "tests/gui/main_window_fixture.h"
#include "tests/handbook/handbook.h"

namespace {

class HandbookWindow : public MainWindowTest {
 protected:
  // A new window, at the settings of the start.
  void restart() {
    html_style = style_at_start;
    build();
  }

  // Chooses items as a user does in the opened box.
  void choose(const std::vector<std::string>& chosen) {
    auto& level = *first_in<Fl_Choice>(*window);
    for (const std::string& item : chosen) {
      const Fl_Menu_Item* items = level.menu();
      while (items->text != nullptr && items->text != item) ++items;
      ASSERT_NE(nullptr, items->text) << item;
      level.picked(items);
    }
  }

 private:
  const std::uint32_t style_at_start = html_style;
};

TEST_F(HandbookWindow, TableNamesTheControlsByTheirLabels) {
  std::multiset<std::string> told;
  int number = 0;
  for (const auto& row : table({"No.", "Control", "What it does"})) {
    EXPECT_EQ(std::to_string(++number), row.at(0));
    told.insert(row.at(1));
  }
  // These have no label.
  for (const char* control : {"Directory menu", "Progress bar", "Status line"})
    EXPECT_EQ(1u, told.erase(control)) << control;

  build();
  std::multiset<std::string> shown;
  for (const Fl_Widget* widget : widgets_in(*window))
    if (widget->label() != nullptr && *widget->label() != '\0')
      shown.insert(widget->label());
  // These change, or are the frame around others.
  for (const char* label : {ui.status_box->label(), ui.dir_menu_button->label(),
                            "Syntax Highlighting"})
    EXPECT_EQ(1u, shown.erase(label)) << label;
  EXPECT_EQ(told, shown);
}

TEST_F(HandbookWindow, InitialStylesMatchTheTable) {
  restart();
  EXPECT_TRUE(handbook_says("keywords are bold. On at the start"));
  EXPECT_NE(0, ui.bold_button->value());
  EXPECT_TRUE(handbook_says("keywords are italic. Off at the start"));
  EXPECT_EQ(0, ui.italic_button->value());
}

// --- The combination of levels ---

std::string levels_on() {
  const struct {
    std::uint32_t bit;
    const char* name;
  } switches[] = {
      {LEVEL_NONE, "None"}, {LEVEL_1, "1"}, {LEVEL_2, "2"}, {LEVEL_3, "3"}};
  std::string text;
  for (const auto& s : switches)
    if ((html_style & s.bit) != 0)
      text += (text.empty() ? "" : ", ") + std::string(s.name);
  return text;
}

// The level whose words the pages would highlight.
std::string level_in_force() {
  const char* words[] = {"module", "if", "allocate"};
  int level = 0;
  for (const char* word : words)
    if (isSyntax(word) != nullptr) ++level;
  return level == 0 ? "nothing" : "level " + std::to_string(level);
}

TEST_F(HandbookWindow, ChoicesCombineAsTheTableSays) {
  for (const auto& row :
       table({"Chosen since the start", "Switches on", "Pages highlight"})) {
    const std::vector<std::string> ways = split(row.at(0), ", or ");
    const std::vector<std::string> on = split(row.at(1), ", or ");
    ASSERT_EQ(ways.size(), on.size());
    for (std::size_t i = 0; i < ways.size(); ++i) {
      restart();
      if (ways[i] != "nothing") choose(split(ways[i], ", "));
      EXPECT_EQ(on[i], levels_on()) << ways[i];
      EXPECT_EQ(row.at(2), level_in_force()) << ways[i];
    }
  }
}

// All ways to choose at most `length` items.
std::vector<std::vector<std::string>> ways_of(int length) {
  std::vector<std::vector<std::string>> ways = {{}};
  for (std::size_t i = 0; i < ways.size(); ++i)
    if (ways[i].size() < static_cast<std::size_t>(length))
      for (const char* item : {"None", "1", "2", "3"}) {
        std::vector<std::string> way = ways[i];
        way.emplace_back(item);
        ways.push_back(way);
      }
  return ways;
}

TEST_F(HandbookWindow, ResetOrderReachesItsLevelFromAnyState) {
  const Rows rows = table({"For", "choose in this order"});
  EXPECT_EQ(4u, rows.size());
  for (const auto& row : rows)
    for (const auto& way : ways_of(3)) {
      restart();
      choose(way);
      choose(split(row.at(1), ", "));
      EXPECT_EQ(row.at(0), level_in_force())
          << "after " << testing::PrintToString(way);
    }
}

// The simple rule: choose an item twice after the start; later choose the item
// that is shown, then the wanted one.
TEST_F(HandbookWindow, SimpleRuleGivesTheWantedLevelEachTime) {
  for (const std::vector<std::string>& way : ways_of(3)) {
    if (way.empty() || way.front() == "None") continue;
    SCOPED_TRACE(testing::PrintToString(way));
    restart();
    std::string shown = way.front();
    for (const std::string& wanted : way) {
      if (&wanted != &way.front() && wanted == shown) continue;
      choose({shown, wanted});
      shown = wanted;
      EXPECT_EQ(wanted == "None" ? "nothing" : "level " + wanted,
                level_in_force());
    }
  }
}

}  // namespace
