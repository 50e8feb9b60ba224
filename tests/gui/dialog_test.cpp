#include "gui/dialog.h"

#include <FL/Fl.H>
#include <FL/Fl_Box.H>
#include <FL/Fl_Button.H>
#include <FL/Fl_Pack.H>
#include <gtest/gtest.h>

#include <functional>
#include <optional>
#include <string>
#include <type_traits>
#include <typeinfo>

#include "tests/gui/main_window_fixture.h"
#include "tests/gui/user.h"

namespace {

// --- The frame ---

TEST(Dialog, IsCentredOnItsPointAndKeepsItsSize) {
  const struct {
    int x, y;
    Place place;
  } rows[] = {
      {640, 512, {440, 362, 400, 300}},
      {640, 512, {440, 362, 401, 301}},
      {100, 90, {-60, 1, 321, 179}},
      {-5, -7, {-155, -107, 301, 201}},
  };
  for (const auto& row : rows) {
    const Fl_Dialog dialog(row.x, row.y, row.place.w, row.place.h, nullptr);
    EXPECT_EQ(row.place, place_of(dialog)) << row.x << ", " << row.y;
    EXPECT_EQ(nullptr, dialog.label());
  }
}

// The settings of a part of the dialog that differ from the defaults.
struct Part {
  const std::type_info& type;
  Place place;
  const char* label = nullptr;
  Fl_Boxtype box = FL_NO_BOX;
};

void expect_part(const Part& part, const Fl_Widget& widget) {
  EXPECT_TRUE(part.type == typeid(widget));
  EXPECT_EQ(part.place, place_of(widget));
  EXPECT_STREQ(part.label, widget.label());
  EXPECT_EQ(part.box, widget.box());
}

TEST(Dialog, ContainsWorkAreaSeparatorAndButtonRow) {
  Fl_Window open(10, 10, 500, 400);
  Fl_Dialog dialog(640, 512, 420, 310, "Question");
  EXPECT_EQ(nullptr, dialog.parent());
  EXPECT_EQ(0, open.children());
  EXPECT_STREQ("Question", dialog.label());
  EXPECT_TRUE(dialog.modal());
  EXPECT_FALSE(dialog.shown());
  EXPECT_EQ(nullptr, Fl_Group::current());

  ASSERT_EQ(3, dialog.children());
  EXPECT_EQ(dialog.work_area(), dialog.child(0));
  EXPECT_EQ(dialog.work_area(), dialog.resizable());
  EXPECT_EQ(0, dialog.work_area()->children());
  EXPECT_EQ(dialog.button_row(), dialog.child(2));
  EXPECT_EQ(dialog.button_row(), dialog.button_row()->resizable());
  EXPECT_EQ(Fl_Pack::HORIZONTAL, dialog.button_row()->type());
  const Part parts[] = {
      {typeid(Fl_Window), {0, 0, 420, 250}, nullptr, FL_FLAT_BOX},
      {typeid(Fl_Box), {10, 260, 400, 4}, "", FL_UP_FRAME},
      {typeid(Fl_Pack), {15, 270, 390, 25}},
  };
  for (int i = 0; i < 3; ++i) expect_part(parts[i], *dialog.child(i));

  ASSERT_EQ(3, dialog.button_row()->children());
  const Part in_row[] = {
      {typeid(Fl_Button), {15, 275, 60, 25}, "cancel", FL_UP_BOX},
      {typeid(Fl_Box), {75, 275, 10, 25}},
      {typeid(Fl_Button), {345, 275, 60, 25}, "okay", FL_UP_BOX},
  };
  for (int i = 0; i < 3; ++i) {
    const Fl_Widget& widget = *dialog.button_row()->child(i);
    expect_part(in_row[i], widget);
    EXPECT_EQ(&Fl_Widget::default_callback, widget.callback());
    EXPECT_EQ(FL_NORMAL_BUTTON, widget.type());
  }
}

TEST(Dialog, PlacesItsPartsByItsSize) {
  const Fl_Dialog dialog(0, 0, 100, 60, "");
  EXPECT_EQ((Place{0, 0, 100, 0}), place_of(*dialog.work_area()));
  EXPECT_EQ((Place{10, 10, 80, 4}), place_of(*dialog.child(1)));
  EXPECT_EQ((Place{15, 20, 70, 25}), place_of(*dialog.button_row()));
  EXPECT_EQ((Place{25, 25, 60, 25}), place_of(*dialog.button_row()->child(2)));
}

static_assert(std::is_base_of_v<Fl_Window, Fl_Dialog>);
static_assert(std::has_virtual_destructor_v<Fl_Dialog>);

// --- The answer ---

class DialogRun : public testing::Test {
 protected:
  void SetUp() override {
    while (Fl::readqueue() != nullptr) {
    }
  }
  void TearDown() override {
    dialog.hide();
    SetUp();
    Fl::check();
  }

  Fl_Widget& button(const char* label) { return *button_of(dialog, label); }

  // Runs the dialog; once it is drawn, an action is called at every turn of
  // the event loop.
  int run(const ModalWatcher::Action& action) {
    const ModalWatcher watcher([&](Fl_Window& window) {
      if (is_drawn(window)) action(window);
    });
    return dialog.run();
  }

  Fl_Dialog dialog{640, 512, 320, 200, "Question"};
};

TEST_F(DialogRun, ReturnsOneForOkayAndZeroForCancel) {
  for (int i = 0; i < 2; ++i)
    for (const int answer : {1, 0}) {
      EXPECT_EQ(answer, run([&](Fl_Window& window) {
                  EXPECT_EQ(&dialog, &window);
                  EXPECT_TRUE(dialog.shown());
                  click(button(answer == 0 ? "cancel" : "okay"));
                }));
      EXPECT_FALSE(dialog.shown());
      EXPECT_EQ(nullptr, Fl::modal());
    }
}

TEST_F(DialogRun, ReturnsZeroWhenTheWindowManagerClosesIt) {
  bool closed = false;
  EXPECT_EQ(0, run([&](Fl_Window& window) {
              if (!closed) close_by_window_manager(window);
              closed = true;
            }));
  EXPECT_FALSE(dialog.shown());
}

// Both Return and Enter send the character of a line end.
TEST_F(DialogRun, AcceptsKeysWhicheverButtonHasTheFocus) {
  for (const char* focus : {"cancel", "okay"})
    for (const int key : {FL_Enter, FL_KP_Enter, int{FL_Escape}, int{' '}}) {
      const int answer =
          key == ' ' ? focus == std::string("okay") : key != FL_Escape;
      EXPECT_EQ(answer, run([&](Fl_Window& window) {
                  button(focus).take_focus();
                  press_key(window, key);
                }))
          << focus << ' ' << key;
      EXPECT_FALSE(dialog.shown());
    }
}

TEST_F(DialogRun, IgnoresOtherWidgets) {
  dialog.work_area()->begin();
  Fl_Button other(10, 10, 60, 25, "other");
  dialog.work_area()->end();
  Fl_Group::current(nullptr);
  int turns = 0;
  EXPECT_EQ(1, run([&](Fl_Window&) {
              EXPECT_TRUE(dialog.shown());
              if (++turns < 4)
                other.do_callback();
              else
                click(button("okay"));
            }));
  EXPECT_EQ(4, turns);
  EXPECT_EQ(nullptr, Fl::readqueue());
  dialog.work_area()->remove(other);
}

TEST_F(DialogRun, ReturnsTheFirstAnswerAndLeavesTheRestQueued) {
  EXPECT_EQ(0, run([&](Fl_Window&) {
              button("cancel").do_callback();
              button("okay").do_callback();
            }));
  EXPECT_EQ(&button("okay"), Fl::readqueue());
}

TEST_F(DialogRun, AcceptsAnAnswerThatIsAlreadyQueued) {
  button("okay").do_callback();
  const ModalWatcher watcher([&](Fl_Window&) {
    ADD_FAILURE() << "waited";
    button("cancel").do_callback();
  });
  EXPECT_EQ(1, dialog.run());
  EXPECT_FALSE(dialog.shown());
}

TEST_F(DialogRun, SleepsWhileNothingHappens) {
  int turns = 0;
  int turns_without_user = -1;
  const auto count = [](void* number) { ++*static_cast<int*>(number); };
  std::optional<ModalWatcher> user;
  std::function<void()> come = [&] {
    turns_without_user = turns;
    user.emplace([this](Fl_Window&) { click(button("okay")); });
  };
  const auto call = [](void* f) {
    (*static_cast<std::function<void()>*>(f))();
  };
  Fl::add_check(count, &turns);
  Fl::add_timeout(1.0, call, &come);
  EXPECT_EQ(1, dialog.run());
  Fl::remove_check(count, &turns);
  Fl::remove_timeout(call, &come);
  EXPECT_GE(turns_without_user, 0);
  EXPECT_LE(turns_without_user, 100);
}

}  // namespace
