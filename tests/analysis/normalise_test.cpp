#include "analysis/normalise.h"

#include <gtest/gtest.h>

#include <unistd.h>

#include <memory>
#include <string>
#include <vector>

#include "analysis/ram_file.h"
#include "tests/support/settings_guard.h"
#include "tests/support/temporary_folder.h"

using namespace std::string_literals;

using Texts = std::vector<std::string>;

// The whole buffer after blanking, what stands beyond a NUL included.
static std::string blanked(std::string line, bool fixed_form = false) {
  hide_F90_strings_comments(line.data(), fixed_form);
  return line;
}

static std::string fixed_form_blanked(const std::string& line) {
  return blanked(line, true);
}

static std::string blanks(std::size_t count) { return std::string(count, ' '); }

TEST(HideFreeForm, BlanksACommentUpToTheLineEnd) {
  EXPECT_EQ("x = 1 " + blanks(7) + "\n", blanked("x = 1 ! set x\n"));
  EXPECT_EQ("x = 1 " + blanks(7), blanked("x = 1 ! set x"));
  EXPECT_EQ(blanks(5) + "\n", blanked("!a ! \n"));
  EXPECT_EQ("x " + blanks(1) + "\n", blanked("x !\n"));
}

TEST(HideFreeForm, BlanksACarriageReturnInAComment) {
  EXPECT_EQ("x " + blanks(4) + "\n", blanked("x ! y\r\n"));
  EXPECT_EQ("x\r\n", blanked("x\r\n"));
}

TEST(HideFreeForm, ResumesAfterTheLineEndOfAComment) {
  EXPECT_EQ("a " + blanks(3) + "\nb \"" + blanks(1) + "\"\n",
            blanked("a ! \"\nb \"c\"\n"));
}

TEST(HideFreeForm, BlanksAStringAndKeepsItsQuotes) {
  EXPECT_EQ("print *, \"" + blanks(3) + "\"\n", blanked("print *, \"a!b\"\n"));
  EXPECT_EQ("f(\"\", \"" + blanks(1) + "\") x", blanked("f(\"\", \"a\") x"));
}

TEST(HideFreeForm, FindsACommentAfterAString) {
  EXPECT_EQ("x = \"" + blanks(1) + "\" " + blanks(5) + "\n",
            blanked("x = \"!\" ! \"a\"\n"));
}

TEST(HideFreeForm, DoesNotProtectApostropheStrings) {
  EXPECT_EQ("print *, 'a" + blanks(3) + "\n", blanked("print *, 'a!b'\n"));
  EXPECT_EQ("print *, 'solve'\n", blanked("print *, 'solve'\n"));
  EXPECT_EQ("'\"" + blanks(2), blanked("'\"' "));
}

TEST(HideFreeForm, KeepsBothQuotesOfADoubledQuote) {
  EXPECT_EQ("\"" + blanks(2) + "\"\"" + blanks(2) + "\" c",
            blanked("\"a!\"\"b!\" c"));
}

TEST(HideFreeForm, BlanksAnUnclosedStringLineEndIncluded) {
  EXPECT_EQ("x = \"" + blanks(6), blanked("x = \"abc!d\n"));
  EXPECT_EQ("x = \"" + blanks(2), blanked("x = \"\r\n"));
  EXPECT_EQ("\"", blanked("\""));
}

TEST(HideFreeForm, LeavesAnyOtherCharacter) {
  std::string line;
  for (int b = 1; b < 256; ++b)
    if (b != '!' && b != '"') line += static_cast<char>(b);
  EXPECT_EQ(line, blanked(line));
}

TEST(HideFreeForm, BlanksAnyCharacterOfAString) {
  std::string text;
  for (int b = 1; b < 256; ++b)
    if (b != '"') text += static_cast<char>(b);
  EXPECT_EQ("\"" + blanks(254) + "\"", blanked("\"" + text + "\""));
}

TEST(HideFreeForm, SeesNothingBeyondANul) {
  EXPECT_EQ("a  \0 !c"s, blanked("a !\0 !c"s));
  EXPECT_EQ("\" \0b\""s, blanked("\"a\0b\""s));
  EXPECT_EQ("\0! a"s, blanked("\0! a"s));
}

TEST(HideFreeForm, KeepsTheLengthOfAVeryLongLine) {
  const std::string x(100000, 'x');
  EXPECT_EQ("x" + blanks(100001) + "\n", blanked("x!" + x + "\n"));
  EXPECT_EQ("\"" + blanks(100000) + "\"\n", blanked("\"" + x + "\"\n"));
}

TEST(HideFixedForm, BlanksALineThatBeginsWithC) {
  EXPECT_EQ(blanks(9) + "\n", fixed_form_blanked("C comment\n"));
  EXPECT_EQ(blanks(9) + "\n", fixed_form_blanked("c comment\n"));
  EXPECT_EQ(blanks(10), fixed_form_blanked("call solve"));
  EXPECT_EQ(blanks(1), fixed_form_blanked("C"));
  EXPECT_EQ(blanks(2) + "\n", fixed_form_blanked("c\r\n"));
  EXPECT_EQ(blanks(1) + "\nc\n", fixed_form_blanked("c\nc\n"));
}

TEST(HideFixedForm, ChangesNothingElse) {
  for (const char* line :
       {" ! set x\n", "! set x\n", "* comment\n", " c comment\n",
        "      print *, \"a!b\"\n", "x = \"abc\n", "\n", "d\n"})
    EXPECT_EQ(line, fixed_form_blanked(line));
}

TEST(Hide, LeavesAnEmptyBufferAlone) {
  EXPECT_EQ("\0!C"s, blanked("\0!C"s));
  EXPECT_EQ("\0CC"s, fixed_form_blanked("\0CC"s));
}

class NormaliseFile : public ::testing::Test {
 protected:
  using Handle = std::unique_ptr<ramFILE>;

  static Handle loaded(const std::string& content) {
    write_file("a.f90", content);
    return Handle(ramFILE::New("a.f90"));
  }

  // The lines from the read position on.
  static Texts rest_of(const Handle& file) {
    Texts lines;
    char line[4096];
    while (!file->at_eof()) {
      file->fgets(line, sizeof line);
      lines.push_back(line);
    }
    return lines;
  }

  static Texts blanked_lines(const std::string& content,
                             bool fixed_form = false) {
    const Handle file = loaded(content);
    hide_F90_strings_comments(file.get(), fixed_form);
    return rest_of(file);
  }

  static Texts joined(const std::string& content) {
    const Handle file = loaded(content);
    merge_F90_continuations(file.get());
    return rest_of(file);
  }

  static void read_one_line(const Handle& file) {
    char line[4096];
    EXPECT_NE(0, file->fgets(line, sizeof line));
  }

  TemporaryFolder folder;
};

TEST_F(NormaliseFile, HideBlanksEveryLine) {
  EXPECT_EQ((Texts{"a " + blanks(3) + "\n", "\n", "\"" + blanks(1) + "\"\n",
                   blanks(2)}),
            blanked_lines("a ! b\n\n\"c\"\n!d"));
}

TEST_F(NormaliseFile, HideHandlesEachLineByItself) {
  EXPECT_EQ((Texts{"x = \"" + blanks(4), "call solve\n"}),
            blanked_lines("x = \"abc\ncall solve\n"));
}

TEST_F(NormaliseFile, HideTakesThePiecesOfALongLineForLines) {
  const std::string x(1022, 'x');
  EXPECT_EQ((Texts{blanks(1023), "solve\n"}),
            blanked_lines("!" + x + "solve\n"));
}

TEST_F(NormaliseFile, HideHandsTheFixedFormRuleOn) {
  EXPECT_EQ((Texts{blanks(6) + "\n", " ! \"a\"\n"}),
            blanked_lines("C rule\n ! \"a\"\n", true));
}

TEST_F(NormaliseFile, HideLeavesTheFileRewound) {
  const Handle file = loaded("one\ntwo\n");
  read_one_line(file);
  hide_F90_strings_comments(file.get(), false);
  EXPECT_EQ((Texts{"one\n", "two\n"}), rest_of(file));
}

TEST(NormaliseFileDeathTest, NullFilesAreIgnored) {
  ramFILE* const null = nullptr;
  const auto survives = testing::ExitedWithCode(0);
  EXPECT_EXIT((hide_F90_strings_comments(null, false), _exit(0)), survives, "");
  EXPECT_EXIT((hide_F90_strings_comments(null, true), _exit(0)), survives, "");
  EXPECT_EXIT((merge_F90_continuations(null), _exit(0)), survives, "");
}

TEST_F(NormaliseFile, AFileWithoutLinesStaysWithout) {
  write_file("empty.f90", "");
  ramFILE_imp file("empty.f90");
  hide_F90_strings_comments(&file, false);
  merge_F90_continuations(&file);
  EXPECT_EQ(file.begin(), file.end());
  EXPECT_TRUE(file.at_eof());
}

TEST_F(NormaliseFile, JoinPutsTheStatementInTheSlotOfItsLastLine) {
  EXPECT_EQ((Texts{"\n", "call f(a, b)\n", "end\n"}),
            joined("call f(a, &\n       b)\nend\n"));
}

TEST_F(NormaliseFile, JoinKeepsTheLineEndOfTheLastLine) {
  EXPECT_EQ((Texts{"\n", "call f(a, b)\r\n"}),
            joined("call f(a, &\r\n       b)\r\n"));
  EXPECT_EQ((Texts{"\n", "call f(a, b)"}), joined("call f(a, &\n  b)"));
}

TEST_F(NormaliseFile, JoinSpansThreeLines) {
  EXPECT_EQ((Texts{"\n", "\n", "call f(a, b, c)\n"}),
            joined("call f(a, &\n  b, &\n  c)\n"));
}

TEST_F(NormaliseFile, JoinNeedsTheAmpersandAtTheVeryEnd) {
  const Texts lines = {"call f(a, & \n", "call g(b, & ! why\n", "a & b\n",
                       "c)\n"};
  EXPECT_EQ(lines, joined(lines[0] + lines[1] + lines[2] + lines[3]));
}

TEST_F(NormaliseFile, JoinKeepsALeadingAmpersand) {
  EXPECT_EQ((Texts{"\n", "call sol&ve(a)\n"}),
            joined("call sol&\n   &ve(a)\n"));
}

TEST_F(NormaliseFile, JoinDropsAllLeadingWhiteSpace) {
  EXPECT_EQ((Texts{"\n", "a b\n"}), joined("a &\n \t\v\f\r b\n"));
  EXPECT_EQ((Texts{"\n",
                   "a \xa0"
                   "b\n"}),
            joined("a &\n\xa0"
                   "b\n"));
}

// The line end of an empty line is white space too.
TEST_F(NormaliseFile, JoinWithAnEmptyLineEndsWithoutLineEnd) {
  EXPECT_EQ((Texts{"\n", "a ", "b\n"}), joined("a &\n\nb\n"));
}

TEST_F(NormaliseFile, JoinOfABareAmpersandLeavesTheNextLine) {
  EXPECT_EQ((Texts{"\n", "b\n"}), joined("&\n  b\n"));
}

TEST_F(NormaliseFile, JoinNeverTakesTheLastLine) {
  EXPECT_EQ((Texts{"a &\n"}), joined("a &\n"));
  EXPECT_EQ((Texts{"a\n", "b &"}), joined("a\nb &"));
  EXPECT_EQ((Texts{"\n", "a b &\n"}), joined("a &\nb &\n"));
}

TEST_F(NormaliseFile, JoinLeavesLinesThatDoNotContinue) {
  EXPECT_EQ((Texts{"a\n", "\n", "\r\n", "b"}), joined("a\n\n\r\nb"));
}

TEST_F(NormaliseFile, JoinAcceptsALoneCarriageReturnAsLineEnd) {
  write_file("a.f90", "a\n  b\n");
  ramFILE_imp file("a.f90");
  *file.begin() = file.copy("a &\r");
  merge_F90_continuations(&file);
  EXPECT_EQ((Texts{"\n", "a b\n"}), Texts(file.begin(), file.end()));
}

TEST_F(NormaliseFile, JoinMakesLinesLongerThanAStoredPiece) {
  const std::string x(1000, 'x');
  EXPECT_EQ((Texts{"\n", "\n", x + x + x + "\n"}),
            joined(x + "&\n" + x + "&\n" + x + "\n"));
}

TEST_F(NormaliseFile, JoinLeavesTheFileRewound) {
  const Handle file = loaded("a &\nb\nc\n");
  read_one_line(file);
  merge_F90_continuations(file.get());
  EXPECT_EQ((Texts{"\n", "a b\n", "c\n"}), rest_of(file));
}

TEST(ConfigDosOrUnix, SetsTheSlashWhateverTheHint) {
  SettingsGuard guard;
  for (const char* hint : {"", "dos", "unix", "\\", "C:\\src\\a.f90"}) {
    slash = '\\';
    config_dos_or_unix(hint);
    EXPECT_EQ('/', slash) << hint;
  }
  slash = '\\';
  config_dos_or_unix(nullptr);
  EXPECT_EQ('/', slash);
}
