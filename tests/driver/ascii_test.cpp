#include "driver/ascii.h"

#include <gtest/gtest.h>

#include <string>

// Every value that a character can have.
static std::string all_bytes() {
  std::string bytes;
  for (int b = 0; b < 256; ++b) bytes += static_cast<char>(b);
  return bytes;
}

TEST(IsWhiteSpace, AcceptsOnlyTheBlankAndFiveControlCharacters) {
  const std::string white_space = "\t\n\v\f\r ";
  for (const char c : all_bytes())
    EXPECT_EQ(white_space.find(c) != std::string::npos, is_white_space(c))
        << "byte " << static_cast<int>(c);
}

TEST(ToUpper, ChangesOnlyAsciiLetters) {
  const std::string lower = "abcdefghijklmnopqrstuvwxyz";
  const std::string upper = "ABCDEFGHIJKLMNOPQRSTUVWXYZ";
  for (const char c : all_bytes()) {
    const std::size_t letter = lower.find(c);
    EXPECT_EQ(letter == std::string::npos ? c : upper[letter], to_upper(c))
        << "byte " << static_cast<int>(c);
  }
}
