// Runs the declaration pass over a source, and blanks and joins its lines in
// memory. The first two bytes are settings; the lowest bit of the third chooses
// the comment rule.

#include "analysis/declarations.h"

#include <cstring>
#include <memory>

#include "analysis/name_index.h"
#include "analysis/normalise.h"
#include "analysis/ram_file.h"
#include "tests/fuzz/scratch.h"

static int count_lines(ramFILE& file) {
  file.rewind();
  char line[2 * stored_line_size];
  int count = 0;
  for (; !at_eof(&file, false); ++count) {
    const int length = fgets(line, sizeof line, &file);
    demand(length == static_cast<int>(strnlen(line, sizeof line)),
           "the length of a line is returned");
  }
  return count;
}

static void join_lines(bool fixed_form) {
  const std::unique_ptr<ramFILE> file(ramFILE::New("a.f90"));
  if (file == nullptr) return;
  const int count = count_lines(*file);
  hide_F90_strings_comments(file.get(), fixed_form);
  demand(count_lines(*file) == count, "blanking keeps the lines");
  merge_F90_continuations(file.get());
  demand(count_lines(*file) == count, "joining keeps the lines");
  file->reload();
  demand(count_lines(*file) == count, "reading again gives the same lines");
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data,
                                      std::size_t size) {
  enter_scratch_folder();
  std::string_view text = take_settings(bytes_of(data, size));
  if (text.empty()) return 0;
  const bool fixed_form = text[0] % 2 != 0;
  write_source("a.f90", text.substr(1));

  std::string path = "a.f90";
  char* slot = path.data();
  gather_declarations(&slot, fixed_form);
  for (const auto& [key, declaration] : Declaration::decs) {
    demand(std::strlen(declaration->name) == key.size(),
           "a key is as long as its name");
    demand(key.size() < 256, "a name has at most 255 characters");
    int self = 0;
    int count = 0;
    isDeclaration(declaration->name, &slot, declaration->line, self, count);
    demand(1 <= self && self <= count, "a unit is found by its name");
  }
  Declaration::forget_all();
  join_lines(fixed_form);
  return 0;
}
