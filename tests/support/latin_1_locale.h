// A locale with another encoding than UTF-8, made on demand.

#pragma once

#include <gtest/gtest.h>

#include <stdlib.h>

#include <filesystem>

/// Makes a locale of ISO 8859-1, in which some bytes above 127 are letters, in
/// the directory "locales" below the working directory, and tells the C library
/// to look there. Returns its name; fails the test when it cannot be made.
inline const char* latin_1_locale() {
  static const char name[] = "de_DE.ISO-8859-1";
  std::filesystem::create_directory("locales");
  if (system("localedef -i de_DE -f ISO-8859-1 locales/de_DE.ISO-8859-1 "
             ">/dev/null 2>&1") != 0)
    ADD_FAILURE() << "no such locale";
  setenv("LOCPATH", std::filesystem::absolute("locales").c_str(), 1);
  return name;
}
