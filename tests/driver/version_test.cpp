#include "driver/version.h"

#include <gtest/gtest.h>

TEST(VersionText, JoinsYearThirdAndDay) {
  EXPECT_EQ("2.0.65", version_text("Mar  1 2009"));
}
