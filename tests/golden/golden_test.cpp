// Whole runs over small source trees, compared with pages worked out by hand.
//
// Every folder *.d beside this file is a case: its sources, `files` with their
// paths in list order, `options` with html_style in decimal if it is not the
// default, and `expected` with every file of the run's output directory and
// `stdout`. In there {{head}} is a line that stands for head.html, and {{date}}
// for the run's time.

#include <gtest/gtest.h>

#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <filesystem>
#include <functional>
#include <map>
#include <set>
#include <sstream>
#include <string>
#include <vector>

#include "driver/pipeline.h"
#include "driver/settings.h"
#include "html/page_names.h"
#include "tests/support/capture.h"
#include "tests/support/recorded_progress.h"
#include "tests/support/temporary_folder.h"

namespace fs = std::filesystem;

namespace {

const fs::path golden_folder = ZELKOR_GOLDEN_FOLDER;

// Their names without the ".d".
std::vector<std::string> cases() {
  std::set<std::string> names;
  for (const auto& entry : fs::directory_iterator(golden_folder))
    if (entry.is_directory() && entry.path().extension() == ".d")
      names.insert(entry.path().stem());
  return {names.begin(), names.end()};
}

fs::path folder_of(const std::string& name) {
  return golden_folder / (name + ".d");
}

std::vector<std::string> lines_of(const std::string& text) {
  std::vector<std::string> lines;
  std::istringstream stream(text);
  for (std::string line; std::getline(stream, line);) lines.push_back(line);
  return lines;
}

void replace_all(std::string& text, const std::string& from,
                 const std::string& to) {
  for (std::size_t at = 0; (at = text.find(from, at)) != std::string::npos;
       at += to.size())
    text.replace(at, from.size(), to);
}

// File contents by path, relative to the folder that holds them.
using Files = std::map<std::string, std::string>;

Files files_below(const fs::path& folder) {
  Files files;
  for (const auto& entry : fs::recursive_directory_iterator(folder))
    if (entry.is_regular_file())
      files[entry.path().lexically_relative(folder).string()] =
          content_of(entry.path().string());
  return files;
}

// The first line in which two texts differ, as both have it. The last line of a
// text shows whether a line end follows.
std::string first_difference(const std::string& expected,
                             const std::string& written) {
  std::size_t line = 1;
  std::size_t start = 0;
  for (std::size_t at = 0; at < expected.size() && at < written.size() &&
                           expected[at] == written[at];
       ++at) {
    if (expected[at] != '\n') continue;
    ++line;
    start = at + 1;
  }
  const auto shown = [start](const std::string& text) {
    if (start >= text.size()) return std::string("(end of file)");
    return testing::PrintToString(
        text.substr(start, text.find('\n', start) + 1 - start));
  };
  return "line " + std::to_string(line) + "\n  expected: " + shown(expected) +
         "\n  written:  " + shown(written);
}

// One text for every file that differs, in either direction.
std::vector<std::string> differences(const Files& expected,
                                     const Files& written) {
  std::vector<std::string> found;
  for (const auto& [name, text] : expected) {
    const auto page = written.find(name);
    if (page == written.end())
      found.push_back(name + ": not written");
    else if (page->second != text)
      found.push_back(name + ": " + first_difference(text, page->second));
  }
  for (const auto& [name, text] : written)
    if (expected.count(name) == 0) found.push_back(name + ": not expected");
  return found;
}

// A case, with a copy of its sources in the working directory. The copy makes
// the paths, and so the page numbers, the same on every machine.
class GoldenCase {
 public:
  explicit GoldenCase(const fs::path& case_folder)
      : folder(case_folder), paths(lines_of(content_of(folder / "files"))) {
    for (const auto& entry : fs::directory_iterator(folder))
      if (description.count(entry.path().filename().string()) == 0)
        fs::copy(entry, entry.path().filename(), fs::copy_options::recursive);
    fs::create_directory(html_dir);
    if (fs::exists(folder / "options"))
      style = static_cast<std::uint32_t>(
          std::stoul(content_of(folder / "options")));
  }

  Files expected() const { return files_below(folder / "expected"); }

  /// The files that the list names, each once.
  std::set<std::string> sources() const {
    std::set<std::string> names;
    for (const std::string& path : paths)
      if (fs::is_regular_file(path)) names.insert(path);
    return names;
  }

  void run(int verbosity) {
    std::vector<char*> files;
    for (std::string& path : paths) files.push_back(path.data());
    html_style = style;
    verbose = verbosity;
    progress_reports.clear();
    gen_html(static_cast<int>(files.size()), files.data());
  }

 private:
  const std::set<std::string> description = {"README", "files", "options",
                                             "expected"};
  fs::path folder;
  std::vector<std::string> paths;
  std::uint32_t style = html_style;
};

// Does something in a process of its own, with standard output in a file: page
// numbers depend on all that a process asked for before, and a crash or an
// endless loop must not take the other cases along. Returns the exit status, or
// minus the number of the signal that ended the process.
int run_apart(const std::string& output, const std::function<void()>& action) {
  const rlimit computing_seconds = {20, 25};
  std::fflush(nullptr);
  const pid_t process = fork();
  if (process == 0) {
    setrlimit(RLIMIT_CPU, &computing_seconds);
    if (std::freopen(output.c_str(), "w", stdout) == nullptr) std::exit(1);
    action();
    std::exit(0);
  }
  int status = 0;
  waitpid(process, &status, 0);
  return WIFSIGNALED(status) ? -WTERMSIG(status) : WEXITSTATUS(status);
}

std::string head() { return content_of(golden_folder / "head.html"); }

// Puts the marks into what a run wrote that began and ended at given times.
void put_marks(Files& files, std::time_t begin, std::time_t end) {
  const std::string page_head = head();
  for (auto& [name, text] : files) {
    if (text.compare(0, page_head.size(), page_head) == 0)
      text.replace(0, page_head.size(), "{{head}}\n");
    for (std::time_t time = begin; time <= end; ++time)
      replace_all(text, std::ctime(&time), "{{date}}\n");
  }
}

class Golden : public testing::TestWithParam<std::string> {};

INSTANTIATE_TEST_SUITE_P(Folder, Golden, testing::ValuesIn(cases()),
                         [](const auto& name) { return name.param; });

// Whatever the run writes belongs into its output directory, where standard
// output is kept, too; a file written or changed elsewhere shows up with its
// way from there.
TEST_P(Golden, PagesAndReportsAreAsExpected) {
  const fs::path folder = folder_of(GetParam());
  TemporaryFolder scratch;
  GoldenCase golden(folder);
  const Files before = files_below(".");

  const std::time_t begin = std::time(nullptr);
  const int status = run_apart(html_dir + "/stdout", [&] { golden.run(1); });
  const std::time_t end = std::time(nullptr);

  Files written;
  for (const auto& [name, text] : files_below(".")) {
    const auto source = before.find(name);
    if (source == before.end() || source->second != text)
      written[fs::path(name).lexically_relative(html_dir)] = text;
  }
  put_marks(written, begin, end);

  EXPECT_EQ(0, status);
  for (const std::string& difference : differences(golden.expected(), written))
    ADD_FAILURE() << difference;

  if (!HasFailure()) return;
  for (const auto& [name, text] : written)
    write_file(html_dir + "/" + name, text);
  const std::string kept = scratch.path().string() + "-written";
  fs::rename(html_dir, kept);
  ADD_FAILURE() << "compare " << kept << " with " << folder / "expected";
}

bool is_whole_page(const std::string& text, const std::string& page_head) {
  const std::string end = "</body>\n</html>\n";
  return text.size() >= page_head.size() + end.size() &&
         text.compare(0, page_head.size(), page_head) == 0 &&
         text.compare(text.size() - end.size(), end.size(), end) == 0;
}

// Cuts a source at every byte, a large one at some 500 of them. Ends the
// process with a failure when a run leaves the source without a whole page of
// its own.
void run_with_cuts(GoldenCase& golden, const std::string& source) {
  const std::string page_head = head();
  const std::string text = content_of(source);
  const std::size_t stride = 1 + text.size() / 500;
  std::string path = source;
  char* slot = path.data();
  for (std::size_t size = 0; size < text.size(); size += stride) {
    write_file(source, text.substr(0, size));
    golden.run(5);
    const std::string page = HTML_NAME(&slot);
    if (!is_whole_page(content_of(page), page_head)) std::exit(1);
    fs::remove(page);
  }
}

TEST_P(Golden, EndsWithWholePagesWhereverASourceIsCut) {
  TemporaryFolder scratch;
  GoldenCase golden(folder_of(GetParam()));
  for (const std::string& source : golden.sources()) {
    const std::string text = content_of(source);
    const int status =
        run_apart("/dev/null", [&] { run_with_cuts(golden, source); });
    ASSERT_EQ(0, status) << source << " cut to " << fs::file_size(source)
                         << " bytes";
    write_file(source, text);
  }
}

TEST(GoldenFolders, HoldACaseEach) {
  EXPECT_FALSE(cases().empty());
  for (const std::string& name : cases()) {
    const fs::path folder = folder_of(name);
    EXPECT_EQ(1u, lines_of(content_of(folder / "README")).size()) << name;
    EXPECT_NE("", content_of(folder / "files")) << name;
    EXPECT_TRUE(fs::exists(folder / "expected/stdout")) << name;
  }
}

TEST(GoldenHead, Is1644BytesLong) { EXPECT_EQ(1644u, head().size()); }

TEST(GoldenComparison, SeesEveryDifference) {
  const Files expected = {{"a", "1\n2\n3\n"}, {"b", ""}};
  const struct {
    Files written;
    std::vector<std::string> found;
  } rows[] = {
      {expected, {}},
      {{{"b", ""}}, {"a: not written"}},
      {{{"a", "1\n2\n3\n"}, {"b", ""}, {"c", ""}}, {"c: not expected"}},
      {{{"a", "1\nx\n3\n"}, {"b", ""}},
       {"a: line 2\n  expected: \"2\\n\"\n  written:  \"x\\n\""}},
      {{{"a", "1\n2\n3"}, {"b", ""}},
       {"a: line 3\n  expected: \"3\\n\"\n  written:  \"3\""}},
      {{{"a", "1\n2\n3\n"}, {"b", "\r\n"}},
       {"b: line 1\n  expected: (end of file)\n  written:  \"\\r\\n\""}},
  };
  for (const auto& row : rows)
    EXPECT_EQ(row.found, differences(expected, row.written));
}

}  // namespace
