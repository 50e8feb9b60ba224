#include "tests/properties/properties.h"

#include <algorithm>
#include <cstring>
#include <optional>
#include <set>
#include <tuple>

#include "driver/settings.h"
#include "tests/support/page_text.h"

namespace {

struct Kind {
  DecType type;
  std::string keyword;
};

// In the order of the index.
const std::vector<Kind> kinds = {
    {DT_PROGRAM, "PROGRAM"},       {DT_MODULE, "MODULE"},
    {DT_SUBROUTINE, "SUBROUTINE"}, {DT_FUNCTION, "FUNCTION"},
    {DT_INTERFACE, "INTERFACE"},   {DT_TYPE, "TYPE"},
};

const std::vector<std::vector<std::string>> highlighted = {
    {"PROGRAM", "MODULE", "SUBROUTINE", "FUNCTION", "INTERFACE", "TYPE"},
    {"IF", "THEN", "ELSE", "ELSEIF", "ENDIF", "DO", "WHILE", "UNTIL",
     "CONTINUE", "ENDDO", "SELECT", "CASE"},
    {"ALLOCATE", "DEALLOCATE"},
};

bool is_highlighted(const std::string& word, std::uint32_t style) {
  const int level = (style & LEVEL_3) != 0   ? 3
                    : (style & LEVEL_2) != 0 ? 2
                    : (style & LEVEL_1) != 0 ? 1
                                             : 0;
  for (int i = 0; i < level; ++i) {
    const auto& words = highlighted[static_cast<std::size_t>(i)];
    if (std::count(words.begin(), words.end(), upper(word)) > 0) return true;
  }
  return false;
}

// The text of the file in a slot; nothing when there is none to read. A
// directory reads as an empty file.
std::optional<std::string> source_of(const Tree& tree, std::size_t slot) {
  const auto source = tree.sources.find(tree.list[slot]);
  if (source == tree.sources.end()) return std::nullopt;
  return source->second;
}

std::string last_component(const std::string& path) {
  return path.substr(path.rfind('/') + 1);  // npos + 1 is 0
}

std::string place(const std::string& page, const Mark& mark) {
  return page + ", line " + std::to_string(mark.line) + ", word \"" +
         mark.word + "\": ";
}

struct WordAt {
  std::size_t column;
  std::string text;
};

std::vector<WordAt> words_of(const std::string& line) {
  std::vector<WordAt> words;
  for (std::size_t at = 0; at < line.size();) {
    const std::size_t end = end_of_word(line, at);
    if (end > at) words.push_back({at, line.substr(at, end - at)});
    at = std::max(end, at + 1);
  }
  return words;
}

bool has_word(const std::string& line, const std::string& name) {
  for (const WordAt& word : words_of(line))
    if (known_by(word.text) == name) return true;
  return false;
}

// The line as the passes over words see it.
std::string scanned(const std::string& line, std::uint32_t style) {
  return (style & HIDE_STRINGS_AND_COMMENTS) != 0 ? blanked(line) : line;
}

std::size_t skip_white(const std::string& line, std::size_t at) {
  while (at < line.size() && std::strchr(" \t\n\v\f\r", line[at])) ++at;
  return at;
}

std::string fragment_of(const Unit& unit) {
  return unit.name + "-" + std::to_string(unit.index);
}

}  // namespace

ReadPages::ReadPages(const FinishedRun& run_to_read) : run(run_to_read) {
  const Tree& tree = *run.tree;
  for (std::size_t i = 0; i < tree.list.size(); ++i)
    if (source_of(tree, i)) shown_slots[run.page_names[i]] = i;

  for (const auto& [name, slot] : shown_slots) {
    const auto page = run.pages.find(name);
    if (page == run.pages.end()) {
      faults.push_back(name + ": not written");
      continue;
    }
    auto read = read_page(run, last_component(tree.list[slot]),
                          *source_of(tree, slot), page->second);
    if (read)
      marks[name] = std::move(*read);
    else
      faults.push_back(name + ": is not its source with mark-up");
  }
  const bool has_index = (tree.style & WRITE_INDEX) != 0;
  for (const auto& [name, text] : run.pages)
    if (shown_slots.count(name) == 0 && !(has_index && name == "index.html"))
      faults.push_back(name + ": should not be there");
  if (has_index && run.pages.count("index.html") == 0)
    faults.push_back("there is no index");
}

Faults pages_show_their_lines(const ReadPages& pages) { return pages.faults; }

namespace {

// The exception that lets a link to a unit lead nowhere, if there is one.
std::optional<Exception> exception_of(const ReadPages& pages,
                                      const Unit& unit) {
  const Tree& tree = *pages.run.tree;
  const std::size_t shown =
      pages.shown_slots.at(pages.run.page_names[unit.slot]);
  if (unit.name.empty()) return Exception::no_name;
  if (shown != unit.slot)
    return tree.list[shown] == tree.list[unit.slot] ? Exception::listed_twice
                                                    : Exception::shared_page;

  const auto pieces = pieces_of(*source_of(tree, unit.slot), 1024);
  const auto lines = shown_lines(*source_of(tree, unit.slot));
  const auto line = static_cast<std::size_t>(unit.line);
  for (std::size_t i = 0; i < line; ++i)
    if (i >= lines.size() || lines[i] != pieces[i].text)
      return Exception::long_line;

  if (unit.type == DT_INTERFACE && unit.name[0] == '.' &&
      !has_word(lines[line - 1], unit.name))
    return Exception::odd_operator;
  return std::nullopt;
}

class LinkCheck {
 public:
  LinkCheck(const ReadPages& read_pages, std::map<Exception, int>& exceptions)
      : pages(read_pages), met(exceptions) {
    for (const auto& [name, marks] : pages.marks)
      for (const Mark& mark : marks) anchors[name].insert(mark.anchor);
    for (const Unit& unit : pages.run.units)
      units[{pages.run.page_names[unit.slot], fragment_of(unit)}] = &unit;
  }

  void follow(const std::string& from, const std::string& page,
              const std::string& fragment) {
    if (anchors.count(page) > 0 && anchors[page].count(fragment) > 0) return;
    const auto unit = units.find({page, fragment});
    std::optional<Exception> exception;
    if (unit != units.end())
      exception = exception_of(pages, *unit->second);
    else if (is_shared_by_files(page))
      exception = Exception::shared_page;
    if (exception)
      ++met[*exception];
    else
      faults.push_back(from + "leads to " + page + "#" + fragment +
                       ", which is nowhere");
  }

  Faults faults;

 private:
  bool is_shared_by_files(const std::string& page) {
    const FinishedRun& run = pages.run;
    std::set<std::string> paths;
    for (std::size_t i = 0; i < run.page_names.size(); ++i)
      if (run.page_names[i] == page) paths.insert(run.tree->list[i]);
    return paths.size() > 1;
  }

  const ReadPages& pages;
  std::map<Exception, int>& met;
  std::map<std::string, std::set<std::string>> anchors;
  std::map<std::pair<std::string, std::string>, const Unit*> units;
};

}  // namespace

Faults links_land(const ReadPages& pages, std::map<Exception, int>& met) {
  LinkCheck check(pages, met);
  for (const auto& [name, marks] : pages.marks)
    for (const Mark& mark : marks)
      for (const Link& link : mark.links)
        check.follow(place(name, mark), link.page, link.fragment);
  // That the index has just these links is another property.
  if ((pages.run.tree->style & WRITE_INDEX) != 0)
    for (const Unit& unit : pages.run.units)
      check.follow("index: ", pages.run.page_names[unit.slot],
                   fragment_of(unit));
  return check.faults;
}

namespace {

// What the mark over a word has to be; nothing where no mark belongs.
std::optional<Mark> expected_mark(const FinishedRun& run, std::size_t slot,
                                  int line, const WordAt& word) {
  const auto namesakes = run.namesakes(upper(known_by(word.text)));
  Mark mark{Mark::keyword, line, word.column, word.text, "", {}, {}};
  if (namesakes.empty()) {
    const std::uint32_t style = run.tree->style;
    const bool shows = (style & (BOLD_KEYWORDS | ITALIC_KEYWORDS)) != 0;
    if (shows && is_highlighted(word.text, style)) return mark;
    return std::nullopt;
  }
  for (const Unit* unit : namesakes) {
    if (unit->slot != slot || unit->line != line) continue;
    mark.kind = Mark::definition;
    mark.anchor = known_by(word.text) + "-" + std::to_string(unit->index);
    return mark;
  }
  mark.kind = namesakes.size() == 1 ? Mark::reference : Mark::pane;
  mark.anchor = "line" + std::to_string(line);
  for (const Unit* unit : namesakes) {
    Link link{run.page_names[unit->slot], fragment_of(*unit), "", 0};
    if (mark.kind == Mark::pane) {
      link.path = run.tree->list[unit->slot];
      link.line = unit->line;
    }
    mark.links.push_back(link);
  }
  return mark;
}

bool is_as_expected(const Mark& mark, const Mark& expected) {
  return mark.kind == expected.kind && mark.line == expected.line &&
         mark.column == expected.column && mark.word == expected.word &&
         mark.anchor == expected.anchor &&
         (mark.kind == Mark::definition || mark.links == expected.links);
}

}  // namespace

Faults words_that_mean_something_are_marked(const ReadPages& pages) {
  Faults faults;
  const FinishedRun& run = pages.run;
  for (const auto& [name, marks] : pages.marks) {
    const std::size_t slot = pages.shown_slots.at(name);
    const auto lines = shown_lines(*source_of(*run.tree, slot));
    std::vector<Mark> expected;
    for (std::size_t i = 0; i < lines.size(); ++i)
      for (const WordAt& word : words_of(scanned(lines[i], run.tree->style)))
        if (auto mark = expected_mark(run, slot, static_cast<int>(i) + 1, word))
          expected.push_back(*mark);
    const auto [got, wanted] =
        std::mismatch(marks.begin(), marks.end(), expected.begin(),
                      expected.end(), is_as_expected);
    if (wanted != expected.end())
      faults.push_back(place(name, *wanted) + "is not marked as it should be");
    else if (got != marks.end())
      faults.push_back(place(name, *got) + "is marked");
  }
  return faults;
}

// The lengths of the columns of a menu with n items.
static std::vector<int> columns_of(int n) {
  const int longest = n < 14 ? n + 2 : n < 24 ? (n + 2) / 2 : (n + 3) / 3;
  std::vector<int> columns;
  for (; n > longest; n -= longest) columns.push_back(longest);
  columns.push_back(n);
  return columns;
}

Faults menus_list_all_references(const ReadPages& pages) {
  Faults faults;
  const FinishedRun& run = pages.run;
  // Every line of every file counts, also of those whose page another has.
  std::map<std::string, std::set<std::pair<std::string, int>>> references;
  std::map<std::pair<std::string, int>, std::string> pages_of;
  for (std::size_t slot = 0; slot < run.tree->list.size(); ++slot) {
    const auto source = source_of(*run.tree, slot);
    if (!source) continue;
    const auto lines = shown_lines(*source);
    for (std::size_t i = 0; i < lines.size(); ++i) {
      const int line = static_cast<int>(i) + 1;
      for (const WordAt& word : words_of(scanned(lines[i], run.tree->style))) {
        const auto mark = expected_mark(run, slot, line, word);
        if (!mark || mark->kind == Mark::keyword ||
            mark->kind == Mark::definition)
          continue;
        references[upper(known_by(word.text))].emplace(run.tree->list[slot],
                                                       line);
        pages_of[{run.tree->list[slot], line}] = run.page_names[slot];
      }
    }
  }
  for (const auto& [name, marks] : pages.marks)
    for (const Mark& mark : marks) {
      if (mark.kind != Mark::definition) continue;
      std::vector<Link> expected;
      for (const auto& [path, line] : references[upper(known_by(mark.word))])
        expected.push_back({pages_of[{path, line}],
                            "line" + std::to_string(line), path, line});
      if (mark.links != expected)
        faults.push_back(place(name, mark) + "its menu is not the " +
                         std::to_string(expected.size()) +
                         " lines that refer to it");
      else if (mark.columns != columns_of(static_cast<int>(expected.size())))
        faults.push_back(place(name, mark) + "its menu has odd columns");
    }
  return faults;
}

namespace {

// The items that stand at a place of the index, each the text of one unit.
class IndexReader {
 public:
  explicit IndexReader(const FinishedRun& run_of_index)
      : run(run_of_index), page(run.pages.at("index.html")) {}

  Faults read() {
    skip(page_head() + "<TITLE>" + index_title + "</TITLE>\n\n");
    for (const Kind& kind : kinds) {
      skip("&nbsp;&nbsp;&nbsp; <a HREF=\"#" + kind.keyword + "\">" +
           kind.keyword + "S</a>" + menu_opening);
      read_items(
          kind,
          [this](const Unit& unit) {
            return "<a href=\"" + address(unit) + "\"><small>" + unit.name +
                   "</small></a><br/>\n";
          },
          true);
      skip(menu_closing);
    }
    skip("<hr>\n");
    for (const Kind& kind : kinds) {
      skip("<H2><a NAME=\"" + kind.keyword + "\">" + kind.keyword +
           " Declarations</a></H2><UL>\n");
      read_items(
          kind, [this](const Unit& unit) { return bullet(unit); }, false);
      skip("\n</UL>\n\n");
    }
    skip(run.trailer);
    if (at != page.size()) complain("something follows");
    return faults;
  }

 private:
  std::string address(const Unit& unit) const {
    return run.page_names[unit.slot] + "#" + fragment_of(unit);
  }

  std::string bullet(const Unit& unit) const {
    const std::string link = "<a HREF=\"" + address(unit) + "\"><b>";
    if (unit.index == 1) return "\n<LI> " + link + unit.name + "</b></a>";
    return (unit.index == 2 ? " [1] " : " ") + link + "[" +
           std::to_string(unit.index) + "]</b></a>";
  }

  template <typename TextOf>
  void read_items(const Kind& kind, TextOf text_of, bool in_columns) {
    std::vector<std::string> texts;
    for (const Unit& unit : run.units) texts.push_back(text_of(unit));
    std::vector<const Unit*> found;
    for (const Unit* unit = nullptr;; found.push_back(unit)) {
      if (in_columns && !found.empty() && found.size() % 25 == 0 &&
          !stands(menu_closing))
        skip(new_column);
      std::size_t i = 0;
      while (i < texts.size() && !stands(texts[i])) ++i;
      if (i == texts.size()) break;
      unit = &run.units[i];
      at += texts[i].size();
    }
    std::vector<const Unit*> expected;
    for (const Unit& unit : run.units)
      if (unit.type == kind.type) expected.push_back(&unit);
    if (found != expected)
      complain("shows " + std::to_string(found.size()) + " units of kind " +
               kind.keyword + " and not the " +
               std::to_string(expected.size()) + " that there are");
  }

  bool stands(const std::string& text) const {
    return page.compare(at, text.size(), text) == 0;
  }

  void skip(const std::string& text) {
    if (stands(text))
      at += text.size();
    else
      complain("lacks \"" + text.substr(0, 60) + "\"");
  }

  void complain(const std::string& what) {
    faults.push_back("index, byte " + std::to_string(at) + ": " + what);
  }

  const FinishedRun& run;
  const std::string& page;
  std::size_t at = 0;
  Faults faults;
};

}  // namespace

Faults index_lists_every_unit_once(const FinishedRun& run) {
  if ((run.tree->style & WRITE_INDEX) == 0) return {};
  if (run.pages.count("index.html") == 0) return {"there is no index"};
  return IndexReader(run).read();
}

namespace {

// The unit keyword that begins a line; `after` receives the column behind it.
const Kind* opening_keyword(const std::string& line, std::size_t& after) {
  const std::size_t start = skip_white(line, 0);
  after = end_of_word(line, start);
  const std::string word = upper(line.substr(start, after - start));
  for (const Kind& kind : kinds)
    if (kind.keyword == word) return &kind;
  return nullptr;
}

// Whether a rule keeps a line from opening a unit, though it begins with a
// keyword.
bool opens_nothing(const Kind& kind, const std::string& line,
                   std::size_t after) {
  const std::size_t next = skip_white(line, after);
  const auto words = words_of(line.substr(after));
  const std::string name = words.empty() ? "" : upper(words[0].text);
  switch (kind.type) {
    case DT_TYPE:
      return next < line.size() && line[next] == '(';
    case DT_MODULE:
      return name == "PROCEDURE";
    case DT_INTERFACE:
      break;
    default:
      return false;
  }
  if (name != "OPERATOR") return name == "ASSIGNMENT";
  const std::size_t open = skip_white(line, std::min(next + 9, line.size()));
  if (open >= line.size() || line[open] != '(') return true;
  const std::size_t dot = skip_white(line, open + 1);
  return dot >= line.size() || line[dot] != '.';
}

Faults faults_of_unit(const Unit& unit, const std::vector<Piece>& pieces) {
  const std::string who =
      "unit \"" + unit.name + "\" of line " + std::to_string(unit.line) + ": ";
  if (unit.key != upper(unit.name)) return {who + "its key is another name"};
  if (unit.name.size() > 255) return {who + "its name is too long"};
  const auto line = static_cast<std::size_t>(unit.line);
  if (line < 1 || line >= pieces.size())
    return {who + "that line does not count"};
  const std::string text = blanked(pieces[line - 1].text);
  std::size_t after = 0;
  const Kind* kind = opening_keyword(text, after);
  if (kind == nullptr || kind->type != unit.type)
    return {who + "its keyword does not begin the line"};
  const auto words = words_of(text.substr(after));
  const bool is_operator = unit.type == DT_INTERFACE && !words.empty() &&
                           upper(words[0].text) == "OPERATOR";
  if (is_operator) {
    const std::size_t dot = text.find('.', text.find('(', after));
    const std::size_t end = text.find('.', dot + 1);
    const std::string name = text.substr(
        dot, end == std::string::npos ? std::string::npos : end + 1 - dot);
    if (unit.name != known_by(name)) return {who + "is another operator"};
  } else if (unit.name != (words.empty() ? "" : known_by(words[0].text))) {
    return {who + "its name is not the first word"};
  }
  return {};
}

// The lines of a file that the declaration pass gets to: none after one that
// begins with a NUL, and never the last.
std::size_t lines_examined(const std::vector<Piece>& pieces) {
  std::size_t count = 0;
  while (count + 1 < pieces.size() && !pieces[count].text.empty()) ++count;
  return count;
}

}  // namespace

Faults units_are_what_lines_open(const FinishedRun& run) {
  Faults faults;
  std::set<std::pair<std::size_t, int>> opened;
  for (std::size_t i = 0; i < run.units.size(); ++i) {
    const Unit& unit = run.units[i];
    const auto pieces = pieces_of(*source_of(*run.tree, unit.slot), 1024);
    for (const auto& fault : faults_of_unit(unit, pieces))
      faults.push_back(fault);
    if (!opened.emplace(unit.slot, unit.line).second)
      faults.push_back("two units are opened by one line");
    if (i == 0) continue;
    const Unit& last = run.units[i - 1];
    if (std::tie(unit.key, unit.slot, unit.line) <=
        std::tie(last.key, last.slot, last.line))
      faults.push_back("the registry is out of order at " + unit.name);
  }
  for (std::size_t slot = 0; slot < run.tree->list.size(); ++slot) {
    const auto pieces =
        pieces_of(source_of(*run.tree, slot).value_or(""), 1024);
    for (std::size_t i = 0; i < lines_examined(pieces); ++i) {
      const std::string line = blanked(pieces[i].text);
      std::size_t after = 0;
      const Kind* kind = opening_keyword(line, after);
      const bool opens = kind != nullptr && !opens_nothing(*kind, line, after);
      if (opens != (opened.count({slot, static_cast<int>(i) + 1}) > 0))
        faults.push_back(run.tree->list[slot] + ", line " +
                         std::to_string(i + 1) +
                         (opens ? ": opens a unit" : ": opens nothing"));
    }
  }
  return faults;
}

namespace {

// A mark without what the order of files decides: the index of a definition
// and the order of the items in a pane.
Mark without_order(Mark mark) {
  const auto cut = [](std::string& text) { text.resize(text.rfind('-')); };
  if (mark.kind == Mark::definition) cut(mark.anchor);
  if (mark.kind == Mark::pane) {
    for (Link& link : mark.links) cut(link.fragment);
    std::sort(mark.links.begin(), mark.links.end());
  }
  return mark;
}

bool is_same_but_for_order(const Mark& a, const Mark& b) {
  const Mark one = without_order(a);
  const Mark other = without_order(b);
  return is_as_expected(one, other) && one.links == other.links &&
         one.columns == other.columns;
}

}  // namespace

Faults order_changes_numbers_alone(const ReadPages& one,
                                   const ReadPages& other) {
  Faults faults;
  for (const auto& [name, marks] : one.marks) {
    const auto page = other.marks.find(name);
    if (page == other.marks.end())
      faults.push_back(name + ": not written");
    else if (!std::equal(marks.begin(), marks.end(), page->second.begin(),
                         page->second.end(), is_same_but_for_order))
      faults.push_back(name + ": has other marks");
  }
  if (one.marks.size() != other.marks.size())
    faults.push_back("there are other pages");
  return faults;
}

Faults all_faults(const FinishedRun& run) {
  const ReadPages pages(run);
  std::map<Exception, int> met;
  Faults all;
  for (const Faults& faults :
       {pages_show_their_lines(pages), links_land(pages, met),
        words_that_mean_something_are_marked(pages),
        menus_list_all_references(pages), index_lists_every_unit_once(run),
        units_are_what_lines_open(run)})
    all.insert(all.end(), faults.begin(), faults.end());
  return all;
}
