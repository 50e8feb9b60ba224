#include "analysis/pieces.h"

#include <gtest/gtest.h>

#include <sys/stat.h>

#include <cstdio>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include "tests/support/failing_file.h"
#include "tests/support/temporary_folder.h"

using namespace std::string_literals;

// Files are read in blocks of this size.
static const std::size_t block = 32768;

using Sizes = std::vector<std::size_t>;

// Pieces, and whether the end of the file was met.
using List = std::vector<std::pair<std::string, bool>>;

static List read(const char* path, std::size_t piece_size) {
  Pieces pieces(path, piece_size);
  List list;
  std::string_view piece;
  while (pieces.next(piece)) {
    list.emplace_back(piece, pieces.at_end());
    EXPECT_EQ('\0', piece.data()[piece.size()]);
  }
  EXPECT_TRUE(pieces.at_end());
  EXPECT_FALSE(pieces.next(piece));
  return list;
}

static List read_by_fgets(const char* path, std::size_t piece_size) {
  std::FILE* file = std::fopen(path, "r");
  List list;
  std::string buffer(piece_size, '#');
  while (std::fgets(buffer.data(), static_cast<int>(piece_size), file))
    // A text ends at its first NUL. NOLINTNEXTLINE(readability-redundant-*)
    list.emplace_back(buffer.c_str(), std::feof(file) != 0);
  std::fclose(file);
  return list;
}

class PiecesTest : public ::testing::Test {
 protected:
  static List pieces_of(const std::string& content, std::size_t piece_size) {
    write_file("a.f90", content);
    return read("a.f90", piece_size);
  }

  static void expect_those_of_fgets(const std::string& content,
                                    const Sizes& piece_sizes = {100, 1024, 4096,
                                                                40000}) {
    write_file("a.f90", content);
    for (const std::size_t size : piece_sizes)
      ASSERT_EQ(read_by_fgets("a.f90", size), read("a.f90", size)) << size;
  }

  TemporaryFolder folder;
};

// clang-format off
static const struct {
  std::string content;
  List pieces;          // of at most 3 characters
} small_files[] = {
  { "",             {} },
  { "\n",           {{"\n", false}} },
  { "a",            {{"a", true}} },
  { "a\n",          {{"a\n", false}} },
  { "a\nb",         {{"a\n", false}, {"b", true}} },
  { "ab\nc\n",      {{"ab\n", false}, {"c\n", false}} },
  { "abc",          {{"abc", false}} },   // the end is not seen yet
  { "abc\n",        {{"abc", false}, {"\n", false}} },
  { "abcd",         {{"abc", false}, {"d", true}} },
  { "ab\r\n",       {{"ab\r", false}, {"\n", false}} },
  { "\n\n\n",       {{"\n", false}, {"\n", false}, {"\n", false}} },
  { "\0a\nb\n"s,    {{"", false}, {"b\n", false}} },
  { "a\0\nb\n"s,    {{"a", false}, {"b\n", false}} },
  { "ab\n\0"s,      {{"ab\n", false}, {"", true}} },
  { "\0\0\0a\0"s,   {{"", false}, {"a", true}} },
};
// clang-format on

TEST_F(PiecesTest, EndAtLineEndsAndWhenTheyAreFull) {
  for (const auto& c : small_files)
    EXPECT_EQ(c.pieces, pieces_of(c.content, 4)) << c.content;
}

TEST_F(PiecesTest, EqualThoseOfFgets) {
  for (const auto& c : small_files)
    expect_those_of_fgets(c.content, {2, 3, 4, 5, 1024});
  for (const std::size_t length : {1022u, 1023u, 1024u, 2046u, 4094u, 4095u,
                                   4096u, 8190u, 39999u, 100000u})
    for (const std::string& end : {""s, "\n"s, "\r\n"s, "\0"s, "\nend\n"s})
      expect_those_of_fgets(std::string(length, 'x') + end);
}

TEST_F(PiecesTest, KeepEveryByteExceptNul) {
  std::string content;
  for (int b = 255; b > 0; --b)
    if (b != '\n') content += static_cast<char>(b);
  EXPECT_EQ((List{{content + "\n", false}}), pieces_of(content + "\n", 1024));
}

// Some of these line lengths make a piece end together with the block.
TEST_F(PiecesTest, ContinueAcrossTheEndsOfBlocks) {
  const std::string tokens[] = {"\n",   "\0"s,  "\0\n"s, "\n\0"s,
                                "\r\n", "\n\n", "word",  ""};
  for (const std::size_t line :
       {std::size_t{64}, std::size_t{81}, std::size_t{1023}, std::size_t{4095},
        2 * block})
    for (const std::string& token : tokens)
      for (std::size_t at = block - 3; at <= block + 2; ++at) {
        std::string content;
        while (content.size() < at)
          content += std::string(line - 1, '-') + "\n";
        content.replace(at, std::string::npos, token);
        for (const std::string& end : {""s, "\n"s, "x\nend\n"s}) {
          expect_those_of_fgets(content + end);
          if (HasFailure())
            FAIL() << token << " at " << at << " after lines of " << line;
        }
      }
}

// Each block leaves another number of characters for the next one.
TEST_F(PiecesTest, ContinueAcrossManyBlocks) {
  for (const std::size_t line : {1u, 7u, 1024u, 4097u, 50000u}) {
    std::string content;
    while (content.size() < 5 * block)
      content += std::string(line, static_cast<char>('a' + content.size() % 26))
                     .append("\n");
    expect_those_of_fgets(content);
    if (HasFailure()) FAIL() << "lines of " << line;
  }
}

TEST_F(PiecesTest, AreNotOpenIfTheFileCannotBeOpened) {
  write_file("a.f90", "end\n");
  for (const char* path : {"missing.f90", "missing/a.f90", "a.f90/b.f90", ""})
    EXPECT_FALSE(Pieces(path, 1024).is_open()) << path;
}

TEST_F(PiecesTest, AreNoneIfThePathIsADirectory) {
  ASSERT_TRUE(Pieces(".", 1024).is_open());
  EXPECT_EQ(List{}, read(".", 1024));
}

// A read from a pipe returns less than a block.
TEST_F(PiecesTest, OfAPipeEqualThoseOfAFile) {
  std::string content;
  while (content.size() < 3 * block) content += "a line of a pipe\n";
  content += "no line end";
  const List expected = pieces_of(content, 1024);
  ASSERT_EQ(0, mkfifo("pipe", 0600));
  std::thread writer([&] {
    std::FILE* pipe = std::fopen("pipe", "w");
    std::setvbuf(pipe, nullptr, _IONBF, 0);
    for (std::size_t at = 0; at < content.size(); at += 1000)
      std::fputs(content.substr(at, 1000).c_str(), pipe);
    std::fclose(pipe);
  });
  EXPECT_EQ(expected, read("pipe", 1024));
  writer.join();
}

TEST_F(PiecesTest, EndBeforeThePieceThatAReadErrorCuts) {
  const FailingFile file("pipe", "one\nabcdefgtwo");
  EXPECT_EQ((List{{"one\n", false}, {"abcdefg", false}}), read("pipe", 8));
}
