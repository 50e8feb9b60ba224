// The command line as the handbook describes it, tried on the program. There is
// no display, so the program ends before it opens a window.

#include "driver/command_line.h"

#include <gtest/gtest.h>

#include <stdlib.h>

#include <set>
#include <string>
#include <vector>

#include "tests/handbook/handbook.h"
#include "tests/support/capture.h"
#include "tests/support/program.h"
#include "tests/support/temporary_folder.h"

namespace {

std::string source_file(const std::string& path) {
  return content_of(std::string(ZELKOR_SOURCE_FOLDER) + "/" + path);
}

TEST(HandbookCommandLine, CommandsEndAsTheTableSays) {
  const std::string unknown = "options are:";
  const std::string no_display = "Can't open display";
  for (const std::string& message : {unknown, no_display})
    EXPECT_TRUE(handbook_says('"' + message + '"'));
  const struct {
    std::string result;
    int status;
    std::string output;
    std::string errors;
  } ends[] = {{"right", 1, "", no_display},
              {"ends: -r", 1, "", unknown},
              {"ends: -v", 1, "", unknown},
              {"ends: files", 1, "", unknown},
              {"prints the usage", 0, "usage:", ""}};
  const Rows rows = table({"Command", "Result"});
  ASSERT_EQ(std::size(ends), rows.size());

  TemporaryFolder folder;
  unsetenv("DISPLAY");
  for (std::size_t i = 0; i < rows.size(); ++i) {
    SCOPED_TRACE(rows[i].at(0));
    EXPECT_EQ(0u, rows[i].at(1).find(ends[i].result)) << rows[i].at(1);
    std::vector<std::string> words = split(rows[i].at(0), " ");
    ASSERT_EQ("zelkor", words.at(0));
    words[0] = ZELKOR_PROGRAM;
    Program program(words, "output", "errors");
    EXPECT_EQ(ends[i].status, program.wait());
    EXPECT_EQ(0u, content_of("output").find(ends[i].output));
    EXPECT_EQ(0u, content_of("errors").find(ends[i].errors));
  }
}

// The letters after each `mark`.
std::set<char> letters_after(const std::string& mark, const std::string& text) {
  std::set<char> letters;
  for (const std::string& piece : pieces(text, mark, "\n"))
    letters.insert(piece.at(0));
  return letters;
}

TEST(HandbookCommandLine, OptionsAgreeInAllDocuments) {
  const std::set<char> letters = {'e', 'h', 'r', 'v'};
  std::set<char> told;
  for (const auto& row : table({"Option", "Meaning"}))
    told.insert(row.at(0).at(1));
  EXPECT_EQ(letters, told);

  const std::string usage = printed([] { print_usage("zelkor"); });
  EXPECT_EQ(letters, letters_after("[-", usage));
  EXPECT_EQ(letters,
            letters_after("\n.It Fl ", source_file("packaging/zelkor.1")));
  EXPECT_EQ(letters, letters_after("| `-", source_file("README.md")));
  for (const std::string file : {"zelkor.bash-completion", "_zelkor"}) {
    const std::string script = source_file("packaging/" + file);
    const std::string all = " " + pieces(script, " all='", "'").at(0);
    EXPECT_EQ(letters, letters_after(" -", all)) << file;
  }
}

TEST(HandbookCommandLine, LastWordThatContainsTheHelpOptionAsksForTheUsage) {
  EXPECT_TRUE(handbook_says("-e my-headers"));
  const char* words[] = {"zelkor", "-e", "my-headers"};
  EXPECT_TRUE(read_command_line(3, words).help);
}

TEST(HandbookCommandLine, VariablesMatchTheManual) {
  std::vector<std::string> names;
  for (const auto& row : table({"Variable", "Meaning"}))
    names.push_back(row.at(0));
  EXPECT_EQ(pieces(source_file("packaging/zelkor.1"), "\n.It Ev ", "\n"),
            names);
}

}  // namespace
