#include "gui/label_text.h"

#include <gtest/gtest.h>

TEST(LabelText, DoublesAtSigns) {
  EXPECT_EQ("a@@b@@", label_text("a@b@"));
  EXPECT_EQ("plain", label_text("plain"));
  EXPECT_EQ("", label_text(""));
}
