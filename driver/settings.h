// The run settings: the program-wide variables that every pass reads.
//
// They are initialised before main() runs and live as long as the process. They
// are read and written on the main thread only. Nothing copies them at the
// start of a run: a change takes effect at once.

#pragma once

#include <cstdint>
#include <ctime>
#include <string>

class ZelkorUserInterface;

/// The bits of html_style, by value. The level bits are tested independently
/// and the highest one set wins; only the window uses LEVEL_NONE.
enum HtmlStyle : std::uint32_t {
  HIDE_STRINGS_AND_COMMENTS = 1,  ///< before scanning for references
  WRITE_INDEX = 2,                ///< write the index page after the pages
  BOLD_KEYWORDS = 32,
  ITALIC_KEYWORDS = 64,
  LEVEL_1 = 1024,     ///< highlight keywords of level 1
  LEVEL_2 = 2048,     ///< highlight keywords up to level 2
  LEVEL_3 = 4096,     ///< highlight keywords up to level 3
  LEVEL_NONE = 8192,  ///< the level "None"
};

/// Output options, a set of HtmlStyle bits. Initially WRITE_INDEX,
/// BOLD_KEYWORDS and LEVEL_NONE (8226); changed by the window only.
extern std::uint32_t html_style;

/// Directory that receives the pages, relative to the working directory unless
/// absolute. Initially "HTML".
extern std::string html_dir;

/// Verbosity of the reports on standard output: 0 or less is silent, 1 or more
/// reports every file of every pass, 5 or more echoes the lines too.
extern int verbose;

/// Path separator, '/'.
extern char slash;

/// Time stamp of all pages of one run.
extern std::time_t date_time;

/// The main window's object; null until its window is made. Not owned.
extern ZelkorUserInterface* gui_instance;

/// Title of the index page.
extern std::string index_title;

/// Closing text of every page: a printf format whose only conversion, one %s,
/// takes the text of ctime(&date_time), line end included.
extern std::string page_trailer;
