// Permissions that a test gives up, because an administrator may read anything.

#pragma once

#include <stdlib.h>
#include <unistd.h>

#include <functional>
#include <string>

/// Gives up the rights of the system's administrator, if this process has them,
/// until it is destroyed.
class AsOrdinaryUser {
 public:
  AsOrdinaryUser() {
    if (geteuid() == 0) changed = seteuid(nobody) == 0;
  }
  /// The same for a user who owns a folder.
  explicit AsOrdinaryUser(const std::string& folder) {
    if (geteuid() == 0)
      changed =
          chown(folder.c_str(), nobody, nobody) == 0 && seteuid(nobody) == 0;
  }
  ~AsOrdinaryUser() {
    if (changed && seteuid(0) != 0) abort();
  }
  AsOrdinaryUser(const AsOrdinaryUser&) = delete;
  AsOrdinaryUser& operator=(const AsOrdinaryUser&) = delete;

 private:
  static constexpr uid_t nobody = 65534;

  bool changed = false;
};

/// Runs an action with the rights that AsOrdinaryUser gave up.
inline void as_administrator(const std::function<void()>& action) {
  const uid_t user = geteuid();
  if (seteuid(getuid()) != 0) abort();
  action();
  if (seteuid(user) != 0) abort();
}
