// Benchmarks of the inner loops.

#include <benchmark/benchmark.h>

#include <cstdio>
#include <string>
#include <vector>

#include "analysis/calling.h"
#include "analysis/name_index.h"
#include "analysis/normalise.h"
#include "analysis/words.h"
#include "gui/progress.h"
#include "html/page_frame.h"

int progress(double /*fraction*/, const char* /*message*/, void* /*ui*/) {
  return 1;
}

static const std::string line =
    "      flux(i, j) = 0.5d0 * (grad_t(i + 1, j) - grad_t(i, j)) / dx  ! W\n";

static std::vector<std::string> names(const char* prefix) {
  std::vector<std::string> result;
  for (int i = 0; i < 10000; ++i)
    result.push_back(prefix + std::to_string(i * 7919 % 10000));
  return result;
}

static char path[] = "src/solvers/multigrid.f90";
static char* file = path;

// Ten thousand units with different names.
static void register_units() {
  Declaration::forget_all();
  int number = 0;
  for (const std::string& name : names("unit_"))
    new Declaration(DT_SUBROUTINE, name.c_str(), &file, ++number);
}

static void walk_words(benchmark::State& state) {
  for (auto _ : state)
    for (Word word; find_next(line.c_str(), word);)
      benchmark::DoNotOptimize(word.hash);
  state.SetBytesProcessed(state.iterations() *
                          static_cast<std::int64_t>(line.size()));
}
BENCHMARK(walk_words);

static void look_up(benchmark::State& state, const char* prefix) {
  register_units();
  const std::vector<std::string> words = names(prefix);
  std::size_t i = 0;
  for (auto _ : state) {
    int self = 0;
    int count = 0;
    const std::string& word = words[i++ % words.size()];
    isDeclaration(word.c_str(), &file, 0, self, count);
    benchmark::DoNotOptimize(count);
  }
}
BENCHMARK_CAPTURE(look_up, of_names, "unit_");
BENCHMARK_CAPTURE(look_up, of_other_words, "word_");

static void blank_line(benchmark::State& state) {
  std::string text;
  for (auto _ : state) {
    text = line;
    hide_F90_strings_comments(text.data(), false);
    benchmark::DoNotOptimize(text);
  }
}
BENCHMARK(blank_line);

static void write_menu_item(benchmark::State& state) {
  std::FILE* page = std::fopen("/dev/null", "w");
  int number = 0;
  for (auto _ : state) menu_item(page, Calling{&file, ++number}, false);
  std::fclose(page);
}
BENCHMARK(write_menu_item);

BENCHMARK_MAIN();
