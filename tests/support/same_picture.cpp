#include "tests/support/same_picture.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iomanip>
#include <sstream>

namespace fs = std::filesystem;

static std::size_t height_of(const Pixels& picture) {
  return picture.width == 0 ? 0 : picture.colours.size() / picture.width;
}

static std::string size_of(const Pixels& picture) {
  std::ostringstream size;
  size << picture.width << " x " << height_of(picture);
  return size.str();
}

static std::string colour(unsigned long pixel) {
  std::ostringstream text;
  text << '#' << std::hex << std::setw(6) << std::setfill('0') << pixel;
  return text.str();
}

// Writes a picture as PPM. Returns the path, or a message if that fails.
static std::string keep(const Pixels& picture, const std::string& role) {
  const testing::TestInfo& test =
      *testing::UnitTest::GetInstance()->current_test_info();
  const fs::path path = fs::read_symlink("/proc/self/exe").parent_path() /
                        (std::string(test.test_suite_name()) + "." +
                         test.name() + "." + role + ".ppm");
  std::ofstream file(path, std::ios::binary);
  file << "P6 " << picture.width << ' ' << height_of(picture) << " 255\n";
  for (const unsigned long pixel : picture.colours)
    for (const int shift : {16, 8, 0})
      file.put(static_cast<char>(pixel >> shift & 0xff));
  return file.flush() ? path.string() : "(cannot write " + path.string() + ")";
}

static std::string first_difference(const Pixels& expected,
                                    const Pixels& actual) {
  if (size_of(expected) != size_of(actual))
    return "The size is " + size_of(actual) + " instead of " +
           size_of(expected) + ".";
  const auto [wanted, found] =
      std::mismatch(expected.colours.begin(), expected.colours.end(),
                    actual.colours.begin(), actual.colours.end());
  const auto place =
      static_cast<std::size_t>(wanted - expected.colours.begin());
  std::ostringstream text;
  text << "The first pixel that differs, " << place % expected.width << ", "
       << place / expected.width << ", is " << colour(*found) << " instead of "
       << colour(*wanted) << ".";
  return text.str();
}

testing::AssertionResult same_picture(const char*, const char*,
                                      const Pixels& expected,
                                      const Pixels& actual) {
  if (expected == actual) return testing::AssertionSuccess();
  return testing::AssertionFailure() << first_difference(expected, actual)
                                     << "\nKept: " << keep(expected, "expected")
                                     << "\n      " << keep(actual, "actual");
}

void PrintTo(const Pixels& picture, std::ostream* text) {
  *text << "a picture of " << size_of(picture);
}
