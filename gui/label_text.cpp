#include "gui/label_text.h"

std::string label_text(const std::string& text) {
  std::string label;
  for (const char c : text) label.append(c == '@' ? 2 : 1, c);
  return label;
}
