#include "gui/progress.h"

#include <FL/Fl.H>
#include <FL/Fl_Box.H>
#include <FL/Fl_Slider.H>
#include <gtest/gtest.h>

#include <string>

#include "tests/gui/main_window_fixture.h"
#include "tests/gui/pixels.h"

namespace {

const ZelkorUserInterface* const target_at_start = progress_target;

class Progress : public MainWindowTest {
 protected:
  Pixels status_on_screen() const {
    return shown(*window, ui.status_box->x(), ui.status_box->y(),
                 ui.status_box->w(), ui.status_box->h());
  }
  Pixels bar_on_screen() const {
    return shown(*window, ui.progress_bar->x(), ui.progress_bar->y(),
                 ui.progress_bar->w(), ui.progress_bar->h());
  }
};

TEST_F(Progress, HasNoTargetAtFirst) {
  EXPECT_EQ(nullptr, target_at_start);
  build();
  EXPECT_EQ(nullptr, progress_target);
}

TEST_F(Progress, ShowsFractionAndMessage) {
  build();
  progress(0.25, "a.f90", &ui);
  EXPECT_EQ(0.25, ui.progress_bar->value());
  EXPECT_STREQ("a.f90", ui.status_box->label());
}

TEST_F(Progress, GivenWindowBecomesTheTarget) {
  build();
  progress(0.5, "a.f90", &ui);
  EXPECT_EQ(&ui, progress_target);
}

TEST_F(Progress, NullReportsToTheTargetSetBefore) {
  build();
  progress_target = &ui;
  progress(0.75, "b.f90", nullptr);
  EXPECT_EQ(&ui, progress_target);
  EXPECT_EQ(0.75, ui.progress_bar->value());
  EXPECT_STREQ("b.f90", ui.status_box->label());
}

TEST_F(Progress, AnotherWindowTakesTheTargetsPlace) {
  build();
  ZelkorUserInterface other;
  const std::unique_ptr<Fl_Window> other_window(other.make_window("other"));
  progress(0.5, "first", &ui);
  progress(1.0, "second", &other);
  EXPECT_EQ(&other, progress_target);
  EXPECT_EQ(0.5, ui.progress_bar->value());
  EXPECT_STREQ("first", ui.status_box->label());
  EXPECT_EQ(1.0, other.progress_bar->value());
  EXPECT_STREQ("second", other.status_box->label());
}

TEST_F(Progress, KeepsTheMessageItselfNotACopy) {
  build();
  const std::string message = "/src/me@home.f90";
  progress(0.0, message.c_str(), &ui);
  EXPECT_EQ(message.c_str(), ui.status_box->label());
}

TEST_F(Progress, FractionsAreShownAsTheyAre) {
  build();
  for (const double fraction : {0.0, 0.3, 0.6, 0.075, 1.0}) {
    progress(fraction, "", &ui);
    EXPECT_EQ(fraction, ui.progress_bar->value());
  }
}

TEST_F(Progress, TellsWhetherAWindowIsShown) {
  build();
  EXPECT_EQ(0, progress(0.0, "hidden", &ui));
  show_and_wait(*window);
  EXPECT_NE(0, progress(0.0, "shown", &ui));
  window->hide();
  EXPECT_EQ(0, progress(0.0, "hidden again", &ui));
}

TEST_F(Progress, LetsTheToolkitWorkOnce) {
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

TEST_F(Progress, HandlesWhatIsPending) {
  build();
  bool called = false;
  Fl::add_timeout(
      0.0, [](void* flag) { *static_cast<bool*>(flag) = true; }, &called);
  progress(0.0, "", &ui);
  EXPECT_TRUE(called);
}

TEST_F(Progress, StatusOnScreenFollows) {
  show();
  progress(0.0, "first.f90", &ui);
  const Pixels first = status_on_screen();
  progress(0.0, "second.f90", nullptr);
  EXPECT_NE(first, status_on_screen());
  progress(0.0, "first.f90", nullptr);
  EXPECT_PRED_FORMAT2(same_picture, first, status_on_screen());
}

TEST_F(Progress, RedrawsTheStatusBoxWhereverItsLabelStands) {
  show();
  // A new label by itself redraws no box that has it outside.
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

TEST_F(Progress, BarOnScreenFollows) {
  show();
  progress(0.0, "", &ui);
  const Pixels empty = bar_on_screen();
  progress(0.5, "", nullptr);
  const Pixels half = bar_on_screen();
  progress(1.0, "", nullptr);
  const Pixels full = bar_on_screen();
  EXPECT_NE(empty, half);
  EXPECT_NE(half, full);
  EXPECT_NE(empty, full);
}

}  // namespace
