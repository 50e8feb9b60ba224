#include "html/index_page.h"

#include <cstdio>

#include "analysis/declaration.h"
#include "analysis/keywords.h"
#include "driver/settings.h"
#include "html/markup.h"
#include "html/page_frame.h"

// Calls visit(declaration, index) for every unit of one kind, in the order of
// the registry. The definition index counts units of all kinds, as it does in
// the anchors on the source pages.
template <typename Visitor>
static void visit_units(DecType kind, Visitor visit) {
  std::string previous;
  int index = 0;
  for (const auto& [key, declaration] : Declaration::decs) {
    index = key == previous ? index + 1 : 1;
    previous = key;
    if (declaration->type == kind) visit(*declaration, index);
  }
}

static void write_navigation(const Marker& kind, std::FILE* html) {
  const int entries_per_column = 25;
  put(html, "&nbsp;&nbsp;&nbsp; <a HREF=\"#", kind.name, "\">", kind.name,
      "S</a>");
  begin_menu(html, nullptr);
  int written = 0;
  visit_units(kind.type, [&](const Declaration& declaration, int index) {
    menu_item(html, declaration, index,
              written != 0 && written % entries_per_column == 0);
    ++written;
  });
  end_menu(html);
}

// Deliberate: a name has a bullet only in the list that holds its first
// definition. Each later definition adds only its number, and the second also
// adds a plain "[1]". If the first definition is of another kind, the numbers
// follow the bullet of another name or precede the first bullet.
static void write_list_entry(const Declaration& declaration, int index,
                             std::FILE* html) {
  const auto address = address_of(declaration, index);
  if (index == 1)
    put(html, "\n<LI> <a HREF=\"", address, "\"><b>", declaration.name,
        "</b></a>");
  else
    put(html, index == 2 ? " [1]" : "", " <a HREF=\"", address, "\"><b>[",
        index, "]</b></a>");
}

static void write_list(const Marker& kind, std::FILE* html) {
  put(html, "<H2><a NAME=\"", kind.name, "\">", kind.name,
      " Declarations</a></H2><UL>\n");
  visit_units(kind.type, [&](const Declaration& declaration, int index) {
    write_list_entry(declaration, index, html);
  });
  put(html, "\n</UL>\n\n");
}

void print_tree(const char* name) {
  // Deliberate: always "/" here, whatever `slash` holds.
  const std::string path = html_dir + "/" + name + ".html";
  std::FILE* html = std::fopen(path.c_str(), "w");
  if (html == nullptr) return;

  html_header(html);
  if (verbose > 0) {
    std::printf("Generating HTML index..");
    std::fflush(stdout);
  }
  put(html, "<TITLE>", index_title, "</TITLE>\n\n");
  for (const Marker* kind = Marker::first; kind != nullptr; kind = kind->next)
    write_navigation(*kind, html);
  put(html, "<hr>\n");
  for (const Marker* kind = Marker::first; kind != nullptr; kind = kind->next)
    write_list(*kind, html);
  html_footer(html);
  std::fclose(html);

  if (verbose > 0) {
    std::puts("\nDone!");
    std::fflush(stdout);
  }
}
