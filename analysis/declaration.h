// A declared program unit, and the registry of all units.

#pragma once

#include <map>
#include <string>

#include "analysis/callers.h"
#include "analysis/dec_type.h"

/// One program unit. It is built with `new`; building it enters it in the
/// registry, which owns it from then on.
class Declaration {
 public:
  /// The registry: units by their name in upper case. Units of the same name
  /// stay in the order in which they were built; a unit's place among its
  /// namesakes, from 1, is its definition index.
  using Registry = std::multimap<std::string, Declaration*>;
  static Registry decs;

  /// Empties the registry and destroys the units that it held. A unit that was
  /// taken out of the registry before lives on, but it must not be put back
  /// after this.
  static void forget_all();

  /// A number that changes whenever a unit is built, the registry is emptied by
  /// forget_all(), or units of a name cease to share their references. Units
  /// that others erase or insert do not change it.
  static unsigned generation();

  /// Registers a unit.
  ///
  ///   name  as written in the source; copied; may be empty
  ///   file  the slot of its file in the run's list
  ///   line  the line that opens it, from 1
  Declaration(DecType type, const char* name, char** file, int line);
  Declaration(const Declaration&) = delete;
  Declaration& operator=(const Declaration&) = delete;

  /// Whether this unit's name stands at the very start of a text, as a whole
  /// word. Part of the interface; the program itself never asks.
  bool Is(const char* text) const;

  /// Records a reference to this unit alone; one that is known already is not
  /// added again. Part of the interface; the passes record references to all
  /// units of a name at once.
  void add_calling(char** file, int line);

  DecType type;
  char** file;  ///< not owned
  char* name;   ///< owned
  int line;
  Callers callers;  ///< added to by the operations above alone

 private:
  ~Declaration();  // by forget_all() alone
};
