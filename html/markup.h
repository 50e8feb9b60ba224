// Writing mark-up piece by piece.
//
// No character is ever turned into an entity, and nothing checks for write
// errors. An anchor marks a place in a page; an address points to it.

#pragma once

#include <cstdio>
#include <string_view>

#include "analysis/calling.h"
#include "analysis/declaration.h"
#include "html/page_names.h"

/// The anchor of a declaration, "NAME-INDEX".
struct UnitAnchor {
  std::string_view name;
  int index;  ///< its definition index
};

/// The anchor of a line that holds a reference, "lineNUMBER".
struct LineAnchor {
  int line;
};

/// The address of an anchor in the page of a source file, "PAGE#ANCHOR".
template <typename Anchor>
struct Address {
  char** file;
  Anchor anchor;
};

inline Address<UnitAnchor> address_of(const Declaration& unit, int index) {
  return {unit.file, {unit.name, index}};
}

inline Address<LineAnchor> address_of(const Calling& reference) {
  return {reference.file, {reference.line}};
}

/// A buffer for pieces of mark-up: texts, numbers in decimal, anchors and
/// addresses. They are written when it is full and when it is destroyed.
class Markup {
 public:
  explicit Markup(std::FILE* html) : stream(html) {}
  ~Markup() { write(); }
  Markup(const Markup&) = delete;
  Markup& operator=(const Markup&) = delete;

  void add(std::string_view text) {
    if (text.size() > sizeof buffer - size) {
      write();
      if (text.size() > sizeof buffer) return write(text);
    }
    size += text.copy(buffer + size, text.size());
  }
  void add(int number);
  void add(const UnitAnchor& anchor);
  void add(const LineAnchor& anchor);
  template <typename Anchor>
  void add(const Address<Anchor>& address) {
    add(HTML_REF(address.file));
    add("#");
    add(address.anchor);
  }

 private:
  void write();
  void write(std::string_view text);

  std::FILE* stream;
  std::size_t size = 0;
  char buffer[512];
};

/// Writes pieces of mark-up one after the other.
template <typename... Pieces>
void put(std::FILE* html, const Pieces&... pieces) {
  Markup markup(html);
  (markup.add(pieces), ...);
}
