// Tests on a display of their own, with a home directory of their own, for the
// toolkit's file chooser writes there. A test that is alone in its process
// shares the display of the one that started it.

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
