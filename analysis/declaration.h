// A declared program unit, and the registry of all units.

#pragma once

#include <map>
#include <string>

#include "analysis/callers.h"
#include "analysis/dec_type.h"

/// One program unit. It is created with `new`. The constructor enters it in the
/// registry, which owns it from then on.
class Declaration {
 public:
  /// The registry: units by their name in upper case. Units of the same name,
  /// namesakes, are in the order of their creation. The number of a unit among
  /// its namesakes, from 1, is its definition index.
  using Registry = std::multimap<std::string, Declaration*>;
  static Registry decs;

  /// Empties the registry and destroys the units in it. A unit that was erased
  /// from the registry before is not destroyed, but must not be inserted again
  /// after this.
  static void forget_all();

  /// The generation of the registry: it changes when a unit is created, when
  /// forget_all() empties the registry, and when namesakes stop sharing their
  /// references. Erasing and inserting in `decs` does not change it.
  static unsigned generation();

  /// Registers a unit.
  ///
  ///   name  as written in the source; copied; may be empty
  ///   file  the slot of its file in the run's list
  ///   line  the line that opens it, from 1
  Declaration(DecType type, const char* name, char** file, int line);
  Declaration(const Declaration&) = delete;
  Declaration& operator=(const Declaration&) = delete;

  /// Whether a text starts with this unit's name as a whole word. Part of the
  /// interface; the program itself does not use it.
  bool Is(const char* text) const;

  /// Records a reference to this unit only, if it is not recorded already. Part
  /// of the interface; the reference pass records a reference to all units of a
  /// name at once, by add_reference().
  void add_calling(char** file, int line);

  DecType type;
  char** file;  ///< not owned
  char* name;   ///< owned
  int line;
  Callers callers;  ///< the references to this unit

 private:
  ~Declaration();  // called by forget_all() only
};
