#include "analysis/ram_file.h"

#include <gtest/gtest.h>

#include <unistd.h>

#include <cstring>
#include <memory>
#include <string>
#include <type_traits>
#include <vector>

#include "tests/support/capture.h"
#include "tests/support/failing_file.h"
#include "tests/support/heap_in_use.h"
#include "tests/support/open_files.h"
#include "tests/support/temporary_folder.h"

using namespace std::string_literals;

static_assert(std::is_abstract_v<ramFILE>);
static_assert(std::has_virtual_destructor_v<ramFILE>);
static_assert(std::is_convertible_v<ramFILE_imp*, ramFILE*>);

using Handle = std::unique_ptr<ramFILE>;
using Texts = std::vector<std::string>;

class RamFile : public ::testing::Test {
 protected:
  static Handle loaded(const std::string& content) {
    write_file("a.f90", content);
    return Handle(ramFILE::New("a.f90"));
  }

  static std::string next_line(ramFILE& file) {
    char buffer[4096] = "left over";
    const int length = fgets(buffer, sizeof buffer, &file);
    EXPECT_EQ(std::strlen(buffer), static_cast<std::size_t>(length)) << buffer;
    return buffer;
  }

  // The lines from the read position to the end, which is reached as soon as
  // the last line has been returned.
  static Texts rest_of(ramFILE& file) {
    Texts lines;
    while (!file.at_eof() && lines.size() < 60000)
      lines.push_back(next_line(file));
    EXPECT_EQ("", next_line(file));
    EXPECT_EQ("", next_line(file));
    return lines;
  }

  TemporaryFolder folder;
};

// clang-format off
static const struct {
  std::string content;
  Texts lines;
} contents[] = {
  { "\n",                   {"\n"} },
  { "a\n\nb\r\n\t c\rd\n",  {"a\n", "\n", "b\r\n", "\t c\rd\n"} },
  { "a\nb",                 {"a\n", "b"} },
  { "\0a\nb\n"s,            {"", "b\n"} },     // a NUL ends a line
  { "a\0\nb\0"s,            {"a", "b"} },
  { "a\n\0"s,               {"a\n", ""} },
};

static const struct {
  std::size_t characters;
  std::string line_end;
  std::vector<std::size_t> lengths;   // of the stored lines
} physical_lines[] = {
  { 1022, "\n",     {1023} },
  { 1022, "",       {1022} },
  { 1022, "\r\n",   {1023, 1} },        // a line end can be split
  { 1023, "\n",     {1023, 1} },
  { 1023, "",       {1023} },
  { 1024, "\n",     {1023, 2} },
  { 2500, "\nb\n",  {1023, 1023, 455, 2} },
  { 4096, "",       {1023, 1023, 1023, 1023, 4} },
};
// clang-format on

TEST_F(RamFile, ReturnsItsLinesWithTheirLineEnds) {
  for (const auto& c : contents) {
    const Handle file = loaded(c.content);
    ASSERT_NE(nullptr, file) << c.content;
    EXPECT_TRUE(file->ok()) << c.content;
    EXPECT_EQ(c.lines, rest_of(*file)) << c.content;
  }
}

TEST_F(RamFile, SplitsLinesAfter1023Characters) {
  for (const auto& c : physical_lines) {
    const std::string content = std::string(c.characters, 'x') + c.line_end;
    Texts expected;
    std::size_t start = 0;
    for (const std::size_t length : c.lengths) {
      expected.push_back(content.substr(start, length));
      start += length;
    }
    EXPECT_EQ(expected, rest_of(*loaded(content)))
        << c.characters << " characters, line end " << c.line_end;
  }
}

TEST_F(RamFile, HasNoLimitOfLines) {
  std::string content;
  for (int i = 0; i < 50000; ++i) content += "x\n";
  EXPECT_EQ(Texts(50000, "x\n"), rest_of(*loaded(content)));
}

TEST_F(RamFile, IsSilentlyNullForAFileWithoutLines) {
  write_file("empty.f90", "");
  EXPECT_EQ("", printed([] {
              for (const char* path : {"missing.f90", "missing/a.f90",
                                       "empty.f90/a.f90", "", "empty.f90", "."})
                EXPECT_EQ(nullptr, Handle(ramFILE::New(path))) << path;
            }));
}

TEST_F(RamFile, LeavesNoFileOpen) {
  write_file("empty.f90", "");
  const auto before = open_files();
  const Handle file = loaded("one\n");
  EXPECT_EQ(before, open_files());
  file->reload();
  EXPECT_EQ(before, open_files());
  for (const char* path : {"missing.f90", "empty.f90", "."}) {
    EXPECT_EQ(nullptr, Handle(ramFILE::New(path))) << path;
    EXPECT_EQ(before, open_files()) << path;
  }
}

TEST_F(RamFile, FillsABufferAsStrncpyDoes) {
  const struct {
    int size;
    int length;
    std::string buffer;
    std::string next_line;
  } cases[] = {
      {8, 5, "line\n\0\0\0##"s, "next\n"},  // filled with NULs
      {6, 5, "line\n\0####"s, "next\n"},
      {5, 5, "line\n#####"s, "next\n"},  // full: no NUL
      {3, 3, "lin#######"s, "next\n"},
      {1, 1, "l#########"s, "next\n"},
      {0, 0, "##########"s, "line\n"},
      {-1, 0, "##########"s, "line\n"},
  };
  for (const auto& c : cases) {
    const Handle file = loaded("line\nnext\n");
    std::string buffer(10, '#');
    EXPECT_EQ(c.length, file->fgets(buffer.data(), c.size)) << c.size;
    EXPECT_EQ(c.buffer, buffer) << c.size;
    EXPECT_EQ(c.next_line, next_line(*file)) << c.size;
  }
}

TEST_F(RamFile, RewindsToItsFirstLineEvenWhenClosed) {
  const Handle file = loaded("one\ntwo\n");
  EXPECT_EQ("one\n", next_line(*file));
  fclose(file.get());
  EXPECT_TRUE(file->ok());
  EXPECT_EQ(Texts{"two\n"}, rest_of(*file));
  file->rewind();
  EXPECT_EQ((Texts{"one\n", "two\n"}), rest_of(*file));
}

TEST_F(RamFile, ReloadReadsTheFileAgainAndDiscardsEdits) {
  write_file("a.f90", "one\ntwo\n");
  ramFILE_imp file("a.f90");
  *(file.begin() + 1) = file.copy("a much longer line than it was\n");
  EXPECT_EQ((Texts{"one\n", "a much longer line than it was\n"}),
            rest_of(file));
  write_file("a.f90", "1\n2\n");
  file.reload();
  EXPECT_EQ((Texts{"1\n", "2\n"}), Texts(file.begin(), file.end()));
  EXPECT_EQ((Texts{"1\n", "2\n"}), rest_of(file));
}

TEST_F(RamFile, IsNotOkAndAtItsEndWhenReloadFindsNoFile) {
  const Handle file = loaded("one\ntwo\n");
  unlink("a.f90");
  file->reload();
  EXPECT_FALSE(file->ok());
  EXPECT_EQ(Texts{}, rest_of(*file));
}

TEST_F(RamFile, HasNoLinesBetweenReleaseAndReload) {
  write_file("a.f90", "one\n");
  ramFILE_imp file("a.f90");
  file.release();
  EXPECT_TRUE(file.begin() == file.end());
  EXPECT_FALSE(file.ok());
  EXPECT_EQ(Texts{}, rest_of(file));
  file.reload();
  EXPECT_TRUE(file.ok());
  EXPECT_EQ(Texts{"one\n"}, rest_of(file));
}

TEST_F(RamFile, ReportsItsEndOnlyWhenAskedTo) {
  const Handle file = loaded("one\n");
  EXPECT_EQ("", printed([&] { EXPECT_FALSE(at_eof(file.get(), true)); }));
  next_line(*file);
  EXPECT_EQ("END OF FILE\nEND OF FILE\n", printed([&] {
              EXPECT_TRUE(at_eof(file.get(), true));
              EXPECT_TRUE(at_eof(file.get(), true));
              EXPECT_TRUE(at_eof(file.get(), false));
            }));
}

TEST_F(RamFile, KeepsTheLinesReadBeforeAReadError) {
  Handle file;
  {
    const FailingFile failing("a.f90", "one\ntwo\n");
    file.reset(ramFILE::New("a.f90"));
  }
  ASSERT_NE(nullptr, file);
  EXPECT_EQ((Texts{"one\n", "two\n"}), rest_of(*file));
}

TEST_F(RamFile, ReloadFreesTheOldLines) {
  const std::string text = std::string(99, 'x') + "\n";
  write_file("a.f90", text + text + text);
  ramFILE_imp file("a.f90");
  file.reload();
  const std::size_t before = heap_in_use();
  for (int i = 0; i < 1000; ++i) file.reload();
  EXPECT_GT(before + 10000, heap_in_use());
}
