#include "tests/support/program.h"

#include <fcntl.h>
#include <signal.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

static void redirect(int stream, const std::string& file) {
  const int target = open(file.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0644);
  dup2(target, stream);
  close(target);
}

Program::Program(const std::vector<std::string>& words,
                 const std::string& output_file,
                 const std::string& error_file) {
  std::vector<char*> arguments;
  for (const std::string& word : words)
    arguments.push_back(const_cast<char*>(word.c_str()));
  arguments.push_back(nullptr);

  process = fork();
  if (process != 0) return;
  prctl(PR_SET_PDEATHSIG, SIGKILL);
  redirect(STDOUT_FILENO, output_file);
  redirect(STDERR_FILENO, error_file);
  execvp(arguments[0], arguments.data());
  _exit(127);
}

Program::~Program() {
  if (ended) return;
  kill(process, SIGKILL);
  wait();
}

bool Program::running() {
  if (!ended) ended = waitpid(process, &status, WNOHANG) == process;
  return !ended;
}

int Program::wait() {
  if (!ended) ended = waitpid(process, &status, 0) == process;
  return WIFSIGNALED(status) ? -WTERMSIG(status) : WEXITSTATUS(status);
}
