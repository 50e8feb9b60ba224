#include "driver/settings.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <ctime>
#include <filesystem>
#include <string>
#include <type_traits>

#include "analysis/keywords.h"
#include "driver/pipeline.h"
#include "tests/support/capture.h"
#include "tests/support/recorded_progress.h"
#include "tests/support/settings_guard.h"
#include "tests/support/temporary_folder.h"

static_assert(std::is_same_v<decltype(html_style), std::uint32_t>);
static_assert(std::is_same_v<decltype(html_dir), std::string>);
static_assert(std::is_same_v<decltype(verbose), std::int32_t>);
static_assert(std::is_same_v<decltype(slash), char>);
static_assert(std::is_same_v<decltype(date_time), std::time_t>);
static_assert(std::is_same_v<decltype(gui_instance), ZelkorUserInterface*>);
static_assert(std::is_same_v<decltype(index_title), std::string>);
static_assert(std::is_same_v<decltype(page_trailer), std::string>);

static std::time_t time_before_initialisation;

// Runs before the static initialisers of any source file.
[[gnu::constructor(101)]] static void note_time() {
  time_before_initialisation = std::time(nullptr);
}

struct Settings {
  std::uint32_t style = html_style;
  std::string dir = html_dir;
  int verbosity = verbose;
  char separator = slash;
  std::time_t time = date_time;
  ZelkorUserInterface* gui = gui_instance;
  std::time_t time_after_initialisation = std::time(nullptr);
};

// The settings at the start of the program, before a test changes them.
static const Settings& initial_settings() {
  static const Settings settings;
  return settings;
}

class InitialSettings : public testing::Environment {
  void SetUp() override { initial_settings(); }
};

static const auto* const initial =
    testing::AddGlobalTestEnvironment(new InitialSettings);

TEST(Settings, StartWithTheirDefaults) {
  const Settings& first = initial_settings();
  EXPECT_EQ(8226u, first.style);
  EXPECT_EQ("HTML", first.dir);
  EXPECT_EQ(0, first.verbosity);
  EXPECT_EQ('/', first.separator);
  EXPECT_EQ(nullptr, first.gui);
  ASSERT_NE(0, time_before_initialisation);
  EXPECT_LE(time_before_initialisation, first.time);
  EXPECT_LE(first.time, first.time_after_initialisation);
}

// A run over one file that declares a unit and names it in a comment and in a
// string.
class SettingsInARun : public testing::Test {
 protected:
  SettingsInARun() {
    write_file("a.f90",
               "subroutine solve\n"
               "! solve\n"
               "if (x) print *, \"solve\"\n"
               "end\n");
    std::filesystem::create_directory("HTML");
  }
  ~SettingsInARun() override { progress_reports.clear(); }

  // Returns the reports.
  std::string run() {
    char path[] = "a.f90";
    char* files[] = {path};
    std::string report = printed([&] { gen_html(1, files); });
    references = Declaration::decs.begin()->second->callers.size();
    pages.clear();
    for (const auto& page : std::filesystem::directory_iterator("HTML")) {
      pages += content_of(page.path());
      std::filesystem::remove(page);
    }
    return report;
  }
  bool pages_show(const std::string& text) const {
    return pages.find(text) != std::string::npos;
  }

  TemporaryFolder folder;
  SettingsGuard guard;
  std::string pages;
  std::size_t references = 0;
};

TEST_F(SettingsInARun, InitialStyleWritesTheIndexWithoutHighlightingOrHiding) {
  html_style = initial_settings().style;
  for (const Syntax* entry = Syntax::first; entry; entry = entry->next)
    EXPECT_EQ(nullptr, isSyntax(entry->word)) << entry->word;
  run();
  EXPECT_FALSE(pages_show("<b>if</b>"));
  EXPECT_TRUE(pages_show(index_title));
  EXPECT_EQ(2u, references);

  html_style = LEVEL_2 | BOLD_KEYWORDS | HIDE_STRINGS_AND_COMMENTS;
  run();
  EXPECT_TRUE(pages_show("<b>if</b>"));
  EXPECT_FALSE(pages_show(index_title));
  EXPECT_EQ(0u, references);
}

TEST_F(SettingsInARun, NoPassPrintsAtVerbosityZeroOrLess) {
  for (const int verbosity : {0, -1, INT32_MIN}) {
    verbose = verbosity;
    EXPECT_EQ("", run()) << verbosity;
  }
  verbose = 1;
  EXPECT_NE("", run());
}
