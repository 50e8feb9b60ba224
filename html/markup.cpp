#include "html/markup.h"

#include <stdio.h>  // fwrite_unlocked()

#include <charconv>

void Markup::add(int number) {
  char digits[16];
  const char* end = std::to_chars(digits, digits + sizeof digits, number).ptr;
  add(std::string_view(digits, static_cast<std::size_t>(end - digits)));
}

void Markup::add(const UnitAnchor& anchor) {
  add(anchor.name);
  add("-");
  add(anchor.index);
}

void Markup::add(const LineAnchor& anchor) {
  add("line");
  add(anchor.line);
}

void Markup::write() {
  write(std::string_view(buffer, size));
  size = 0;
}

// Only one thread writes a page, so the stream is not locked.
void Markup::write(std::string_view text) {
  fwrite_unlocked(text.data(), 1, text.size(), stream);
}
