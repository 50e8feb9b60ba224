#include "analysis/calling.h"

#include <gtest/gtest.h>

#include "tests/support/file_list.h"

// clang-format off
static const struct {
  const char* file_a; int line_a;
  const char* file_b; int line_b;
} ordered[] = {
  { "a.f90",   9,  "b.f90",   1 },   // the name counts first
  { "a.f90",   9,  "a.f90",  10 },   // lines are numbers
  { "a.f90",  -1,  "a.f90",   0 },
  { "B.f90",   1,  "a.f90",   1 },   // case counts
  { "a",       1,  "a.f90",   1 },
  { "",        1,  "a",       1 },
  { "a10.f90", 1,  "a9.f90",  1 },   // names are bytes, not numbers
  { "z.f90",   1,  "\xe9.f90", 1 },  // bytes above 127 come last
};
// clang-format on

TEST(CallingOrder, ComparesFileNamesByteByByteAndThenLines) {
  for (const auto& c : ordered) {
    FileList files({c.file_b, c.file_a});
    const Calling a = {files.slot(1), c.line_a};
    const Calling b = {files.slot(0), c.line_b};
    EXPECT_TRUE(a < b) << c.file_a << " " << c.line_a;
    EXPECT_FALSE(b < a) << c.file_a << " " << c.line_a;
  }
}
