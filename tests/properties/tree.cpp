#include "tests/properties/tree.h"

#include <algorithm>
#include <clocale>
#include <cstdio>
#include <ctime>
#include <filesystem>
#include <fstream>
#include <iterator>

#include "analysis/declaration.h"
#include "driver/pipeline.h"
#include "driver/settings.h"
#include "html/page_names.h"
#include "tests/support/file_list.h"
#include "tests/support/page_text.h"
#include "tests/support/recorded_progress.h"

namespace fs = std::filesystem;

void Tree::write() const {
  for (const auto& [path, text] : sources) {
    const fs::path parent = fs::path(path).parent_path();
    if (!parent.empty()) fs::create_directories(parent);
    std::ofstream(path, std::ios::binary) << text;
  }
}

std::vector<const Unit*> FinishedRun::namesakes(const std::string& key) const {
  std::vector<const Unit*> found;
  for (const Unit& unit : units)
    if (unit.key == key) found.push_back(&unit);
  return found;
}

static std::vector<Unit> registered_units(FileList& files) {
  std::vector<Unit> units;
  for (const auto& [key, declaration] : Declaration::decs) {
    const bool is_namesake = !units.empty() && units.back().key == key;
    const int index = is_namesake ? units.back().index + 1 : 1;
    units.push_back({declaration->type,
                     key,
                     declaration->name,
                     static_cast<std::size_t>(declaration->file - files.data()),
                     declaration->line,
                     index,
                     {}});
    for (const Calling& calling : declaration->callers)
      units.back().callers.emplace_back(*calling.file, calling.line);
  }
  return units;
}

// The trailer's date is English whatever the locale.
static std::string expected_trailer() {
  const std::string locale = std::setlocale(LC_TIME, nullptr);
  std::setlocale(LC_TIME, "C");
  std::string trailer = page_tail(date_time);
  std::setlocale(LC_TIME, locale.c_str());
  return trailer;
}

FinishedRun run_over(const Tree& tree) {
  fs::remove_all(html_dir);
  fs::create_directory(html_dir);
  FileList files(tree.list);
  html_style = tree.style;
  progress_reports.clear();
  gen_html(files.count(), files.data());

  FinishedRun run{&tree, registered_units(files), {}, {}, expected_trailer()};
  for (std::size_t i = 0; i < tree.list.size(); ++i)
    run.page_names.emplace_back(HTML_REF(files.slot(i)));
  for (const auto& entry : fs::directory_iterator(html_dir)) {
    std::ifstream page(entry.path(), std::ios::binary);
    run.pages[entry.path().filename()].assign(
        std::istreambuf_iterator<char>(page), {});
  }
  return run;
}

std::vector<Piece> pieces_of(const std::string& text, std::size_t size) {
  std::vector<Piece> pieces;
  for (std::size_t at = 0; at < text.size();) {
    const std::size_t line_end = text.find('\n', at);
    const std::size_t longest = at + size - 1;
    std::size_t end = std::min(longest, text.size());
    if (line_end != std::string::npos) end = std::min(end, line_end + 1);
    std::string piece = text.substr(at, end - at);
    const bool met_end = end < longest && piece.back() != '\n';
    piece.resize(std::min(piece.find('\0'), piece.size()));
    pieces.push_back({piece, met_end});
    at = end;
  }
  return pieces;
}

std::string blanked(std::string line) {
  char inside = '\0';
  for (char& c : line) {
    if ((inside == '"' && c == '"') || (inside == '!' && c == '\n'))
      inside = '\0';
    else if (inside != '\0')
      c = ' ';
    else if (c == '!' || c == '"')
      inside = c;
    if (inside == '!') c = ' ';
  }
  return line;
}

std::string upper(std::string text) {
  for (char& c : text)
    if (c >= 'a' && c <= 'z') c = static_cast<char>(c - 'a' + 'A');
  return text;
}

std::string known_by(const std::string& word) { return word.substr(0, 255); }

bool is_word_character(char c) {
  return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') ||
         (c >= '0' && c <= '9') || c == '_' || c == '.';
}

std::size_t end_of_word(const std::string& line, std::size_t start) {
  while (start < line.size() && is_word_character(line[start])) ++start;
  return start;
}
