// The tests of the window run on a display of their own, with a home directory
// of their own, for the toolkit's file chooser writes there.

#include <gtest/gtest.h>

#include <stdlib.h>

#include <filesystem>
#include <memory>

#include "tests/support/temporary_folder.h"
#include "tests/support/virtual_display.h"

namespace {

class Desktop : public testing::Environment {
 public:
  void SetUp() override {
    display = std::make_unique<VirtualDisplay>();
    home = std::make_unique<TemporaryFolder>();
    setenv("HOME", home->path().c_str(), 1);
  }
  void TearDown() override {
    home.reset();
    display.reset();
  }

 private:
  std::unique_ptr<VirtualDisplay> display;
  std::unique_ptr<TemporaryFolder> home;
};

}  // namespace

int main(int argc, char** argv) {
  testing::InitGoogleTest(&argc, argv);
  testing::AddGlobalTestEnvironment(new Desktop);
  return RUN_ALL_TESTS();
}
