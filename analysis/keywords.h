// The two keyword tables: the keywords that open program units, and the words
// that the pages highlight.
//
// Each table is a linked list of static entries, built before main() runs and
// never changed afterwards.

#pragma once

#include "analysis/dec_type.h"

/// A keyword that opens a program unit. The keywords are tried in the order of
/// the list, and the index page shows the kinds of units in the same order.
class Marker {
 public:
  /// Adds the new entry at the front of the list. It must live as long as the
  /// program.
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
  /// Adds the new entry at the front of the list. It must live as long as the
  /// program.
  Syntax(int level, const char* word);
  Syntax(const Syntax&) = delete;
  Syntax& operator=(const Syntax&) = delete;

  /// Whether a text starts with this entry's word as a whole word.
  bool Is(const char* text) const;

  const char* word;  ///< in lower case; static text
  int level;         ///< 1 to 3
  Syntax* next;      ///< null at the end

  static Syntax* first;
};

/// The first entry whose level html_style enables and whose word starts a text,
/// see Is(). Null when there is none.
Syntax* isSyntax(const char* text);
