// A file that cannot be read to its end.

#pragma once

#include <gtest/gtest.h>

#include <fcntl.h>
#include <pthread.h>
#include <signal.h>
#include <sys/ioctl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <atomic>
#include <string>
#include <thread>

#include "tests/support/wait_until.h"

/// A named pipe. The thread that creates it reads a text from the pipe and then
/// gets a read error instead of the end of the file: the writer interrupts the
/// read that waits for more. The reader must finish before the object is
/// destroyed.
class FailingFile {
 public:
  FailingFile(const char* path, const std::string& text) {
    EXPECT_EQ(0, mkfifo(path, 0600));
    struct sigaction interrupt = {};
    interrupt.sa_handler = [](int) {};  // and no SA_RESTART
    sigaction(SIGUSR1, &interrupt, nullptr);
    writer = std::thread([=, reader = pthread_self()] {
      const int pipe_end = open(path, O_RDWR);
      EXPECT_EQ(static_cast<ssize_t>(text.size()),
                write(pipe_end, text.data(), text.size()));
      EXPECT_TRUE(wait_until([&] { return unread_bytes(pipe_end) == 0; }));
      EXPECT_TRUE(wait_until([&] {
        pthread_kill(reader, SIGUSR1);
        return done.load();
      }));
      close(pipe_end);
    });
  }
  ~FailingFile() {
    done = true;
    writer.join();
  }
  FailingFile(const FailingFile&) = delete;
  FailingFile& operator=(const FailingFile&) = delete;

 private:
  static int unread_bytes(int pipe_end) {
    int count = -1;
    ioctl(pipe_end, FIONREAD, &count);
    return count;
  }

  std::atomic<bool> done = false;
  std::thread writer;
};
