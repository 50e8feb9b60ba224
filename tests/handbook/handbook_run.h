// Runs over small sources that the handbook describes.

#pragma once

#include <string>
#include <utility>
#include <vector>

#include "driver/pipeline.h"
#include "html/page_names.h"
#include "tests/handbook/handbook.h"
#include "tests/support/capture.h"
#include "tests/support/file_list.h"
#include "tests/support/page_test.h"

class HandbookRun : public PageTest {
 protected:
  /// Paths and contents, in the order of the list.
  using Sources = std::vector<std::pair<std::string, std::string>>;

  static void run(const Sources& sources) {
    std::vector<std::string> paths;
    for (const auto& [path, text] : sources) {
      write_file(path, text);
      paths.push_back(path);
    }
    FileList files(paths);
    gen_html(files.count(), files.data());
  }

  static std::string page_name(const std::string& path) {
    FileList files({path});
    return HTML_REF(files.slot(0));
  }

  /// The page of a source.
  static std::string page(const std::string& path) {
    return content_of("HTML/" + page_name(path));
  }

  static std::size_t count_of(const std::string& piece,
                              const std::string& text) {
    return pieces(text, piece, "").size();
  }
};
