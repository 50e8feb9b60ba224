#include "driver/pipeline.h"

#include <gtest/gtest.h>

#include <malloc.h>

#include <algorithm>
#include <cstdlib>
#include <ctime>
#include <filesystem>
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

  void run(FileList& files) { gen_html(files.count(), files.data()); }

  // The reports of the last run, after checking that they name no window.
  Reports reports() {
    Reports result;
    for (const ProgressReport& report : progress_reports) {
      EXPECT_EQ(nullptr, report.ui);
      result.emplace_back(report.fraction, report.message);
    }
    return result;
  }

  // The page of a source, without its frame.
  void expect_page(const std::string& page, const std::string& title,
                   const std::string& content) {
    EXPECT_EQ(source_page(title, content, date_time),
              content_of("HTML/" + page));
  }

  static std::string index() { return content_of("HTML/index.html"); }

  SettingsGuard settings;
  TemporaryFolder folder;
  TimeZone utc;
};

using GenHtmlDeathTest = GenHtml;

TEST_F(GenHtml, ReportsEveryPassOfOneFileThenTheIndex) {
  write_file("a.f90", "x\n");
  FileList files({"a.f90"});
  run(files);
  EXPECT_EQ((Reports{{0.0, "a.f90"},
                     {0.3, "a.f90"},
                     {0.6, "a.f90"},
                     {1.0, "printing index..."},
                     {1.0, "Done!"}}),
            reports());
}

TEST_F(GenHtml, WritesNoIndexUnlessAsked) {
  write_file("a.f90", "x\n");
  FileList files({"a.f90"});
  html_style &= ~static_cast<std::uint32_t>(WRITE_INDEX);
  run(files);
  EXPECT_EQ(
      (Reports{{0.0, "a.f90"}, {0.3, "a.f90"}, {0.6, "a.f90"}, {1.0, "Done!"}}),
      reports());
  EXPECT_FALSE(fs::exists("HTML/index.html"));
  EXPECT_TRUE(fs::exists("HTML/" + page_a));
}

TEST_F(GenHtml, TheBarLagsOneFileBehind) {
  FileList files({"a", "b", "c", "d"});
  run(files);
  const Reports all = reports();
  ASSERT_EQ(14u, all.size());
  const struct {
    double fraction;
    const char* message;
  } expected[] = {
      {0.0, "a"},
      {0.075, "b"},
      {0.15, "c"},
      {0.225, "d"},
      {0.3, "a"},
      {0.375, "b"},
      {0.45, "c"},
      {0.525, "d"},
      {0.6, "a"},
      {0.7, "b"},
      {0.8, "c"},
      {0.9, "d"},
      {1.0, "printing index..."},
      {1.0, "Done!"},
  };
  for (std::size_t i = 0; i < all.size(); ++i) {
    EXPECT_DOUBLE_EQ(expected[i].fraction, all[i].first) << i;
    EXPECT_EQ(expected[i].message, all[i].second) << i;
  }
}

TEST_F(GenHtml, FractionsMultiplyFirstAndDivideThen) {
  for (int count = 1; count <= 20; ++count) {
    FileList files(
        std::vector<std::string>(static_cast<std::size_t>(count), "missing"));
    progress_reports.clear();
    run(files);
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

TEST_F(GenHtml, WithoutFilesWritesTheIndexOfAnEmptyRegistry) {
  for (const int count : {0, -1}) {
    FileList old({"a.f90"});
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
}

TEST_F(GenHtml, WithoutFilesAndIndexIsDoneAtOnce) {
  html_style = 0;
  gen_html(0, nullptr);
  EXPECT_EQ((Reports{{1.0, "Done!"}}), reports());
  EXPECT_TRUE(fs::is_empty("HTML"));
}

TEST_F(GenHtml, ReferencesInTheFirstFileFindUnitsOfTheLast) {
  write_file("a.f90", "call solve(x)\nend\n");
  write_file("b.f90", "subroutine solve(x)\nend subroutine solve\n");
  FileList files({"a.f90", "b.f90"});
  run(files);

  const std::string target =
      "<a HREF=\"b1756053.html#solve-1\"><b>solve</b>"
      "</a>";
  expect_page(page_a, "a.f90",
              "call <a NAME=\"line1\"></a>" + target + "(x)\nend\n");
  expect_page(page_b, "b.f90",
              "subroutine <a NAME=\"solve-1\"><b>solve</b></a>" +
                  callers_menu(caller(page_a, "a.f90", 1) +
                               caller(page_b, "b.f90", 2)) +
                  "(x)\nend subroutine <a NAME=\"line2\"></a>" + target + "\n");
  EXPECT_NE(std::string::npos,
            index().find("\n<LI> <a HREF=\"b1756053.html#solve-1\"><b>solve"
                         "</b></a>\n</UL>\n\n"));
}

// The window frees the paths once the run is over. Behind a long line the
// passes count differently, so that no page shows the references to this unit.
TEST_F(GenHtml, ReferencesAreWalkedWithoutThePathsAfterwards) {
  write_file("a.f90", std::string(1500, ' ') + "\nsubroutine a\nend\n");
  write_file("b.f90", "\n\ncall a\n");
  write_file("c.f90", "call a\ncall a\n");
  FileList files({"c.f90", "missing.f90", "b.f90", "a.f90"});
  run(files);
  std::fill_n(files.data(), files.count(), nullptr);
  std::vector<int> lines;
  for (const auto& entry : Declaration::decs)
    for (const Calling& calling : entry.second->callers)
      lines.push_back(calling.line);
  EXPECT_EQ((std::vector<int>{2, 3, 1, 2}), lines);
}

TEST_F(GenHtml, APageListsCallersFromLaterFiles) {
  write_file("a.f90", "subroutine solve\nend\n");
  write_file("b.f90", "call solve\n");
  FileList files({"a.f90", "b.f90"});
  run(files);
  expect_page(page_a, "a.f90",
              "subroutine <a NAME=\"solve-1\"><b>solve</b></a>" +
                  callers_menu(caller(page_b, "b.f90", 1)) + "\nend\n");
}

TEST_F(GenHtml, ARunKnowsNothingOfTheOneBefore) {
  write_file("a.f90", "module old\nend\n");
  write_file("b.f90", "use old\nprogram new\nend\n");
  FileList first({"a.f90"});
  run(first);
  EXPECT_NE(std::string::npos, index().find(">old<"));

  FileList second({"b.f90"});
  run(second);
  expect_page(page_b, "b.f90",
              "use old\nprogram <a NAME=\"new-1\"><b>new</b></a>" +
                  callers_menu("") + "\nend\n");
  EXPECT_EQ(std::string::npos, index().find(">old<"));
  EXPECT_NE(std::string::npos, index().find(">new<"));
}

TEST_F(GenHtml, TheSameRunTwiceGivesTheSamePages) {
  write_file("a.f90", "subroutine s\nend subroutine s\n");
  FileList files({"a.f90"});
  const std::string content = "subroutine <a NAME=\"s-1\"><b>s</b></a>" +
                              callers_menu(caller(page_a, "a.f90", 2)) +
                              "\nend subroutine <a NAME=\"line2\"></a>"
                              "<a HREF=\"a1751050.html#s-1\"><b>s</b></a>\n";
  for (int i = 0; i < 2; ++i) {
    run(files);
    expect_page(page_a, "a.f90", content);
  }
}

// The third run has whatever is kept from one run to the next. A block that is
// lost in each run takes at least 16 bytes.
TEST_F(GenHtml, AHundredRunsTakeNoMoreMemoryThanThree) {
  write_file("a.f90", "subroutine s\nx = t(\"s\") ! s\nend subroutine s\n");
  write_file("b.f90", "interface s\nend\nfunction t\ncall s & \n()\nend\n");
  FileList files({"a.f90", "b.f90", "missing.f90"});
  std::size_t after_three = 0;
  for (int runs = 1; runs <= 100; ++runs) {
    progress_reports.clear();
    run(files);
    if (runs == 3) after_three = heap_in_use();
  }
  EXPECT_GT(after_three + 97 * 16, heap_in_use());
}

// What is freed is overwritten, so whoever uses it then breaks down. Small
// blocks are not: the references take more than that.
TEST_F(GenHtmlDeathTest, TheUnitsOfTheLastRunMayOutliveTheRunsTillTheEnd) {
  std::string text = "subroutine s\n";
  for (int i = 0; i < 1000; ++i) text += "call s\n";
  write_file("a.f90", text);
  FileList files({"a.f90"});
  EXPECT_EXIT(
      {
        mallopt(M_PERTURB, 0xa5);
        run(files);
        std::exit(0);
      },
      testing::ExitedWithCode(0), "");
}

// Both units stand on line 1 of the same path, but in two slots; the page that
// is written last is that of the second slot.
TEST_F(GenHtml, APathListedTwiceIsProcessedTwiceInEachPass) {
  write_file("a.f90", "subroutine s\nend subroutine s\n");
  FileList files({"a.f90", "a.f90"});
  verbose = 1;
  EXPECT_EQ(
      "SUBROUTINE          ***\ts\tin a.f90\nEND OF FILE\n"
      "SUBROUTINE          ***\ts\tin a.f90\nEND OF FILE\n"
      "Generating XREF for a.f90...OK\n"
      "Generating XREF for a.f90...OK\n"
      "Generating HTML for a.f90...OK\n"
      "Generating HTML for a.f90...OK\n"
      "Generating HTML index..\nDone!\n",
      printed([&] { run(files); }));
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

TEST_F(GenHtml, EveryPassGoesOverAllFilesInListOrder) {
  write_file("b.f90", "module b\nend\n");
  write_file("a.f90", "program a\nend\n");
  FileList files({"b.f90", "a.f90"});
  verbose = 2;
  EXPECT_EQ(
      "MODULE              ***\tb\tin b.f90\nEND OF FILE\n"
      "PROGRAM             ***\ta\tin a.f90\nEND OF FILE\n"
      "Generating XREF for b.f90...OK\n"
      "Generating XREF for a.f90...OK\n"
      "Generating HTML for b.f90...OK\n"
      "Generating HTML for a.f90...OK\n"
      "Generating HTML index..\nDone!\n",
      printed([&] { run(files); }));
}

TEST_F(GenHtml, SaysNothingByDefault) {
  write_file("a.f90", "module b\nend\n");
  FileList files({"a.f90"});
  for (const int level : {0, -1}) {
    verbose = level;
    EXPECT_EQ("", printed([&] { run(files); }));
  }
}

TEST_F(GenHtml, MissingFilesAreSkippedButReported) {
  write_file("b.f90", "x\n");
  FileList files({"missing.f90", "b.f90"});
  verbose = 1;
  EXPECT_EQ(
      "END OF FILE\n"
      "Generating XREF for b.f90...OK\n"
      "Generating HTML for b.f90...OK\n"
      "Generating HTML index..\nDone!\n",
      printed([&] { run(files); }));
  std::vector<std::string> messages;
  for (const auto& report : reports()) messages.push_back(report.second);
  EXPECT_EQ((std::vector<std::string>{"missing.f90", "b.f90", "missing.f90",
                                      "b.f90", "missing.f90", "b.f90",
                                      "printing index...", "Done!"}),
            messages);
  expect_page(page_b, "b.f90", "x\n");
}

TEST_F(GenHtml, ReportsFollowTheWorkTheyStandFor) {
  write_file("a.f90", "module m\nend module m\n");
  FileList files({"a.f90"});
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
  run(files);
  EXPECT_EQ("d dc dcp dcp dcpi ", seen);
}

TEST_F(GenHtml, StampsTheTimeAtTheStart) {
  write_file("a.f90", "x\n");
  FileList files({"a.f90"});
  date_time = 0;
  const std::time_t before = std::time(nullptr);
  run(files);
  EXPECT_LE(before, date_time);
  EXPECT_GE(std::time(nullptr), date_time);
  expect_page(page_a, "a.f90", "x\n");
}

TEST_F(GenHtml, AllPagesCarryTheOneTimeStamp) {
  write_file("a.f90", "x\n");
  write_file("b.f90", "y\n");
  FileList files({"a.f90", "b.f90"});
  progress_hook = [](const ProgressReport& report) {
    if (report.fraction == 0.0) date_time = 1235911445;
  };
  run(files);
  EXPECT_EQ(1235911445, date_time);
  expect_page(page_a, "a.f90", "x\n");
  expect_page(page_b, "b.f90", "y\n");
  const std::string tail = page_tail(1235911445);
  ASSERT_LT(tail.size(), index().size());
  EXPECT_EQ(tail, index().substr(index().size() - tail.size()));
}

TEST_F(GenHtml, SettingsAreReadWhenTheyAreNeeded) {
  write_file("a.f90", "if\n");
  FileList files({"a.f90"});
  fs::create_directory("late");
  progress_hook = [](const ProgressReport& report) {
    if (report.fraction == 0.3) {
      html_dir = "late";
      html_style = WRITE_INDEX | ITALIC_KEYWORDS | LEVEL_2;
    }
    if (report.fraction == 0.6) html_style = 0;
  };
  run(files);
  EXPECT_EQ(source_page("a.f90", "<i>if</i>\n", date_time),
            content_of("late/" + page_a));
  EXPECT_FALSE(fs::exists("late/index.html"));
  EXPECT_TRUE(fs::is_empty("HTML"));
}

// In fixed form a line that begins with "c" is a comment, and "!" opens none.
TEST_F(GenHtml, EveryPassTakesFilesForFreeForm) {
  write_file("a.f90", "\ncall s\nc s\nend\n");
  write_file("b.f90", "module ! x\nsubroutine s\nend\n");
  FileList files({"a.f90", "b.f90"});
  html_style |= HIDE_STRINGS_AND_COMMENTS;
  run(files);
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

// Whole lines that take so many bytes, 64 each but for the last one.
std::string lines_of(std::size_t bytes) {
  std::string text(bytes, '-');
  for (std::size_t end = 63; end < bytes; end += 64) text[end] = '\n';
  text.back() = '\n';
  return text;
}

// Files are read in blocks of 32768 bytes. The first one ends within a name
// that is declared, the second one within a reference to it.
TEST_F(GenHtml, NamesOverTheEndsOfBlocksAreWhole) {
  const std::string before = lines_of(32768 - 14);          // 512 lines
  const std::string between = "\n" + lines_of(32768 - 11);  // 512 more
  const std::string source =
      before + "subroutine solve" + between + "call solve\nend\n";
  ASSERT_EQ("solve", source.substr(32768 - 3, 5));
  ASSERT_EQ("solve", source.substr(65536 - 3, 5));

  write_file("a.f90", source);
  FileList files({"a.f90"});
  run(files);
  expect_page(page_a, "a.f90",
              before + "subroutine <a NAME=\"solve-1\"><b>solve</b></a>" +
                  callers_menu(caller(page_a, "a.f90", 1026)) + between +
                  "call <a NAME=\"line1026\"></a>"
                  "<a HREF=\"a1751050.html#solve-1\"><b>solve</b></a>\nend\n");
}

TEST_F(GenHtml, MessagesAreThePathsAsTheyStandInTheList) {
  FileList files({"./100%s/../x @y.f90"});
  run(files);
  for (std::size_t i = 0; i < 3; ++i)
    EXPECT_EQ("./100%s/../x @y.f90", reports().at(i).second);
}

TEST_F(GenHtml, OddFilesAreNoHindrance) {
  write_file("empty.f90", "");
  write_file("nul.f90", std::string("\0\n\0x\nmodule m\n", 14));
  write_file("long.f90", std::string(100000, 'x') + "\nend\n");
  write_file("latin.f90", "! caf\xe9\r\nmodule \xe9\r\nend\r\n");
  write_file("open.f90", "print *, \"never closed\nmodule &");
  fs::create_directory("dir.f90");
  FileList files({"empty.f90", "nul.f90", "long.f90", "latin.f90", "open.f90",
                  "dir.f90", ""});
  run(files);
  EXPECT_EQ(23u, progress_reports.size());
  // Six pages, for the empty path names none, and the index.
  const auto pages = fs::directory_iterator("HTML");
  EXPECT_EQ(7, std::distance(begin(pages), end(pages)));
}

TEST_F(GenHtml, AnUnreadableIndexPlaceIsNoHindrance) {
  write_file("a.f90", "x\n");
  FileList files({"a.f90"});
  fs::create_directory("HTML/index.html");
  run(files);
  EXPECT_EQ("Done!", progress_reports.back().message);
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
