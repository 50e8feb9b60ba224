// The call pass over a source, for units that the source declares itself. The
// first two bytes are settings.

#include "analysis/calls.h"

#include "analysis/declarations.h"
#include "tests/fuzz/scratch.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data,
                                      std::size_t size) {
  enter_scratch_folder();
  write_source("a.f90", take_settings(bytes_of(data, size)));
  std::string path = "a.f90";
  char* slot = path.data();
  gather_declarations(&slot, false);
  gather_calls(&slot, false);
  const std::string* last_key = nullptr;
  std::size_t callers = 0;
  for (const auto& [key, declaration] : Declaration::decs) {
    demand(last_key == nullptr || *last_key != key ||
               declaration->callers.size() == callers,
           "units of one name are referred to alike");
    last_key = &key;
    callers = declaration->callers.size();
  }
  Declaration::forget_all();
  return 0;
}
