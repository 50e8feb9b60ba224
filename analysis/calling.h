// One reference to a program unit.

#pragma once

#include <cstring>

/// A place that refers to a unit: a line of a file, which is known by the
/// address of its slot in the run's list. The slot must outlive the record.
struct Calling {
  char** file;
  int line;  ///< from 1
};

/// The order of references: by file name, byte by byte, then by line. Records
/// with equal names and lines are the same, even from different slots.
inline bool operator<(const Calling& a, const Calling& b) {
  const int names = a.file == b.file ? 0 : std::strcmp(*a.file, *b.file);
  return names != 0 ? names < 0 : a.line < b.line;
}
