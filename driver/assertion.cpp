#include "driver/assertion.h"

#include <cstdio>
#include <cstdlib>

void assertion_failed(const char* condition, const char* source,
                      const char* function) {
  std::fflush(stdout);
  std::fprintf(stderr, "%s: %s: Assertion `%s' failed.\n", source, function,
               condition);
  std::abort();
}
