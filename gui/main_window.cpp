#include "gui/main_window.h"

#include <FL/Fl.H>
#include <FL/Fl_Box.H>
#include <FL/Fl_Button.H>
#include <FL/Fl_Check_Button.H>
#include <FL/Fl_Choice.H>
#include <FL/Fl_File_Chooser.H>
#include <FL/Fl_Group.H>
#include <FL/Fl_Input.H>
#include <FL/Fl_Menu_Button.H>
#include <FL/Fl_Menu_Item.H>
#include <FL/Fl_Multi_Browser.H>
#include <FL/Fl_Slider.H>
#include <FL/Fl_Window.H>
#include <FL/fl_ask.H>

#include <string>
#include <vector>

#include "driver/directory_listing.h"
#include "driver/pipeline.h"
#include "driver/settings.h"
#include "driver/version.h"
#include "gui/file_panes.h"
#include "gui/labels.h"
#include "gui/progress.h"
#include "gui/special_browser.h"
#include "gui/toolkit_versions.h"
#include "gui/user_interface.h"

static const std::string help_text =
    "Go to https://zelkor.example/\n"
    "Use the 'Bugs' link for feedback\n"
    "\n"
    "Zelkor is FREE... tell others about it!\n";

// The values that the highlighting controls pass by address.
static int level_none = LEVEL_NONE;
static int level_1 = LEVEL_1;
static int level_2 = LEVEL_2;
static int level_3 = LEVEL_3;
static int bold_keywords = BOLD_KEYWORDS;
static int italic_keywords = ITALIC_KEYWORDS;

static const std::uint32_t all_levels =
    LEVEL_1 | LEVEL_2 | LEVEL_3 | LEVEL_NONE;

// clang-format off
Fl_Menu_Item ZelkorUserInterface::menu_Level[] = {
  {"None", 0, SyntaxStyle_cb, &level_none, 0, FL_NORMAL_LABEL, 0, 14, 0},
  {"1",    0, SyntaxStyle_cb, &level_1,    0, FL_NORMAL_LABEL, 0, 14, 0},
  {"2",    0, SyntaxStyle_cb, &level_2,    0, FL_NORMAL_LABEL, 0, 14, 0},
  {"3",    0, SyntaxStyle_cb, &level_3,    0, FL_NORMAL_LABEL, 0, 14, 0},
  {nullptr, 0, nullptr, nullptr, 0, 0, 0, 0, 0},
};
// clang-format on

// Deliberate: choosing a level inverts the other level bits instead of clearing
// them, so several may be set afterwards.
void SyntaxStyle_cb(Fl_Widget* /*widget*/, void* value) {
  const auto bit = static_cast<std::uint32_t>(*static_cast<int*>(value));
  switch (bit) {
    case HIDE_STRINGS_AND_COMMENTS:
    case WRITE_INDEX:
    case BOLD_KEYWORDS:
    case ITALIC_KEYWORDS:
      html_style ^= bit;
      break;
    case LEVEL_NONE:
    case LEVEL_1:
    case LEVEL_2:
    case LEVEL_3:
      html_style = (html_style ^ all_levels) | bit;
      break;
    default:
      break;
  }
}

void SelectOutput_cb(Fl_Button* /*button*/, void* input) {
  const char* directory =
      fl_dir_chooser("select HTML ouput directory", html_dir.c_str(), 0);
  if (directory != nullptr) html_dir = directory;
  static_cast<Fl_Input*>(input)->value(html_dir.c_str());
}

// Runs the engine over copies of the paths, because the toolkit handles events
// during the run and the user may edit the lists.
static void generate(ZelkorUserInterface* ui) {
  std::vector<std::string> paths = texts_of(ui->selected_files);
  if (paths.empty()) return;
  std::vector<char*> files;
  files.reserve(paths.size());
  for (std::string& path : paths) files.push_back(path.data());

  progress(0.0, "generating HTML...", ui);
  gen_html(static_cast<int>(files.size()), files.data());
  progress(1.0, "HTML complete!", ui);
}

void GenerateHTML_cb(Fl_Button* /*button*/, ZelkorUserInterface* ui) {
  // The engine is not re-entrant, and callbacks are called during a run.
  static bool running = false;
  if (running) return;

  html_dir = ui->output_dir_input->value();
  if (!is_directory(html_dir)) {
    fl_alert("'%s'\nis not a directory name", label_text(html_dir).c_str());
    return;
  }
  running = true;
  generate(ui);
  running = false;
}

static void help_cb(Fl_Widget* /*widget*/, void* /*unused*/) {
  fl_message("%s", help_text.c_str());
}

// The item of the Level choice for the level in html_style: the first item when
// no level bit is set, or several.
static int level_item() {
  switch (html_style & all_levels) {
    case LEVEL_1:
      return 1;
    case LEVEL_2:
      return 2;
    case LEVEL_3:
      return 3;
    default:
      return 0;
  }
}

static const char* initial_notice() {
  static const std::string notice =
      "F1: handbook. Copyright (C) Qumbra " + build_year();
  return notice.c_str();
}

// clang-format off
Fl_Window* ZelkorUserInterface::make_window(const std::string& title) {
  gui_instance = this;
  title_message_boxes("Zelkor");
  Fl_Window* window;
  { window = new Fl_Window(529, 363);
    window->copy_label(title.c_str());
    window->xclass("zelkor");
    window->color((Fl_Color)48);
    window->user_data(this);
    { progress_bar = new Fl_Slider(10, 337, 95, 20, "");
      progress_bar->type(FL_HOR_FILL_SLIDER);
      progress_bar->box(FL_ENGRAVED_BOX);
      progress_bar->color((Fl_Color)52);
      progress_bar->selection_color((Fl_Color)176);
      progress_bar->labelfont(FL_TIMES_ITALIC);
      progress_bar->align(FL_ALIGN_RIGHT);
      progress_bar->when(FL_WHEN_NOT_CHANGED);
      progress_bar->deactivate();
    } // Fl_Slider* progress_bar
    { status_box = new Fl_Box(105, 337, window->w() - 115, 20, initial_notice());
      status_box->box(FL_ENGRAVED_BOX);
      status_box->color((Fl_Color)52);
      status_box->labelfont(FL_TIMES_ITALIC);
      status_box->align(FL_ALIGN_LEFT | FL_ALIGN_INSIDE | FL_ALIGN_CLIP);
      status_box->labeltype(status_label());
    } // Fl_Box* status_box
    { selected_files = new SpecialBrowser(10, 115, 210, 215, "Selected Files");
      selected_files->type(FL_MULTI_BROWSER);
      selected_files->color((Fl_Color)52);
      selected_files->selection_color((Fl_Color)175);
      selected_files->labelfont(FL_HELVETICA_BOLD);
      selected_files->align(FL_ALIGN_TOP | FL_ALIGN_LEFT);
      selected_files->when(FL_WHEN_NOT_CHANGED);
    } // SpecialBrowser* selected_files
    { potential_files = new Fl_Multi_Browser(310, 115, 210, 215, "Potential Files");
      potential_files->type(FL_MULTI_BROWSER);
      potential_files->color((Fl_Color)52);
      potential_files->selection_color((Fl_Color)175);
      potential_files->labelfont(FL_HELVETICA_BOLD);
      potential_files->callback((Fl_Callback*)change_dir_click_cb, this);
      potential_files->align(FL_ALIGN_TOP | FL_ALIGN_LEFT);
      potential_files->when(FL_WHEN_CHANGED);
    } // Fl_Multi_Browser* potential_files
    { dir_menu_button = new Fl_Menu_Button(310, 95, 210, 19, "Potential Files");
      dir_menu_button->color((Fl_Color)52);
      dir_menu_button->selection_color((Fl_Color)175);
      dir_menu_button->labelfont(FL_HELVETICA_BOLD);
      dir_menu_button->tooltip("Go to one of the directories above.");
      dir_menu_button->callback((Fl_Callback*)change_dir_menu_cb, this);
      store_current_directory(this, "./");
      change_dir_to(this, "./");
    } // Fl_Menu_Button* dir_menu_button
    { add_button = new Fl_Button(235, 125, 60, 25, "<<<");
      add_button->tooltip("Add what is marked on the right to Selected Files.");
      add_button->callback((Fl_Callback*)add_files_cb, this);
    } // Fl_Button* add_button
    { remove_button = new Fl_Button(235, 160, 60, 25, ">>>");
      remove_button->tooltip("Take what is marked on the left out of Selected Files. No file is deleted.");
      remove_button->callback((Fl_Callback*)remove_files_cb, this);
    } // Fl_Button* remove_button
    { Fl_Button* o = new Fl_Button(235, 300, 60, 25, "help");
      o->callback(help_cb, nullptr);
    } // Fl_Button* o
    { Fl_Group* group = new Fl_Group(350, 25, 170, 65, "Syntax Highlighting");
      group->box(FL_ENGRAVED_BOX);
      group->color((Fl_Color)52);
      group->labelfont(FL_HELVETICA_BOLD);
      group->align(FL_ALIGN_TOP | FL_ALIGN_LEFT);
      { Fl_Choice* o = new Fl_Choice(365, 50, 65, 25, "Level :");
        o->align(FL_ALIGN_TOP | FL_ALIGN_LEFT);
        o->menu(menu_Level);
        o->value(level_item());
        o->tooltip("Choosing a level also turns the others over; the highest one on counts. F1 tells more.");
      } // Fl_Choice* o
      { bold_button = new Fl_Check_Button(450, 28, 70, 30, "bold");
        bold_button->labelfont(FL_HELVETICA_BOLD);
        bold_button->down_box(FL_DIAMOND_DOWN_BOX);
        bold_button->selection_color((Fl_Color)2);
        bold_button->value((html_style & BOLD_KEYWORDS) != 0);
        bold_button->callback(SyntaxStyle_cb, &bold_keywords);
      } // Fl_Check_Button* bold_button
      { italic_button = new Fl_Check_Button(450, 57, 70, 30, "italic");
        italic_button->labelfont(FL_HELVETICA_ITALIC);
        italic_button->down_box(FL_DIAMOND_DOWN_BOX);
        italic_button->selection_color((Fl_Color)2);
        italic_button->value((html_style & ITALIC_KEYWORDS) != 0);
        italic_button->callback(SyntaxStyle_cb, &italic_keywords);
      } // Fl_Check_Button* italic_button
      group->end();
    } // Fl_Group* group
    { generate_button = new Fl_Button(25, 10, 180, 30, "Generate HTML");
      generate_button->box(FL_ROUND_UP_BOX);
      generate_button->color((Fl_Color)47);
      generate_button->labelfont(FL_HELVETICA_BOLD);
      generate_button->callback((Fl_Callback*)GenerateHTML_cb, this);
      generate_button->deactivate();
    } // Fl_Button* generate_button
    { output_dir_input = new Fl_Input(10, 65, 325, 25, "HTML Output Directory");
      output_dir_input->labelfont(FL_HELVETICA_BOLD);
      output_dir_input->textfont(FL_COURIER);
      output_dir_input->align(FL_ALIGN_TOP | FL_ALIGN_LEFT);
      output_dir_input->tooltip("The directory for the pages. It must exist.");
    } // Fl_Input* output_dir_input
    { Fl_Button* o = new Fl_Button(260, 45, 75, 20, "Browse...");
      o->tooltip("Choose the directory for the pages.");
      o->callback((Fl_Callback*)SelectOutput_cb, output_dir_input);
    } // Fl_Button* o
    window->end();
  } // Fl_Window* window
  return window;
}
// clang-format on
