#include "tests/fuzz/scratch.h"

#include <stdlib.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>

#include "driver/settings.h"
#include "tests/support/recorded_progress.h"

namespace fs = std::filesystem;

namespace {

class ScratchFolder {
 public:
  ScratchFolder() {
    const fs::path memory = "/dev/shm";
    std::string name =
        (fs::is_directory(memory) ? memory : fs::temp_directory_path()) /
        "zelkor-fuzz-XXXXXX";
    demand(mkdtemp(name.data()) != nullptr, "a scratch folder can be created");
    folder = name;
    fs::current_path(folder);
    fs::create_directory(html_dir);
    demand(std::freopen("/dev/null", "w", stdout) != nullptr,
           "standard output can be redirected");
    setenv("TZ", "UTC0", 1);  // for the dates on the pages
  }
  ~ScratchFolder() {
    std::error_code ignored;
    fs::current_path("/", ignored);
    fs::remove_all(folder, ignored);
  }
  ScratchFolder(const ScratchFolder&) = delete;
  ScratchFolder& operator=(const ScratchFolder&) = delete;

 private:
  fs::path folder;
};

}  // namespace

void enter_scratch_folder() {
  static const ScratchFolder folder;
  progress_reports.clear();
}

void write_source(const char* name, std::string_view text) {
  std::FILE* file = std::fopen(name, "wb");
  demand(file != nullptr, "a source can be written");
  std::fwrite(text.data(), 1, text.size(), file);
  std::fclose(file);
}

std::string_view take_settings(std::string_view input) {
  static const std::uint32_t bits[] = {HIDE_STRINGS_AND_COMMENTS,
                                       WRITE_INDEX,
                                       BOLD_KEYWORDS,
                                       ITALIC_KEYWORDS,
                                       LEVEL_1,
                                       LEVEL_2,
                                       LEVEL_3,
                                       LEVEL_NONE};
  const auto byte = [&](std::size_t i) {
    return i < input.size() ? static_cast<unsigned char>(input[i]) : 0u;
  };
  html_style = 0;
  for (unsigned i = 0; i < 8; ++i)
    if (byte(0) >> i & 1) html_style |= bits[i];
  verbose = static_cast<int>(byte(1) % 7) - 1;
  input.remove_prefix(input.size() < 2 ? input.size() : 2);
  return input;
}

void demand(bool condition, const char* claim) {
  if (condition) return;
  std::fprintf(stderr, "This is not true: %s.\n", claim);
  std::abort();
}
