// Words are found in the scanned text of a line; the page gets the raw text.
// The text between marked words is written when the next marked word or the end
// of the line is reached. `written` is the column up to which the raw line has
// been written.

#include "html/source_page.h"

#include <memory>

#include "analysis/keywords.h"
#include "analysis/name_index.h"
#include "analysis/source_lines.h"
#include "analysis/words.h"
#include "driver/assertion.h"
#include "driver/settings.h"
#include "html/block_cache.h"
#include "html/markup.h"
#include "html/page_frame.h"
#include "html/page_names.h"

static std::string_view columns(const char* line, int start, int end) {
  return {line + start, static_cast<std::size_t>(end - start)};
}

// Marks a reference: a link to the unit of its name, or a pane that lists the
// units if there are several.
static void write_reference(std::string_view word, int line_number,
                            const Namesakes& units, std::FILE* html) {
  put(html, "<a NAME=\"", LineAnchor{line_number}, "\"></a>");
  if (units.count == 1) {
    put(html, "<a HREF=\"", address_of(*units.first->second, 1), "\"><b>", word,
        "</b></a>");
    return;
  }
  static BlockCache panes;
  open_multiref(html);
  put(html, word);
  const auto items = static_cast<std::size_t>(units.count);
  panes.write(units, items, html, [&units](std::FILE* pane) {
    begin_multiref(pane, "Definitions:");
    auto unit = units.first;
    for (int index = 1; index <= units.count; ++index, ++unit)
      multiref_item(pane, *unit->second, index);
    close_multiref(pane);
  });
}

// The number of entries in one column of a menu of n entries.
static int entries_per_column(int n) {
  if (n < 14) return n + 2;
  if (n < 24) return (n + 2) / 2;
  return (n + 3) / 3;
}

static void write_references(const Callers& callers, std::FILE* html) {
  begin_menu(html, "Referenced By...");
  const int per_column = entries_per_column(static_cast<int>(callers.size()));
  int written = 0;
  for (const Calling& reference : callers) {
    menu_item(html, reference, written != 0 && written % per_column == 0);
    ++written;
  }
  end_menu(html);
}

// Marks a definition. Deliberate: all definitions of one name show the
// references to the first of them.
static void write_definition(std::string_view word, const UnitAnchor& anchor,
                             const Namesakes& units, std::FILE* html) {
  put(html, "<a NAME=\"", anchor, "\"><b>", word, "</b></a>");
  const Callers& callers = units.first->second->callers;
  if (units.count == 1) {
    write_references(callers, html);
    return;
  }
  static BlockCache menus;
  menus.write(units, callers.size(), html,
              [&callers](std::FILE* menu) { write_references(callers, menu); });
}

static void write_line(const SourceLines& source, const NameIndex& names,
                       char** file, std::FILE* html) {
  const bool highlights = (html_style & (LEVEL_1 | LEVEL_2 | LEVEL_3)) != 0;
  const char* const raw = source.raw().data();
  int written = 0;
  for (Word word; find_next(source.scanned(), word);) {
    const Meaning meaning = names.look_up(word, file, source.number());
    const bool is_keyword = meaning.units == nullptr && highlights &&
                            isSyntax(word.name.data()) != nullptr;
    if (meaning.units == nullptr && !is_keyword) continue;

    put(html, columns(raw, written, word.start));
    written = word.end;
    const std::string_view text = columns(raw, word.start, word.end);
    if (is_keyword)
      print_syntax(raw, word.start, word.end, html);
    else if (meaning.is_reference())
      write_reference(text, source.number(), *meaning.units, html);
    else
      write_definition(text, {word.name, meaning.declared}, *meaning.units,
                       html);
  }
  put(html, source.raw().substr(static_cast<std::size_t>(written)));
}

void print_syntax(const char* line, int start, int end, std::FILE* html) {
  const bool bold = (html_style & BOLD_KEYWORDS) != 0;
  const bool italic = (html_style & ITALIC_KEYWORDS) != 0;
  put(html, bold ? "<b>" : "", italic ? "<i>" : "", columns(line, start, end),
      italic ? "</i>" : "", bold ? "</b>" : "");
}

void print_links(char** file, bool fixed_form) {
  SourceLines source(*file, fixed_form);
  if (!source.is_open()) return;
  std::FILE* html = std::fopen(HTML_NAME(file), "w");
  if (html == nullptr) {
    // Deliberate: an output directory in which no page can be created is a
    // broken invariant, not an error to report.
    assertion_failed("html!=__null", "zelkor",
                     "void print_links(char**, bool)");
  }

  const std::size_t size = 1 << 16;
  const std::unique_ptr<char[]> buffer(new char[size]);
  std::setvbuf(html, buffer.get(), _IOFBF, size);
  html_header(html);
  if (verbose > 0) {
    std::printf("Generating HTML for %s...", *file);
    std::fflush(stdout);
  }
  // The head is closed already, so the title is part of the body.
  const char* title = file_part(file);
  put(html, "<TITLE>", title, "</TITLE>\n<H1>", title, "</H1>\n<code> <pre>\n");

  const NameIndex& names = NameIndex::current();
  while (source.next()) write_line(source, names, file, html);

  put(html, "</pre> </code>\n");
  html_footer(html);
  std::fclose(html);
  if (verbose > 0) {
    std::puts("OK");
    std::fflush(stdout);
  }
}
