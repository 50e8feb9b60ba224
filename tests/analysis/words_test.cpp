#include "analysis/words.h"

#include <gtest/gtest.h>

TEST(IsAlnum, TakesLettersDigitsUnderscoreAndDot) {
  for (const char c : {'a', 'z', 'A', 'Z', '0', '9', '_', '.'})
    EXPECT_TRUE(isALNUM(c)) << c;
}
