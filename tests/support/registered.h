// The registry as texts.

#pragma once

#include <array>
#include <string>
#include <vector>

#include "analysis/declaration.h"

inline const char* kind_name(DecType type) {
  const std::array<const char*, 6> names = {
      "module", "program", "subroutine", "function", "interface", "type"};
  return names.at(static_cast<std::size_t>(type));
}

/// The registry in its order, each unit as "KEY: kind name, file:line".
inline std::vector<std::string> registered() {
  std::vector<std::string> units;
  for (const auto& [key, unit] : Declaration::decs)
    units.push_back(key + ": " + kind_name(unit->type) + " " + unit->name +
                    ", " + *unit->file + ":" + std::to_string(unit->line));
  return units;
}

/// The references to a unit, each as "file:line".
inline std::vector<std::string> places(const Callers& callers) {
  std::vector<std::string> texts;
  for (const Calling& calling : callers)
    texts.push_back(*calling.file + (":" + std::to_string(calling.line)));
  return texts;
}
