#include "html/markup.h"

#include <charconv>

#include "html/page_names.h"

namespace detail {

void put_piece(std::FILE* html, int number) {
  char digits[16];
  const char* end = std::to_chars(digits, digits + sizeof digits, number).ptr;
  put(html, std::string_view(digits, static_cast<std::size_t>(end - digits)));
}

void put_piece(std::FILE* html, const UnitAnchor& anchor) {
  put(html, anchor.name, "-", anchor.index);
}

void put_piece(std::FILE* html, const LineAnchor& anchor) {
  put(html, "line", anchor.line);
}

void put_piece(std::FILE* html, const Address<UnitAnchor>& address) {
  put(html, HTML_REF(address.file), "#", address.anchor);
}

void put_piece(std::FILE* html, const Address<LineAnchor>& address) {
  put(html, HTML_REF(address.file), "#", address.anchor);
}

}  // namespace detail
