#include "gui/pending_change.h"

#include <FL/Fl.H>
#include <FL/Fl_Window.H>
#include <gtest/gtest.h>

#include <string>

#include "tests/gui/main_window_fixture.h"
#include "tests/gui/user.h"

namespace {

// Each change adds its name to a text. The current event is set in the toolkit.
class PendingChangeTest : public testing::Test {
 protected:
  ~PendingChangeTest() override {
    pending.drop();
    Fl::e_number = FL_NO_EVENT;
    Fl::e_state = 0;
  }

  void make_during(int event, int state, char name) {
    Fl::e_number = event;
    Fl::e_state = state;
    pending.make([this, name] { made += name; });
  }
  void make_now(char name) { make_during(FL_RELEASE, 0, name); }
  void make_later(char name) { make_during(FL_DRAG, 0, name); }

  PendingChange pending;
  std::string made;
};

TEST_F(PendingChangeTest, IsMadeAtOnceWhenTheToolkitNoLongerNeedsTheLines) {
  for (const int event : {FL_PUSH, FL_RELEASE, FL_NO_EVENT})
    make_during(event, FL_CTRL, 'a');
  make_during(FL_RELEASE, FL_SHIFT, 'b');
  EXPECT_EQ("aaab", made);
  Fl::wait(0);
  EXPECT_EQ("aaab", made);
}

TEST_F(PendingChangeTest, IsMadeAfterEventsThatNeedTheLines) {
  const struct {
    int event;
    int state;
  } cases[] = {
      {FL_PUSH, FL_SHIFT}, {FL_DRAG, 0}, {FL_KEYBOARD, 0}, {FL_SHORTCUT, 0}};
  for (const auto& c : cases) {
    made.clear();
    make_during(c.event, c.state, 'a');
    EXPECT_EQ("", made) << "event " << c.event;
    Fl::wait(0);
    EXPECT_EQ("a", made) << "event " << c.event;
    Fl::wait(0);
    EXPECT_EQ("a", made) << "event " << c.event;
  }
}

TEST_F(PendingChangeTest, ReplacesAWaitingChange) {
  make_later('a');
  make_later('b');
  Fl::wait(0);
  EXPECT_EQ("b", made);
  make_later('c');
  make_now('d');
  Fl::wait(0);
  EXPECT_EQ("bd", made);
}

TEST_F(PendingChangeTest, FinishMakesAWaitingChangeOnce) {
  pending.finish();
  make_later('a');
  pending.finish();
  EXPECT_EQ("a", made);
  pending.finish();
  Fl::wait(0);
  EXPECT_EQ("a", made);
}

TEST_F(PendingChangeTest, DropDiscardsAWaitingChange) {
  pending.drop();
  make_later('a');
  pending.drop();
  pending.finish();
  Fl::wait(0);
  EXPECT_EQ("", made);
}

TEST_F(PendingChangeTest, WaitsUntilTheOutermostMessageBoxIsAnswered) {
  EXPECT_FALSE(pending.held());
  pending.hold_during([this] {
    make_now('a');
    pending.hold_during([] {});
    EXPECT_TRUE(pending.held());
    Fl::wait(0);
    EXPECT_EQ("", made);
  });
  EXPECT_FALSE(pending.held());
  EXPECT_EQ("", made);
  EXPECT_TRUE(comes_true([this] { return made == "a"; }));
}

TEST_F(PendingChangeTest, WaitsWhileAModalWindowIsShown) {
  Fl_Window window(100, 50);
  window.end();
  window.set_modal();
  show_and_wait(window);
  make_later('a');
  Fl::wait(0);
  EXPECT_EQ("", made);
  window.hide();
  EXPECT_TRUE(comes_true([this] { return made == "a"; }));
}

TEST_F(PendingChangeTest, RestoresTheEventAfterAMessageBox) {
  Fl::e_number = FL_DRAG;
  Fl::e_state = FL_SHIFT;
  pending.hold_during([] {
    Fl::e_number = FL_KEYUP;
    Fl::e_state = FL_CTRL;
  });
  EXPECT_EQ(FL_DRAG, Fl::event());
  EXPECT_EQ(FL_SHIFT, Fl::event_state());
}

}  // namespace
