#include "tests/properties/properties.h"

#include <algorithm>
#include <map>
#include <optional>

#include "analysis/keywords.h"
#include "driver/settings.h"
#include "tests/support/page_text.h"

namespace {

// The kind of unit that a keyword of unit_kinds opens.
DecType type_of(const std::string& keyword) {
  const Marker* kind = Marker::first;
  while (keyword != kind->name) kind = kind->next;
  return kind->type;
}

std::string upper(std::string text) {
  for (char& c : text)
    if (c >= 'a' && c <= 'z') c = static_cast<char>(c - 'a' + 'A');
  return text;
}

// The characters of a word or name that count.
std::string significant(const std::string& word) { return word.substr(0, 255); }

const char* const word_characters =
    "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789_.";

struct WordAt {
  std::size_t column;
  std::string text;
};

std::vector<WordAt> words_of(const std::string& line) {
  std::vector<WordAt> words;
  std::size_t end = 0;
  for (std::size_t at = 0;
       (at = line.find_first_of(word_characters, end)) != std::string::npos;) {
    end = std::min(line.find_first_not_of(word_characters, at), line.size());
    words.push_back({at, line.substr(at, end - at)});
  }
  return words;
}

std::size_t skip_white(const std::string& line, std::size_t at) {
  return std::min(line.find_first_not_of(" \t\n\v\f\r", at), line.size());
}

struct Opened {
  DecType type;
  std::string name;
};

// The operator of an interface, whose "operator" is at a column.
std::optional<Opened> opened_operator(const std::string& line, std::size_t at) {
  at = skip_white(line, std::min(at + 9, line.size()));
  if (line[at] != '(') return std::nullopt;
  at = skip_white(line, at + 1);
  if (line[at] != '.') return std::nullopt;
  const std::size_t end = std::min(line.find('.', at + 1), line.size());
  return Opened{DT_INTERFACE, significant(line.substr(at, end + 1 - at))};
}

// The unit that a line opens, if any.
std::optional<Opened> unit_opened_by(const std::string& line) {
  const std::vector<WordAt> words = words_of(line);
  if (words.empty() || words[0].column != skip_white(line, 0)) return {};
  const auto kind =
      std::find(unit_kinds.begin(), unit_kinds.end(), upper(words[0].text));
  if (kind == unit_kinds.end()) return {};
  const DecType type = type_of(*kind);
  const std::size_t next =
      skip_white(line, words[0].column + words[0].text.size());
  const std::string name = words.size() == 1 ? "" : words[1].text;
  if (type == DT_TYPE && line[next] == '(') return {};
  if (type == DT_MODULE && upper(name) == "PROCEDURE") return {};
  if (type == DT_INTERFACE && upper(name) == "ASSIGNMENT") return {};
  if (type == DT_INTERFACE && upper(name) == "OPERATOR")
    return opened_operator(line, next);
  return Opened{type, significant(name)};
}

// The text of the file in a slot; nothing if the file is missing. A directory
// reads as an empty file.
std::optional<std::string> source_of(const Tree& tree, std::size_t slot) {
  const auto source = tree.sources.find(tree.list[slot]);
  if (source == tree.sources.end()) return std::nullopt;
  return source->second;
}

std::vector<Unit> opened_units(const Tree& tree) {
  std::vector<Unit> units;
  for (std::size_t slot = 0; slot < tree.list.size(); ++slot) {
    const auto pieces = pieces_of(source_of(tree, slot).value_or(""), 1024);
    // A piece that begins with a NUL ends the file; the last one is ignored.
    for (std::size_t i = 0; i + 1 < pieces.size() && !pieces[i].text.empty();
         ++i)
      if (const auto opened = unit_opened_by(blanked(pieces[i].text)))
        units.push_back({opened->type,
                         upper(opened->name),
                         opened->name,
                         slot,
                         static_cast<int>(i) + 1,
                         {}});
  }
  std::stable_sort(units.begin(), units.end(),
                   [](const Unit& a, const Unit& b) { return a.key < b.key; });
  return units;
}

// A word of a line of the file in a slot.
struct Place {
  std::size_t slot;
  int line;
  WordAt word;
};

std::vector<std::string> shown_lines(const std::string& source) {
  std::vector<std::string> lines;
  for (const Piece& piece : pieces_of(source, 4096))
    if (!piece.met_end) lines.push_back(piece.text);
  return lines;
}

std::vector<Place> places_of(const Tree& tree, std::size_t slot) {
  std::vector<Place> places;
  int number = 0;
  for (std::string& line : shown_lines(*source_of(tree, slot))) {
    ++number;
    if ((tree.style & HIDE_STRINGS_AND_COMMENTS) != 0) line = blanked(line);
    for (const WordAt& word : words_of(line))
      places.push_back({slot, number, word});
  }
  return places;
}

// Units by key, in registry order.
template <typename AnyUnit>
class Namesakes {
 public:
  template <typename Units>
  explicit Namesakes(Units& units) {
    for (auto& unit : units) by_key[unit.key].push_back(&unit);
  }

  const std::vector<AnyUnit*>& of(const Place& place) const {
    static const std::vector<AnyUnit*> none;
    const auto found = by_key.find(upper(significant(place.word.text)));
    return found == by_key.end() ? none : found->second;
  }

  // The definition index of the unit that is declared at a place, or 0.
  int index_at(const Place& place) const {
    int index = 0;
    int found = 0;
    for (const AnyUnit* unit : of(place)) {
      ++index;
      if (unit->slot == place.slot && unit->line == place.line) found = index;
    }
    return found;
  }

 private:
  std::map<std::string, std::vector<AnyUnit*>> by_key;
};

class ExpectedPages {
 public:
  ExpectedPages(const FinishedRun& finished,
                const std::vector<Unit>& units_then)
      : run(finished), tree(*run.tree), units(units_then), namesakes(units) {
    for (std::size_t slot = 0; slot < tree.list.size(); ++slot) {
      page_of[tree.list[slot]] = run.page_names[slot];
    }
  }

  // Files can share a page; the last one in the list overwrites the others.
  Pages pages() const {
    Pages found;
    for (std::size_t slot = 0; slot < tree.list.size(); ++slot)
      if (source_of(tree, slot)) {
        const std::string& path = tree.list[slot];
        found[run.page_names[slot]] = source_page(
            path.substr(path.rfind('/') + 1), content(slot), date_time);
      }
    if ((tree.style & WRITE_INDEX) != 0) found["index.html"] = index();
    return found;
  }

 private:
  std::string content(std::size_t slot) const {
    const std::vector<std::string> lines = shown_lines(*source_of(tree, slot));
    const std::vector<Place> places = places_of(tree, slot);
    auto place = places.begin();
    std::string text;
    for (std::size_t i = 0; i < lines.size(); ++i) {
      std::size_t written = 0;
      for (; place != places.end() && place->line == static_cast<int>(i) + 1;
           ++place) {
        text += lines[i].substr(written, place->word.column - written);
        text += marked(*place);
        written = place->word.column + place->word.text.size();
      }
      text += lines[i].substr(written);
    }
    return text;
  }

  std::string marked(const Place& place) const {
    const std::string& word = place.word.text;
    const std::vector<const Unit*>& found = namesakes.of(place);
    if (found.empty()) return highlighted(word);
    if (const int index = namesakes.index_at(place))
      return "<a NAME=\"" + significant(word) + "-" + std::to_string(index) +
             "\"><b>" + word + "</b></a>" + menu(*found[0]);
    const std::string anchor =
        "<a NAME=\"line" + std::to_string(place.line) + "\"></a>";
    if (found.size() == 1)
      return anchor + "<a HREF=\"" + run.page_names[found[0]->slot] + "#" +
             found[0]->name + "-1\"><b>" + word + "</b></a>";
    std::string items;
    for (std::size_t i = 0; i < found.size(); ++i)
      items +=
          pane_item(run.page_names[found[i]->slot], tree.list[found[i]->slot],
                    found[i]->name, static_cast<int>(i) + 1, found[i]->line);
    return anchor + definitions_pane(word, items);
  }

  std::string highlighted(const std::string& word) const {
    if (isSyntax(word.c_str()) == nullptr) return word;
    const bool bold = (tree.style & BOLD_KEYWORDS) != 0;
    const bool italic = (tree.style & ITALIC_KEYWORDS) != 0;
    return std::string(bold ? "<b>" : "") + (italic ? "<i>" : "") + word +
           (italic ? "</i>" : "") + (bold ? "</b>" : "");
  }

  std::string menu(const Unit& unit) const {
    const std::size_t n = unit.callers.size();
    const std::size_t longest = n < 14   ? n + 2
                                : n < 24 ? (n + 2) / 2
                                         : (n + 3) / 3;
    std::string items;
    std::size_t count = 0;
    for (const auto& [path, line] : unit.callers) {
      if (count > 0 && count % longest == 0) items += new_column;
      items += caller(page_of.at(path), path, line);
      ++count;
    }
    return callers_menu(items);
  }

  std::string index() const {
    std::string menus;
    std::string lists;
    for (const std::string& keyword : unit_kinds) {
      std::string items;
      std::string bullets;
      add_entries(type_of(keyword), items, bullets);
      menus += index_menu(keyword, items);
      lists += index_list(keyword, bullets);
    }
    return page_head() +
           "<TITLE>Hyperlinked Fortran Source Tree by Qumbra</TITLE>\n\n" +
           menus + "<hr>\n" + lists + page_tail(date_time);
  }

  void add_entries(DecType type, std::string& items,
                   std::string& bullets) const {
    int index = 0;
    int count = 0;
    const std::string* last = nullptr;
    for (const Unit& unit : units) {
      index = last != nullptr && *last == unit.key ? index + 1 : 1;
      last = &unit.key;
      if (unit.type != type) continue;
      const std::string number = std::to_string(index);
      const std::string address =
          run.page_names[unit.slot] + "#" + unit.name + "-" + number;
      if (count > 0 && count % 25 == 0) items += new_column;
      ++count;
      items += "<a href=\"" + address + "\"><small>" + unit.name +
               "</small></a><br/>\n";
      bullets += (index == 1   ? "\n<LI> "
                  : index == 2 ? " [1] "
                               : " ") +
                 ("<a HREF=\"" + address + "\"><b>") +
                 (index == 1 ? unit.name : "[" + number + "]") + "</b></a>";
    }
  }

  const FinishedRun& run;
  const Tree& tree;
  const std::vector<Unit>& units;
  Namesakes<const Unit> namesakes;
  std::map<std::string, std::string> page_of;
};

// The first difference between two texts.
std::string difference(const std::string& expected,
                       const std::string& written) {
  const auto [one, other] = std::mismatch(expected.begin(), expected.end(),
                                          written.begin(), written.end());
  const auto at = static_cast<std::size_t>(one - expected.begin());
  return "from byte " + std::to_string(at) +
         " on\n  expected: " + expected.substr(at, 100) +
         "\n  written:  " + written.substr(at, 100);
}

}  // namespace

std::vector<Unit> units_of(const Tree& tree) {
  std::vector<Unit> units = opened_units(tree);
  const Namesakes<Unit> namesakes(units);
  for (std::size_t slot = 0; slot < tree.list.size(); ++slot)
    if (source_of(tree, slot))
      for (const Place& place : places_of(tree, slot))
        if (namesakes.index_at(place) == 0)
          for (Unit* unit : namesakes.of(place))
            unit->callers.emplace(tree.list[slot], place.line);
  return units;
}

std::vector<std::string> faults_of(const FinishedRun& run) {
  std::vector<std::string> faults;
  const std::vector<Unit> units = units_of(*run.tree);
  const auto [wanted, found] = std::mismatch(
      units.begin(), units.end(), run.units.begin(), run.units.end());
  if (wanted != units.end())
    faults.push_back("unit \"" + wanted->name +
                     "\" is not registered like this");
  else if (found != run.units.end())
    faults.push_back("unit \"" + found->name + "\" should not be there");

  const Pages expected = ExpectedPages(run, units).pages();
  for (const auto& [name, text] : expected) {
    const auto page = run.pages.find(name);
    if (page == run.pages.end())
      faults.push_back(name + ": not written");
    else if (page->second != text)
      faults.push_back(name + ": " + difference(text, page->second));
  }
  for (const auto& [name, text] : run.pages)
    if (expected.count(name) == 0)
      faults.push_back(name + ": should not be there");
  return faults;
}
