// Showing HTML files in the user's browser.

#pragma once

#include <string>

/// Shows an HTML file in the browser that the environment variable BROWSER
/// names. Uses the toolkit's help viewer if there is no such variable, or if
/// the browser cannot be started and the user chooses the viewer. Returns when
/// the browser's command has ended or the viewer is shown. The output of the
/// command goes to standard output.
///
///   path  for the browser, a "/" is added in front if there is none
void launch_html(const std::string& path);

/// Shows the handbook of a program, see locate_handbook().
void launch_handbook(const std::string& program);
