#include "html/markup.h"

#include <gtest/gtest.h>

#include <climits>
#include <string>
#include <string_view>

#include "html/page_names.h"
#include "tests/support/capture.h"
#include "tests/support/file_list.h"
#include "tests/support/settings_guard.h"

namespace {

TEST(Put, WritesTextsUnchanged) {
  const std::string texts[] = {"", "%s%n<&>\n", std::string("a\0b\xff", 4),
                               std::string(100000, 'x')};
  for (const std::string& text : texts)
    EXPECT_EQ(text, written([&](std::FILE* html) { put(html, text); }));
  EXPECT_EQ("bc", written([](std::FILE* html) {
              put(html, std::string_view("abcd").substr(1, 2));
            }));
}

TEST(Put, WritesItsArgumentsInOrder) {
  EXPECT_EQ("<a>0-571000000x2147483647-2147483648</a>",
            written([](std::FILE* html) {
              put(html, "<a>", 0, -5, 7, 1000000, std::string("x"), INT_MAX,
                  INT_MIN, "</a>");
            }));
}

TEST(Put, WritesAnchorsAndAddresses) {
  const SettingsGuard guard;
  FileList files({"src/heat.f90"});
  const Declaration& unit =
      *new Declaration(DT_TYPE, "State", files.slot(0), 3);
  const std::string page = HTML_REF(files.slot(0));
  EXPECT_EQ("State-2, line15, " + page + "#State-2, " + page + "#line15",
            written([&](std::FILE* html) {
              put(html, UnitAnchor{unit.name, 2}, ", ", LineAnchor{15}, ", ",
                  address_of(unit, 2), ", ",
                  address_of(Calling{files.slot(0), 15}));
            }));
}

}  // namespace
