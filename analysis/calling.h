// One reference to a program unit.

#pragma once

#include <cstring>

/// A Calling is one reference: a line of a file that names a unit, in a CALL or
/// elsewhere. The file is identified by the address of its slot, its element in
/// the run's list of paths. The slot must outlive the reference.
struct Calling {
  char** file;
  int line;  ///< from 1
};

/// The order of references: by file name, byte by byte, then by line. Two with
/// equal names and lines are equal, even if their slots differ.
inline bool operator<(const Calling& a, const Calling& b) {
  const int names = a.file == b.file ? 0 : std::strcmp(*a.file, *b.file);
  return names != 0 ? names < 0 : a.line < b.line;
}
