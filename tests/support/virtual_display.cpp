#include "tests/support/virtual_display.h"

#include <fcntl.h>
#include <signal.h>
#include <stdlib.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <stdexcept>
#include <string>
#include <thread>

// Becomes the server; it writes its display's number to a descriptor. It does
// not reset itself when its last client leaves: a client that connects at that
// moment would be rejected.
[[noreturn]] static void run_server(int number_pipe) {
  prctl(PR_SET_PDEATHSIG, SIGTERM);
  const int nowhere = open("/dev/null", O_RDWR);
  dup2(nowhere, STDOUT_FILENO);
  dup2(nowhere, STDERR_FILENO);
  const std::string number = std::to_string(number_pipe);
  execlp("Xvfb", "Xvfb", "-displayfd", number.c_str(), "-screen", "0",
         "1280x1024x24", "-nolisten", "tcp", "-noreset",
         static_cast<char*>(nullptr));
  _exit(127);
}

VirtualDisplay::VirtualDisplay() {
  int number_pipe[2];
  if (pipe(number_pipe) != 0) throw std::runtime_error("no pipe");
  server = fork();
  if (server == 0) {
    close(number_pipe[0]);
    run_server(number_pipe[1]);
  }
  close(number_pipe[1]);

  // The server writes a line when it is ready, or nothing if it does not start.
  std::string number;
  char c = '\0';
  while (read(number_pipe[0], &c, 1) == 1 && c != '\n') number += c;
  close(number_pipe[0]);
  if (number.empty()) throw std::runtime_error("Xvfb does not start");
  setenv("DISPLAY", (":" + number).c_str(), 1);
  setenv("FLTK_BACKEND", "x11", 1);
}

// A server that is about to wait for its clients sees the signal only when it
// wakes again, so the signal is repeated until the server has ended.
VirtualDisplay::~VirtualDisplay() {
  for (int waits = 0; waitpid(server, nullptr, WNOHANG) == 0; ++waits) {
    if (waits % 100 == 0) kill(server, SIGTERM);
    std::this_thread::sleep_for(std::chrono::milliseconds(1));
  }
}
