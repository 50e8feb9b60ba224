// Tests that need a process nobody used before them.

#pragma once

#include <functional>

/// Runs the body of the current test in a process of its own: starts this
/// program again for this one test. A failure there is a failure here.
void alone(const std::function<void()>& body);

/// Whether this process was started for such a test, whose body has yet to run.
bool runs_alone();
