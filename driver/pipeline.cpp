// Three passes over all files. The first finds all declarations, because a
// reference may precede its unit in the file order. The second finds all
// references, because a page lists references from any file. The third writes
// the pages.

#include "driver/pipeline.h"

#include <ctime>

#include "analysis/calls.h"
#include "analysis/declaration.h"
#include "analysis/declarations.h"
#include "driver/settings.h"
#include "gui/progress.h"
#include "html/index_page.h"
#include "html/source_page.h"

// Every file is treated as free-form source.
static const bool fixed_form = false;

void init_statics() {
  date_time = std::time(nullptr);
  Declaration::forget_all();
}

// Deliberate: the fractions count the files before the one just finished, so
// the bar lags one file behind and jumps to its end after the last page.
void gen_html(int count, char** files) {
  init_statics();
  for (int i = 0; i < count; ++i) {
    gather_declarations(&files[i], fixed_form);
    progress(i * 0.3 / count, files[i], nullptr);
  }
  for (int i = 0; i < count; ++i) {
    gather_calls(&files[i], fixed_form);
    progress(i * 0.3 / count + 0.3, files[i], nullptr);
  }
  sort_references();
  for (int i = 0; i < count; ++i) {
    print_links(&files[i], fixed_form);
    progress(i * 0.4 / count + 0.6, files[i], nullptr);
  }
  if (html_style & WRITE_INDEX) {
    progress(1.0, "printing index...", nullptr);
    print_tree("index");
  }
  progress(1.0, "Done!", nullptr);
}
