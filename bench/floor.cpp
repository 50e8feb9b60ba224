// usage: bench_floor LIST DIRECTORY FILES BYTES
//
// The input and output of a run, without any work: reads every file that LIST
// names three times, then writes FILES files of BYTES bytes in all into
// DIRECTORY. Prints the seconds that it took.

#include <fcntl.h>
#include <unistd.h>

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

#include "bench/file_list.h"

static std::vector<char> block(1 << 20, 'x');

[[noreturn]] static void fail(const std::string& path) {
  std::perror(path.c_str());
  std::exit(1);
}

static void read_whole(const std::string& path) {
  const int file = open(path.c_str(), O_RDONLY | O_CLOEXEC);
  if (file < 0) fail(path);
  while (read(file, block.data(), block.size()) > 0) {
  }
  close(file);
}

static void write_whole(const std::string& path, std::size_t bytes) {
  const int file =
      open(path.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0666);
  if (file < 0) fail(path);
  while (bytes > 0) {
    const ssize_t written =
        write(file, block.data(), std::min(bytes, block.size()));
    if (written < 0) fail(path);
    bytes -= static_cast<std::size_t>(written);
  }
  close(file);
}

int main(int argc, char** argv) {
  if (argc != 5) return 2;
  const std::vector<std::string> sources = read_file_list(argv[1]);
  const std::string directory = argv[2];
  const std::size_t files = std::strtoul(argv[3], nullptr, 10);
  const std::size_t bytes = std::strtoul(argv[4], nullptr, 10);

  const auto start = std::chrono::steady_clock::now();
  for (int pass = 0; pass < 3; ++pass)
    for (const std::string& source : sources) read_whole(source);
  for (std::size_t i = 0; i < files; ++i) {
    const std::size_t rest = i + 1 < files ? 0 : bytes % files;
    write_whole(directory + "/" + std::to_string(i), bytes / files + rest);
  }
  const std::chrono::duration<double> seconds =
      std::chrono::steady_clock::now() - start;
  std::printf("%.6f\n", seconds.count());
}
