#include "tests/support/alone.h"

#include <gtest/gtest.h>

#include <stdlib.h>

#include <string>

#include "tests/support/capture.h"
#include "tests/support/ordinary_user.h"
#include "tests/support/program.h"
#include "tests/support/temporary_folder.h"

static const char mark[] = "ZELKOR_TEST_ALONE";

void alone(const std::function<void()>& body) {
  if (getenv(mark) != nullptr) {
    unsetenv(mark);
    body();
    return;
  }
  const testing::TestInfo& test =
      *testing::UnitTest::GetInstance()->current_test_info();
  // An ordinary user may not reach the folder that this program is in.
  as_administrator([&test] {
    TemporaryFolder folder;
    setenv(mark, "1", 1);
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
