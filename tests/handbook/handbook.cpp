#include "tests/handbook/handbook.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <sstream>

#include "tests/support/capture.h"

std::string handbook_folder() {
  return std::string(ZELKOR_SOURCE_FOLDER) + "/docs/handbook";
}

const std::string& handbook() {
  static const std::string text =
      content_of(handbook_folder() + "/Zelkor_Handbook.html");
  return text;
}

// "&amp;" comes last, for what it leaves is no entity.
static std::string without_entities(std::string text) {
  const struct {
    std::string entity;
    std::string character;
  } entities[] = {
      {"&lt;", "<"}, {"&gt;", ">"}, {"&quot;", "\""}, {"&amp;", "&"}};
  for (const auto& row : entities)
    for (std::size_t at = 0;
         (at = text.find(row.entity, at)) != std::string::npos; ++at)
      text.replace(at, row.entity.size(), row.character);
  return text;
}

static std::string without_tags(const std::string& html) {
  std::string text;
  for (std::size_t at = 0; at < html.size(); ++at)
    if (html[at] == '<')
      at = std::min(html.find('>', at), html.size());
    else
      text += html[at];
  return text;
}

std::string plain(const std::string& html) {
  std::istringstream words(without_entities(without_tags(html)));
  std::string text;
  for (std::string word; words >> word;)
    text += (text.empty() ? "" : " ") + word;
  return text;
}

std::vector<std::string> pieces(const std::string& text,
                                const std::string& begin,
                                const std::string& end) {
  std::vector<std::string> found;
  std::size_t at = 0;
  while ((at = text.find(begin, at)) != std::string::npos) {
    at += begin.size();
    const std::size_t stop = text.find(end, at);
    found.push_back(text.substr(at, stop - at));
  }
  return found;
}

Rows table(const std::vector<std::string>& header) {
  for (const std::string& html : pieces(handbook(), "<TABLE ", "</TABLE>")) {
    Rows rows;
    std::vector<std::string> headings;
    for (const std::string& row : pieces(html, "<TR>", "</TR>")) {
      for (const std::string& cell : pieces(row, "<TH>", "</TH>"))
        headings.push_back(plain(cell));
      const std::vector<std::string> cells = pieces(row, "<TD>", "</TD>");
      if (!cells.empty()) rows.push_back(cells);
    }
    if (headings == header && !rows.empty()) return rows;
  }
  ADD_FAILURE() << "no table " << testing::PrintToString(header);
  return {};
}

std::vector<std::string> block_below(const std::string& heading) {
  const std::size_t at = handbook().find(">" + heading + "</");
  const std::size_t begin = handbook().find("<PRE>\n", at);
  const std::size_t end = handbook().find("</PRE>", begin);
  if (at == std::string::npos || begin == std::string::npos) {
    ADD_FAILURE() << "no block below " << heading;
    return {};
  }
  std::istringstream text(
      without_entities(handbook().substr(begin + 6, end - begin - 6)));
  std::vector<std::string> lines;
  for (std::string line; std::getline(text, line);) lines.push_back(line);
  return lines;
}

int number_between(const std::string& before, const std::string& after) {
  const std::string text = plain(handbook());
  for (std::size_t at = 0; (at = text.find(before, at)) != std::string::npos;) {
    at += before.size();
    const std::size_t digits = text.find_first_not_of("0123456789", at);
    if (digits != at && text.compare(digits, after.size(), after) == 0)
      return std::atoi(text.c_str() + at);
  }
  ADD_FAILURE() << "no number between \"" << before << "\" and \"" << after
                << '"';
  return 0;
}

std::vector<std::string> split(const std::string& text, char separator) {
  std::vector<std::string> parts;
  std::istringstream stream(text);
  for (std::string part; std::getline(stream, part, separator);)
    parts.push_back(plain(part));
  return parts;
}
