// usage: make_pages DIRECTORY FILE...
//
// Writes the pages and the index of the files, in this order, to the directory.

#include "driver/pipeline.h"
#include "driver/settings.h"
#include "gui/progress.h"

int progress(double /*fraction*/, const char* /*message*/, void* /*ui*/) {
  return 1;
}

int main(int argc, char** argv) {
  if (argc < 3) return 2;
  html_dir = argv[1];
  gen_html(argc - 2, argv + 2);
  return 0;
}
