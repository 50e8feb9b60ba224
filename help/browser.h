// Showing HTML files in the user's browser.

#pragma once

#include <string>

/// Shows an HTML file in the browser that the environment variable BROWSER
/// names, or in the toolkit's help viewer: when there is no such variable, or
/// when the browser cannot be started and the user prefers the viewer. Returns
/// when the browser's command has ended or the viewer is shown; what the
/// command prints goes to standard output.
///
///   path  is made absolute by a "/" in front if it has none
void launch_html(const std::string& path);

/// Shows the handbook of a program, see locate_handbook().
void launch_handbook(const std::string& program);
