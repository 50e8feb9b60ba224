#include "analysis/keywords.h"

#include "analysis/words.h"
#include "driver/settings.h"

Marker* Marker::first = nullptr;
Syntax* Syntax::first = nullptr;

Marker::Marker(DecType unit_type, const char* keyword)
    : type(unit_type), name(keyword), next(first) {
  first = this;
}

bool Marker::In(const char* text, int* consumed) const {
  return match(name, text, consumed);
}

Syntax::Syntax(int word_level, const char* highlight_word)
    : word(highlight_word), level(word_level), next(first) {
  first = this;
}

bool Syntax::Is(const char* text) const { return starts_with_word(text, word); }

static bool is_enabled(int level) {
  return ((html_style & LEVEL_1) && level <= 1) ||
         ((html_style & LEVEL_2) && level <= 2) ||
         ((html_style & LEVEL_3) && level <= 3);
}

Syntax* isSyntax(const char* text) {
  const char initial = to_upper(*text);
  for (Syntax* entry = Syntax::first; entry != nullptr; entry = entry->next)
    if (to_upper(*entry->word) == initial && is_enabled(entry->level) &&
        entry->Is(text))
      return entry;
  return nullptr;
}

// Each entry goes to the front of its list, so the lists are in reverse order.
// Deliberate: "end", "call", "use" and "contains" are left out.
// clang-format off
static Marker marker6(DT_TYPE,       "TYPE");
static Marker marker5(DT_INTERFACE,  "INTERFACE");
static Marker marker4(DT_FUNCTION,   "FUNCTION");
static Marker marker3(DT_SUBROUTINE, "SUBROUTINE");
static Marker marker2(DT_MODULE,     "MODULE");
static Marker marker1(DT_PROGRAM,    "PROGRAM");

static Syntax syntaxa(1, "program");
static Syntax syntaxb(1, "module");
static Syntax syntaxc(1, "subroutine");
static Syntax syntaxd(1, "function");
static Syntax syntaxe(1, "interface");
static Syntax syntaxf(1, "type");
static Syntax syntax01(2, "if");
static Syntax syntax02(2, "then");
static Syntax syntax03(2, "else");
static Syntax syntax04(2, "elseif");
static Syntax syntax05(2, "endif");
static Syntax syntax06(2, "do");
static Syntax syntax07(2, "while");
static Syntax syntax08(2, "until");
static Syntax syntax09(2, "continue");
static Syntax syntax10(2, "enddo");
static Syntax syntax11(2, "select");
static Syntax syntax12(2, "case");
static Syntax syntax13(3, "allocate");
static Syntax syntax14(3, "deallocate");
// clang-format on
