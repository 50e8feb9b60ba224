#include "driver/pipeline.h"

#include <gtest/gtest.h>

#include <malloc.h>

#include <algorithm>
#include <cstdlib>
#include <ctime>
#include <filesystem>
#include <list>
#include <string>
#include <utility>
#include <vector>

#include "analysis/declaration.h"
#include "driver/settings.h"
#include "tests/support/capture.h"
#include "tests/support/file_list.h"
#include "tests/support/fixed_clock.h"
#include "tests/support/heap_in_use.h"
#include "tests/support/page_text.h"
#include "tests/support/recorded_progress.h"
#include "tests/support/settings_guard.h"
#include "tests/support/temporary_folder.h"

namespace fs = std::filesystem;

namespace {

const std::string page_a = "a1751050.html";
const std::string page_b = "b1756053.html";

using Reports = std::vector<std::pair<double, std::string>>;

class GenHtml : public testing::Test {
 protected:
  GenHtml() {
    fs::create_directory("HTML");
    progress_reports.clear();
  }
  ~GenHtml() override { progress_hook = nullptr; }

  // Generates pages for files, whose slots live as long as the test.
  void run(const std::vector<std::string>& paths) {
    FileList& files = lists.emplace_back(paths);
    gen_html(files.count(), files.data());
  }

  std::string printed_over(const std::vector<std::string>& paths) {
    return printed([&] { run(paths); });
  }

  // The reports of the last run, after checking that they name no window.
  Reports reports() {
    Reports result;
    for (const ProgressReport& report : progress_reports) {
      EXPECT_EQ(nullptr, report.ui);
      result.emplace_back(report.fraction, report.message);
    }
    return result;
  }

  // Checks the page of a source; the content excludes the frame of the page.
  void expect_page(const std::string& page, const std::string& title,
                   const std::string& content) {
    EXPECT_EQ(source_page(title, content, date_time),
              content_of("HTML/" + page));
  }

  static std::string index() { return content_of("HTML/index.html"); }

  std::list<FileList> lists;
  SettingsGuard settings;
  TemporaryFolder folder;
  TimeZone utc;
};

using GenHtmlDeathTest = GenHtml;

TEST_F(GenHtml, ReportsThreePassesOverAFileAndThenTheIndex) {
  write_file("a.f90", "x\n");
  Reports expected = {{0.0, "a.f90"}, {0.3, "a.f90"}, {0.6, "a.f90"}};
  html_style &= ~static_cast<std::uint32_t>(WRITE_INDEX);
  run({"a.f90"});
  expected.emplace_back(1.0, "Done!");
  EXPECT_EQ(expected, reports());
  EXPECT_FALSE(fs::exists("HTML/index.html"));
  EXPECT_TRUE(fs::exists("HTML/" + page_a));

  progress_reports.clear();
  html_style |= WRITE_INDEX;
  run({"a.f90"});
  expected.insert(expected.end() - 1, {1.0, "printing index..."});
  EXPECT_EQ(expected, reports());
  EXPECT_TRUE(fs::exists("HTML/index.html"));
}

TEST_F(GenHtml, MultipliesBeforeItDividesInFractions) {
  for (int count = 1; count <= 20; ++count) {
    progress_reports.clear();
    run(std::vector<std::string>(static_cast<std::size_t>(count), "missing"));
    const Reports all = reports();
    ASSERT_EQ(static_cast<std::size_t>(3 * count + 2), all.size());
    for (int i = 0; i < count; ++i) {
      const double third = i * 0.3;
      const double rest = i * 0.4;
      const auto fraction = [&](int pass) {
        const int report = pass * count + i;
        return all[static_cast<std::size_t>(report)].first;
      };
      EXPECT_EQ(third / count, fraction(0)) << i << " of " << count;
      EXPECT_EQ(third / count + 0.3, fraction(1)) << i << " of " << count;
      EXPECT_EQ(rest / count + 0.6, fraction(2)) << i << " of " << count;
    }
  }
}

TEST_F(GenHtml, WritesAnEmptyIndexWithoutFiles) {
  FileList old({"a.f90"});
  for (const int count : {0, -1}) {
    new Declaration(DT_PROGRAM, "old", old.slot(0), 1);
    fs::remove("HTML/index.html");
    progress_reports.clear();
    gen_html(count, nullptr);
    EXPECT_EQ((Reports{{1.0, "printing index..."}, {1.0, "Done!"}}), reports())
        << count;
    EXPECT_TRUE(Declaration::decs.empty());
    EXPECT_NE(std::string::npos,
              index().find("PROGRAM Declarations</a></H2><UL>\n\n</UL>"));
  }
  fs::remove("HTML/index.html");
  progress_reports.clear();
  html_style = 0;
  gen_html(0, nullptr);
  EXPECT_EQ((Reports{{1.0, "Done!"}}), reports());
  EXPECT_TRUE(fs::is_empty("HTML"));
}

// The window frees the paths after a run. The passes count long lines
// differently, so no page shows the references to this unit.
TEST_F(GenHtml, LeavesReferencesThatDoNotNeedThePaths) {
  write_file("a.f90", std::string(1500, ' ') + "\nsubroutine a\nend\n");
  write_file("b.f90", "\n\ncall a\n");
  write_file("c.f90", "call a\ncall a\n");
  run({"c.f90", "missing.f90", "b.f90", "a.f90"});
  std::fill_n(lists.back().data(), 4, nullptr);
  std::vector<int> lines;
  for (const auto& entry : Declaration::decs)
    for (const Calling& calling : entry.second->callers)
      lines.push_back(calling.line);
  EXPECT_EQ((std::vector<int>{2, 3, 1, 2}), lines);
}

TEST_F(GenHtml, ForgetsTheUnitsOfThePreviousRun) {
  write_file("a.f90", "module old\nend\n");
  write_file("b.f90", "use old\nprogram new\nend\n");
  run({"a.f90"});
  EXPECT_NE(std::string::npos, index().find(">old<"));
  run({"b.f90"});
  expect_page(page_b, "b.f90",
              "use old\nprogram <a NAME=\"new-1\"><b>new</b></a>" +
                  callers_menu("") + "\nend\n");
  EXPECT_EQ(std::string::npos, index().find(">old<"));
  EXPECT_NE(std::string::npos, index().find(">new<"));
}

// After three runs, everything that is kept between runs is allocated. A block
// that is lost in each run takes at least 16 bytes.
TEST_F(GenHtml, TakesNoMoreMemoryAfterAHundredRunsThanAfterThree) {
  write_file("a.f90", "subroutine s\nx = t(\"s\") ! s\nend subroutine s\n");
  write_file("b.f90", "interface s\nend\nfunction t\ncall s & \n()\nend\n");
  FileList files({"a.f90", "b.f90", "missing.f90"});
  std::size_t after_three = 0;
  for (int runs = 1; runs <= 100; ++runs) {
    progress_reports.clear();
    gen_html(files.count(), files.data());
    if (runs == 3) after_three = heap_in_use();
  }
  EXPECT_GT(after_three + 97 * 16, heap_in_use());
}

// Freed memory is overwritten, so a later use of it crashes. Small blocks are
// not overwritten, but the references take large ones.
TEST_F(GenHtmlDeathTest, UnitsOfTheLastRunCanOutliveAllRuns) {
  std::string text = "subroutine s\n";
  for (int i = 0; i < 1000; ++i) text += "call s\n";
  write_file("a.f90", text);
  EXPECT_EXIT(
      {
        mallopt(M_PERTURB, 0xa5);
        run({"a.f90"});
        std::exit(0);
      },
      testing::ExitedWithCode(0), "");
}

// Both units are on line 1 of the same path, but in two slots. The page of the
// second slot is written last.
TEST_F(GenHtml, ProcessesAPathTwiceInEachPassIfItIsListedTwice) {
  write_file("a.f90", "subroutine s\nend subroutine s\n");
  verbose = 1;
  EXPECT_EQ(
      "SUBROUTINE          ***\ts\tin a.f90\nEND OF FILE\n"
      "SUBROUTINE          ***\ts\tin a.f90\nEND OF FILE\n"
      "Generating XREF for a.f90...OK\n"
      "Generating XREF for a.f90...OK\n"
      "Generating HTML for a.f90...OK\n"
      "Generating HTML for a.f90...OK\n"
      "Generating HTML index..\nDone!\n",
      printed_over({"a.f90", "a.f90"}));
  EXPECT_EQ(8u, reports().size());
  expect_page(
      page_a, "a.f90",
      "subroutine <a NAME=\"s-2\"><b>s</b></a>" +
          callers_menu(caller(page_a, "a.f90", 2)) +
          "\nend subroutine <a NAME=\"line2\"></a>" +
          definitions_pane(
              "s",
              "<a href=\"a1751050.html#s-1\"><small>a.f90:1</small></a><br/>\n"
              "<a href=\"a1751050.html#s-2\"><small>a.f90:1</small></a>"
              "<br/>\n") +
          "\n");
}

TEST_F(GenHtml, SkipsMissingFilesButReportsTheirPathsUnchanged) {
  write_file("b.f90", "x\n");
  const std::string missing = "./100%s/../x @y.f90";
  verbose = 1;
  EXPECT_EQ(
      "END OF FILE\n"
      "Generating XREF for b.f90...OK\n"
      "Generating HTML for b.f90...OK\n"
      "Generating HTML index..\nDone!\n",
      printed_over({missing, "b.f90"}));
  std::vector<std::string> messages;
  for (const auto& report : reports()) messages.push_back(report.second);
  EXPECT_EQ(
      (std::vector<std::string>{missing, "b.f90", missing, "b.f90", missing,
                                "b.f90", "printing index...", "Done!"}),
      messages);
  expect_page(page_b, "b.f90", "x\n");
}

TEST_F(GenHtml, ReportsEachPassAfterItsWork) {
  write_file("a.f90", "module m\nend module m\n");
  std::string seen;
  progress_hook = [&seen](const ProgressReport&) {
    seen += Declaration::decs.empty() ? '-' : 'd';
    if (!Declaration::decs.empty() &&
        !Declaration::decs.begin()->second->callers.empty())
      seen += 'c';
    if (fs::exists("HTML/" + page_a)) seen += 'p';
    if (fs::exists("HTML/index.html")) seen += 'i';
    seen += ' ';
  };
  run({"a.f90"});
  EXPECT_EQ("d dc dcp dcp dcpi ", seen);
}

TEST_F(GenHtml, ShowsTheStartTimeOnAllPages) {
  write_file("a.f90", "x\n");
  write_file("b.f90", "y\n");
  date_time = 0;
  const std::time_t before = std::time(nullptr);
  progress_hook = [before](const ProgressReport& report) {
    if (report.message != "a.f90" || report.fraction != 0.0) return;
    EXPECT_LE(before, date_time);
    EXPECT_GE(std::time(nullptr), date_time);
    date_time = 1235911445;
  };
  run({"a.f90", "b.f90"});
  EXPECT_EQ(1235911445, date_time);
  expect_page(page_a, "a.f90", "x\n");
  expect_page(page_b, "b.f90", "y\n");
  const std::string tail = page_tail(1235911445);
  ASSERT_LT(tail.size(), index().size());
  EXPECT_EQ(tail, index().substr(index().size() - tail.size()));
}

TEST_F(GenHtml, ReadsSettingsWhenItNeedsThem) {
  write_file("a.f90", "if\n");
  fs::create_directory("late");
  progress_hook = [](const ProgressReport& report) {
    if (report.fraction == 0.3) {
      html_dir = "late";
      html_style = WRITE_INDEX | ITALIC_KEYWORDS | LEVEL_2;
    }
    if (report.fraction == 0.6) html_style = 0;
  };
  run({"a.f90"});
  EXPECT_EQ(source_page("a.f90", "<i>if</i>\n", date_time),
            content_of("late/" + page_a));
  EXPECT_FALSE(fs::exists("late/index.html"));
  EXPECT_TRUE(fs::is_empty("HTML"));
}

// In fixed form a line that begins with "c" is a comment, and "!" starts none.
TEST_F(GenHtml, TreatsFilesAsFreeFormInEveryPass) {
  write_file("a.f90", "\ncall s\nc s\nend\n");
  write_file("b.f90", "module ! x\nsubroutine s\nend\n");
  html_style |= HIDE_STRINGS_AND_COMMENTS;
  run({"a.f90", "b.f90"});
  EXPECT_EQ(1u, Declaration::decs.count(""));
  EXPECT_EQ(0u, Declaration::decs.count("X"));

  const auto link = [](int line) {
    return "<a NAME=\"line" + std::to_string(line) +
           "\"></a><a HREF=\"b1756053.html#s-1\"><b>s</b></a>\n";
  };
  expect_page(page_a, "a.f90", "\ncall " + link(2) + "c " + link(3) + "end\n");
  expect_page(page_b, "b.f90",
              "module ! x\nsubroutine <a NAME=\"s-1\"><b>s</b></a>" +
                  callers_menu(caller(page_a, "a.f90", 2) +
                               caller(page_a, "a.f90", 3)) +
                  "\nend\n");
}

TEST(InitStatics, StampsTheTimeAndEmptiesTheRegistry) {
  const SettingsGuard settings;
  FileList files({"a.f90"});
  new Declaration(DT_PROGRAM, "old", files.slot(0), 1);
  date_time = 0;
  const std::time_t before = std::time(nullptr);
  init_statics();
  EXPECT_LE(before, date_time);
  EXPECT_GE(std::time(nullptr), date_time);
  EXPECT_TRUE(Declaration::decs.empty());
}

}  // namespace
