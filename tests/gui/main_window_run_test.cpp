// The button "Generate HTML", and what users may do while a run goes on.

#include <FL/Fl.H>
#include <FL/Fl_Box.H>
#include <FL/Fl_Button.H>
#include <FL/Fl_Input.H>
#include <FL/Fl_Multi_Browser.H>
#include <FL/Fl_Slider.H>
#include <gtest/gtest.h>

#include <unistd.h>

#include <filesystem>
#include <functional>
#include <set>
#include <sstream>
#include <string>
#include <utility>

#include "driver/settings.h"
#include "gui/progress.h"
#include "gui/special_browser.h"
#include "tests/gui/main_window_fixture.h"
#include "tests/gui/user.h"

namespace fs = std::filesystem;

namespace {

class GenerateHTML : public MainWindowTest {
 protected:
  void SetUp() override {
    MainWindowTest::SetUp();
    Fl::add_check(record, this);
  }
  void TearDown() override {
    Fl::remove_check(record, this);
    MainWindowTest::TearDown();
  }

  // Writes sources that call one another and selects them.
  void select(const Texts& names) {
    for (const std::string& name : names) {
      write_file(name, "subroutine " + fs::path(name).stem().string() +
                           "\ncall b\nend subroutine\n");
      ui.selected_files->add(path_of(name).c_str());
    }
    ui.generate_button->activate();
  }

  void name_output(const std::string& directory) {
    ui.output_dir_input->value(directory.c_str());
  }

  void press() { ui.generate_button->do_callback(); }

  void run() {
    steps.clear();
    press();
  }

  // What bar and status line say each time that the toolkit gets its turn.
  static void record(void* self) {
    auto* test = static_cast<GenerateHTML*>(self);
    if (test->window == nullptr || Fl::modal() != nullptr) return;
    std::ostringstream step;
    step << test->ui.progress_bar->value() << ' '
         << test->ui.status_box->label();
    test->steps.push_back(step.str());
    if (test->during_run) std::exchange(test->during_run, nullptr)();
  }

  // The reports of a run over files.
  Texts reports_of(const Texts& names) {
    Texts reports = {"0 generating HTML..."};
    const auto pass = [&](double size, double begin) {
      for (std::size_t i = 0; i < names.size(); ++i) {
        std::ostringstream report;
        report << static_cast<double>(i) * size /
                          static_cast<double>(names.size()) +
                      begin
               << ' ' << path_of(names[i]);
        reports.push_back(report.str());
      }
    };
    pass(0.3, 0.0);
    pass(0.3, 0.3);
    pass(0.4, 0.6);
    for (const char* last :
         {"1 printing index...", "1 Done!", "1 HTML complete!"})
      reports.emplace_back(last);
    return reports;
  }

  // The pages in a directory, "#" standing for the numbers in their names,
  // which have four digits or more.
  static std::multiset<std::string> pages(const std::string& directory) {
    std::multiset<std::string> names;
    for (const auto& entry : fs::directory_iterator(directory)) {
      std::string name = entry.path().stem();
      const std::size_t number = name.find_last_not_of("0123456789") + 1;
      if (name.size() - number >= 4) name.replace(number, name.size(), "#");
      names.insert(name + entry.path().extension().string());
    }
    return names;
  }

  Texts steps;
  std::function<void()> during_run;  // called at the first step of a run
};

using Pages = std::multiset<std::string>;

TEST_F(GenerateHTML, WritesThePagesOfTheSelectedFiles) {
  build();
  fs::create_directory("out");
  select({"a.f90", "b.f90"});
  name_output("out");
  run();
  EXPECT_EQ((Pages{"a#.html", "b#.html", "index.html"}), pages("out"));
  EXPECT_EQ("out", html_dir);
  EXPECT_EQ(reports_of({"a.f90", "b.f90"}), steps);
}

TEST_F(GenerateHTML, ReportsOfOneFile) {
  build();
  fs::create_directory("out");
  select({"b.f90"});
  name_output("out");
  run();
  EXPECT_EQ((Texts{"0 generating HTML...", "0 " + path_of("b.f90"),
                   "0.3 " + path_of("b.f90"), "0.6 " + path_of("b.f90"),
                   "1 printing index...", "1 Done!", "1 HTML complete!"}),
            steps);
}

TEST_F(GenerateHTML, GoesThroughTheFilesInTheOrderOfTheList) {
  build();
  fs::create_directory("out");
  select({"c.f90", "a.f90", "b.f90"});
  name_output("out");
  run();
  EXPECT_EQ(reports_of({"c.f90", "a.f90", "b.f90"}), steps);
}

TEST_F(GenerateHTML, LeavesTheWindowReadyForTheNextRun) {
  build();
  fs::create_directory("out");
  select({"a.f90"});
  name_output("out");
  EXPECT_EQ(nullptr, progress_target);
  run();
  EXPECT_EQ(&ui, progress_target);
  EXPECT_STREQ("HTML complete!", ui.status_box->label());
  EXPECT_EQ(1.0, ui.progress_bar->value());
  EXPECT_TRUE(ui.generate_button->active());
  EXPECT_EQ(Texts{path_of("a.f90")}, selected());
}

TEST_F(GenerateHTML, RunsAgain) {
  build();
  fs::create_directory("out");
  select({"a.f90"});
  name_output("out");
  run();
  fs::remove_all("out");
  fs::create_directory("out");
  select({"b.f90"});
  run();
  EXPECT_EQ((Pages{"a#.html", "b#.html", "index.html"}), pages("out"));
  EXPECT_EQ(reports_of({"a.f90", "b.f90"}), steps);
}

TEST_F(GenerateHTML, IsStartedByAClick) {
  show();
  fs::create_directory("out");
  select({"a.f90"});
  name_output("out");
  click(*ui.generate_button);
  EXPECT_EQ((Pages{"a#.html", "index.html"}), pages("out"));
}

TEST_F(GenerateHTML, IsNotStartedByAClickBeforeFilesAreSelected) {
  show();
  fs::create_directory("out");
  name_output("out");
  click(*ui.generate_button);
  EXPECT_EQ("HTML", html_dir);
}

TEST_F(GenerateHTML, SelectedFilesThatAreGoneAreSkipped) {
  build();
  fs::create_directory("out");
  select({"a.f90", "b.f90"});
  fs::remove("a.f90");
  name_output("out");
  run();
  EXPECT_EQ(reports_of({"a.f90", "b.f90"}), steps);
  EXPECT_EQ((Pages{"b#.html", "index.html"}), pages("out"));
}

// Alerts show the name as it is: the toolkit prints "@@" as one "@".
TEST_F(GenerateHTML, RefusesWhatIsNoDirectory) {
  build();
  write_file("file", "");
  select({"a.f90"});
  const struct {
    const char* name;
    const char* alert;
  } cases[] = {
      {"", "! ''\nis not a directory name"},
      {"nowhere", "! 'nowhere'\nis not a directory name"},
      {"file", "! 'file'\nis not a directory name"},
      {"100%s%n", "! '100%s%n'\nis not a directory name"},
      {"me@home", "! 'me@@home'\nis not a directory name"},
      {"@", "! '@@'\nis not a directory name"},
      {"@@b@", "! '@@@@b@@'\nis not a directory name"},
      {"caf\xe9", "! 'caf\xe9'\nis not a directory name"},
  };
  const std::string notice = ui.status_box->label();
  for (const auto& c : cases) {
    html_dir = "HTML";
    name_output(c.name);
    const MessageBoxes boxes;
    press();
    EXPECT_EQ(Texts{c.alert}, boxes.seen());
    EXPECT_EQ(c.name, html_dir);
    EXPECT_EQ(notice, ui.status_box->label());
    EXPECT_EQ(nullptr, progress_target);
  }
}

TEST_F(GenerateHTML, RunsAfterARefusal) {
  build();
  select({"a.f90"});
  {
    const MessageBoxes boxes;
    name_output("out");
    press();
    EXPECT_EQ(1u, boxes.seen().size());
  }
  fs::create_directory("out");
  run();
  EXPECT_EQ((Pages{"a#.html", "index.html"}), pages("out"));
}

TEST_F(GenerateHTML, StopsSilentlyWhenNothingIsSelected) {
  build();
  fs::create_directory("out");
  const std::string notice = ui.status_box->label();
  name_output("out");
  const MessageBoxes boxes;
  run();
  EXPECT_EQ(Texts{}, boxes.seen());
  EXPECT_EQ(Texts{}, steps);
  EXPECT_EQ(Pages{}, pages("out"));
  EXPECT_EQ("out", html_dir);
  EXPECT_EQ(notice, ui.status_box->label());
  EXPECT_EQ(nullptr, progress_target);

  select({"a.f90"});
  run();
  EXPECT_EQ((Pages{"a#.html", "index.html"}), pages("out"));
}

TEST_F(GenerateHTML, ButtonStaysActiveDuringARun) {
  build();
  fs::create_directory("out");
  select({"a.f90"});
  name_output("out");
  bool active = false;
  during_run = [&] { active = ui.generate_button->active() != 0; };
  run();
  EXPECT_TRUE(active);
  EXPECT_TRUE(window->active());
}

TEST_F(GenerateHTML, SecondPressDuringARunIsIgnored) {
  build();
  fs::create_directory("out");
  select({"a.f90", "b.f90"});
  name_output("out");
  during_run = [this] {
    name_output("nowhere");
    press();
    EXPECT_EQ("out", html_dir);
  };
  const MessageBoxes boxes;
  run();
  EXPECT_EQ(Texts{}, boxes.seen());
  EXPECT_EQ(reports_of({"a.f90", "b.f90"}), steps);
  EXPECT_EQ((Pages{"a#.html", "b#.html", "index.html"}), pages("out"));
}

// FLTK 1.4 does not look at the pipe in a step for which events of the window
// wait.
TEST_F(GenerateHTML, PressesInTheStepsOfARunAreIgnored) {
  show();
  fs::create_directory("out");
  select({"a.f90", "b.f90"});
  name_output("out");
  int pipe_ends[2];
  ASSERT_EQ(0, pipe(pipe_ends));
  ASSERT_EQ(1, write(pipe_ends[1], "x", 1));
  // Something to read at every step: called from within the handling of events.
  static int presses = 0;
  presses = 0;
  Fl::add_fd(
      pipe_ends[0],
      [](int /*pipe*/, void* button) {
        ++presses;
        click(*static_cast<Fl_Button*>(button));
      },
      ui.generate_button);
  run();
  Fl::remove_fd(pipe_ends[0]);
  close(pipe_ends[0]);
  close(pipe_ends[1]);
  EXPECT_LE(5, presses);
  EXPECT_EQ(reports_of({"a.f90", "b.f90"}), steps);
}

TEST_F(GenerateHTML, RunGoesOnOverItsOwnFilesWhenTheListIsEdited) {
  build();
  fs::create_directory("out");
  select({"a.f90", "b.f90"});
  name_output("out");
  during_run = [this] {
    ui.selected_files->select(1);
    ui.selected_files->select(2);
    ui.remove_button->do_callback();
    select_texts(*ui.potential_files, {"b.f90"});
    ui.add_button->do_callback();
  };
  run();
  EXPECT_EQ(reports_of({"a.f90", "b.f90"}), steps);
  EXPECT_EQ((Pages{"a#.html", "b#.html", "index.html"}), pages("out"));
  EXPECT_EQ(Texts{path_of("b.f90")}, selected());
}

TEST_F(GenerateHTML, RunGoesOnWhenTheListIsEmptied) {
  build();
  fs::create_directory("out");
  select({"a.f90"});
  name_output("out");
  during_run = [this] {
    ui.selected_files->select(1);
    ui.remove_button->do_callback();
  };
  run();
  EXPECT_EQ(reports_of({"a.f90"}), steps);
  EXPECT_EQ(Texts{}, selected());
  EXPECT_FALSE(ui.generate_button->active());
}

TEST_F(GenerateHTML, RunGoesOnWhenAnotherDirectoryIsEntered) {
  fs::create_directories("sub/deep");
  build();
  fs::create_directory("out");
  select({"a.f90"});
  name_output("out");
  during_run = [this] {
    select_texts(*ui.potential_files, {"@bsub"});
    ui.potential_files->do_callback();
  };
  run();
  EXPECT_EQ((Texts{"@b.", "@b..", "@bdeep"}), potential());
  EXPECT_EQ((Pages{"a#.html", "index.html"}), pages("out"));
}

TEST_F(GenerateHTML, RunGoesOnWhenTheWindowIsClosed) {
  show();
  fs::create_directory("out");
  select({"a.f90", "b.f90"});
  name_output("out");
  during_run = [this] { window->hide(); };
  run();
  EXPECT_FALSE(window->shown());
  EXPECT_EQ(reports_of({"a.f90", "b.f90"}), steps);
  EXPECT_EQ((Pages{"a#.html", "b#.html", "index.html"}), pages("out"));
}

}  // namespace
