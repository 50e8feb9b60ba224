// The command line as the handbook tells it, tried on the program itself. There
// is no display, so that the program ends before it opens a window.

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

TEST(HandbookCommandLine, CommandsEndAsTheTableTells) {
  const std::string unknown = "options are:";
  const std::string no_display = "Can't open display";
  for (const std::string& message : {unknown, no_display})
    EXPECT_NE(std::string::npos, handbook().find('"' + message + '"'));

  TemporaryFolder folder;
  unsetenv("DISPLAY");
  for (const auto& row : table({"Command", "Result"})) {
    const std::string command = plain(row.at(0));
    const std::string result = plain(row.at(1));
    SCOPED_TRACE(command);
    std::vector<std::string> words = split(command, ' ');
    ASSERT_EQ("zelkor", words.at(0));
    words[0] = ZELKOR_PROGRAM;
    Program program(words, "output", "errors");
    const int status = program.wait();
    const std::string output = content_of("output");
    const std::string errors = content_of("errors");

    if (result == "right") {
      EXPECT_EQ(0u, errors.find(no_display)) << errors;
    } else if (result == "prints the usage") {
      EXPECT_EQ(0, status);
      EXPECT_EQ(0u, output.find("usage:")) << output;
    } else {
      EXPECT_EQ(0u, result.find("ends: ")) << result;
      EXPECT_EQ(1, status);
      EXPECT_EQ(0u, errors.find(unknown)) << errors;
    }
  }
}

// The letters behind each `mark`.
std::set<char> letters_behind(const std::string& mark,
                              const std::string& text) {
  std::set<char> letters;
  for (const std::string& piece : pieces(text, mark, "\n"))
    letters.insert(piece.at(0));
  return letters;
}

TEST(HandbookCommandLine, OptionsAreTheSameInAllThatTellsOfThem) {
  std::set<char> letters;
  for (const auto& row : table({"Option", "Meaning"}))
    letters.insert(plain(row.at(0)).at(1));
  EXPECT_EQ((std::set<char>{'e', 'h', 'r', 'v'}), letters);

  const std::string usage = printed([] { print_usage("zelkor"); });
  EXPECT_EQ(letters, letters_behind("[-", usage));
  EXPECT_EQ(letters,
            letters_behind("\n.It Fl ", source_file("packaging/zelkor.1")));
  EXPECT_EQ(letters, letters_behind("| `-", source_file("README.md")));

  for (const std::string file : {"zelkor.bash-completion", "_zelkor"}) {
    const std::string script = source_file("packaging/" + file);
    std::set<char> completed;
    for (const std::string& word :
         split(pieces(script, " all='", "'").at(0), ' '))
      completed.insert(word.at(1));
    EXPECT_EQ(letters, completed) << file;
  }
}

TEST(HandbookCommandLine, LastWordWithTheLettersOfHelpAsksForTheUsage) {
  ASSERT_NE(std::string::npos, handbook().find("<TT>-e my-headers</TT>"));
  const char* words[] = {"zelkor", "-e", "my-headers"};
  EXPECT_TRUE(read_command_line(3, words).help);
}

TEST(HandbookCommandLine, VariablesAreThoseOfTheManual) {
  std::set<std::string> names;
  for (const auto& row : table({"Variable", "Meaning"}))
    names.insert(plain(row.at(0)));
  std::set<std::string> manual;
  for (const std::string& name :
       pieces(source_file("packaging/zelkor.1"), "\n.It Ev ", "\n"))
    manual.insert(name);
  EXPECT_EQ(manual, names);
}

}  // namespace
