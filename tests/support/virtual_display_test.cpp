#include "tests/support/virtual_display.h"

#include <gtest/gtest.h>

#include <stdlib.h>

#include <filesystem>
#include <stdexcept>
#include <string>

#include "tests/support/capture.h"
#include "tests/support/environment.h"
#include "tests/support/script.h"
#include "tests/support/temporary_folder.h"

namespace fs = std::filesystem;

namespace {

// A server that the test writes is found before the real one.
class VirtualDisplays : public testing::Test {
 protected:
  VirtualDisplays() {
    const std::string path = getenv("PATH");
    setenv("PATH", (fs::current_path().string() + ":" + path).c_str(), 1);
  }

 private:
  TemporaryFolder folder;
  EnvironmentGuard search_path{"PATH"};
  EnvironmentGuard display_name{"DISPLAY"};
};

TEST_F(VirtualDisplays, EndEvenIfTheServerMissesTheFirstSignal) {
  write_script(
      "Xvfb",
      "trap 'echo >>signals; [ $(wc -l <signals) -lt 2 ] || exit' TERM\n"
      "echo 87 >/proc/self/fd/$2\n"
      "while :; do sleep 0.01; done\n");
  {
    const VirtualDisplay display;
    EXPECT_STREQ(getenv("DISPLAY"), ":87");
  }
  EXPECT_EQ(content_of("signals"), "\n\n");
}

TEST_F(VirtualDisplays, ReportAServerThatDoesNotStart) {
  write_script("Xvfb", "exit 1\n");
  EXPECT_THROW(VirtualDisplay(), std::runtime_error);
}

}  // namespace
