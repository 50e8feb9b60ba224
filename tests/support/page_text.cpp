#include "tests/support/page_text.h"

#include <fstream>
#include <iterator>

static const std::string page_end = "</body>\n</html>\n";

// Read at the start, because a test may give up the permission to read it.
static const std::string head = [] {
  std::ifstream file(ZELKOR_PAGE_HEAD, std::ios::binary);
  return std::string(std::istreambuf_iterator<char>(file), {});
}();

const std::string& page_head() { return head; }

std::string page_tail(std::time_t time_stamp) {
  return "<hr><small>Generated " + std::string(std::ctime(&time_stamp)) +
         " by <a href=\"https://zelkor.example/\">zelkor</a>, A CASE Tool "
         "from <a href=\"mailto:zelkor@qumbra.example\">Qumbra</a></small>" +
         page_end;
}

bool is_whole_page(const std::string& path) {
  std::string beginning(head.size(), ' ');
  std::string end(page_end.size(), ' ');
  std::ifstream page(path, std::ios::binary);
  page.read(beginning.data(), static_cast<std::streamsize>(head.size()));
  page.seekg(-static_cast<std::streamoff>(end.size()), std::ios::end);
  page.read(end.data(), static_cast<std::streamsize>(end.size()));
  return page && beginning == head && end == page_end;
}

std::string source_page(const std::string& title, const std::string& content,
                        std::time_t time_stamp) {
  return head + "<TITLE>" + title + "</TITLE>\n<H1>" + title +
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

std::string pane_item(const std::string& page, const std::string& path,
                      const std::string& name, int index, int line) {
  return "<a href=\"" + page + "#" + name + "-" + std::to_string(index) +
         "\"><small>" + path + ":" + std::to_string(line) +
         "</small></a><br/>\n";
}

std::string index_menu(const std::string& kind, const std::string& items) {
  return "&nbsp;&nbsp;&nbsp; <a HREF=\"#" + kind + "\">" + kind + "S</a>" +
         menu_opening + items + menu_closing;
}

std::string index_list(const std::string& kind, const std::string& bullets) {
  return "<H2><a NAME=\"" + kind + "\">" + kind +
         " Declarations</a></H2><UL>\n" + bullets + "\n</UL>\n\n";
}
