// A run over a few small sources, and what its pages say.

#ifndef ZELKOR_TESTS_HANDBOOK_ENGINE_RUN_H
#define ZELKOR_TESTS_HANDBOOK_ENGINE_RUN_H

#include <cstdint>
#include <memory>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "tests/support/file_list.h"
#include "tests/support/settings_guard.h"
#include "tests/support/temporary_folder.h"

/// The pages of a run in a scratch folder of its own.
class EngineRun {
 public:
  /// Paths and contents, in the order of the list.
  using Sources = std::vector<std::pair<std::string, std::string>>;

  /// Runs with these bits of html_style, and those that are on at the start.
  explicit EngineRun(const Sources& sources, std::uint32_t more_style = 0);

  /// The same over one source.
  explicit EngineRun(const std::string& text, std::uint32_t more_style = 0)
      : EngineRun(Sources{{"a.f90", text}}, more_style) {}

  /// The name of the page of a source, counted from 0.
  std::string page_name(std::size_t source);

  /// What its page shows between "<pre>" and "</pre>".
  std::string body(std::size_t source);

  /// A page by its name.
  std::string page(const std::string& name) const;

  std::string index() const { return page("index.html"); }

  /// The entries of the index: the kind as the anchor has it, and the name.
  std::set<std::pair<std::string, std::string>> units() const;

 private:
  TemporaryFolder folder;
  SettingsGuard settings;
  std::unique_ptr<FileList> files;
};

/// How often a piece occurs in a text.
int count_of(const std::string& piece, const std::string& text);

#endif
