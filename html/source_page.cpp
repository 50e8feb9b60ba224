// Words are found in the scanned text of a line, and everything that reaches
// the page is copied from its raw text. The text between marked words is
// written only when the next mark or the end of the line is reached: `written`
// is the column up to which the raw line stands on the page.

#include "html/source_page.h"

#include "analysis/calling.h"
#include "analysis/declarations.h"
#include "analysis/keywords.h"
#include "analysis/source_lines.h"
#include "analysis/words.h"
#include "driver/assertion.h"
#include "driver/settings.h"
#include "html/block_cache.h"
#include "html/page_frame.h"
#include "html/page_names.h"

using Entry = Declaration::Registry::iterator;

static void write_columns(const char* line, int start, int end,
                          std::FILE* html) {
  put(html, {line + start, static_cast<std::size_t>(end - start)});
}

static void write_word(const char* line, const Word& word, std::FILE* html) {
  write_columns(line, word.start, word.end, html);
}

// Marks a reference to the `count` units of one name, the first of which is
// `entry`: one unit is linked, several are listed in a pane.
static void write_reference(const char* line, const Word& word, int line_number,
                            Entry entry, int count, std::FILE* html) {
  put(html, "<a NAME=\"line");
  put(html, line_number);
  put(html, "\"></a>");
  const Declaration& first = *entry->second;
  if (count == 1) {
    put(html, "<a HREF=\"");
    put(html, HTML_REF(first.file));
    put(html, "#");
    put(html, first.name);
    put(html, "-1\"><b>");
    write_word(line, word, html);
    put(html, "</b></a>");
    return;
  }
  static BlockCache panes;
  open_multiref(html);
  write_word(line, word, html);
  const auto units = static_cast<std::size_t>(count);
  panes.write(first, units, units, html, [&](std::FILE* pane) {
    begin_multiref(pane, "Definitions:");
    for (int index = 1; index <= count; ++index, ++entry)
      multiref_item(pane, *entry->second, index);
    close_multiref(pane);
  });
}

// The number of menu entries in one column, of n in all.
static int entries_per_column(int n) {
  if (n < 14) return n + 2;
  if (n < 24) return (n + 2) / 2;
  return (n + 3) / 3;
}

static void write_callers_menu(const Callers& callers, std::FILE* html) {
  begin_menu(html, "Referenced By...");
  const int per_column = entries_per_column(static_cast<int>(callers.size()));
  int written = 0;
  for (const Calling& calling : callers) {
    menu_item(html, calling, written != 0 && written % per_column == 0);
    ++written;
  }
  end_menu(html);
}

// Marks a definition. Deliberate: all definitions of one name show the callers
// of the first of them, which is `first`.
static void write_definition(const char* line, const Word& word,
                             const char* text, int index, int count,
                             const Declaration& first, std::FILE* html) {
  std::fprintf(html, "<a NAME=\"%s-%d\"><b>", text, index);
  write_word(line, word, html);
  std::fputs("</b></a>", html);
  if (count == 1) {
    write_callers_menu(first.callers, html);
    return;
  }
  static BlockCache menus;
  menus.write(
      first, static_cast<std::size_t>(count), first.callers.size(), html,
      [&](std::FILE* menu) { write_callers_menu(first.callers, menu); });
}

// A word that names nothing is dismissed by its hash, unless keywords are to be
// highlighted.
static void write_line(const SourceLines& source, char** file,
                       std::FILE* html) {
  const bool highlights = (html_style & (LEVEL_1 | LEVEL_2 | LEVEL_3)) != 0;
  const char* const raw = source.raw().data();
  int written = 0;
  for (Word word; next_word(source.scanned(), word);) {
    if (!highlights && !may_be_declared(word.hash)) continue;
    char text[word_size];
    copy_word(source.scanned(), word, text);
    int self = 0;
    int count = 0;
    const Entry entry = isDeclaration(text, file, source.number(), self, count);
    const bool declared = count > 0;
    if (!declared && isSyntax(text) == nullptr) continue;

    write_columns(raw, written, word.start, html);
    written = word.end;
    if (!declared)
      print_syntax(raw, word.start, word.end, html);
    else if (self == 0)
      write_reference(raw, word, source.number(), entry, count, html);
    else
      write_definition(raw, word, text, self, count, *entry->second, html);
  }
  write_columns(raw, written, static_cast<int>(source.raw().size()), html);
}

void print_syntax(const char* line, int start, int end, std::FILE* html) {
  const bool bold = (html_style & BOLD_KEYWORDS) != 0;
  const bool italic = (html_style & ITALIC_KEYWORDS) != 0;
  if (bold) std::fputs("<b>", html);
  if (italic) std::fputs("<i>", html);
  write_columns(line, start, end, html);
  if (italic) std::fputs("</i>", html);
  if (bold) std::fputs("</b>", html);
}

void print_links(char** file, bool fixed_form) {
  SourceLines source(*file, fixed_form);
  if (!source.is_open()) return;
  std::FILE* html = std::fopen(HTML_NAME(file), "w");
  if (html == nullptr) {
    // Deliberate: an output directory that takes no page is a broken invariant,
    // not an error to report.
    assertion_failed("html!=__null", "zelkor",
                     "void print_links(char**, bool)");
  }

  static char buffer[1 << 16];
  std::setvbuf(html, buffer, _IOFBF, sizeof buffer);
  html_header(html);
  if (verbose > 0) {
    std::printf("Generating HTML for %s...", *file);
    std::fflush(stdout);
  }
  // The head is closed already, so the title stands inside the body.
  const char* title = file_part(file);
  std::fprintf(html, "<TITLE>%s</TITLE>\n", title);
  std::fprintf(html, "<H1>%s</H1>\n<code> <pre>\n", title);

  while (source.next()) write_line(source, file, html);

  std::fputs("</pre> </code>\n", html);
  html_footer(html);
  std::fclose(html);
  if (verbose > 0) {
    std::puts("OK");
    std::fflush(stdout);
  }
}
