// usage: bench_window LIST DIRECTORY
//
// One run over the files that LIST names, started by the button of the real
// window; the pages go to DIRECTORY. Prints the seconds from the press of the
// button to the end of the run.

#include <FL/Fl.H>
#include <FL/Fl_Button.H>
#include <FL/Fl_Input.H>
#include <FL/Fl_Window.H>

#include <chrono>
#include <cstdio>
#include <memory>

#include "bench/file_list.h"
#include "gui/special_browser.h"
#include "gui/user_interface.h"

int main(int argc, char** argv) {
  if (argc != 3) return 2;
  ZelkorUserInterface ui;
  const std::unique_ptr<Fl_Window> window(ui.make_window("Zelkor"));
  window->show();
  for (const std::string& path : read_file_list(argv[1]))
    ui.selected_files->add(path.c_str());
  ui.output_dir_input->value(argv[2]);
  ui.generate_button->activate();
  Fl::wait(1.0);
  Fl::flush();

  const auto start = std::chrono::steady_clock::now();
  ui.generate_button->do_callback();
  const std::chrono::duration<double> seconds =
      std::chrono::steady_clock::now() - start;
  std::printf("%.6f\n", seconds.count());
}
