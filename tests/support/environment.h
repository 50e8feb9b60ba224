// Environment variables that a test sets.

#pragma once

#include <stdlib.h>

#include <optional>
#include <string>
#include <utility>

/// A value, or no value.
inline void set_environment(const std::string& name,
                            const std::optional<std::string>& value) {
  if (value)
    setenv(name.c_str(), value->c_str(), 1);
  else
    unsetenv(name.c_str());
}

/// Puts a variable back as it was when destroyed.
class EnvironmentGuard {
 public:
  explicit EnvironmentGuard(std::string variable) : name(std::move(variable)) {
    if (const char* value = getenv(name.c_str())) previous = value;
  }
  ~EnvironmentGuard() { set_environment(name, previous); }
  EnvironmentGuard(const EnvironmentGuard&) = delete;
  EnvironmentGuard& operator=(const EnvironmentGuard&) = delete;

 private:
  std::string name;
  std::optional<std::string> previous;
};
