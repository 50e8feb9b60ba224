// The help keys: F1 shows the handbook, Shift+F1 the About box.

#pragma once

class Fl_Window;

/// Handles the two keys when no widget uses them. Call it once. The About box
/// is centred over `window`, which must live as long as events are handled.
///
/// The handbook is the one in the common installation directory, or else the
/// one installed with this program. If there is none, a message names both
/// places.
void offer_help_keys(Fl_Window* window);
