#include "tests/handbook/handbook.h"

#include <gtest/gtest.h>

#include <regex>
#include <utility>

#include "tests/support/capture.h"

std::string handbook_folder() {
  return std::string(ZELKOR_SOURCE_FOLDER) + "/docs/handbook";
}

const std::string& handbook() {
  static const std::string text =
      content_of(handbook_folder() + "/Zelkor_Handbook.html");
  return text;
}

// What a reader sees of some HTML: without tags, entities resolved, each run of
// blanks and line ends one blank. "&amp;" comes last, because its "&" begins no
// entity.
static std::string plain(const std::string& html) {
  std::string text = std::regex_replace(html, std::regex("<[^>]*>"), "");
  for (const auto& [entity, character] : {std::pair{"&lt;", "<"},
                                          {"&gt;", ">"},
                                          {"&quot;", "\""},
                                          {"&amp;", "&"}})
    text = std::regex_replace(text, std::regex(entity), character);
  return std::regex_replace(text, std::regex("\\s+"), " ");
}

bool handbook_says(const std::string& words) {
  static const std::string text = plain(handbook());
  return text.find(words) != std::string::npos;
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

std::vector<std::string> split(const std::string& text,
                               const std::string& separator) {
  return pieces(separator + text, separator, separator);
}

Rows table(const std::vector<std::string>& header) {
  for (const std::string& html : pieces(handbook(), "<TABLE ", "</TABLE>")) {
    Rows rows;
    for (const std::string& row : pieces(html, "<TR>", "</TR>")) {
      rows.emplace_back();
      for (const char* mark : {"H>", "D>"})
        for (const std::string& cell :
             pieces(row, std::string("<T") + mark, std::string("</T") + mark))
          rows.back().push_back(plain(cell));
    }
    if (rows.front() != header) continue;
    rows.erase(rows.begin());
    return rows;
  }
  ADD_FAILURE() << "no table " << testing::PrintToString(header);
  return {};
}
