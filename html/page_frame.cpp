// Panes are off the screen except while the mouse is over their mark or word.
// Hiding them by `display` or z-index lost their background in some browsers,
// as the notes in the style sheet say. "left: 2;" has no unit: browsers read it
// as pixels, as the pages have no document type.

#include "html/page_frame.h"

#include <ctime>

#include "driver/settings.h"
#include "html/markup.h"

// clang-format off
static const char head[] = R"(<html>
<head>
<style type="text/css">
        /* 'span' does not break a line, while 'div' does */
        /* z-index:1->2; drops background [mac/mozilla] */
        /* display:none->block; instead of left:-999->auto;  also drops background [mac/mozilla] */
        /* leave position: absolute  otherwise it is not overlayed */
        /* use '>' to restrict to only the current block */
        #nav img {
          position: absolute;
          left: 0px;
        }
        #nav span.popup {
          z-index:1;
          position: relative; /* so popup's absolute will be relative to me */
        }
        #nav span.popup table.pane {
          z-index:1;
          position: absolute;
          left: -999em;
          width:1px; /* force narrowest possible*/
          border-spacing: 5px; border: thin solid black;
          background: #FFD;
        }
        #nav span.popup:hover > table.pane {
          left: 2;
          z-index:1000;
        }
        #nav span.popup:hover > table.pane a {
          color: #00E;
        }
        #nav b.multiref {
          color: #00E; text-decoration:underline;
          position: relative; /* so popup's absolute will be relative to me */
        }
        #nav b.multiref table.pane {
          position: absolute;
          left: -999em;
          width:1px; /* force narrowest possible*/
          border-spacing: 5px; border: thin solid black;
          background: #FFD;
        }
        #nav b.multiref:hover > table.pane {
          z-index:1000;
          left: 2;
        }
        #nav b.multiref:hover > table.pane a {
          color: #00E;
        }
</style>
</head>
<body>
)";
// clang-format on

static const char pane_opening[] =
    "<table class=\"pane\"><tr><td style=\"vertical-align:top;\">\n";
static const char pane_closing[] = "</td></tr></table>";

void html_header(std::FILE* html) { put(html, head); }

// Deliberate: the line end of ctime's text is kept.
void html_footer(std::FILE* html) {
  std::fprintf(html, page_trailer.c_str(), std::ctime(&date_time));
  put(html, "</body>\n</html>\n");
}

void begin_menu(std::FILE* html, const char* title) {
  put(html,
      "<span id=\"nav\"><span class=\"popup\"><big>"
      "<big style=\"color: rgb(204, 0, 0);\">&#134;</big></big>",
      pane_opening);
  if (title != nullptr) put(html, title, "\n");
}

void end_menu(std::FILE* html) { put(html, pane_closing, "</span></span>"); }

void open_multiref(std::FILE* html) {
  put(html, "<span id=\"nav\"><b class=\"multiref\">");
}

void begin_multiref(std::FILE* html, const char* title) {
  put(html, pane_opening);
  if (title != nullptr) put(html, "<small>", title, "</small>\n");
}

void close_multiref(std::FILE* html) { put(html, pane_closing, "</b></span>"); }

void print_html_char(char c, std::FILE* html) { std::fputc(c, html); }

static void start_column(std::FILE* html) {
  put(html, "</td><td style=\"vertical-align:top;\">\n");
}

void menu_item(std::FILE* html, const Declaration& declaration, int index,
               bool new_column) {
  if (new_column) start_column(html);
  put(html, "<a href=\"", address_of(declaration, index), "\"><small>",
      declaration.name, "</small></a><br/>\n");
}

void menu_item(std::FILE* html, const Calling& reference, bool new_column) {
  if (new_column) start_column(html);
  put(html, "<a href=\"", address_of(reference), "\">", *reference.file,
      "&nbsp;:&nbsp;", reference.line, "</a><br/>\n");
}

void multiref_item(std::FILE* html, const Declaration& declaration, int index) {
  put(html, "<a href=\"", address_of(declaration, index), "\"><small>",
      *declaration.file, ":", declaration.line, "</small></a><br/>\n");
}
