#include "tests/handbook/engine_run.h"

#include <filesystem>

#include "driver/pipeline.h"
#include "driver/settings.h"
#include "html/page_names.h"
#include "tests/handbook/handbook.h"
#include "tests/support/capture.h"

EngineRun::EngineRun(const Sources& sources, std::uint32_t more_style) {
  std::vector<std::string> paths;
  for (const auto& [path, text] : sources) {
    write_file(path, text);
    paths.push_back(path);
  }
  files = std::make_unique<FileList>(paths);
  html_dir = folder.path() / "pages of the run";
  html_style |= more_style;
  std::filesystem::create_directory(html_dir);
  gen_html(files->count(), files->data());
}

std::string EngineRun::page_name(std::size_t source) {
  return HTML_REF(files->slot(source));
}

std::string EngineRun::body(std::size_t source) {
  return pieces(page(page_name(source)), "<pre>\n", "</pre>").at(0);
}

std::string EngineRun::page(const std::string& name) const {
  return content_of(folder.path() / "pages of the run" / name);
}

std::set<std::pair<std::string, std::string>> EngineRun::units() const {
  std::set<std::pair<std::string, std::string>> found;
  for (const std::string& list : pieces(index(), "<H2><a NAME=\"", "</UL>"))
    for (const std::string& entry : pieces(list, "<LI> ", "</a>"))
      found.emplace(list.substr(0, list.find('"')),
                    entry.substr(entry.find("<b>") + 3,
                                 entry.find("</b>") - entry.find("<b>") - 3));
  return found;
}

int count_of(const std::string& piece, const std::string& text) {
  return static_cast<int>(pieces(text, piece, "").size());
}
