// The fixture of the tests that write pages: a scratch folder with the output
// directory "HTML" in it, a known time stamp and an empty registry.

#pragma once

#include <gtest/gtest.h>

#include <filesystem>

#include "tests/support/fixed_clock.h"
#include "tests/support/settings_guard.h"
#include "tests/support/temporary_folder.h"

class PageTest : public testing::Test {
 protected:
  PageTest() { std::filesystem::create_directory("HTML"); }

  SettingsGuard settings;
  TemporaryFolder folder;
  FixedClock clock;
};
