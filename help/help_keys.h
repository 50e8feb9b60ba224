// The keys that offer help: F1 the handbook, Shift+F1 the About box.

#pragma once

class Fl_Window;

/// Makes the toolkit hand the two keys over wherever no widget wants them. Call
/// it once; the About box is centred over `window`, which must live as long as
/// events are handled.
///
/// The handbook is that of the common installation directory, or else the one
/// installed with this program. A message tells where it was sought when there
/// is none.
void offer_help_keys(Fl_Window* window);
