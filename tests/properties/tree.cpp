#include "tests/properties/tree.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>

#include "analysis/declaration.h"
#include "driver/pipeline.h"
#include "driver/settings.h"
#include "html/page_names.h"
#include "tests/support/file_list.h"
#include "tests/support/recorded_progress.h"

namespace fs = std::filesystem;

void Tree::write() const {
  for (const auto& [path, text] : sources) {
    const fs::path parent = fs::path(path).parent_path();
    if (!parent.empty()) fs::create_directories(parent);
    std::ofstream(path, std::ios::binary) << text;
  }
}

static std::vector<Unit> registered_units(FileList& files) {
  std::vector<Unit> units;
  for (const auto& [key, declaration] : Declaration::decs) {
    units.push_back({declaration->type,
                     key,
                     declaration->name,
                     static_cast<std::size_t>(declaration->file - files.data()),
                     declaration->line,
                     {}});
    for (const Calling& calling : declaration->callers)
      units.back().callers.emplace(*calling.file, calling.line);
  }
  return units;
}

FinishedRun run_over(const Tree& tree) {
  fs::remove_all(html_dir);
  fs::create_directory(html_dir);
  FileList files(tree.list);
  html_style = tree.style;
  progress_reports.clear();
  gen_html(files.count(), files.data());

  FinishedRun run{&tree, registered_units(files), {}, {}};
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
