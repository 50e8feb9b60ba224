#include "gui/logo.h"

#include "packaging/artwork/logo.xpm"

// The toolkit takes rows that it might change, and does not.
char** logo_xpm() { return const_cast<char**>(logo_rows); }
