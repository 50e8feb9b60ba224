// A version has three numbers: the years since 2007, the third of the year (0
// to 2, four months each), and the day of this third, as if each month had 32
// days. So a later date has a higher version.

#include "driver/version.h"

#include <algorithm>
#include <sstream>

// Only this file reads the date macro. Tests and reproducible builds define
// ZELKOR_BUILD_DATE instead.
#ifndef ZELKOR_BUILD_DATE
#define ZELKOR_BUILD_DATE __DATE__
#endif

const char* build_date() { return ZELKOR_BUILD_DATE; }

std::string build_year() {
  const std::string date = build_date();
  return date.substr(std::max<std::size_t>(date.size(), 4) - 4);
}

// The month, 1 to 12, from the letters of its English abbreviation.
static int month_number(const std::string& word) {
  const auto letter = [&word](std::size_t i) {
    return i < word.size() ? word[i] : '\0';
  };
  switch (letter(0)) {
    case 'A':
      return letter(1) == 'p' ? 4 : 8;
    case 'D':
      return 12;
    case 'F':
      return 2;
    case 'J':
      if (letter(1) == 'a') return 1;
      return letter(2) == 'n' ? 6 : 7;
    case 'M':
      return letter(2) == 'r' ? 3 : 5;
    case 'N':
      return 11;
    case 'O':
      return 10;
    case 'S':
      return 9;
    default:
      return 1;
  }
}

std::string version_text(const char* date) {
  std::istringstream words(date);
  std::string month_word;
  int day = 0;
  int year = 0;
  words >> month_word >> day >> year;

  const int month = month_number(month_word) - 1;
  std::ostringstream version;
  version << year - 2007 << '.' << month / 4 << '.' << month % 4 * 32 + day;
  return version.str();
}
