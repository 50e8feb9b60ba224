// Linked into all programs of the coverage build. By default the counts are
// written only when a process ends by exit(), but a failed assertion aborts it,
// and some children of tests end by _exit().

#include <signal.h>
#include <sys/syscall.h>
#include <unistd.h>

extern "C" void __gcov_dump();  // NOLINT(bugprone-reserved-identifier)

namespace {

// When the handler returns, abort() resets it and still ends the process by its
// signal.
const struct WriteCountsAtAbort {
  WriteCountsAtAbort() {
    signal(SIGABRT, [](int) { __gcov_dump(); });
  }
} write_counts_at_abort;

}  // namespace

// In place of the C library's.
extern "C" void _exit(int status) {
  __gcov_dump();
  for (;;) syscall(SYS_exit_group, status);
}
