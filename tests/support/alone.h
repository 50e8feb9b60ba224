// Tests that need a new process.

#pragma once

#include <functional>

/// Runs the body of the current test in a new process, which runs only this
/// test. A failure there is a failure here.
void alone(const std::function<void()>& body);

/// Whether this process was started for such a test and has not run it yet.
bool runs_alone();
