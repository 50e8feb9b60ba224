#include "tests/support/page_text.h"

#include <vector>

namespace {

const std::vector<std::string> notes = {
    "'span' does not break a line, while 'div' does",
    "z-index:1->2; drops background [mac/mozilla]",
    ("display:none->block; instead of left:-999->auto;"
     "  also drops background [mac/mozilla]"),
    "leave position: absolute  otherwise it is not overlayed",
    "use '>' to restrict to only the current block",
};

struct Rule {
  std::string selector;
  std::vector<std::string> declarations;
};

const std::string relative_to_me =
    "position: relative; /* so popup's absolute will be relative to me */";
const std::string narrowest = "width:1px; /* force narrowest possible*/";
const std::string border = "border-spacing: 5px; border: thin solid black;";

// clang-format off
const std::vector<Rule> rules = {
    {"img", {"position: absolute;", "left: 0px;"}},
    {"span.popup", {"z-index:1;", relative_to_me}},
    {"span.popup table.pane",
     {"z-index:1;", "position: absolute;", "left: -999em;", narrowest, border,
      "background: #FFD;"}},
    {"span.popup:hover > table.pane", {"left: 2;", "z-index:1000;"}},
    {"span.popup:hover > table.pane a", {"color: #00E;"}},
    {"b.multiref",
     {"color: #00E; text-decoration:underline;", relative_to_me}},
    {"b.multiref table.pane",
     {"position: absolute;", "left: -999em;", narrowest, border,
      "background: #FFD;"}},
    {"b.multiref:hover > table.pane", {"z-index:1000;", "left: 2;"}},
    {"b.multiref:hover > table.pane a", {"color: #00E;"}},
};
// clang-format on

}  // namespace

std::string page_head() {
  const std::string indent(8, ' ');
  std::string head = "<html>\n<head>\n<style type=\"text/css\">\n";
  for (const std::string& note : notes) head += indent + "/* " + note + " */\n";
  for (const Rule& rule : rules) {
    head += indent + "#nav " + rule.selector + " {\n";
    for (const std::string& declaration : rule.declarations)
      head += indent + "  " + declaration + "\n";
    head += indent + "}\n";
  }
  return head + "</style>\n</head>\n<body>\n";
}

std::string page_tail(std::time_t time_stamp) {
  char date[32];
  std::strftime(date, sizeof date, "%a %b %e %H:%M:%S %Y",
                std::gmtime(&time_stamp));
  return "<hr><small>Generated " + std::string(date) +
         "\n by <a href=\"https://zelkor.example/\">zelkor</a>, A CASE Tool "
         "from <a href=\"mailto:zelkor@qumbra.example\">Qumbra</a></small>"
         "</body>\n</html>\n";
}

std::string source_page(const std::string& title, const std::string& content,
                        std::time_t time_stamp) {
  return page_head() + "<TITLE>" + title + "</TITLE>\n<H1>" + title +
         "</H1>\n<code> <pre>\n" + content + "</pre> </code>\n" +
         page_tail(time_stamp);
}

std::string callers_menu(const std::string& items) {
  return menu_opening + "Referenced By...\n" + items + menu_closing;
}

std::string caller(const std::string& page, const std::string& path, int line) {
  const std::string number = std::to_string(line);
  return "<a href=\"" + page + "#line" + number + "\">" + path +
         "&nbsp;:&nbsp;" + number + "</a><br/>\n";
}

std::string definitions_pane(const std::string& word,
                             const std::string& items) {
  return multiref_opening + word + pane_opening +
         "<small>Definitions:</small>\n" + items + multiref_closing;
}
