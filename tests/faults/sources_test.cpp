// Sources that cannot be read or that change during a run. Each pass opens them
// again and silently skips those that it cannot open.

#include <gtest/gtest.h>

#include <filesystem>
#include <string>

#include "html/page_names.h"
#include "tests/faults/engine_run.h"

namespace fs = std::filesystem;

namespace {

const std::string solve_link =
    "<a HREF=\"b1756053.html#solve-1\"><b>solve</b></a>";
const std::string content_a =
    "call <a NAME=\"line1\"></a>" + solve_link + "\nend\n";

// a.f90 calls the unit of b.f90 once.
class Sources : public EngineRun {
 protected:
  Sources() {
    write_file("a.f90", "call solve\nend\n");
    write_file("b.f90", "subroutine solve\nx = 1\nend\n");
  }

  static std::string index() { return content_of("HTML/index.html"); }

  static std::string content_b(const std::string& rest) {
    return "subroutine <a NAME=\"solve-1\"><b>solve</b></a>" +
           callers_menu(caller(page_a, "a.f90", 1)) + rest;
  }
};

TEST_F(Sources, AreSkippedByEveryPassWhenTheyCannotBeRead) {
  const Locked lock("b.f90");
  verbose = 1;
  EXPECT_EQ(
      "END OF FILE\n"
      "Generating XREF for a.f90...OK\n"
      "Generating HTML for a.f90...OK\n"
      "Generating HTML index..\nDone!\n",
      printed([this] { expect_whole_run(); }));
  expect_page_a("call solve\nend\n");
  EXPECT_FALSE(fs::exists("HTML/" + page_b));
  EXPECT_EQ(std::string::npos, index().find("solve"));
}

// Links to it remain.
TEST_F(Sources, HaveNoPageWhenRemovedAfterTheDeclarationPass) {
  after_report(2, [] { fs::remove("b.f90"); });
  verbose = 1;
  EXPECT_EQ(
      "END OF FILE\n"
      "SUBROUTINE          ***\tsolve\tin b.f90\n"
      "END OF FILE\n"
      "Generating XREF for a.f90...OK\n"
      "Generating HTML for a.f90...OK\n"
      "Generating HTML index..\nDone!\n",
      printed([this] { expect_whole_run(); }));
  expect_page_a(content_a);
  EXPECT_FALSE(fs::exists("HTML/" + page_b));
  EXPECT_NE(std::string::npos, index().find("\n<LI> " + solve_link));
}

TEST_F(Sources, RemainCallersWhenRemovedAfterTheReferencePass) {
  after_report(4, [] { fs::remove("a.f90"); });
  expect_whole_run();
  EXPECT_FALSE(fs::exists("HTML/" + page_a));
  expect_page_b(content_b("\nx = 1\nend\n"));
}

TEST_F(Sources, AreShownUpToTheirEndWhenCutBetweenPasses) {
  const std::string text = content_of("b.f90");
  const std::size_t first_line = 17;
  for (const std::size_t step : {2u, 4u}) {
    for (std::size_t size = 0; size <= text.size(); ++size) {
      SCOPED_TRACE(std::to_string(size) + " bytes after report " +
                   std::to_string(step));
      write_file("b.f90", text);
      after_report(step, [size] { fs::resize_file("b.f90", size); });
      expect_whole_run();
      std::string shown;
      if (size >= first_line)
        shown = content_b("\n" + text.substr(first_line, size - first_line));
      shown.resize(shown.rfind('\n') + 1);
      expect_page_b(shown);
      expect_page_a(content_a);
    }
  }
}

// On another line than before, the name of a unit is a reference.
TEST_F(Sources, LinkToAMissingAnchorWhenAUnitMovesBetweenPasses) {
  after_report(4, [] { write_file("b.f90", "\nsubroutine solve\nend\n"); });
  run();
  expect_page_b("\nsubroutine <a NAME=\"line2\"></a>" + solve_link + "\nend\n");
}

TEST_F(Sources, AreReadThroughLongPaths) {
  for (const std::size_t length : {255u, 1024u, 4095u}) {
    const std::string path = "d" + std::string(length - 6, '/') + "s.f90";
    write_file(path, "subroutine solve\nend subroutine solve\n");
    FileList files({path});
    run(files);
    EXPECT_EQ(path, messages().front());

    const std::string name = HTML_REF(files.slot(0));
    expect_page("HTML/" + name, "s.f90",
                "subroutine <a NAME=\"solve-1\"><b>solve</b></a>" +
                    callers_menu(caller(name, path, 2)) +
                    "\nend subroutine <a NAME=\"line2\"></a><a HREF=\"" + name +
                    "#solve-1\"><b>solve</b></a>\n");
  }
}

}  // namespace
