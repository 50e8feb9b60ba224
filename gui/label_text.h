// Text for labels and message boxes.

#ifndef ZELKOR_GUI_LABEL_TEXT_H
#define ZELKOR_GUI_LABEL_TEXT_H

#include <string>

/// A text in the form in which a label shows it as it is: every "@" is doubled,
/// because the toolkit takes what follows a single one for a symbol's name.
std::string label_text(const std::string& text);

#endif
