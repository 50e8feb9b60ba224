// Source text reaches a page unchanged, so it may hold anything that mark-up
// holds. Page and source are therefore walked side by side: mark-up is what the
// source does not hold at that place. Where both are possible the source is
// tried first, and the other if that leads nowhere.

#include "tests/properties/page_reader.h"

#include <set>
#include <tuple>

#include "driver/settings.h"
#include "tests/support/page_text.h"

namespace {

class PageReader {
 public:
  PageReader(const FinishedRun& run_of_page,
             std::vector<std::string> source_lines,
             const std::string& page_text)
      : run(run_of_page), lines(std::move(source_lines)), page(page_text) {}

  bool read(const std::string& title) {
    return skip(page_head() + "<TITLE>" + title + "</TITLE>\n<H1>" + title +
                "</H1>\n<code> <pre>\n") &&
           read_lines();
  }

  std::vector<Mark> marks;

 private:
  // A place on the page, and the place in the source that belongs to it.
  struct Place {
    std::size_t at = 0;
    std::size_t line = 0;
    std::size_t column = 0;
    std::size_t marks = 0;
  };

  bool skip(const std::string& text) {
    if (page.compare(here.at, text.size(), text) != 0) return false;
    here.at += text.size();
    return true;
  }

  bool skip_number(int& number) {
    const std::size_t end = page.find_first_not_of("0123456789", here.at);
    if (end == std::string::npos || end == here.at || end > here.at + 9)
      return false;
    number = std::stoi(page.substr(here.at, end - here.at));
    here.at = end;
    return true;
  }

  // Tries something; if it fails, goes back to where it began.
  template <typename Action>
  bool attempt(Action action) {
    const std::size_t begin = here.at;
    if (action()) return true;
    here.at = begin;
    return false;
  }

  // Tries something for each file of the run.
  template <typename Action>
  bool attempt_for_files(Action action) {
    for (std::size_t i = 0; i < run.page_names.size(); ++i)
      if (attempt([&] { return action(run.page_names[i], run.tree->list[i]); }))
        return true;
    return false;
  }

  // The name in a link, which is the word in some spelling, and its index.
  bool skip_fragment(const std::string& name, Link& link, int& index) {
    link.fragment = page.substr(here.at, name.size());
    if (upper(link.fragment) != upper(name)) return false;
    here.at += name.size();
    if (!skip("-") || !skip_number(index)) return false;
    link.fragment += "-" + std::to_string(index);
    return true;
  }

  bool read_link(Mark& mark) {
    return skip("<a HREF=\"") &&
           attempt_for_files([&](const std::string& name, const std::string&) {
             Link link{name, "", "", 0};
             int index = 0;
             if (!skip(name + "#") ||
                 !skip_fragment(known_by(mark.word), link, index) ||
                 index != 1 || !skip("\"><b>" + mark.word + "</b></a>"))
               return false;
             mark.links = {link};
             return true;
           });
  }

  bool read_pane_item(Mark& mark) {
    return skip("<a href=\"") &&
           attempt_for_files(
               [&](const std::string& name, const std::string& path) {
                 Link link{name, "", path, 0};
                 int index = 0;
                 if (!skip(name + "#") ||
                     !skip_fragment(known_by(mark.word), link, index) ||
                     index != static_cast<int>(mark.links.size()) + 1 ||
                     !skip("\"><small>" + path + ":") ||
                     !skip_number(link.line) || !skip("</small></a><br/>\n"))
                   return false;
                 mark.links.push_back(link);
                 return true;
               });
  }

  bool read_pane(Mark& mark) {
    mark.kind = Mark::pane;
    if (!skip(multiref_opening + mark.word + pane_opening +
              "<small>Definitions:</small>\n"))
      return false;
    while (attempt([&] { return read_pane_item(mark); })) {
    }
    return skip(multiref_closing);
  }

  bool read_reference(Mark& mark) {
    mark.anchor = "line" + std::to_string(mark.line);
    return skip("<a NAME=\"" + mark.anchor + "\"></a>") &&
           (attempt([&] { return read_link(mark); }) ||
            attempt([&] { return read_pane(mark); }));
  }

  bool read_menu_item(Mark& mark) {
    if (skip(new_column)) mark.columns.push_back(0);
    return skip("<a href=\"") &&
           attempt_for_files([&](const std::string& name,
                                 const std::string& path) {
             Link link{name, "", path, 0};
             if (!skip(name + "#line") || !skip_number(link.line)) return false;
             const std::string number = std::to_string(link.line);
             link.fragment = "line" + number;
             if (!skip("\">" + path + "&nbsp;:&nbsp;" + number + "</a><br/>\n"))
               return false;
             ++mark.columns.back();
             mark.links.push_back(link);
             return true;
           });
  }

  bool read_definition(Mark& mark) {
    mark.kind = Mark::definition;
    mark.columns = {0};
    int index = 0;
    if (!skip("<a NAME=\"" + known_by(mark.word) + "-") ||
        !skip_number(index) || !skip("\"><b>" + mark.word + "</b></a>"))
      return false;
    mark.anchor = known_by(mark.word) + "-" + std::to_string(index);
    if (!skip(menu_opening + "Referenced By...\n")) return false;
    while (attempt([&] { return read_menu_item(mark); })) {
    }
    return skip(menu_closing);
  }

  bool read_keyword(Mark& mark) {
    const bool bold = (run.tree->style & BOLD_KEYWORDS) != 0;
    const bool italic = (run.tree->style & ITALIC_KEYWORDS) != 0;
    mark.kind = Mark::keyword;
    return (bold || italic) &&
           skip(std::string(bold ? "<b>" : "") + (italic ? "<i>" : "") +
                mark.word + (italic ? "</i>" : "") + (bold ? "</b>" : ""));
  }

  bool read_mark() {
    const std::string& line = lines[here.line];
    const std::size_t end = end_of_word(line, here.column);
    if (end == here.column ||
        (here.column > 0 && is_word_character(line[here.column - 1])))
      return false;
    const Mark bare{Mark::reference,
                    static_cast<int>(here.line) + 1,
                    here.column,
                    line.substr(here.column, end - here.column),
                    "",
                    {},
                    {}};
    for (const auto reader :
         {&PageReader::read_reference, &PageReader::read_definition,
          &PageReader::read_keyword}) {
      Mark mark = bare;
      if (!attempt([&] { return (this->*reader)(mark); })) continue;
      marks.push_back(mark);
      here.column = end;
      return true;
    }
    return false;
  }

  // Moves on by a source character or a mark; false where neither fits.
  bool step() {
    const std::string& line = lines[here.line];
    if (here.at < page.size() && page[here.at] == line[here.column]) {
      here.marks = marks.size();
      if (page[here.at] == '<') doubtful.push_back(here);
      ++here.at;
      ++here.column;
      return true;
    }
    return read_mark();
  }

  // Goes back to the last place where mark-up could begin as well as source
  // text, and takes it for mark-up.
  bool think_again() {
    while (!doubtful.empty()) {
      here = doubtful.back();
      doubtful.pop_back();
      marks.resize(here.marks);
      if (tried.insert({here.at, here.line, here.column}).second && read_mark())
        return true;
    }
    return false;
  }

  bool at_end() {
    return attempt([&] {
      return skip("</pre> </code>\n" + run.trailer) && here.at == page.size();
    });
  }

  bool read_lines() {
    for (;;) {
      while (here.line < lines.size() &&
             here.column == lines[here.line].size()) {
        ++here.line;
        here.column = 0;
      }
      if (here.line == lines.size()) {
        if (at_end()) return true;
        if (!think_again()) return false;
      } else if (!step() && !think_again()) {
        return false;
      }
    }
  }

  const FinishedRun& run;
  const std::vector<std::string> lines;
  const std::string& page;
  Place here;
  std::vector<Place> doubtful;
  std::set<std::tuple<std::size_t, std::size_t, std::size_t>> tried;
};

}  // namespace

std::vector<std::string> shown_lines(const std::string& source) {
  std::vector<std::string> lines;
  for (const Piece& piece : pieces_of(source, 4096))
    if (!piece.met_end) lines.push_back(piece.text);
  return lines;
}

std::optional<std::vector<Mark>> read_page(const FinishedRun& run,
                                           const std::string& title,
                                           const std::string& source,
                                           const std::string& page) {
  PageReader reader(run, shown_lines(source), page);
  if (!reader.read(title)) return std::nullopt;
  return reader.marks;
}
