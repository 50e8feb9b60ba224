// The progress of a run, shown on the main window's bar and status line.

#pragma once

class ZelkorUserInterface;

/// The window object that shows the reports; null until the first run. Not
/// owned.
extern ZelkorUserInterface* progress_target;

/// Shows a report and lets the toolkit redraw and handle pending events once.
/// So any callback of the window may run before this function returns.
///
///   fraction  from 0.0 to 1.0
///   message   one line. The text is not copied: it must stay valid until the
///             status line gets another one.
///   ui        the window object that shows this and later reports, or null for
///             the progress_target of the last report
///
/// Returns the result of Fl::check(): whether a window is still shown.
int progress(double fraction, const char* message, void* ui);
