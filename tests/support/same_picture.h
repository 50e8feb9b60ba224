// Pictures of a screen, and their comparison.

#pragma once

#include <gtest/gtest.h>

#include <cstddef>
#include <ostream>
#include <vector>

/// The colours of a rectangle, each 0xRRGGBB, row by row.
struct Pixels {
  std::size_t width = 0;
  std::vector<unsigned long> colours;

  bool operator==(const Pixels& other) const {
    return width == other.width && colours == other.colours;
  }
  bool operator!=(const Pixels& other) const { return !(*this == other); }
};

/// For EXPECT_PRED_FORMAT2: passes when two pictures are the same. Otherwise
/// reports the first pixel that differs, and keeps both pictures beside the
/// test program, named after the test.
testing::AssertionResult same_picture(const char*, const char*,
                                      const Pixels& expected,
                                      const Pixels& actual);

/// Prints the size of a picture in the message of a failed test.
void PrintTo(const Pixels& picture, std::ostream* text);
