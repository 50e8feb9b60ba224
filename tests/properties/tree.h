// A source tree and the results of a run over it.

#pragma once

#include <cstdint>
#include <map>
#include <set>
#include <string>
#include <tuple>
#include <utility>
#include <vector>

#include "analysis/dec_type.h"

/// The input of a run.
struct Tree {
  std::map<std::string, std::string> sources;  ///< contents by path
  std::vector<std::string> list;               ///< paths, in list order
  std::uint32_t style = 0;                     ///< html_style

  /// Writes the sources into the working directory.
  void write() const;
};

/// One unit of the registry.
struct Unit {
  DecType type;
  std::string key;
  std::string name;
  std::size_t slot;  ///< from 0
  int line;
  std::set<std::pair<std::string, int>> callers;  ///< path and line

  bool operator==(const Unit& other) const {
    return std::tie(type, key, name, slot, line, callers) ==
           std::tie(other.type, other.key, other.name, other.slot, other.line,
                    other.callers);
  }
};

/// Contents by file name.
using Pages = std::map<std::string, std::string>;

/// The results of a run.
struct FinishedRun {
  const Tree* tree;
  std::vector<Unit> units;              ///< in the registry's order
  std::vector<std::string> page_names;  ///< of each slot
  Pages pages;
};

/// Runs the engine over a tree in the working directory. The pages go into
/// html_dir, which is emptied first.
FinishedRun run_over(const Tree& tree);

/// The pieces that fgets() reads into a buffer of that size, cut at their first
/// NUL.
struct Piece {
  std::string text;
  bool met_end = false;  ///< cut short by the end of the file
};
std::vector<Piece> pieces_of(const std::string& text, std::size_t size);

/// A line in free form with its strings and comments blanked.
std::string blanked(std::string line);
