#include "analysis/source_lines.h"

#include <cstring>

#include "analysis/normalise.h"
#include "driver/settings.h"

SourceLines::SourceLines(const char* path, bool fixed_form)
    : pieces(path, line_size), is_fixed_form(fixed_form) {}

bool SourceLines::next() {
  if (!pieces.next(raw_text) || pieces.at_end()) return false;
  ++line_number;
  scanned_text = raw_text.data();
  if (html_style & HIDE_STRINGS_AND_COMMENTS) {
    std::memcpy(blanked, raw_text.data(), raw_text.size() + 1);
    hide_F90_strings_comments(blanked, is_fixed_form);
    scanned_text = blanked;
  }
  return true;
}
