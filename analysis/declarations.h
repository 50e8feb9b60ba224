// The registry of declared program units, and the pass that fills it.

#ifndef ZELKOR_ANALYSIS_DECLARATIONS_H
#define ZELKOR_ANALYSIS_DECLARATIONS_H

#include <map>
#include <string>

#include "analysis/callers.h"
#include "analysis/dec_type.h"
#include "analysis/hash_filter.h"
#include "analysis/words.h"

/// One program unit. It is built with `new`; building it enters it in the
/// registry, which owns it from then on.
class Declaration {
 public:
  /// The registry: units by their name in upper case. Units of the same name
  /// stay in the order in which they were built; a unit's place among its
  /// namesakes, from 1, is its definition index. Others may take units out and
  /// put them back under their names: the next lookup or building of a unit
  /// notices by the size. So there has to be one between the two; a pass over
  /// words that name nothing makes none.
  using Registry = std::multimap<std::string, Declaration*>;
  static Registry decs;

  /// Empties the registry and destroys the units that it held. A unit that was
  /// taken out of the registry before lives on, but it must not be put back
  /// after this.
  static void forget_all();

  /// The number of times that the registry was seen to be emptied or changed
  /// otherwise than by the building of a unit: what was worked out from its
  /// units holds as long as this stays the same.
  static unsigned run();

  /// Registers a unit.
  ///
  ///   name  as written in the source; copied; may be empty
  ///   file  the slot of its file in the run's list
  ///   line  the line that opens it, from 1
  Declaration(DecType type, const char* name, char** file, int line);
  Declaration(const Declaration&) = delete;
  Declaration& operator=(const Declaration&) = delete;

  /// Whether this unit's name stands at the very start of a text, as a whole
  /// word.
  bool Is(const char* text) const;

  /// Records a reference; one that is known already is not added again.
  void add_calling(char** file, int line);

  /// Records a reference to all units of one name, `count` from `first` on, as
  /// isDeclaration() found them.
  static void add_calling_to_all(Registry::iterator first, int count,
                                 char** file, int line);

  DecType type;
  char** file;  ///< not owned
  char* name;   ///< owned
  int line;
  Callers callers;  ///< added to by the two operations above

 private:
  ~Declaration();  // by forget_all() alone
};

/// The hashes of all names in the registry.
extern HashFilter declared_names;

/// Whether a unit may have a name of this hash. Most words name nothing, and
/// false is the certain and quick answer for nearly all of them.
inline bool may_be_declared(NameHash hash) {
  return declared_names.may_contain(hash);
}

/// Looks a word up in the registry, without regard to case.
///
///   file, line  where the word stands
///   self        out: the definition index of the unit of this name that is
///               declared on this very line of this file, 0 if none is
///   count       out: the number of units of this name
///
/// Returns the first unit of this name, or the registry's end.
Declaration::Registry::iterator isDeclaration(const char* word, char** file,
                                              int line, int& self, int& count);

/// The declaration pass over one file: registers every unit that it opens,
/// reporting them on standard output as `verbose` asks. A file that cannot be
/// read is skipped silently.
///
///   file        its slot in the run's list
///   fixed_form  the comment rule, see hide_F90_strings_comments()
void gather_declarations(char** file, bool fixed_form);

#endif
