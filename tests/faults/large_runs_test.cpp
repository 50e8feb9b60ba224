// Very large runs and the memory that they need. Those that need hundreds of
// megabytes of disk are skipped unless ZELKOR_LARGE_TESTS is set.

#include <gtest/gtest.h>

#include <stdlib.h>

#include <algorithm>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include "analysis/normalise.h"
#include "analysis/ram_file.h"
#include "tests/faults/engine_run.h"
#include "tests/support/alone.h"
#include "tests/support/process_counter.h"

namespace fs = std::filesystem;

namespace {

// The memory of AddressSanitizer would count, too.
#if defined(__SANITIZE_ADDRESS__)
const bool memory_can_be_measured = false;
#else
const bool memory_can_be_measured = true;
#endif

// The largest amount of memory that this process has used, in megabytes.
double peak_memory() {
  return static_cast<double>(process_counter("status", "VmHWM")) / 1024;
}

class LargeRun : public EngineRun {
 protected:
  // Writes a.f90: a beginning and then `size` bytes of repeated lines.
  static void write_long_file(const std::string& beginning,
                              const std::string& line, std::size_t size) {
    std::string block = line;
    while (block.size() < 1000000) block += line;
    std::ofstream file("a.f90", std::ios::binary);
    file << beginning;
    for (std::size_t left = size; left > 0;) {
      const std::size_t count = std::min(left, block.size());
      file.write(block.data(), static_cast<std::streamsize>(count));
      left -= count;
    }
  }

  void run_over_a() {
    FileList files({"a.f90"});
    run(files);
    EXPECT_EQ("Done!", messages().back());
    EXPECT_TRUE(is_whole_page("HTML/" + page_a));
  }
};

TEST_F(LargeRun, WritesAPageForEachOfFiveThousandFiles) {
  const int count = 5000;
  write_file("b.f90", "subroutine s\nend\n");
  write_file("s1.f90", "call s\n");
  std::vector<std::string> paths = {"b.f90", "s1.f90"};
  // Links are created much faster than files.
  for (int i = 2; i < count; ++i) {
    paths.push_back("s" + std::to_string(i) + ".f90");
    fs::create_hard_link("s1.f90", paths.back());
  }
  FileList files(paths);
  run(files);
  EXPECT_EQ(3u * count + 2, messages().size());
  EXPECT_EQ(count + 1, std::distance(fs::directory_iterator("HTML"),
                                     fs::directory_iterator()));
  EXPECT_TRUE(is_whole_page("HTML/index.html"));
  EXPECT_TRUE(is_whole_page("HTML/" + page_b));
  const std::string callers = content_of("HTML/" + page_b);
  for (const std::string& path : {paths[1], paths[count - 1]})
    EXPECT_NE(std::string::npos, callers.find(">" + path + "&nbsp;:&nbsp;1<"));
}

// A hole in a file needs no space on disk and is read as NUL bytes.
TEST_F(LargeRun, WritesAPageWithoutTextFor200MegabytesOfNulBytes) {
  std::ofstream("a.f90").put('\0');
  fs::resize_file("a.f90", 200000000);
  run_over_a();
  EXPECT_GT(1000000u, fs::file_size("HTML/" + page_a));
}

// If each line were joined to a copy of those before it, the copies would need
// 500 megabytes.
TEST_F(LargeRun, JoinsAThousandLinesInLessThan50Megabytes) {
  if (!memory_can_be_measured) GTEST_SKIP() << "memory cannot be measured here";
  alone([] {
    const std::string part(1000, 'x');
    write_long_file("", part + "&\n", 1002000);
    std::ofstream("a.f90", std::ios::app) << "end\n";
    ramFILE_imp file("a.f90");
    const double before = peak_memory();
    merge_F90_continuations(&file);
    EXPECT_GT(50, peak_memory() - before);
    ASSERT_EQ(1001, file.end() - file.begin());
    EXPECT_STREQ("\n", file.begin()[999]);
    EXPECT_EQ(1000u * 1000 + 4, std::strlen(file.begin()[1000]));
  });
}

class HugeRun : public LargeRun {
 protected:
  void SetUp() override {
    if (getenv("ZELKOR_LARGE_TESTS") == nullptr)
      GTEST_SKIP() << "needs hundreds of megabytes; set ZELKOR_LARGE_TESTS";
    if (!memory_can_be_measured)
      GTEST_SKIP() << "memory cannot be measured here";
  }

  // Runs over a long file in less than 400 MB of memory. Its page has more than
  // `least` bytes.
  void run_within_400_megabytes(const std::string& beginning,
                                const std::string& line, std::size_t size,
                                std::size_t least) {
    alone([&] {
      write_long_file(beginning, line, size);
      const double before = peak_memory();
      run_over_a();
      EXPECT_LT(least, fs::file_size("HTML/" + page_a));
      EXPECT_GT(400, peak_memory() - before);
    });
  }
};

// The declaration pass keeps all lines of a file in memory.
TEST_F(HugeRun, ReadsAFileOf200MegabytesInLessThanTwiceItsSize) {
  run_within_400_megabytes("subroutine solve\n",
                           "      x(i, j) = a(i) * b(j) + c ! sums\n",
                           200000000, 200000000);
}

// Each line needs a pointer and two bytes, and half a pointer more while the
// list of pointers grows.
TEST_F(HugeRun, Reads20MillionEmptyLinesInLessThan20TimesTheirSize) {
  run_within_400_megabytes("", "\n", 20000000, 20000000);
}

TEST_F(HugeRun, ReadsALineOf200MegabytesInLessThanTwiceItsSize) {
  run_within_400_megabytes("", "x = 1; ", 200000000, 200000000 - 4096);
}

}  // namespace
