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

  TemporaryFolder folder;
  SettingsGuard guard;
};

static const std::string piece(4095, 'x');

// clang-format off
static const struct {
  std::string content;
  Texts lines;
} sources[] = {
  { "a\n\nb\r\nc\n",           {"a\n", "\n", "b\r\n", "c\n"} },
  { "a\nb",                    {"a\n"} },   // no line end: omitted
  { "",                        {} },
  { "ab\0cd\nc\n"s,            {"ab", "c\n"} },
  { piece.substr(1) + "\n",    {piece.substr(1) + "\n"} },
  { piece.substr(1),           {} },
  { piece,                     {piece} },   // end of file not seen yet
  { piece + piece + "x\nb\n",  {piece, piece, "x\n", "b\n"} },
};
// clang-format on

TEST_F(SourceLinesTest,
       AreSplitAfter4095CharactersAndOmitALastLineWithoutLineEnd) {
  for (const auto& c : sources) {
    const Lines lines = read(c.content);
    EXPECT_EQ(c.lines, lines.raw) << c.content;
    EXPECT_EQ(c.lines, lines.scanned) << c.content;
  }
}

static const Texts hideable = {"call \"a\" ! b\n", "x = \"y\n", "C c\n"};

// clang-format off
static const struct {
  std::uint32_t style;
  bool fixed_form;
  Texts scanned;
} rules[] = {
  { 0xffffffffu & ~1u, false, hideable },
  { 0xffffffffu & ~1u, true,  hideable },
  { 1, false, {"call \" \"    \n", "x = \"  ",  "C c\n"} },
  { 1, true,  {"            \n",   "x = \"y\n", "   \n"} },
};
// clang-format on

TEST_F(SourceLinesTest, AreScannedWithoutHiddenStringsAndComments) {
  for (const auto& c : rules) {
    html_style = c.style;
    const Lines lines =
        read(hideable[0] + hideable[1] + hideable[2], c.fixed_form);
    EXPECT_EQ(hideable, lines.raw) << c.style;
    EXPECT_EQ(c.scanned, lines.scanned) << c.style;
  }
}
