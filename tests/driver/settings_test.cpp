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

// The settings as the program starts with them, whatever other tests do later.
class InitialSettings : public ::testing::Environment {
 public:
  void SetUp() override {
    if (taken) return;
    taken = true;
    time_after_initialisation = std::time(nullptr);
    style = html_style;
    dir = html_dir;
    verbosity = verbose;
    separator = slash;
    time = date_time;
    gui = gui_instance;
  }

  bool taken = false;
  std::time_t time_after_initialisation = 0;
  std::uint32_t style = 0;
  std::string dir;
  int verbosity = -1;
  char separator = '\0';
  std::time_t time = 0;
  ZelkorUserInterface* gui = nullptr;
};

static const auto* const initial = static_cast<InitialSettings*>(
    ::testing::AddGlobalTestEnvironment(new InitialSettings));

TEST(Settings, WriteTheIndexInBoldWithoutHighlightingAtFirst) {
  EXPECT_EQ(8226u, initial->style);
  EXPECT_EQ(2u + 32u + 8192u, initial->style);
}

TEST(Settings, PutPagesIntoHtmlBelowTheWorkingDirectoryAtFirst) {
  EXPECT_EQ("HTML", initial->dir);
}

TEST(Settings, AreSilentAtFirst) { EXPECT_EQ(0, initial->verbosity); }

TEST(Settings, SeparatePathsBySlash) { EXPECT_EQ('/', initial->separator); }

TEST(Settings, KnowNoWindowAtFirst) { EXPECT_EQ(nullptr, initial->gui); }

TEST(Settings, HoldTheTimeOfTheirInitialisationAtFirst) {
  ASSERT_NE(0, time_before_initialisation);
  EXPECT_LE(time_before_initialisation, initial->time);
  EXPECT_LE(initial->time, initial->time_after_initialisation);
}

TEST(Settings, HaveTheirStyleBitsAtFixedValues) {
  EXPECT_EQ(1u, HIDE_STRINGS_AND_COMMENTS);
  EXPECT_EQ(2u, WRITE_INDEX);
  EXPECT_EQ(32u, BOLD_KEYWORDS);
  EXPECT_EQ(64u, ITALIC_KEYWORDS);
  EXPECT_EQ(1024u, LEVEL_1);
  EXPECT_EQ(2048u, LEVEL_2);
  EXPECT_EQ(4096u, LEVEL_3);
  EXPECT_EQ(8192u, LEVEL_NONE);
}

TEST(Settings, NameTheIndexPage) {
  EXPECT_EQ("Hyperlinked Fortran Source Tree by Qumbra", index_title);
}

TEST(Settings, HoldTheTrailerAsAFormatOfOneText) {
  EXPECT_EQ(
      "<hr><small>Generated %s by <a href=\"https://zelkor.example/\">zelkor"
      "</a>, A CASE Tool from <a href=\"mailto:zelkor@qumbra.example\">Qumbra"
      "</a></small>",
      page_trailer);
  EXPECT_EQ(page_trailer.find('%'), page_trailer.rfind('%'));
}

// A run over one file that declares a unit and names it in a comment and in a
// string.
class SettingsInARun : public ::testing::Test {
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

  static std::string run() {
    char path[] = "a.f90";
    char* files[] = {path};
    std::string report = printed([&] { gen_html(1, files); });
    references = 0;
    for (const auto& entry : Declaration::decs)
      references += entry.second->callers.size();
    Declaration::forget_all();
    return report;
  }

  static std::string all_pages() {
    std::string text;
    for (const auto& page : std::filesystem::directory_iterator("HTML"))
      text += content_of(page.path());
    return text;
  }

  static std::size_t references;
  TemporaryFolder folder;
  SettingsGuard guard;
};

std::size_t SettingsInARun::references = 0;

TEST_F(SettingsInARun, InitialStyleHighlightsNoKeyword) {
  html_style = initial->style;
  for (const Syntax* entry = Syntax::first; entry; entry = entry->next)
    EXPECT_EQ(nullptr, isSyntax(entry->word)) << entry->word;
  run();
  EXPECT_EQ(std::string::npos, all_pages().find("<b>if</b>"));
  html_style |= LEVEL_2;
  run();
  EXPECT_NE(std::string::npos, all_pages().find("<b>if</b>"));
}

TEST_F(SettingsInARun, InitialStyleWritesTheIndexPage) {
  html_style = initial->style;
  run();
  EXPECT_NE(std::string::npos, all_pages().find(index_title));
  std::filesystem::remove_all("HTML");
  std::filesystem::create_directory("HTML");
  html_style &= ~WRITE_INDEX;
  run();
  EXPECT_EQ(std::string::npos, all_pages().find(index_title));
}

TEST_F(SettingsInARun, InitialStyleHidesNoStringsAndComments) {
  html_style = initial->style;
  run();
  EXPECT_EQ(2u, references);
  html_style |= HIDE_STRINGS_AND_COMMENTS;
  run();
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
