#include "tests/support/alone.h"

#include <gtest/gtest.h>

#include <stdlib.h>

#include <string>

#include "tests/support/capture.h"
#include "tests/support/ordinary_user.h"
#include "tests/support/program.h"
#include "tests/support/temporary_folder.h"

static const char mark[] = "ZELKOR_TEST_ALONE";

bool runs_alone() { return getenv(mark) != nullptr; }

void alone(const std::function<void()>& body) {
  if (runs_alone()) {
    unsetenv(mark);
    body();
    return;
  }
  const testing::TestInfo& test =
      *testing::UnitTest::GetInstance()->current_test_info();
  // An ordinary user may not have access to the folder of this program.
  as_administrator([&test] {
    TemporaryFolder folder;
    setenv(mark, "1", 1);
    // These choose the tests of this process.
    unsetenv("GTEST_TOTAL_SHARDS");
    unsetenv("GTEST_SHARD_INDEX");
    Program program(
        {"/proc/self/exe", std::string("--gtest_filter=") +
                               test.test_suite_name() + "." + test.name()},
        "output", "errors");
    unsetenv(mark);
    const int status = program.wait();
    const std::string output = content_of("output");
    EXPECT_TRUE(status == 0 &&
                output.find("[  PASSED  ] 1 test.") != std::string::npos)
        << "status " << status << "\n"
        << output << content_of("errors");
  });
}
