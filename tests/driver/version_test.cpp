#include "driver/version.h"

#include <gtest/gtest.h>

// Only the letters of the word decide the month. An unknown month counts as
// January, and a missing number as zero.
TEST(VersionText, JoinsYearThirdOfTheYearAndDay) {
  const struct {
    const char* date;
    const char* version;
  } cases[] = {
      {"Jan  1 2007", "0.0.1"},    {"Jan 31 2007", "0.0.31"},
      {"Feb  1 2007", "0.0.33"},   {"Feb  2 2008", "1.0.34"},
      {"Mar  1 2009", "2.0.65"},   {"Apr 30 2010", "3.0.126"},
      {"May  5 2011", "4.1.5"},    {"Jun  6 2012", "5.1.38"},
      {"Jul  7 2013", "6.1.71"},   {"Aug 31 2014", "7.1.127"},
      {"Sep  9 2015", "8.2.9"},    {"Oct 10 2016", "9.2.42"},
      {"Nov 11 2017", "10.2.75"},  {"Dec 31 2107", "100.2.127"},
      {"Dec 25 2006", "-1.2.121"}, {"Jan 1 2007", "0.0.1"},
      {"April 1 2007", "0.0.97"},  {"Ap 1 2007", "0.0.97"},
      {"A 1 2007", "0.1.97"},      {"AP 1 2007", "0.1.97"},
      {"D 1 2007", "0.2.97"},      {"Freitag 1 2007", "0.0.33"},
      {"Jahr 1 2007", "0.0.1"},    {"J 1 2007", "0.1.65"},
      {"Jxn 1 2007", "0.1.33"},    {"Man 1 2007", "0.1.1"},
      {"Mxr 1 2007", "0.0.65"},    {"M 1 2007", "0.1.1"},
      {"N 1 2007", "0.2.65"},      {"O 1 2007", "0.2.33"},
      {"S 1 2007", "0.2.1"},       {"Xyz 1 2007", "0.0.1"},
      {"jan 1 2007", "0.0.1"},     {"mar 1 2007", "0.0.1"},
      {"\xe9 1 2007", "0.0.1"},    {"", "-2007.0.0"},
      {"Mar", "-2007.0.64"},       {"Mar 1", "-2007.0.65"},
  };
  for (const auto& c : cases)
    EXPECT_EQ(c.version, version_text(c.date)) << c.date;
}

// This program is built with the date 1 March 2009.
TEST(BuildDate, CanBeSetWhenTheProgramIsBuilt) {
  EXPECT_STREQ("Mar  1 2009", build_date());
  EXPECT_EQ("2009", build_year());
}
