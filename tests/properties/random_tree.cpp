#include "tests/properties/random_tree.h"

#include <algorithm>
#include <utility>

#include "driver/settings.h"

namespace {

const std::vector<std::string> paths = {
    // Equal and adjacent hashes.
    "ab.f90",
    "ba.f90",
    "d/ab.f90",
    "ab/d.f90",
    "ac.f90",
    "bb.f90",
    "aa.f90",
    // Different stems and numbers that share the page a884636.html.
    "xxxxxxxxxxxxxxxxW/a88.f90",
    "cd/a.f90",
    // Several paths of one file, and of files with one name.
    "a.f90",
    "./a.f90",
    "d/a.f90",
    "d//a.f90",
    "d/../a.f90",
    // Points.
    "README",
    "x.old.f90",
    ".f90",
    "d/.setup.f90",
    "d.d/plain",
    "end.",
    "..x",
    // Characters with a special meaning elsewhere.
    "50%d%s%n.f90",
    "me@home.f90",
    "r&d.f90",
    "c#.f90",
    "a b/c d.f90",
    "it's.f90",
    "q\"q\">.f90",
    "<b>.f90",
    "h\xe9\xff.f90",
    "l\nf.f90",
    "back\\slash.f90",
    "?x=1.f90",
};

// Few names, so that many are equal.
const std::vector<std::string> names = {
    "solve",   "Solve",  "SOLVE",     "point",      "a.b",       ".cross.",
    ".CROSS.", "PUBLIC", "type",      "Type",       "interface", "if",
    "do",      "end",    "procedure", "operator",   "9",         "_",
    ".",       "..",     "x%y",       "assignment", "allocate",  "line1",
};

const std::vector<std::string> keywords = {
    "program", "module",    "subroutine", "function", "interface",  "type",
    "MODULE",  "Interface", "TYPE",       "Function", "SUBROUTINE",
};

const std::vector<std::string> other_words = {
    "if",   "then", "ELSE",   "elseif", "endif",    "do",         "while",
    "Case", "call", "select", "until",  "continue", "enddo",      "end",
    "use",  "x",    "y1",     "double", "allocate", "deallocate", "contains",
};

const std::vector<std::string> separators = {
    " ", "  ", "\t", ",",  "(",  ")", "::",   "=",    "+",    "-",  "%",
    "&", "'",  "\"", "!",  ";",  "<", ">",    "#",    "@",    "%s", "%n",
    "/", "\r", "\v", "\f", "\\", "~", "\xe9", "\xff", "\xa0", "$",  "*",
};

const std::vector<std::string> operator_openings = {
    "operator (", "operator(",  "operator  ( ",  "OPERATOR\t(\f",
    "operator",   ", operator", ":: operator (", "operator (,",
};

const std::vector<std::string> like_markup = {
    "<a NAME=\"line3\"></a>", "<b>if</b>",      "</a>", "&nbsp;", "<br/>",
    "<a NAME=\"solve-1\">",   "</pre> </code>", "<b>",  "<i>",    "%d",
    "<span id=\"nav\">",      "</b></a>",
};

const std::vector<std::size_t> odd_lengths = {
    1021, 1022, 1023, 1024, 1025, 2046, 2047, 4093,
    4094, 4095, 4096, 4097, 8190, 8191, 8192,
};

std::string long_name(Dice& dice) {
  static const std::vector<std::size_t> lengths = {254, 255, 256, 257, 300};
  const char c = dice.percent(50) ? 'n' : 'N';
  std::string name(dice.one_of(lengths), c);
  // Two names that differ only in the order of two characters 64 apart.
  if (dice.percent(50)) {
    name.resize(65);
    name[dice.percent(50) ? 0 : 64] = '_';
  }
  if (dice.percent(20)) name.front() = '.';
  if (dice.percent(20)) name.back() = '.';
  return name;
}

std::string some_name(Dice& dice) {
  return dice.percent(6) ? long_name(dice) : dice.one_of(names);
}

std::string soup(Dice& dice) {
  std::string text;
  for (std::size_t i = dice.below(9); i > 0; --i) {
    const std::size_t kind = dice.below(100);
    text += kind < 35   ? some_name(dice)
            : kind < 50 ? dice.one_of(other_words)
            : kind < 55 ? dice.one_of(keywords)
            : kind < 58 ? dice.one_of(like_markup)
                        : dice.one_of(separators);
  }
  return text;
}

std::string opening(Dice& dice) {
  static const std::vector<std::string> before = {"", "", "  ", "\t", "\f\v"};
  static const std::vector<std::string> between = {" ",  " ", " ",    "  ",
                                                   "\t", "",  " :: ", ", "};
  std::string line = dice.one_of(before);
  const std::size_t kind = dice.below(100);
  if (kind < 60)
    line += dice.one_of(keywords) + dice.one_of(between) + some_name(dice);
  else if (kind < 65)
    line += "interface";
  else if (kind < 80)
    line += "interface " + dice.one_of(operator_openings) + some_name(dice) +
            (dice.percent(70) ? ")" : "");
  else if (kind < 83)
    line += "interface operator (." + soup(dice) + ".)";
  else if (kind < 86)
    line += "module procedure " + some_name(dice);
  else if (kind < 89)
    line += "interface assignment(=)";
  else if (kind < 92)
    line += "type(" + some_name(dice) + ") :: " + some_name(dice);
  else if (kind < 96)
    line += "type, PUBLIC :: " + some_name(dice);
  else
    line += dice.one_of(keywords);
  return line + (dice.percent(30) ? "(a, b)" : "");
}

// Extends a line to the length of a buffer, by blanks or by one word, at its
// beginning or at its end.
std::string stretched(Dice& dice, std::string line) {
  const std::size_t length = dice.one_of(odd_lengths);
  if (line.size() >= length) return line;
  const char filler = dice.percent(70) ? ' ' : 'w';
  const std::size_t at = dice.percent(50) ? 0 : line.size();
  return line.insert(at, length - line.size(), filler);
}

std::string random_line(Dice& dice) {
  const std::size_t kind = dice.below(100);
  std::string line =
      kind < 30   ? opening(dice)
      : kind < 55 ? "  call " + some_name(dice) + "(x)"
      : kind < 62 ? "end " + dice.one_of(keywords) + " " + some_name(dice)
      : kind < 67 ? "! " + soup(dice)
      : kind < 72 ? "print *, \"" + soup(dice) + "\""
      : kind < 76 ? ""
                  : soup(dice);
  if (dice.percent(4)) line += " &";
  if (dice.percent(3)) line = stretched(dice, line);
  return line;
}

std::string random_text(Dice& dice) {
  static const std::vector<std::string> line_ends = {"\n", "\n", "\n", "\r\n",
                                                     "\r"};
  static const std::vector<std::size_t> counts = {0, 1, 2, 5, 15, 40, 90};
  const std::string& line_end = dice.one_of(line_ends);
  const bool is_mixed = dice.percent(10);
  std::string text;
  for (std::size_t i = dice.one_of(counts); i > 0; --i)
    text += random_line(dice) + (is_mixed ? dice.one_of(line_ends) : line_end);
  if (dice.percent(25)) text += random_line(dice);
  // Many units of one kind.
  if (dice.percent(3))
    for (std::size_t i = 0; i < 60; ++i)
      text += "function f" + std::to_string(dice.below(50)) + line_end;
  if (dice.percent(5))
    for (std::size_t i = 0; i < 3 && !text.empty(); ++i)
      text[dice.below(text.size())] = '\0';
  return text;
}

}  // namespace

Tree random_tree(Dice& dice) {
  static const std::vector<std::uint32_t> levels = {0, LEVEL_NONE, LEVEL_1,
                                                    LEVEL_2, LEVEL_3};
  Tree tree;
  for (std::size_t i = 1 + dice.below(8); i > 0; --i)
    tree.list.push_back(dice.one_of(paths));
  if (dice.percent(10)) {
    tree.list.emplace_back("xxxxxxxxxxxxxxxxW/a88.f90");
    tree.list.emplace_back("cd/a.f90");
  }
  if (dice.percent(10)) tree.list.emplace_back("missing.f90");
  if (dice.percent(10)) tree.list.emplace_back("directory/");
  std::sort(tree.list.begin(), tree.list.end());
  tree.list.erase(std::unique(tree.list.begin(), tree.list.end()),
                  tree.list.end());
  dice.shuffle(tree.list);
  if (dice.percent(20)) tree.list.push_back(tree.list.front());
  for (const std::string& path : tree.list)
    if (path != "missing.f90") tree.sources[path] = random_text(dice);
  if (tree.sources.count("directory/") > 0) tree.sources["directory/"] = "";
  // Several paths of one file have one text.
  const std::pair<const char*, const char*> same_files[] = {
      {"./a.f90", "a.f90"}, {"d/../a.f90", "a.f90"}, {"d//a.f90", "d/a.f90"}};
  for (const auto& [other, one] : same_files)
    if (tree.sources.count(other) > 0) tree.sources[one] = tree.sources[other];
  for (const auto& [other, one] : same_files)
    if (tree.sources.count(other) > 0) tree.sources[other] = tree.sources[one];

  if (dice.percent(50)) tree.style |= HIDE_STRINGS_AND_COMMENTS;
  if (dice.percent(90)) tree.style |= WRITE_INDEX;
  if (dice.percent(70)) tree.style |= BOLD_KEYWORDS;
  if (dice.percent(30)) tree.style |= ITALIC_KEYWORDS;
  tree.style |= dice.one_of(levels);
  return tree;
}
