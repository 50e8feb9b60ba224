// Runs tests on a new display, and with a new home directory, because the
// toolkit's file chooser writes there. A process that runs only one test uses
// the display of the process that started it.

#include <gtest/gtest.h>

#include <stdlib.h>

#include <optional>

#include "tests/support/alone.h"
#include "tests/support/temporary_folder.h"
#include "tests/support/virtual_display.h"

int main(int argc, char** argv) {
  testing::InitGoogleTest(&argc, argv);
  if (testing::GTEST_FLAG(list_tests)) return RUN_ALL_TESTS();
  std::optional<VirtualDisplay> display;
  if (!runs_alone()) display.emplace();
  const TemporaryFolder home;
  setenv("HOME", home.path().c_str(), 1);
  return RUN_ALL_TESTS();
}
