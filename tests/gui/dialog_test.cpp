#include "gui/dialog.h"

#include <FL/Fl.H>
#include <FL/Fl_Box.H>
#include <FL/Fl_Button.H>
#include <FL/Fl_Pack.H>
#include <FL/fl_draw.H>
#include <gtest/gtest.h>

#include <optional>
#include <ostream>
#include <string>
#include <type_traits>
#include <utility>

#include "tests/gui/main_window_fixture.h"
#include "tests/gui/modal.h"
#include "tests/gui/place.h"
#include "tests/gui/user.h"

namespace {

// --- The frame ---

template <class Class>
bool is_a(const Fl_Widget* widget) {
  return widget != nullptr && typeid(*widget) == typeid(Class);
}

TEST(Dialog, IsCentredOnItsPointAndKeepsItsSize) {
  const struct {
    int x, y;
    Place place;
  } rows[] = {
      {640, 512, {440, 362, 400, 300}}, {640, 512, {440, 362, 401, 301}},
      {100, 90, {-60, 1, 321, 179}},    {0, 0, {-200, -150, 400, 300}},
      {-5, -7, {-155, -107, 301, 201}},
  };
  for (const auto& row : rows) {
    const Fl_Dialog dialog(row.x, row.y, row.place.w, row.place.h, "Question");
    EXPECT_EQ(row.place, place_of(dialog)) << row.x << ", " << row.y;
    EXPECT_STREQ("Question", dialog.label());
  }
}

TEST(Dialog, MayHaveNoLabel) {
  EXPECT_EQ(nullptr, Fl_Dialog(100, 100, 300, 200, nullptr).label());
}

TEST(Dialog, IsAWindowOfItsOwnWhereverItIsBuilt) {
  Fl_Window open(10, 10, 500, 400);
  const Fl_Dialog dialog(100, 100, 300, 200, "Question");
  EXPECT_EQ(nullptr, dialog.parent());
  EXPECT_EQ(0, open.children());
  open.end();
}

class DialogFrame : public testing::Test {
 protected:
  const Fl_Widget* part(int i) const { return dialog.child(i); }
  const Fl_Widget* in_row(int i) const { return dialog.button_row()->child(i); }

  Fl_Dialog dialog{640, 512, 420, 310, "Question"};
};

TEST_F(DialogFrame, HoldsWorkAreaSeparatorAndButtonRowInThisOrder) {
  ASSERT_EQ(3, dialog.children());
  EXPECT_EQ(dialog.work_area(), part(0));
  EXPECT_TRUE(is_a<Fl_Box>(part(1)));
  EXPECT_EQ(dialog.button_row(), part(2));
}

TEST_F(DialogFrame, WorkAreaIsAnEmptyWindowAboveTheLast60Pixels) {
  EXPECT_TRUE(is_a<Fl_Window>(dialog.work_area()));
  EXPECT_EQ((Place{0, 0, 420, 250}), place_of(*dialog.work_area()));
  EXPECT_EQ(nullptr, dialog.work_area()->label());
  EXPECT_EQ(0, dialog.work_area()->children());
}

TEST_F(DialogFrame, SeparatorIsARaisedFrame) {
  EXPECT_EQ((Place{10, 260, 400, 4}), place_of(*part(1)));
  EXPECT_EQ(FL_UP_FRAME, part(1)->box());
  EXPECT_STREQ("", part(1)->label());
}

TEST_F(DialogFrame, ButtonRowIsAHorizontalPack) {
  EXPECT_TRUE(is_a<Fl_Pack>(dialog.button_row()));
  EXPECT_EQ((Place{15, 270, 390, 25}), place_of(*dialog.button_row()));
  EXPECT_EQ(Fl_Pack::HORIZONTAL, dialog.button_row()->type());
}

TEST_F(DialogFrame, RowHoldsCancelSpacerAndOkayInThisOrder) {
  ASSERT_EQ(3, dialog.button_row()->children());
  EXPECT_TRUE(is_a<Fl_Button>(in_row(0)));
  EXPECT_STREQ("cancel", in_row(0)->label());
  EXPECT_EQ((Place{15, 275, 60, 25}), place_of(*in_row(0)));
  EXPECT_TRUE(is_a<Fl_Box>(in_row(1)));
  EXPECT_EQ(nullptr, in_row(1)->label());
  EXPECT_EQ((Place{75, 275, 10, 25}), place_of(*in_row(1)));
  EXPECT_TRUE(is_a<Fl_Button>(in_row(2)));
  EXPECT_STREQ("okay", in_row(2)->label());
  EXPECT_EQ((Place{345, 275, 60, 25}), place_of(*in_row(2)));
}

TEST_F(DialogFrame, RowIsItsOwnResizableAndNotTheSpacer) {
  EXPECT_EQ(dialog.button_row(), dialog.button_row()->resizable());
}

TEST_F(DialogFrame, WorkAreaTakesUpWhatTheDialogGains) {
  EXPECT_EQ(dialog.work_area(), dialog.resizable());
  dialog.size(520, 340);
  EXPECT_EQ((Place{0, 0, 520, 280}), place_of(*dialog.work_area()));
  EXPECT_EQ(4, part(1)->h());
  EXPECT_EQ(25, dialog.button_row()->h());
}

TEST_F(DialogFrame, IsModalAndNotShownYet) {
  EXPECT_TRUE(dialog.modal());
  EXPECT_FALSE(dialog.shown());
}

TEST_F(DialogFrame, TakesNoFurtherChildrenByItself) {
  EXPECT_EQ(nullptr, Fl_Group::current());
}

TEST_F(DialogFrame, ButtonsKeepTheDefaultCallback) {
  for (const int i : {0, 2})
    EXPECT_EQ(&Fl_Widget::default_callback, in_row(i)->callback());
}

TEST_F(DialogFrame, ButtonsAreOrdinaryOnes) {
  for (const int i : {0, 2})
    EXPECT_EQ(FL_NORMAL_BUTTON,
              dynamic_cast<const Fl_Button&>(*in_row(i)).type());
}

TEST(Dialog, SmallestSizesFollowTheSameRules) {
  const Fl_Dialog dialog(0, 0, 100, 60, "");
  EXPECT_EQ((Place{0, 0, 100, 0}), place_of(*dialog.work_area()));
  EXPECT_EQ((Place{15, 20, 70, 25}), place_of(*dialog.button_row()));
  EXPECT_EQ((Place{25, 25, 60, 25}), place_of(*dialog.button_row()->child(2)));
}

struct Counted : Fl_Box {
  explicit Counted(int& count_of_living)
      : Fl_Box(0, 0, 10, 10), living(count_of_living) {
    ++living;
  }
  ~Counted() override { --living; }
  int& living;
};

TEST(Dialog, DestroysWhatWasAddedToIt) {
  int living = 0;
  {
    const Fl_Dialog dialog(200, 200, 300, 200, "");
    dialog.work_area()->add(new Counted(living));
    dialog.button_row()->add(new Counted(living));
    EXPECT_EQ(2, living);
  }
  EXPECT_EQ(0, living);
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
  int run_and_press(const char* label) {
    return run([&](Fl_Window&) { click(button(label)); });
  }

  Fl_Dialog dialog{640, 512, 320, 200, "Question"};
};

TEST_F(DialogRun, OkayAnswersOneAndHides) {
  EXPECT_EQ(1, run_and_press("okay"));
  EXPECT_FALSE(dialog.shown());
  EXPECT_EQ(nullptr, Fl::modal());
}

TEST_F(DialogRun, CancelAnswersZeroAndHides) {
  EXPECT_EQ(0, run_and_press("cancel"));
  EXPECT_FALSE(dialog.shown());
  EXPECT_EQ(nullptr, Fl::modal());
}

TEST_F(DialogRun, ClosedByTheWindowManagerAnswersZero) {
  bool closed = false;
  EXPECT_EQ(0, run([&](Fl_Window& window) {
              if (!closed) close_by_window_manager(window);
              closed = true;
            }));
  EXPECT_FALSE(dialog.shown());
}

TEST_F(DialogRun, EscapeAnswersZero) {
  EXPECT_EQ(0, run([](Fl_Window& window) { press_key(window, FL_Escape); }));
  EXPECT_FALSE(dialog.shown());
}

// Both keys bring the character of a line end.
TEST_F(DialogRun, ReturnAndEnterAnswerOneWhicheverButtonHasTheFocus) {
  for (const char* focus : {"cancel", "okay"})
    for (const int key : {FL_Enter, FL_KP_Enter})
      EXPECT_EQ(1, run([&](Fl_Window& window) {
                  button(focus).take_focus();
                  press_key(window, key);
                }))
          << focus << ' ' << key;
}

TEST_F(DialogRun, SpacePressesTheButtonThatHasTheFocus) {
  for (const int answer : {0, 1})
    EXPECT_EQ(answer, run([&](Fl_Window& window) {
                button(answer == 0 ? "cancel" : "okay").take_focus();
                press_key(window, ' ');
              }));
}

TEST_F(DialogRun, IsShownAndModalWhileItWaits) {
  run([&](Fl_Window& window) {
    EXPECT_EQ(&dialog, &window);
    EXPECT_TRUE(dialog.shown());
    click(button("okay"));
  });
}

TEST_F(DialogRun, CanBeRunAgain) {
  EXPECT_EQ(1, run_and_press("okay"));
  EXPECT_EQ(0, run_and_press("cancel"));
  EXPECT_EQ(1, run_and_press("okay"));
}

TEST_F(DialogRun, OtherWidgetsAreNoAnswer) {
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

TEST_F(DialogRun, FirstOfSeveralAnswersCountsAndTheRestStaysQueued) {
  EXPECT_EQ(0, run([&](Fl_Window&) {
              button("cancel").do_callback();
              button("okay").do_callback();
            }));
  EXPECT_EQ(&button("okay"), Fl::readqueue());
}

TEST_F(DialogRun, AnswerThatIsQueuedAlreadyIsTaken) {
  button("okay").do_callback();
  const ModalWatcher watcher([&](Fl_Window&) {
    ADD_FAILURE() << "waited";
    button("cancel").do_callback();
  });
  EXPECT_EQ(1, dialog.run());
  EXPECT_FALSE(dialog.shown());
}

// Counts how often the toolkit goes to wait between two moments in which it
// has nothing else to do, then has a user come.
struct IdleTime {
  explicit IdleTime(ModalWatcher::Action user_action)
      : action(std::move(user_action)) {
    Fl::add_check(count, this);
    Fl::add_timeout(0.5, begin, this);
  }
  ~IdleTime() {
    Fl::remove_check(count, this);
    Fl::remove_timeout(begin, this);
    Fl::remove_timeout(end, this);
  }
  IdleTime(const IdleTime&) = delete;
  IdleTime& operator=(const IdleTime&) = delete;

  static void count(void* self) { ++static_cast<IdleTime*>(self)->turns; }
  static void begin(void* self) {
    static_cast<IdleTime*>(self)->turns = 0;
    Fl::add_timeout(0.5, end, self);
  }
  static void end(void* self) {
    auto& that = *static_cast<IdleTime*>(self);
    that.turns_when_idle = that.turns;
    that.user.emplace(that.action);
  }

  ModalWatcher::Action action;
  std::optional<ModalWatcher> user;
  int turns = 0;
  int turns_when_idle = -1;
};

TEST_F(DialogRun, SleepsWhileNothingHappens) {
  const IdleTime time([&](Fl_Window&) { click(button("okay")); });
  EXPECT_EQ(1, dialog.run());
  EXPECT_GE(time.turns_when_idle, 0);
  EXPECT_LE(time.turns_when_idle, 10);
}

struct DrawCounter : Fl_Window {
  DrawCounter() : Fl_Window(10, 10, 200, 100, "behind") {
    button = new Fl_Button(20, 20, 100, 30, "behind");
    end();
  }
  void draw() override {
    ++draws;
    Fl_Window::draw();
  }
  Fl_Button* button;
  int draws = 0;
};

TEST_F(DialogRun, OtherWindowsAreRedrawnButGetNoInput) {
  DrawCounter behind;
  show_and_wait(behind);
  bool pressed = false;
  behind.button->callback(
      [](Fl_Widget*, void* data) { *static_cast<bool*>(data) = true; },
      &pressed);
  const int draws = behind.draws;
  int turns = 0;
  run([&](Fl_Window&) {
    if (++turns == 1) {
      click(*behind.button);
      behind.redraw();
    } else if (behind.draws > draws) {
      click(button("okay"));
    }
  });
  EXPECT_FALSE(pressed);
  EXPECT_GT(behind.draws, draws);
  click(*behind.button);
  EXPECT_TRUE(pressed);
}

}  // namespace
