// The button "Generate HTML", and what a user can do during a run.

#include <FL/Fl.H>
#include <FL/Fl_Box.H>
#include <FL/Fl_Button.H>
#include <FL/Fl_Input.H>
#include <FL/Fl_Slider.H>
#include <gtest/gtest.h>

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
    build();
    fs::create_directory("out");
    name_output("out");
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

  void run() {
    steps.clear();
    ui.generate_button->do_callback();
  }

  // Records the bar and the status line each time the toolkit handles events.
  static void record(void* self) {
    auto* test = static_cast<GenerateHTML*>(self);
    if (Fl::modal() != nullptr) return;
    std::ostringstream step;
    step << test->ui.progress_bar->value() << ' '
         << test->ui.status_box->label();
    test->steps.push_back(step.str());
    if (test->during_run) std::exchange(test->during_run, nullptr)();
  }

  // The steps of a run over files.
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

  // The pages in a directory, with "#" for the numbers in their names, which
  // have four digits or more.
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
  const MessageBoxes boxes;
};

using Pages = std::multiset<std::string>;

TEST_F(GenerateHTML, ProcessesFilesInListOrderAndCanRunAgain) {
  EXPECT_EQ(nullptr, progress_target);
  select({"c.f90"});
  run();
  EXPECT_EQ(reports_of({"c.f90"}), steps);
  select({"a.f90", "b.f90"});
  run();
  EXPECT_EQ((Pages{"a#.html", "b#.html", "c#.html", "index.html"}),
            pages("out"));
  EXPECT_EQ("out", html_dir);
  EXPECT_EQ(reports_of({"c.f90", "a.f90", "b.f90"}), steps);
  EXPECT_EQ(&ui, progress_target);
  EXPECT_STREQ("HTML complete!", ui.status_box->label());
  EXPECT_EQ(1.0, ui.progress_bar->value());
  EXPECT_TRUE(ui.generate_button->active());
  EXPECT_EQ((Texts{path_of("c.f90"), path_of("a.f90"), path_of("b.f90")}),
            selected());
}

// Alerts show the name unchanged: the toolkit prints "@@" as one "@".
TEST_F(GenerateHTML, RejectsAnOutputThatIsNotADirectory) {
  write_file("file", "");
  select({"a.f90"});
  const std::string notice = ui.status_box->label();
  Texts alerts;
  const struct {
    const char* name;
    const char* shown;
  } cases[] = {{"", ""},
               {"nowhere", "nowhere"},
               {"file", "file"},
               {"100%s%n", "100%s%n"},
               {"me@home", "me@@home"},
               {"@@b@", "@@@@b@@"},
               {"caf\xe9", "caf\xe9"}};
  for (const auto& [name, shown] : cases) {
    html_dir = "HTML";
    name_output(name);
    run();
    alerts.push_back("! '" + std::string(shown) + "'\nis not a directory name");
    EXPECT_EQ(alerts, boxes.seen());
    EXPECT_EQ(name, html_dir);
    EXPECT_EQ(notice, ui.status_box->label());
    EXPECT_EQ(nullptr, progress_target);
  }
  name_output("out");
  run();
  EXPECT_EQ((Pages{"a#.html", "index.html"}), pages("out"));
}

TEST_F(GenerateHTML, StopsSilentlyWhenNothingIsSelected) {
  const std::string notice = ui.status_box->label();
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

TEST_F(GenerateHTML, ButtonStaysActiveDuringARunButIsIgnored) {
  select({"a.f90", "b.f90"});
  during_run = [this] {
    name_output("nowhere");
    EXPECT_TRUE(ui.generate_button->active());
    ui.generate_button->do_callback();
    EXPECT_EQ("out", html_dir);
  };
  run();
  EXPECT_EQ(Texts{}, boxes.seen());
  EXPECT_EQ(reports_of({"a.f90", "b.f90"}), steps);
  EXPECT_EQ((Pages{"a#.html", "b#.html", "index.html"}), pages("out"));
}

TEST_F(GenerateHTML, RunKeepsItsFilesWhenTheListIsEdited) {
  select({"a.f90", "b.f90"});
  during_run = [this] {
    remove({path_of("a.f90"), path_of("b.f90")});
    add({"b.f90"});
    window->hide();
  };
  run();
  EXPECT_EQ(reports_of({"a.f90", "b.f90"}), steps);
  EXPECT_EQ((Pages{"a#.html", "b#.html", "index.html"}), pages("out"));
  EXPECT_EQ(Texts{path_of("b.f90")}, selected());
}

}  // namespace
