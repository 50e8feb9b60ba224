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

// The size of the buffer that readers pass.
static const int buffer_size = 4096;

class RamFile : public ::testing::Test {
 protected:
  // The lines stored for a file with this content.
  static Texts stored(const std::string& content) {
    write_file("a.f90", content);
    ramFILE_imp file("a.f90");
    return {file.begin(), file.end()};
  }

  static Handle loaded(const std::string& content) {
    write_file("a.f90", content);
    return Handle(ramFILE::New("a.f90"));
  }

  static std::string next_line(const Handle& file) {
    char buffer[buffer_size] = "left over";
    const int length = file->fgets(buffer, buffer_size);
    EXPECT_EQ(std::strlen(buffer), static_cast<std::size_t>(length)) << buffer;
    return buffer;
  }

  TemporaryFolder folder;
};

TEST_F(RamFile, StoresLinesWithTheirLineEndsAsRead) {
  EXPECT_EQ((Texts{"a\n", "\n", "b\r\n", "\t c\rd\n"}),
            stored("a\n\nb\r\n\t c\rd\n"));
}

TEST_F(RamFile, StoresALastLineWithoutLineEndAsIs) {
  EXPECT_EQ((Texts{"a\n", "b"}), stored("a\nb"));
}

TEST_F(RamFile, OfAnEmptyFileIsNoHandle) { EXPECT_EQ(nullptr, loaded("")); }

TEST_F(RamFile, OfAFileThatCannotBeOpenedIsNoHandle) {
  write_file("a.f90", "end\n");
  for (const char* path : {"missing.f90", "missing/a.f90", "a.f90/b.f90", ""})
    EXPECT_EQ(nullptr, Handle(ramFILE::New(path))) << path;
}

TEST_F(RamFile, OfADirectoryIsNoHandle) {
  EXPECT_EQ(nullptr, Handle(ramFILE::New(".")));
}

TEST_F(RamFile, SaysNothingOfFilesThatItCannotLoad) {
  write_file("empty.f90", "");
  EXPECT_EQ("", printed([] {
              for (const char* path : {"missing.f90", "empty.f90", "."})
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

TEST_F(RamFile, OfAnEmptyLineIsAHandle) {
  const Handle file = loaded("\n");
  ASSERT_NE(nullptr, file);
  EXPECT_TRUE(file->ok());
  EXPECT_EQ("\n", next_line(file));
}

TEST_F(RamFile, StoresALineOf2500CharactersAsThree) {
  const std::string x(2500, 'x');
  EXPECT_EQ((Texts{x.substr(0, 1023), x.substr(0, 1023),
                   x.substr(0, 454) + "\n", "next\n"}),
            stored(x + "\nnext\n"));
}

// clang-format off
static const struct {
  std::size_t characters;
  const char* line_end;
  std::vector<std::size_t> lengths;   // of the lines stored
} physical_lines[] = {
  { 1022, "\n",   {1023} },
  { 1022, "",     {1022} },
  { 1022, "\r\n", {1023, 1} },        // a line end can be torn
  { 1023, "\n",   {1023, 1} },
  { 1023, "",     {1023} },
  { 1024, "\n",   {1023, 2} },
  { 1024, "",     {1023, 1} },
  { 2046, "\n",   {1023, 1023, 1} },
  { 2046, "",     {1023, 1023} },
  { 4094, "\n",   {1023, 1023, 1023, 1023, 3} },
  { 4094, "",     {1023, 1023, 1023, 1023, 2} },
  { 4095, "\n",   {1023, 1023, 1023, 1023, 4} },
  { 4095, "",     {1023, 1023, 1023, 1023, 3} },
  { 4096, "\n",   {1023, 1023, 1023, 1023, 5} },
  { 4096, "",     {1023, 1023, 1023, 1023, 4} },
};
// clang-format on

TEST_F(RamFile, SplitsLongLinesInto1023Characters) {
  for (const auto& c : physical_lines) {
    const std::string content = std::string(c.characters, 'x') + c.line_end;
    Texts expected;
    std::size_t start = 0;
    for (const std::size_t length : c.lengths) {
      expected.push_back(content.substr(start, length));
      start += length;
    }
    EXPECT_EQ(expected, stored(content))
        << c.characters << " characters and a line end of "
        << std::strlen(c.line_end);
  }
}

TEST_F(RamFile, StoresALineOf100000CharactersAs98) {
  const Texts lines = stored(std::string(100000, 'x') + "\nend\n");
  ASSERT_EQ(99u, lines.size());  // 97 * 1023 and 769
  for (std::size_t i = 0; i < 97; ++i)
    EXPECT_EQ(std::string(1023, 'x'), lines[i]) << i;
  EXPECT_EQ(std::string(769, 'x') + "\n", lines[97]);
  EXPECT_EQ("end\n", lines[98]);
}

TEST_F(RamFile, HoldsAnyNumberOfLines) {
  std::string content;
  for (int i = 0; i < 50000; ++i) content += "x\n";
  EXPECT_EQ(50000u, stored(content).size());
}

TEST_F(RamFile, EndsALineAtANul) {
  EXPECT_EQ((Texts{"", "b\n"}), stored("\0a\nb\n"s));
  EXPECT_EQ((Texts{"ab", "c\n"}), stored("ab\0cd\nc\n"s));
  EXPECT_EQ((Texts{"ab", "c\n"}), stored("ab\0\nc\n"s));
  EXPECT_EQ((Texts{"a\n", "b"}), stored("a\nb\0"s));
  EXPECT_EQ((Texts{""}), stored("\0"s));
}

TEST_F(RamFile, ANulHidesNoMoreThanItsPiece) {
  const std::string x(1023, 'x');
  EXPECT_EQ((Texts{"a", "y\n"}), stored("a\0"s + x.substr(2) + "y\n"));
}

TEST_F(RamFile, KeepsEveryByteButNul) {
  std::string content;
  for (int b = 255; b >= 0; --b) content += static_cast<char>(b);
  EXPECT_EQ((Texts{content.substr(0, 246), content.substr(246, 9)}),
            stored(content));
}

TEST_F(RamFile, HandsOutLineAfterLine) {
  const Handle file = loaded("one\n\ntwo\r\nthree");
  EXPECT_EQ("one\n", next_line(file));
  EXPECT_EQ("\n", next_line(file));
  EXPECT_EQ("two\r\n", next_line(file));
  EXPECT_EQ("three", next_line(file));
}

TEST_F(RamFile, AtTheEndHandsOutAnEmptyTextAgainAndAgain) {
  const Handle file = loaded("one\n");
  EXPECT_EQ("one\n", next_line(file));
  EXPECT_EQ("", next_line(file));
  EXPECT_EQ("", next_line(file));
}

TEST_F(RamFile, FillsABufferAsStrncpyDoes) {
  const struct {
    int size;
    int length;
    std::string buffer;
  } cases[] = {
      {8, 5, "line\n\0\0\0##"s},  // filled up with NULs, never beyond its size
      {6, 5, "line\n\0####"s},
      {5, 5, "line\n#####"s},  // a full buffer gets no NUL
      {3, 3, "lin#######"s},
      {1, 1, "l#########"s},
  };
  for (const auto& c : cases) {
    const Handle file = loaded("line\nnext\n");
    std::string buffer(10, '#');
    EXPECT_EQ(c.length, file->fgets(buffer.data(), c.size)) << c.size;
    EXPECT_EQ(c.buffer, buffer) << c.size;
    EXPECT_EQ("next\n", next_line(file)) << c.size;
  }
}

TEST_F(RamFile, HandsNothingOutIntoABufferOfNoBytes) {
  const Handle file = loaded("line\nnext\n");
  for (const int size : {0, -1}) {
    char byte = '#';
    EXPECT_EQ(0, file->fgets(&byte, size)) << size;
    EXPECT_EQ('#', byte) << size;
  }
  EXPECT_EQ("line\n", next_line(file));
}

TEST_F(RamFile, IsAtItsEndAsSoonAsTheLastLineIsHandedOut) {
  const Handle file = loaded("one\ntwo\n");
  EXPECT_FALSE(file->at_eof());
  EXPECT_EQ("one\n", next_line(file));
  EXPECT_FALSE(file->at_eof());
  EXPECT_EQ("two\n", next_line(file));
  EXPECT_TRUE(file->at_eof());
}

TEST_F(RamFile, IsNotAtItsEndBeforeAStoredLineOfNoCharacters) {
  const Handle file = loaded("one\n\0\n"s);
  EXPECT_EQ("one\n", next_line(file));
  EXPECT_FALSE(file->at_eof());
  EXPECT_EQ("", next_line(file));
  EXPECT_TRUE(file->at_eof());
}

TEST_F(RamFile, RewoundBeginsAgainWithTheFirstLine) {
  const Handle file = loaded("one\ntwo\n");
  next_line(file);
  next_line(file);
  file->rewind();
  EXPECT_FALSE(file->at_eof());
  EXPECT_EQ("one\n", next_line(file));
}

TEST_F(RamFile, ReloadedDiscardsEditsAndIsRewound) {
  write_file("a.f90", "one\ntwo\n");
  ramFILE_imp file("a.f90");
  char buffer[buffer_size];
  file.fgets(buffer, buffer_size);
  *file.begin() = file.copy("edited\n");

  file.reload();
  EXPECT_EQ((Texts{"one\n", "two\n"}), Texts(file.begin(), file.end()));
  EXPECT_EQ(4, file.fgets(buffer, buffer_size));
  EXPECT_STREQ("one\n", buffer);
}

TEST_F(RamFile, ReloadedReadsTheFileAfresh) {
  const Handle file = loaded("one\ntwo\n");
  write_file("a.f90", "1\n2\n3\n");
  EXPECT_EQ("one\n", next_line(file));
  file->reload();
  EXPECT_EQ("1\n", next_line(file));
  EXPECT_EQ("2\n", next_line(file));
  EXPECT_EQ("3\n", next_line(file));
  EXPECT_TRUE(file->at_eof());
}

TEST_F(RamFile, ReloadedFromAVanishedFileIsNotOkAndAtItsEnd) {
  const Handle file = loaded("one\ntwo\n");
  unlink("a.f90");
  file->reload();
  EXPECT_FALSE(file->ok());
  EXPECT_TRUE(file->at_eof());
  EXPECT_EQ("", next_line(file));

  write_file("a.f90", "back\n");
  file->reload();
  EXPECT_TRUE(file->ok());
  EXPECT_EQ("back\n", next_line(file));
}

TEST_F(RamFile, ReleasedHoldsNoLineUntilReloaded) {
  write_file("a.f90", "one\n");
  ramFILE_imp file("a.f90");
  file.release();
  EXPECT_TRUE(file.begin() == file.end());
  EXPECT_FALSE(file.ok());
  EXPECT_TRUE(file.at_eof());
  char buffer[buffer_size] = "left over";
  EXPECT_EQ(0, file.fgets(buffer, buffer_size));
  EXPECT_STREQ("", buffer);

  file.reload();
  EXPECT_EQ(4, file.fgets(buffer, buffer_size));
  EXPECT_STREQ("one\n", buffer);
}

TEST_F(RamFile, EditedLinesAreHandedOutAsEdited) {
  write_file("a.f90", "one\ntwo\n");
  ramFILE_imp file("a.f90");
  *(file.begin() + 1) = file.copy("a much longer line than it was\n");
  char buffer[buffer_size];
  file.fgets(buffer, buffer_size);
  EXPECT_STREQ("one\n", buffer);
  EXPECT_EQ(31, file.fgets(buffer, buffer_size));
  EXPECT_STREQ("a much longer line than it was\n", buffer);
}

TEST_F(RamFile, ReadsLikeAStream) {
  const Handle file = loaded("one\ntwo\n");
  char buffer[buffer_size];
  EXPECT_EQ(4, fgets(buffer, buffer_size, file.get()));
  EXPECT_STREQ("one\n", buffer);
  EXPECT_FALSE(at_eof(file.get(), false));
  EXPECT_EQ(4, fgets(buffer, buffer_size, file.get()));
  EXPECT_STREQ("two\n", buffer);
  EXPECT_TRUE(at_eof(file.get(), false));
  EXPECT_EQ(0, fgets(buffer, buffer_size, file.get()));
  EXPECT_STREQ("", buffer);
}

TEST_F(RamFile, ClosedStaysFullyUsable) {
  const Handle file = loaded("one\ntwo\n");
  EXPECT_EQ("one\n", next_line(file));
  fclose(file.get());
  EXPECT_TRUE(file->ok());
  EXPECT_EQ("two\n", next_line(file));
  file->rewind();
  EXPECT_EQ("one\n", next_line(file));
}

TEST_F(RamFile, ReportsItsEndWhenAskedTo) {
  const Handle file = loaded("one\n");
  EXPECT_EQ("", printed([&] { EXPECT_FALSE(at_eof(file.get(), true)); }));
  next_line(file);
  EXPECT_EQ("END OF FILE\n",
            printed([&] { EXPECT_TRUE(at_eof(file.get(), true)); }));
  EXPECT_EQ("END OF FILE\n",
            printed([&] { EXPECT_TRUE(at_eof(file.get(), true)); }));
  EXPECT_EQ("", printed([&] { EXPECT_TRUE(at_eof(file.get(), false)); }));
}

TEST_F(RamFile, KeepsTheLinesReadBeforeAReadError) {
  Handle file;
  {
    const FailingFile failing("a.f90", "one\ntwo\n");
    file.reset(ramFILE::New("a.f90"));
  }
  ASSERT_NE(nullptr, file);
  EXPECT_EQ("one\n", next_line(file));
  EXPECT_EQ("two\n", next_line(file));
  EXPECT_TRUE(file->at_eof());
}

TEST_F(RamFile, ReloadingGivesBackTheMemoryOfTheLinesHeldSoFar) {
  const std::string text = std::string(99, 'x') + "\n";
  write_file("a.f90", text + text + text);
  ramFILE_imp file("a.f90");
  file.reload();
  const std::size_t before = heap_in_use();
  for (int i = 0; i < 1000; ++i) file.reload();
  EXPECT_GT(before + 10000, heap_in_use());
}
