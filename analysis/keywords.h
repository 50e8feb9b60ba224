// The two keyword tables: the keywords that open program units, and the words
// that the pages highlight.
//
// Each table is a linked list of static entries, built before main() runs and
// never changed afterwards.

#pragma once

#include "analysis/dec_type.h"

/// A keyword that opens a program unit. The list's order is the order in which
/// the keywords are tried and in which the index page shows the kinds.
class Marker {
 public:
  /// Puts the new entry, which must live as long as the program, at the front
  /// of the list.
  Marker(DecType type, const char* name);
  Marker(const Marker&) = delete;
  Marker& operator=(const Marker&) = delete;

  /// match(name, text, consumed) for this entry's name.
  bool In(const char* text, int* consumed) const;

  DecType type;
  const char* name;  ///< in upper case; static text
  Marker* next;      ///< null at the end

  static Marker* first;
};

/// A word that pages may highlight.
class Syntax {
 public:
  /// Puts the new entry, which must live as long as the program, at the front
  /// of the list.
  Syntax(int level, const char* word);
  Syntax(const Syntax&) = delete;
  Syntax& operator=(const Syntax&) = delete;

  /// Whether this entry's word stands at the very start of a text, as a whole
  /// word.
  bool Is(const char* text) const;

  const char* word;  ///< in lower case; static text
  int level;         ///< 1 to 3
  Syntax* next;      ///< null at the end

  static Syntax* first;
};

/// The first highlight word that stands at the start of a text and whose level
/// html_style enables now; null when there is none.
Syntax* isSyntax(const char* text);
