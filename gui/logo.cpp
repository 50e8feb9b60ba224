#include "gui/logo.h"

#include "packaging/artwork/logo.xpm"

// The toolkit's parameter is not const, but it does not change the rows.
char** logo_xpm() { return const_cast<char**>(logo_rows); }
