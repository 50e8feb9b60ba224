#include "analysis/calling.h"

#include <cstring>

bool operator<(const Calling& a, const Calling& b) {
  const int names = a.file == b.file ? 0 : std::strcmp(*a.file, *b.file);
  return names != 0 ? names < 0 : a.line < b.line;
}
