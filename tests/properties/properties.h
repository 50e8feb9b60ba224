// What the pages of any run hold, told once more for trees of any kind.

#pragma once

#include <string>
#include <vector>

#include "tests/properties/tree.h"

/// The units that the lines of a tree open, in the registry's order, each with
/// all lines that refer to it.
std::vector<Unit> units_of(const Tree& tree);

/// What is wrong with a run, one text for each fault: a registry that does not
/// hold units_of() its tree, and pages that are missing, should not be there or
/// do not show the lines of their source with the marks of these units.
std::vector<std::string> faults_of(const FinishedRun& run);
