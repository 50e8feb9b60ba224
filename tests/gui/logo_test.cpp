#include "gui/logo.h"

#include <FL/Fl_Pixmap.H>
#include <gtest/gtest.h>

#include <map>
#include <set>
#include <sstream>
#include <string>
#include <vector>

#include "tests/support/capture.h"
#include "tests/support/program.h"
#include "tests/support/same_picture.h"
#include "tests/support/temporary_folder.h"

namespace {

const std::string artwork = ZELKOR_ARTWORK_FOLDER;

const std::size_t width = 180;
const std::size_t height = 108;
const std::size_t colours = 5714;

// The quoted rows of a picture's file.
std::vector<std::string> rows_of(const std::string& path) {
  std::istringstream file(content_of(path));
  std::vector<std::string> rows;
  for (std::string line; std::getline(file, line);) {
    const std::size_t begin = line.find('"');
    const std::size_t end = line.rfind('"');
    if (end > begin && end != std::string::npos)
      rows.push_back(line.substr(begin + 1, end - begin - 1));
  }
  return rows;
}

Pixels pixels_of(const std::vector<std::string>& rows) {
  std::map<std::string, unsigned long> colour_of;
  Pixels pixels{width, {}};
  for (std::size_t i = 1; i < rows.size(); ++i)
    if (i <= colours)
      colour_of[rows[i].substr(0, 2)] =
          std::stoul(rows[i].substr(6), nullptr, 16);
    else
      for (std::size_t j = 0; j < rows[i].size(); j += 2)
        pixels.colours.push_back(colour_of[rows[i].substr(j, 2)]);
  return pixels;
}

class Logo : public testing::Test {
 protected:
  void SetUp() override {
    ASSERT_EQ(1 + colours + height, rows.size());
    for (std::size_t i = 0; i < rows.size(); ++i)
      (i == 0 ? head : i <= colours ? palette : picture).push_back(rows[i]);
  }

  const std::vector<std::string> rows = rows_of(artwork + "/logo.xpm");
  std::vector<std::string> head, palette, picture;
};

TEST_F(Logo, HeadNamesSizeColoursAndTwoCharactersPerPixel) {
  EXPECT_EQ("180 108 5714 2", head[0]);
}

TEST_F(Logo, ColoursAreAllDifferent) {
  std::set<std::string> codes, values;
  for (const std::string& colour : palette) {
    ASSERT_EQ(12u, colour.size()) << colour;
    EXPECT_EQ(" c #", colour.substr(2, 4)) << colour;
    EXPECT_EQ(std::string::npos,
              colour.find_first_not_of("0123456789ABCDEF", 6))
        << colour;
    codes.insert(colour.substr(0, 2));
    values.insert(colour.substr(6));
  }
  EXPECT_EQ(colours, codes.size());
  EXPECT_EQ(colours, values.size());
}

// A quote would end a row, a backslash or two question marks change it.
TEST_F(Logo, CodesArePlainInSourceText) {
  for (const std::string& colour : palette)
    EXPECT_EQ(std::string::npos, colour.substr(0, 2).find_first_of("\"\\?"))
        << colour;
}

TEST_F(Logo, EveryPixelHasAColourAndEveryColourIsUsed) {
  std::set<std::string> known, used;
  for (const std::string& colour : palette) known.insert(colour.substr(0, 2));
  for (const std::string& row : picture) {
    ASSERT_EQ(2 * width, row.size()) << row;
    for (std::size_t i = 0; i < row.size(); i += 2)
      used.insert(row.substr(i, 2));
  }
  EXPECT_EQ(known, used);
}

TEST_F(Logo, ProgramHoldsTheRowsOfTheFile) {
  for (std::size_t i = 0; i < rows.size(); ++i)
    ASSERT_EQ(rows[i], logo_xpm()[i]) << "row " << i;
}

TEST_F(Logo, ToolkitTakesIt) {
  const Fl_Pixmap pixmap(logo_xpm());
  EXPECT_EQ(180, pixmap.w());
  EXPECT_EQ(108, pixmap.h());
}

bool python3_is_there() {
  Program program({"python3", "-c", ""}, "output", "errors");
  return program.wait() == 0;
}

TEST_F(Logo, IsDrawnAgainByteForByte) {
  const TemporaryFolder folder;
  if (!python3_is_there()) GTEST_SKIP() << "no python3";
  Program program(
      {"python3", artwork + "/draw.py", ".", "logo.xpm", "zelkor.svg",
       "icon.inc"},
      "output", "errors");
  ASSERT_EQ(0, program.wait()) << content_of("errors");
  EXPECT_PRED_FORMAT2(same_picture, pixels_of(rows),
                      pixels_of(rows_of("logo.xpm")));
  EXPECT_TRUE(content_of(artwork + "/logo.xpm") == content_of("logo.xpm"));
  EXPECT_EQ(content_of(artwork + "/zelkor.svg"), content_of("zelkor.svg"));
  EXPECT_EQ(content_of(artwork + "/icon.inc"), content_of("icon.inc"));
}

}  // namespace
