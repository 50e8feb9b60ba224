// The pages of a source and of the index, after the other passes over it. The
// first two bytes are settings.

#include "html/source_page.h"

#include "analysis/calls.h"
#include "analysis/declaration.h"
#include "analysis/declarations.h"
#include "html/index_page.h"
#include "tests/fuzz/scratch.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data,
                                      std::size_t size) {
  enter_scratch_folder();
  write_source("a.f90", take_settings(bytes_of(data, size)));
  std::string path = "a.f90";
  char* slot = path.data();
  gather_declarations(&slot, false);
  gather_calls(&slot, false);
  print_links(&slot, false);
  print_tree("index");
  Declaration::forget_all();
  return 0;
}
