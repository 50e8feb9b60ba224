// Whole runs over small source trees, compared with pages written by hand.
//
// Every folder *.d beside this file is a case. It contains the sources, their
// paths in list order in `files`, html_style in decimal in `options` if it is
// not the default, and the output directory and `stdout` in `expected`. In the
// expected files the line {{head}} represents head.html and {{date}} the time
// of the run. An expected index leaves out the kinds without units.

#include <gtest/gtest.h>

#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
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
#include "tests/support/file_list.h"
#include "tests/support/fixed_clock.h"
#include "tests/support/page_text.h"
#include "tests/support/recorded_progress.h"
#include "tests/support/temporary_folder.h"

namespace fs = std::filesystem;

namespace {

// The names of the cases without the ".d".
std::set<std::string> cases() {
  std::set<std::string> names;
  for (const auto& entry : fs::directory_iterator(ZELKOR_GOLDEN_FOLDER))
    if (entry.path().extension() == ".d") names.insert(entry.path().stem());
  return names;
}

fs::path folder_of(const std::string& name) {
  return fs::path(ZELKOR_GOLDEN_FOLDER) / (name + ".d");
}

std::vector<std::string> lines_of(const std::string& text) {
  std::vector<std::string> lines;
  std::istringstream stream(text);
  for (std::string line; std::getline(stream, line);) lines.push_back(line);
  return lines;
}

// File contents by path relative to a folder.
using Files = std::map<std::string, std::string>;

Files files_below(const fs::path& folder) {
  Files files;
  for (const auto& entry : fs::recursive_directory_iterator(folder))
    if (entry.is_regular_file())
      files[entry.path().lexically_relative(folder).string()] =
          content_of(entry.path().string());
  return files;
}

void replace(std::string& text, const std::string& mark,
             const std::string& meaning) {
  const std::size_t at = text.find(mark);
  if (at != std::string::npos) text.replace(at, mark.size(), meaning);
}

// Inserts the mark-up of the kinds without units into an index. The first kind
// belongs at `at`; the mark-up of every kind ends with `end`.
void fill_in_kinds(std::string& index, std::size_t at,
                   std::string (*empty)(const std::string&),
                   const std::string& end) {
  for (const std::string& kind : unit_kinds) {
    const std::string whole = empty(kind);
    const std::string begin = whole.substr(0, whole.find("</a>"));
    if (index.compare(at, begin.size(), begin) != 0) index.insert(at, whole);
    at = index.find(end, at) + end.size();
  }
}

void fill_in(const std::string& name, std::string& text) {
  replace(text, "{{head}}\n", page_head());
  replace(text, "{{date}}\n", "Sun Mar  1 12:44:05 2009\n");
  if (name != "index.html") return;
  const std::string title_end = "</TITLE>\n\n";
  fill_in_kinds(
      text, text.find(title_end) + title_end.size(),
      [](const std::string& kind) { return index_menu(kind); }, menu_closing);
  fill_in_kinds(
      text, text.find("<hr>\n") + 5,
      [](const std::string& kind) { return index_list(kind); }, "</UL>\n\n");
}

// A case. Its sources are copied into the working directory, so that their
// paths, and with them the page numbers, are the same on every machine.
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

  Files expected() const {
    Files files = files_below(folder / "expected");
    for (auto& [name, text] : files) fill_in(name, text);
    return files;
  }

  /// The listed files without duplicates.
  std::set<std::string> sources() const {
    std::set<std::string> names;
    for (const std::string& path : paths)
      if (fs::is_regular_file(path)) names.insert(path);
    return names;
  }

  void run(int verbosity) {
    FileList files(paths);
    html_style = style;
    verbose = verbosity;
    progress_reports.clear();
    gen_html(files.count(), files.data());
  }

 private:
  const std::set<std::string> description = {"README", "files", "options",
                                             "expected"};
  fs::path folder;
  std::vector<std::string> paths;
  std::uint32_t style = html_style;
};

// Does something in a separate process whose standard output goes to a file.
// Page numbers depend on the earlier requests of a process, and a crash or an
// endless loop must not stop the other cases. Returns the exit status, or minus
// the number of the signal that ended the process.
int run_apart(const std::string& output, const std::function<void()>& action) {
  const rlimit computing_seconds = {20, 25};
  std::fflush(nullptr);
  const pid_t process = fork();
  if (process == 0) {
    setrlimit(RLIMIT_CPU, &computing_seconds);
    if (std::freopen(output.c_str(), "w", stdout) == nullptr) std::exit(1);
    // A run stamps its time before it reports anything.
    const TimeZone utc;
    progress_hook = [](const ProgressReport&) { date_time = 1235911445; };
    action();
    std::exit(0);
  }
  int status = 0;
  waitpid(process, &status, 0);
  return WIFSIGNALED(status) ? -WTERMSIG(status) : WEXITSTATUS(status);
}

class Golden : public testing::TestWithParam<std::string> {
 protected:
  TemporaryFolder scratch;
  GoldenCase golden{folder_of(GetParam())};
};

INSTANTIATE_TEST_SUITE_P(Folder, Golden, testing::ValuesIn(cases()),
                         [](const auto& name) { return name.param; });

// A file that is written outside the output directory appears with a relative
// path from there.
TEST_P(Golden, RunWritesTheExpectedPagesAndReports) {
  const Files before = files_below(".");
  EXPECT_EQ(0, run_apart(html_dir + "/stdout", [&] { golden.run(1); }));
  Files written;
  for (const auto& [name, text] : files_below(".")) {
    const auto source = before.find(name);
    if (source == before.end() || source->second != text)
      written[fs::path(name).lexically_relative(html_dir)] = text;
  }
  for (const auto& [name, text] : golden.expected()) {
    EXPECT_EQ(1u, written.count(name)) << name;
    EXPECT_EQ(text, written[name]) << name;
    written.erase(name);
  }
  EXPECT_EQ(Files{}, written);
}

// Cuts a source at every byte, or at about 500 bytes if it is large. Ends the
// process with a failure when a run leaves no whole page of the source.
void run_with_cuts(GoldenCase& golden, const std::string& source) {
  const std::string text = content_of(source);
  const std::size_t stride = 1 + text.size() / 500;
  std::string path = source;
  char* slot = path.data();
  for (std::size_t size = 0; size < text.size(); size += stride) {
    write_file(source, text.substr(0, size));
    golden.run(5);
    const std::string page = HTML_NAME(&slot);
    if (!is_whole_page(page)) std::exit(1);
    fs::remove(page);
  }
}

TEST_P(Golden, RunWritesWholePagesWhereverASourceIsCut) {
  for (const std::string& source : golden.sources()) {
    const std::string text = content_of(source);
    const int status =
        run_apart("/dev/null", [&] { run_with_cuts(golden, source); });
    ASSERT_EQ(0, status) << source << " cut to " << fs::file_size(source)
                         << " bytes";
    write_file(source, text);
  }
}

TEST(GoldenFolders, ContainOneCaseEach) {
  EXPECT_FALSE(cases().empty());
  for (const std::string& name : cases()) {
    const fs::path folder = folder_of(name);
    EXPECT_EQ(1u, lines_of(content_of(folder / "README")).size()) << name;
    EXPECT_NE("", content_of(folder / "files")) << name;
    EXPECT_TRUE(fs::exists(folder / "expected/stdout")) << name;
  }
}

}  // namespace
