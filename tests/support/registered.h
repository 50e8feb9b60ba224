// The registry as texts.

#pragma once

#include <string>
#include <vector>

#include "analysis/declaration.h"
#include "analysis/keywords.h"

/// The keyword of a kind of unit, in lower case.
inline std::string kind_name(DecType type) {
  const Marker* kind = Marker::first;
  while (kind->type != type) kind = kind->next;
  std::string name = kind->name;
  for (char& c : name) c = static_cast<char>(c - 'A' + 'a');
  return name;
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
