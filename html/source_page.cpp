// Words are found in the scanned text of a line, and everything that reaches
// the page is copied from its raw text. The text between marked words is
// written only when the next mark or the end of the line is reached: `written`
// is the column up to which the raw line stands on the page.

#include "html/source_page.h"

#include <set>

#include "analysis/calling.h"
#include "analysis/declarations.h"
#include "analysis/keywords.h"
#include "analysis/source_lines.h"
#include "analysis/words.h"
#include "driver/assertion.h"
#include "driver/settings.h"
#include "html/page_frame.h"
#include "html/page_names.h"

using Entry = Declaration::Registry::iterator;

static void write_columns(const char* line, int start, int end,
                          std::FILE* html) {
  std::fwrite(line + start, 1, static_cast<std::size_t>(end - start), html);
}

static void write_word(const char* line, const Word& word, std::FILE* html) {
  write_columns(line, word.start, word.end, html);
}

// Marks a reference to the `count` units of one name, the first of which is
// `entry`: one unit is linked, several are listed in a pane.
static void write_reference(const char* line, const Word& word, int line_number,
                            Entry entry, int count, std::FILE* html) {
  std::fprintf(html, "<a NAME=\"line%d\"></a>", line_number);
  if (count == 1) {
    const Declaration& declaration = *entry->second;
    std::fprintf(html, "<a HREF=\"%s#%s-1\"><b>", HTML_REF(declaration.file),
                 declaration.name);
    write_word(line, word, html);
    std::fputs("</b></a>", html);
    return;
  }
  open_multiref(html);
  write_word(line, word, html);
  begin_multiref(html, "Definitions:");
  for (int index = 1; index <= count; ++index, ++entry)
    multiref_item(html, *entry->second, index);
  close_multiref(html);
}

// The number of menu entries in one column, of n in all.
static int entries_per_column(int n) {
  if (n < 14) return n + 2;
  if (n < 24) return (n + 2) / 2;
  return (n + 3) / 3;
}

static void write_callers_menu(const std::set<Calling>& callers,
                               std::FILE* html) {
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
static void write_definition(const char* line, const Word& word, int index,
                             const Declaration& first, std::FILE* html) {
  std::fprintf(html, "<a NAME=\"%s-%d\"><b>", word.text, index);
  write_word(line, word, html);
  std::fputs("</b></a>", html);
  write_callers_menu(first.callers, html);
}

static void write_line(const SourceLine& line, char** file, int line_number,
                       std::FILE* html) {
  int written = 0;
  for (Word word; next_word(line.scanned, word);) {
    int self = 0;
    int count = 0;
    const Entry entry =
        isDeclaration(word.text, file, line_number, self, count);
    const bool declared = count > 0;
    if (!declared && isSyntax(word.text) == nullptr) continue;

    write_columns(line.raw, written, word.start, html);
    written = word.end;
    if (!declared)
      print_syntax(line.raw, word.start, word.end, html);
    else if (self == 0)
      write_reference(line.raw, word, line_number, entry, count, html);
    else
      write_definition(line.raw, word, self, *entry->second, html);
  }
  std::fputs(line.raw + written, html);
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
  std::FILE* source = std::fopen(*file, "r");
  if (source == nullptr) return;
  std::FILE* html = std::fopen(HTML_NAME(file), "w");
  if (html == nullptr) {
    // Deliberate: an output directory that takes no page is a broken invariant,
    // not an error to report.
    assertion_failed("html!=__null", "zelkor",
                     "void print_links(char**, bool)");
  }

  html_header(html);
  if (verbose > 0) {
    std::printf("Generating HTML for %s...", *file);
    std::fflush(stdout);
  }
  // The head is closed already, so the title stands inside the body.
  const char* title = file_part(file);
  std::fprintf(html, "<TITLE>%s</TITLE>\n", title);
  std::fprintf(html, "<H1>%s</H1>\n<code> <pre>\n", title);

  SourceLine line;
  for (int line_number = 1; read_source_line(source, fixed_form, line);
       ++line_number)
    write_line(line, file, line_number, html);

  std::fclose(source);
  std::fputs("</pre> </code>\n", html);
  html_footer(html);
  std::fclose(html);
  if (verbose > 0) {
    std::puts("OK");
    std::fflush(stdout);
  }
}
