#include "gui/about.h"

#include <FL/Fl.H>
#include <FL/Fl_Box.H>
#include <FL/Fl_Multiline_Output.H>
#include <FL/fl_draw.H>
#include <gtest/gtest.h>

#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <functional>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "gui/dialog.h"
#include "tests/gui/main_window_fixture.h"
#include "tests/gui/pixels.h"
#include "tests/gui/user.h"

// Xlib's macros would spoil the headers above if it came first.
#include <FL/x.H>

namespace {

const int font_size = 12;

// --- Counting lines ---

// The width in pixels up to a character.
int width_to(const std::string& text, std::size_t end) {
  double width = 0;
  for (std::size_t begin = 0; begin < end;) {
    const std::size_t line_end = std::min(text.find('\n', begin), end - 1) + 1;
    width += fl_width(&text[begin], static_cast<int>(line_end - begin));
    begin = line_end;
  }
  return static_cast<int>(width);
}

// Deliberate: at a line end, too, the next line is taken to begin before the
// last word. So that word also takes room on the next line.
TEST(EstNumLines, CountsLineEndsAndWordsThatOverflow) {
  const int far = -1000;  // so wide that no line breaks
  const struct {
    std::string text;
    std::size_t from, to;  // the box is as wide as these characters
    int narrower;          // in pixels
    int count;
  } rows[] = {
      // The last line counts only with a line end.
      {"", 0, 0, far, 0},
      {"", 0, 0, 0, 0},
      {"one two three", 0, 0, far, 0},
      {"one two three\n", 0, 0, far, 1},
      {"one\ntwo", 0, 0, far, 1},
      {"one\n\ntwo\n\n\n", 0, 0, far, 5},
      {"one\rtwo\r", 0, 0, far, 0},
      {"one\vtwo\fthree\t", 0, 0, far, 0},
      {"one\r\ntwo\r\n", 0, 0, far, 2},
      // A word that would be too wide starts the next line, with its blank.
      {"aa bb", 0, 5, 0, 0},
      {"aa bb", 0, 5, 1, 1},
      {"aa bb ccc", 0, 5, 0, 1},
      // " bb ccc" is wider than "aa bb" less a pixel: bb and ccc part too.
      {"aa bb ccc", 0, 5, 1, 2},
      {"aa bb cc dd", 0, 8, 0, 1},
      {"aaaa bb cc", 4, 10, 0, 1},
      {"aaaa bb cc", 4, 10, 1, 2},
      // A word wider than the box is a whole line.
      {"wwwwwwwwww", 0, 10, 0, 0},
      {"wwwwwwwwww", 0, 10, 1, 1},
      {"wwwwwwwwww aa", 0, 10, 1, 1},
      {"aa wwwwwwwwww bb", 3, 13, 1, 2},
      {"wwwwwwwwww wwwwwwwwww wwwwwwwwww", 0, 10, 1, 3},
      {std::string(1000, 'w'), 0, 50, 0, 1},
      // The last word before a line end also counts for the next line.
      {"aa bb\ncc", 2, 8, 0, 1},
      {"aa bb\ncc", 2, 8, 1, 2},
      {"aa\ncc", 2, 5, 0, 1},
      {"aaaa bb\n", 0, 7, 1, 1},
      {"aaaa bb\ncc", 0, 7, 1, 1},
      {"a\naa bb cc", 2, 10, 1, 2},
      // Only white space ends words.
      {"aaa\tbbb cccc", 0, 7, 1, 2},
      {"aaa\vbbb cccc", 0, 7, 1, 2},
      {"aaa\fbbb cccc", 0, 7, 1, 2},
      {"aaa\rbbb cccc", 0, 7, 1, 2},
      {"aaa-bbb cccc", 0, 7, 1, 1},
      {std::string("aaa\xa0") + "bbb cccc", 0, 7, 1, 1},
      {std::string("aaa\x85") + "bbb cccc", 0, 7, 1, 1},
  };
  fl_open_display();
  for (const int size : {font_size, 2 * font_size}) {
    fl_font(FL_HELVETICA, size);
    for (const auto& row : rows) {
      const int width =
          width_to(row.text, row.to) - width_to(row.text, row.from);
      EXPECT_EQ(row.count,
                est_num_lines(row.text.c_str(), width - row.narrower))
          << "\"" << row.text << "\" in a box " << row.narrower
          << " pixels narrower than " << row.from << " to " << row.to;
    }
  }
}

// --- The box ---

// A one-coloured picture.
class Picture {
 public:
  Picture(int w, int h)
      : texts{std::to_string(w) + " " + std::to_string(h) + " 1 1",
              "a c #FF0000"} {
    texts.resize(2 + static_cast<std::size_t>(h),
                 std::string(static_cast<std::size_t>(w), 'a'));
    for (std::string& text : texts) rows.push_back(text.data());
  }
  char** xpm() { return rows.data(); }

 private:
  std::vector<std::string> texts;
  std::vector<char*> rows;
};

// The height of the text block for a number of counted lines.
int block_height(int lines) {
  fl_font(FL_HELVETICA, font_size);
  return (2 * lines + 1) * fl_height() / 2;
}

class About : public testing::Test {
 protected:
  void SetUp() override { show_and_wait(parent); }
  void TearDown() override {
    parent.hide();
    Fl::check();
  }

  // Shows the box, looks at it and presses "okay".
  bool about(
      Picture picture, const char* text,
      const std::function<void(Fl_Dialog&)>& look = [](Fl_Dialog&) {}) {
    return answered(std::move(picture), text, [&](Fl_Window& window) {
      look(dynamic_cast<Fl_Dialog&>(window));
      click(*button_of(window, "okay"));
    });
  }
  bool answered(Picture picture, const char* text,
                const ModalWatcher::Action& action) {
    const WhenModal user(action);
    return fl_about(picture.xpm(), title, text, &parent);
  }

  static Fl_Box& logo(Fl_Dialog& dialog) {
    return dynamic_cast<Fl_Box&>(*dialog.work_area()->child(0));
  }
  static Fl_Multiline_Output& output(Fl_Dialog& dialog) {
    return dynamic_cast<Fl_Multiline_Output&>(*dialog.work_area()->child(1));
  }

  const char* const title = "About Zelkor";
  Fl_Window parent{301, 203, 333, 277, "parent"};
};

TEST_F(About, ReturnsTrueOnlyWhenOkayWasPressed) {
  EXPECT_TRUE(about({20, 10}, "text"));
  EXPECT_FALSE(answered({20, 10}, "text", [](Fl_Window& window) {
    click(*button_of(window, "cancel"));
  }));
  bool closed = false;
  EXPECT_FALSE(answered({20, 10}, "text", [&](Fl_Window& window) {
    if (!closed) close_by_window_manager(window);
    closed = true;
  }));
}

TEST_F(About, ShowsLogoTitleAndTextOverItsParent) {
  about({20, 10}, "one @two\nthree\n", [&](Fl_Dialog& dialog) {
    const int h = 10 + 25 + block_height(2) + 70;
    // The parent's middle is 301 + 166, 203 + 138.
    EXPECT_EQ((Place{467 - 210, 341 - h / 2, 420, h}), place_of(dialog));
    EXPECT_STREQ(title, dialog.label());
    EXPECT_EQ(49u, dialog.color());
    EXPECT_TRUE(dialog.modal());
    EXPECT_EQ(2, dialog.work_area()->children());
    EXPECT_EQ(&output(dialog), dialog.work_area()->resizable());
    EXPECT_EQ(dialog.work_area(), dialog.resizable());

    Fl_Box& box = logo(dialog);
    EXPECT_EQ(nullptr, box.label());
    EXPECT_EQ(FL_FLAT_BOX, box.box());
    EXPECT_EQ(49u, box.color());
    EXPECT_EQ(FL_ALIGN_INSIDE, box.align());
    EXPECT_PRED_FORMAT2(same_picture, drawn(20, 10, FL_RED, [] {}),
                        shown(*dialog.work_area(), 200, 10, 20, 10));

    Fl_Multiline_Output& text = output(dialog);
    EXPECT_STREQ("one @two\nthree\n", text.value());
    EXPECT_EQ(FL_MULTILINE_OUTPUT_WRAP, text.type());
    EXPECT_EQ(FL_FLAT_BOX, text.box());
    EXPECT_EQ(49u, text.color());
    EXPECT_EQ(FL_HELVETICA, text.textfont());
    EXPECT_EQ(12, text.textsize());
    EXPECT_STREQ(title, text.label());
    EXPECT_EQ(16, text.labelsize());
    EXPECT_EQ(FL_ALIGN_TOP, text.align());
  });
}

TEST_F(About, CentresANarrowLogoAndWidensForAWideOne) {
  const struct {
    int logo, x, block;
  } rows[] = {{180, 120, 400}, {33, 193, 400}, {400, 10, 400}, {401, 10, 401}};
  for (const auto& row : rows)
    about({row.logo, 18}, "one\n", [&](Fl_Dialog& dialog) {
      EXPECT_EQ(row.block + 20, dialog.w());
      EXPECT_EQ(18 + 25 + block_height(1) + 70, dialog.h());
      EXPECT_EQ((Place{row.x, 10, row.logo, 18}), place_of(logo(dialog)));
      EXPECT_EQ((Place{10, 58, row.block, block_height(1)}),
                place_of(output(dialog)));
    });
}

// The toolkit handles events between two steps.
TEST_F(About, TextTakesTheFocusByMouseButNotByTheTabKey) {
  std::vector<std::string> focus;
  answered({20, 10}, "one\n", [&, step = 0](Fl_Window& window) mutable {
    auto& dialog = dynamic_cast<Fl_Dialog&>(window);
    Fl_Multiline_Output& text = output(dialog);
    const std::function<void()> steps[] = {
        [&] { button_of(dialog, "cancel")->take_focus(); },
        [&] { press_key(dialog, FL_Tab); },
        [&] { press_key(dialog, FL_Tab); },
        [&] { push(text); },
        [&] { release(text); },
        [&] {
          // The window loses the focus and gets it back.
          Fl::focus(nullptr);
          dialog.handle(FL_FOCUS);
          // This or a move of the real pointer may have marked text, and the
          // toolkit lets the first Tab unmark it. An empty text has no mark.
          text.value("");
        },
        [&] { press_key(dialog, FL_Tab); },
        [&] { press_key(dialog, FL_Tab, FL_SHIFT); },
        [&] { click(*button_of(dialog, "okay")); },
    };
    if (step > 0)
      focus.emplace_back(Fl::focus() == nullptr ? "(none)"
                         : Fl::focus() == &text ? "text"
                                                : Fl::focus()->label());
    steps[step++]();
  });
  EXPECT_EQ((std::vector<std::string>{"cancel", "okay", "okay", "text", "text",
                                      "text", "cancel", "cancel"}),
            focus);
}

// A word of a width in pixels: m's, then another letter repeated.
std::string word_of(int width) {
  fl_font(FL_HELVETICA, font_size);
  const auto excess = [&](const std::string& word) {
    return width_to(word, static_cast<int>(word.size())) - width;
  };
  for (std::string wide; excess(wide) <= 0; wide += 'm')
    for (const char letter : {'i', '.', 't', 'a', 'w'})
      for (std::string word = wide; excess(word) <= 0; word += letter)
        if (excess(word) == 0) return word;
  ADD_FAILURE() << "no word of " << width << " pixels";
  return "";
}

// The current font and the width of the logo do not matter.
TEST_F(About, TextBlockIsHalfALineHigherThanItsCountedLines) {
  const struct {
    std::string text;
    int lines;
  } rows[] = {{"", 0},
              {"one", 0},
              {"one\ntwo\n", 2},
              {word_of(394), 0},
              {word_of(395), 1}};
  for (const int logo_width : {20, 600})
    for (const auto& row : rows) {
      int height = -1;
      fl_font(FL_COURIER, 40);
      about({logo_width, 10}, row.text.c_str(),
            [&](Fl_Dialog& dialog) { height = output(dialog).h(); });
      EXPECT_EQ(block_height(row.lines), height) << row.text;
    }
}

// Four events, each of which reads a byte. Counts those that are handled before
// the box is shown, and those after.
struct PendingEvents {
  PendingEvents() {
    if (pipe(ends) != 0 || write(ends[1], "abcd", 4) != 4) abort();
    Fl::add_fd(ends[0], read_one, this);
  }
  ~PendingEvents() {
    Fl::remove_fd(ends[0]);
    close(ends[0]);
    close(ends[1]);
  }
  static void read_one(int end, void* self) {
    auto& that = *static_cast<PendingEvents*>(self);
    char byte = '\0';
    if (read(end, &byte, 1) != 1) abort();
    ++(Fl::modal() == nullptr ? that.before : that.after);
  }
  int ends[2];
  int before = 0;
  int after = 0;
};

TEST_F(About, WaitsHalfASecondAndHandlesPendingEventsFirst) {
  using Clock = std::chrono::steady_clock;
  while (Fl::ready()) Fl::check();
  Clock::duration waited{};
  for (const bool pending : {false, true}) {
    std::optional<PendingEvents> events;
    if (pending) events.emplace();
    const Clock::time_point start = Clock::now();
    about({20, 10}, "text", [&](Fl_Dialog&) { waited = Clock::now() - start; });
    if (pending) {
      EXPECT_EQ(4, events->before);
      EXPECT_EQ(0, events->after);
    } else {
      EXPECT_GE(waited, std::chrono::milliseconds(490));
    }
  }
}

}  // namespace
