#include "gui/progress.h"

#include <FL/Fl.H>
#include <FL/Fl_Box.H>
#include <FL/Fl_Slider.H>
#include <gtest/gtest.h>

#include <memory>
#include <string>

#include "tests/gui/main_window_fixture.h"

namespace {

const ZelkorUserInterface* const target_at_start = progress_target;

using Progress = MainWindowTest;

TEST_F(Progress, UpdatesTheWindowThatWasPassedLast) {
  EXPECT_EQ(nullptr, target_at_start);
  build();
  EXPECT_EQ(nullptr, progress_target);
  ZelkorUserInterface other;
  const std::unique_ptr<Fl_Window> other_window(other.make_window("other"));
  progress_target = &other;
  progress(0.25, "first", nullptr);
  progress(0.5, "second", &ui);
  EXPECT_EQ(&ui, progress_target);
  progress(0.75, "third", nullptr);
  EXPECT_EQ(&ui, progress_target);
  EXPECT_EQ(0.25, other.progress_bar->value());
  EXPECT_STREQ("first", other.status_box->label());
  EXPECT_EQ(0.75, ui.progress_bar->value());
  EXPECT_STREQ("third", ui.status_box->label());
}

TEST_F(Progress, KeepsFractionAndMessageUnchanged) {
  build();
  const std::string message = "/src/me@home.f90";
  for (const double fraction : {0.0, 0.3, 0.6, 0.075, 1.0}) {
    progress(fraction, message.c_str(), &ui);
    EXPECT_EQ(fraction, ui.progress_bar->value());
    EXPECT_EQ(message.c_str(), ui.status_box->label());  // no copy
  }
}

TEST_F(Progress, ReturnsWhetherAWindowIsShown) {
  build();
  EXPECT_EQ(0, progress(0.0, "hidden", &ui));
  show_and_wait(*window);
  EXPECT_NE(0, progress(0.0, "shown", &ui));
  window->hide();
  EXPECT_EQ(0, progress(0.0, "hidden again", &ui));
}

TEST_F(Progress, ChecksForEventsOnce) {
  build();
  int turns = 0;
  const auto count = [](void* number) { ++*static_cast<int*>(number); };
  Fl::add_check(count, &turns);
  progress(0.0, "", &ui);
  EXPECT_EQ(1, turns);
  progress(0.0, "", nullptr);
  EXPECT_EQ(2, turns);
  Fl::remove_check(count, &turns);
}

// Setting a label does not redraw a box whose label is outside.
TEST_F(Progress, RedrawsTheStatusBoxEvenIfItsLabelIsOutside) {
  show();
  ui.status_box->align(FL_ALIGN_LEFT);
  ui.status_box->clear_damage();
  struct Look {
    Fl_Box* box;
    int damage;
  } look{ui.status_box, 0};
  // The toolkit calls this right before it draws what is damaged.
  const auto take = [](void* data) {
    auto* taken = static_cast<Look*>(data);
    taken->damage = taken->box->damage();
  };
  Fl::add_check(take, &look);
  progress(0.0, "a.f90", &ui);
  Fl::remove_check(take, &look);
  EXPECT_NE(0, look.damage);
}

}  // namespace
