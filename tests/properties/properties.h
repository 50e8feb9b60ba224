// A model of the registry and the pages of a run.

#pragma once

#include <string>
#include <vector>

#include "tests/properties/tree.h"

/// The units of a tree in registry order, with their references.
std::vector<Unit> units_of(const Tree& tree);

/// Describes each difference between a run and the model: units, missing or
/// unexpected pages, and the bytes of pages.
std::vector<std::string> faults_of(const FinishedRun& run);
