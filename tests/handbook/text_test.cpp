// The handbook as a document: Zelkor's own viewer knows ASCII and the tags of
// HTML 3.2, and shows only links and pictures in the handbook's folder.

#include <gtest/gtest.h>

#include <filesystem>
#include <set>
#include <string>
#include <vector>

#include "tests/handbook/handbook.h"
#include "tests/support/capture.h"

namespace fs = std::filesystem;

namespace {

// The values of an attribute in a text.
std::vector<std::string> values_of(const std::string& name,
                                   const std::string& text) {
  return pieces(text, " " + name + "=\"", "\"");
}

TEST(HandbookText, IsPlainAscii) {
  ASSERT_NE("", handbook());
  for (const char c : handbook())
    ASSERT_TRUE(c == '\n' || (c >= ' ' && c <= '~'));
}

TEST(HandbookText, UsesOnlySimpleTagsAndClosesThem) {
  const std::set<std::string> single = {"!DOCTYPE", "HR", "IMG"};
  const std::set<std::string> paired = {
      "A", "B",   "BODY",  "H1", "H2", "H3",    "HEAD", "HTML", "LI",
      "P", "PRE", "TABLE", "TD", "TH", "TITLE", "TR",   "TT",   "UL"};
  std::vector<std::string> open;
  for (const std::string& tag : pieces(handbook(), "<", ">")) {
    const std::string name = tag.substr(0, tag.find(' '));
    if (single.count(name) != 0) continue;
    if (name[0] != '/') {
      EXPECT_EQ(1u, paired.count(name)) << '<' << tag << '>';
      open.push_back(name);
      continue;
    }
    ASSERT_FALSE(open.empty()) << '<' << tag << '>';
    ASSERT_EQ(name, "/" + open.back());
    open.pop_back();
  }
  EXPECT_TRUE(open.empty());
}

TEST(HandbookText, LinksLeadToUniqueAnchors) {
  const std::vector<std::string> names = values_of("NAME", handbook());
  const std::set<std::string> anchors(names.begin(), names.end());
  EXPECT_EQ(names.size(), anchors.size()) << "a name comes twice";
  const std::vector<std::string> links = values_of("HREF", handbook());
  EXPECT_FALSE(links.empty());
  for (const std::string& link : links) {
    ASSERT_EQ('#', link.at(0)) << link;
    EXPECT_EQ(1u, anchors.count(link.substr(1))) << link;
  }
}

TEST(HandbookText, ContentsListTheSectionsInOrder) {
  const std::string contents = pieces(handbook(), "<UL>", "</UL>").at(0);
  std::vector<std::string> sections;
  for (const std::string& heading : pieces(handbook(), "<H2>", "</H2>"))
    sections.push_back(pieces(heading, "<A NAME=\"", "</A>").at(0));
  EXPECT_EQ(sections, pieces(contents, "<A HREF=\"#", "</A>"));
}

std::string big_endian(const std::string& bytes) {
  int number = 0;
  for (const char c : bytes)
    number = number * 256 + static_cast<unsigned char>(c);
  return std::to_string(number);
}

TEST(HandbookPictures, ExistInTheSizeThatTheTextGives) {
  const std::string signature = "\x89PNG\r\n\x1a\n";
  std::set<std::string> used;
  for (const std::string& tag : pieces(handbook(), "<IMG", ">")) {
    const std::string name = values_of("SRC", tag).at(0);
    SCOPED_TRACE(name);
    used.insert(name);
    const std::string bytes = content_of(handbook_folder() + "/" + name);
    ASSERT_EQ(0u, bytes.find(signature));
    EXPECT_EQ(values_of("WIDTH", tag).at(0), big_endian(bytes.substr(16, 4)));
    EXPECT_EQ(values_of("HEIGHT", tag).at(0), big_endian(bytes.substr(20, 4)));
    EXPECT_EQ(0u, values_of("ALT", tag).at(0).find("[Picture: "));
  }
  std::set<std::string> present;
  for (const auto& entry : fs::directory_iterator(handbook_folder()))
    if (entry.path().extension() != ".html")
      present.insert(entry.path().filename());
  EXPECT_EQ(present, used);
}

}  // namespace
