#include "analysis/source_lines.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "tests/support/settings_guard.h"
#include "tests/support/temporary_folder.h"

using namespace std::string_literals;

using Texts = std::vector<std::string>;

struct Lines {
  Texts raw;
  Texts scanned;
};

class SourceLinesTest : public ::testing::Test {
 protected:
  // All lines read from a file with this content.
  static Lines read(const std::string& content, bool fixed_form = false) {
    write_file("a.f90", content);
    SourceLines source("a.f90", fixed_form);
    EXPECT_TRUE(source.is_open());
    Lines lines;
    while (source.next()) {
      lines.raw.emplace_back(source.raw());
      lines.scanned.emplace_back(source.scanned());
      EXPECT_EQ(static_cast<int>(lines.raw.size()), source.number());
    }
    return lines;
  }

  static Texts raw(const std::string& content) { return read(content).raw; }

  TemporaryFolder folder;
  SettingsGuard guard;
};

TEST_F(SourceLinesTest, GivesEachLineWithItsLineEnd) {
  EXPECT_EQ((Texts{"a\n", "\n", "b\r\n", "c\n"}), raw("a\n\nb\r\nc\n"));
}

TEST_F(SourceLinesTest, DoesNotGiveALastLineWithoutLineEnd) {
  EXPECT_EQ((Texts{"a\n"}), raw("a\nb"));
  EXPECT_EQ(Texts{}, raw("b"));
}

TEST_F(SourceLinesTest, OfAnEmptyFileGivesNothing) {
  EXPECT_EQ(Texts{}, raw(""));
}

// clang-format off
static const struct {
  std::size_t characters;
  const char* line_end;
  std::vector<std::size_t> lengths;   // of the lines given
} physical_lines[] = {
  { 1022,   "\n",   {1023} },
  { 1023,   "\n",   {1024} },
  { 1024,   "\n",   {1025} },
  { 1022,   "",     {} },
  { 1023,   "",     {} },
  { 1024,   "",     {} },
  { 4094,   "\n",   {4095} },
  { 4094,   "",     {} },
  { 4094,   "\r\n", {4095, 1} },
  { 4095,   "\n",   {4095, 1} },
  { 4095,   "",     {4095} },         // the end of the file is not seen yet
  { 4096,   "\n",   {4095, 2} },
  { 4096,   "",     {4095} },
  { 8190,   "",     {4095, 4095} },
};
// clang-format on

TEST_F(SourceLinesTest, ReadsLongLinesInPiecesOf4095Characters) {
  for (const auto& c : physical_lines) {
    const std::string content = std::string(c.characters, 'x') + c.line_end;
    Texts expected;
    std::size_t start = 0;
    for (const std::size_t length : c.lengths) {
      expected.push_back(content.substr(start, length));
      start += length;
    }
    const Lines lines = read(content);
    EXPECT_EQ(expected, lines.raw)
        << c.characters << " characters, line end " << c.line_end;
    EXPECT_EQ(expected, lines.scanned)
        << c.characters << " characters, line end " << c.line_end;
  }
}

TEST_F(SourceLinesTest, ReadsALineOf100000CharactersAs25) {
  const Texts lines = raw(std::string(100000, 'x') + "\nend\n");
  ASSERT_EQ(26u, lines.size());  // 24 * 4095 and 1720
  for (std::size_t i = 0; i < 24; ++i)
    EXPECT_EQ(std::string(4095, 'x'), lines[i]) << i;
  EXPECT_EQ(std::string(1720, 'x') + "\n", lines[24]);
  EXPECT_EQ("end\n", lines[25]);
}

TEST_F(SourceLinesTest, EndsALineAtANul) {
  EXPECT_EQ((Texts{"", "b\n"}), raw("\0a\nb\n"s));
  EXPECT_EQ((Texts{"ab", "c\n"}), raw("ab\0cd\nc\n"s));
  EXPECT_EQ((Texts{"ab", "c\n"}), raw("ab\0\nc\n"s));
}

TEST_F(SourceLinesTest, KeepsEveryByteButNul) {
  std::string line;
  for (int b = 1; b < 256; ++b)
    if (b != '\n') line += static_cast<char>(b);
  line += '\n';
  const Lines lines = read(line);
  EXPECT_EQ(Texts{line}, lines.raw);
  EXPECT_EQ(Texts{line}, lines.scanned);
}

static const char* const hideable = "call \"a\" ! b\nC c\n";

TEST_F(SourceLinesTest, ScansLinesAsTheyAreUnlessStringsAndCommentsAreHidden) {
  html_style = 0xffffffffu & ~1u;
  for (const bool fixed_form : {false, true})
    EXPECT_EQ((Texts{"call \"a\" ! b\n", "C c\n"}),
              read(hideable, fixed_form).scanned);
}

TEST_F(SourceLinesTest, HidesStringsAndCommentsInTheScannedTextAlone) {
  html_style = 1;
  const Lines lines = read(hideable);
  EXPECT_EQ((Texts{"call \"a\" ! b\n", "C c\n"}), lines.raw);
  EXPECT_EQ((Texts{"call \" \"    \n", "C c\n"}), lines.scanned);
}

TEST_F(SourceLinesTest, HidesByTheFixedFormRuleWhenAskedTo) {
  html_style = 1;
  const Lines lines = read(hideable, true);
  EXPECT_EQ((Texts{"call \"a\" ! b\n", "C c\n"}), lines.raw);
  EXPECT_EQ((Texts{"            \n", "   \n"}), lines.scanned);
}

TEST_F(SourceLinesTest, HidesNothingAcrossLines) {
  html_style = 1;
  EXPECT_EQ((Texts{"x = \"     ", "call solve\n"}),
            read("x = \"open\ncall solve\n").scanned);
}

TEST_F(SourceLinesTest, OfADirectoryGivesNothing) {
  SourceLines source(".", false);
  ASSERT_TRUE(source.is_open());
  EXPECT_FALSE(source.next());
}

TEST_F(SourceLinesTest, OfAFileThatCannotBeOpenedAreNone) {
  EXPECT_FALSE(SourceLines("missing.f90", false).is_open());
}
