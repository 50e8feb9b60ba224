#include "analysis/source_lines.h"

#include <cstring>

#include "analysis/normalise.h"
#include "driver/settings.h"

bool read_source_line(std::FILE* source, bool fixed_form, SourceLine& line) {
  if (std::fgets(line.raw, line_size, source) == nullptr) return false;
  if (std::feof(source)) return false;
  std::memcpy(line.scanned, line.raw, std::strlen(line.raw) + 1);
  if (html_style & HIDE_STRINGS_AND_COMMENTS)
    hide_F90_strings_comments(line.scanned, fixed_form);
  return true;
}
