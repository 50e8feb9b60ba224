// Rights that a test gives up, for whoever runs the tests may read everything.

#ifndef ZELKOR_TESTS_SUPPORT_ORDINARY_USER_H
#define ZELKOR_TESTS_SUPPORT_ORDINARY_USER_H

#include <stdlib.h>
#include <unistd.h>

/// Gives up the rights of the system's administrator, if this process has them,
/// until it is destroyed.
class AsOrdinaryUser {
 public:
  AsOrdinaryUser() {
    if (geteuid() == 0) changed = seteuid(65534) == 0;
  }
  ~AsOrdinaryUser() {
    if (changed && seteuid(0) != 0) abort();
  }
  AsOrdinaryUser(const AsOrdinaryUser&) = delete;
  AsOrdinaryUser& operator=(const AsOrdinaryUser&) = delete;

 private:
  bool changed = false;
};

#endif
