// How mark-up is written: piece by piece, as it is.
//
// No character is ever turned into an entity, and nothing checks for write
// errors. An anchor marks a place in a page; an address leads to it.

#ifndef ZELKOR_HTML_MARKUP_H
#define ZELKOR_HTML_MARKUP_H

#include <stdio.h>  // fwrite_unlocked()

#include <cstdio>
#include <string_view>

#include "analysis/calling.h"
#include "analysis/declaration.h"

/// The anchor of a declaration, "NAME-INDEX".
struct UnitAnchor {
  std::string_view name;
  int index;  ///< its definition index
};

/// The anchor of a line that holds a reference, "lineNUMBER".
struct LineAnchor {
  int line;
};

/// An anchor in the page of a source file, "PAGE#ANCHOR".
template <typename Anchor>
struct Address {
  char** file;
  Anchor anchor;
};

inline Address<UnitAnchor> address_of(const Declaration& unit, int index) {
  return {unit.file, {unit.name, index}};
}

inline Address<LineAnchor> address_of(const Calling& calling) {
  return {calling.file, {calling.line}};
}

namespace detail {

// A page is written by one thread alone, so the stream is not locked for each
// piece.
inline void put_piece(std::FILE* html, std::string_view text) {
  fwrite_unlocked(text.data(), 1, text.size(), html);
}

void put_piece(std::FILE* html, int number);
void put_piece(std::FILE* html, const UnitAnchor& anchor);
void put_piece(std::FILE* html, const LineAnchor& anchor);
void put_piece(std::FILE* html, const Address<UnitAnchor>& address);
void put_piece(std::FILE* html, const Address<LineAnchor>& address);

}  // namespace detail

/// Writes pieces one after the other: texts, numbers in decimal, anchors and
/// addresses.
template <typename... Pieces>
void put(std::FILE* html, const Pieces&... pieces) {
  (detail::put_piece(html, pieces), ...);
}

#endif
