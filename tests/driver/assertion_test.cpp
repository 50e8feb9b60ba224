#include "driver/assertion.h"

#include <gtest/gtest.h>

#include <csignal>
#include <cstdio>
#include <cstdlib>

#include "tests/support/capture.h"
#include "tests/support/temporary_folder.h"

namespace {

// Assertions also fail with NDEBUG, which release builds define.
TEST(AssertionFailedDeathTest, NamesWhatFailedAndAborts) {
  EXPECT_EXIT(assertion_failed("html!=__null", "zelkor",
                               "void print_links(char**, bool)"),
              testing::KilledBySignal(SIGABRT),
              "^zelkor: void print_links\\(char\\*\\*, bool\\): Assertion "
              "`html!=__null' failed\\.\n$");
}

TEST(AssertionFailedDeathTest, PrintsFormatDirectivesUnchanged) {
  EXPECT_EXIT(assertion_failed("%s%n", "%d", "%s()"),
              testing::KilledBySignal(SIGABRT),
              "^%d: %s\\(\\): Assertion `%s%n' failed\\.\n$");
}

TEST(AssertionFailedDeathTest, WritesBufferedReportsFirst) {
  const TemporaryFolder folder;
  EXPECT_EXIT(
      {
        if (std::freopen("reports", "w", stdout) == nullptr) std::exit(1);
        std::fputs("Generating XREF for a.f90...OK\n", stdout);
        assertion_failed("d!=__null", "zelkor", "f()");
      },
      testing::KilledBySignal(SIGABRT), "d!=__null");
  EXPECT_EQ("Generating XREF for a.f90...OK\n", content_of("reports"));
}

}  // namespace
