// usage: bench_engine LIST DIRECTORY [STYLE [VERBOSITY]]
//
// One run of the engine over the files that LIST names, with a progress() that
// only counts; the pages go to DIRECTORY. Prints on standard error: the seconds
// of the whole run, of its three passes and of the index, the peak memory of
// the process and the heap in use after the reference pass, both in KiB.

#include <malloc.h>

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <string>
#include <vector>

#include "bench/file_list.h"
#include "driver/pipeline.h"
#include "driver/settings.h"
#include "gui/progress.h"

using Clock = std::chrono::steady_clock;

static std::size_t reports = 0;
static std::size_t reports_per_pass = 0;
static std::vector<Clock::time_point> pass_ends;
static std::size_t heap_after_references = 0;

static std::size_t heap_in_use() {
  const struct mallinfo2 heap = mallinfo2();
  return heap.uordblks + heap.hblkhd;
}

int progress(double /*fraction*/, const char* /*message*/, void* /*ui*/) {
  if (++reports % reports_per_pass == 0 && pass_ends.size() < 3) {
    pass_ends.push_back(Clock::now());
    if (pass_ends.size() == 2) heap_after_references = heap_in_use();
  }
  return 1;
}

// In KiB. getrusage() would include the process before its exec().
static long peak_memory() {
  std::ifstream status("/proc/self/status");
  for (std::string word; status >> word;) {
    long size = 0;
    if (word == "VmHWM:" && status >> size) return size;
  }
  return 0;
}

static double seconds(Clock::time_point from, Clock::time_point to) {
  return std::chrono::duration<double>(to - from).count();
}

int main(int argc, char** argv) {
  if (argc < 3) return 2;
  std::vector<std::string> paths = read_file_list(argv[1]);
  if (paths.empty()) return 2;
  html_dir = argv[2];
  if (argc > 3)
    html_style = static_cast<std::uint32_t>(std::strtoul(argv[3], nullptr, 10));
  if (argc > 4) verbose = std::atoi(argv[4]);

  std::vector<char*> files;
  for (std::string& path : paths) files.push_back(path.data());
  reports_per_pass = files.size();
  const std::size_t heap_before = heap_in_use();

  const Clock::time_point start = Clock::now();
  gen_html(static_cast<int>(files.size()), files.data());
  const Clock::time_point end = Clock::now();

  std::fprintf(stderr, "%.6f %.6f %.6f %.6f %.6f %ld %zu\n",
               seconds(start, end), seconds(start, pass_ends[0]),
               seconds(pass_ends[0], pass_ends[1]),
               seconds(pass_ends[1], pass_ends[2]), seconds(pass_ends[2], end),
               peak_memory(), (heap_after_references - heap_before) / 1024);
}
