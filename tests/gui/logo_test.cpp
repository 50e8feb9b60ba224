#include "gui/logo.h"

#include <FL/Fl_Pixmap.H>
#include <gtest/gtest.h>

#include <sstream>
#include <string>
#include <vector>

#include "tests/support/capture.h"
#include "tests/support/program.h"
#include "tests/support/temporary_folder.h"

namespace {

const std::string artwork = ZELKOR_ARTWORK_FOLDER;

TEST(Logo, EqualsTheArtworkFile) {
  std::istringstream file(content_of(artwork + "/logo.xpm"));
  std::vector<std::string> rows;
  for (std::string line; std::getline(file, line);) {
    const std::size_t begin = line.find('"');
    const std::size_t end = line.rfind('"');
    if (end != begin) rows.push_back(line.substr(begin + 1, end - begin - 1));
  }
  ASSERT_EQ(1u + 5714 + 108, rows.size());
  EXPECT_EQ("180 108 5714 2", rows[0]);
  for (std::size_t i = 0; i < rows.size(); ++i)
    ASSERT_EQ(rows[i], logo_xpm()[i]) << "row " << i;
  const Fl_Pixmap pixmap(logo_xpm());
  EXPECT_EQ(180, pixmap.w());
  EXPECT_EQ(108, pixmap.h());
}

bool python3_is_there() {
  Program program({"python3", "-c", ""}, "output", "errors");
  return program.wait() == 0;
}

TEST(Logo, CanBeRedrawnByteForByte) {
  const TemporaryFolder folder;
  if (!python3_is_there()) GTEST_SKIP() << "no python3";
  Program program({"python3", artwork + "/draw.py", ".", "logo.xpm",
                   "zelkor.svg", "icon.inc"},
                  "output", "errors");
  ASSERT_EQ(0, program.wait()) << content_of("errors");
  EXPECT_TRUE(content_of(artwork + "/logo.xpm") == content_of("logo.xpm"));
  EXPECT_EQ(content_of(artwork + "/zelkor.svg"), content_of("zelkor.svg"));
  EXPECT_EQ(content_of(artwork + "/icon.inc"), content_of("icon.inc"));
}

}  // namespace
