// Classification of ASCII characters, whatever the locale.

#pragma once

/// Whether a character is a blank or one of \t \n \v \f \r.
constexpr bool is_white_space(char c) {
  return c == ' ' || (c >= '\t' && c <= '\r');
}

/// The upper-case form of an ASCII letter; any other character is unchanged.
constexpr char to_upper(char c) {
  return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c;
}
