// Blanks one line and walks over its words. The first byte chooses the comment
// rule.

#include <algorithm>
#include <cstring>

#include "analysis/keywords.h"
#include "analysis/normalise.h"
#include "analysis/words.h"
#include "tests/fuzz/scratch.h"

static void walk_words(const std::string& line) {
  int last = 0;
  for (Word word; find_next(line.c_str(), word); last = word.end) {
    demand(last <= word.start && word.start < word.end, "words are in order");
    for (int i = last; i < word.start; ++i)
      demand(!isALNUM(line[static_cast<std::size_t>(i)]), "no word is skipped");
    for (int i = word.start; i < word.end; ++i)
      demand(isALNUM(line[static_cast<std::size_t>(i)]),
             "words consist of word characters");
    const std::string name(word.name);
    demand(hash_of(name) == word.hash, "a word has the hash of its name");
    demand(starts_with_word(line.c_str() + word.start, name.c_str()) ==
               (word.end - word.start < word_size),
           "a word is found again where it starts, unless it was cut");
    isSyntax(name.c_str());
  }
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data,
                                      std::size_t size) {
  if (size == 0) return 0;
  const bool fixed_form = data[0] % 2 != 0;
  std::string line(bytes_of(data + 1, size - 1));
  line.resize(std::strlen(line.c_str()));

  std::string blanked = line;
  hide_F90_strings_comments(blanked.data(), fixed_form);
  demand(std::strlen(blanked.c_str()) == line.size(),
         "the length does not change");
  demand(std::equal(line.begin(), line.end(), blanked.begin(),
                    [](char a, char b) { return b == a || b == ' '; }),
         "only blanks are written");
  std::string again = blanked;
  hide_F90_strings_comments(again.data(), fixed_form);
  demand(again == blanked, "blanking again changes nothing");
  walk_words(line);
  walk_words(blanked);
  for (const Marker* marker = Marker::first; marker; marker = marker->next) {
    int consumed = 0;
    marker->In(line.c_str(), &consumed);
    demand(consumed <= static_cast<int>(line.size()),
           "a keyword ends within its line");
  }
  return 0;
}
