#include "html/page_frame.h"

#include <gtest/gtest.h>

#include "tests/support/capture.h"

TEST(HtmlHeader, Is1644BytesLong) {
  EXPECT_EQ(1644u, written(html_header).size());
}
