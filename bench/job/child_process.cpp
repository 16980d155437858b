// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "bench/job/child_process.h"

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <poll.h>
#include <signal.h>
#include <spawn.h>
#include <sys/resource.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>
#include <utility>

#include "bench/job/process_tree.h"

namespace quayline::bench {

ChildProcess::ChildProcess(const std::vector<std::string>& words, bool verbose) {
  int input[2];
  int output[2];
  if (pipe2(input, O_CLOEXEC) != 0 || pipe2(output, O_CLOEXEC) != 0) {
    std::perror("pipe");
    std::exit(2);
  }
  posix_spawn_file_actions_t actions;
  posix_spawn_file_actions_init(&actions);
  posix_spawn_file_actions_adddup2(&actions, input[0], STDIN_FILENO);
  posix_spawn_file_actions_adddup2(&actions, output[1], STDOUT_FILENO);
  if (!verbose) {
    posix_spawn_file_actions_addopen(&actions, STDERR_FILENO, "/dev/null", O_WRONLY, 0);
  }
  std::vector<char*> arguments;
  arguments.reserve(words.size() + 1);
  for (const std::string& word : words) {
    arguments.push_back(const_cast<char*>(word.c_str()));
  }
  arguments.push_back(nullptr);
  const int error =
      posix_spawnp(&process_, arguments[0], &actions, nullptr, arguments.data(), environ);
  posix_spawn_file_actions_destroy(&actions);
  close(input[0]);
  close(output[1]);
  input_ = input[1];
  output_ = output[0];
  if (error != 0) {
    std::fprintf(stderr, "%s cannot be started.\n", words.front().c_str());
    std::exit(2);
  }
}

ChildProcess::~ChildProcess() {
  if (process_ > 0) {
    kill(process_, SIGTERM);
    WaitForEnd();
  }
  close(output_);
}

void ChildProcess::WriteLine(const std::string& line) {
  const std::string bytes = line + '\n';
  if (write(input_, bytes.data(), bytes.size()) != static_cast<ssize_t>(bytes.size())) {
    std::perror("A program that is measured does not listen");
  }
}

std::optional<std::string> ChildProcess::ReadLine(std::chrono::seconds limit) {
  for (;;) {
    if (const size_t end = unread_.find('\n'); end != std::string::npos) {
      std::string line = unread_.substr(0, end);
      unread_.erase(0, end + 1);
      return line;
    }
    pollfd ready{.fd = output_, .events = POLLIN, .revents = 0};
    const std::chrono::milliseconds wait = limit;
    if (poll(&ready, 1, static_cast<int>(wait.count())) <= 0) {
      return std::nullopt;
    }
    char bytes[4096];
    const ssize_t count = read(output_, bytes, sizeof bytes);
    if (count <= 0) {
      return std::nullopt;
    }
    unread_.append(bytes, static_cast<size_t>(count));
  }
}

ChildProcess::End ChildProcess::WaitForEnd() {
  if (input_ >= 0) {
    close(std::exchange(input_, -1));
  }
  // Its own children may hold its output open for longer than it lives.
  const int life = static_cast<int>(syscall(SYS_pidfd_open, process_, 0));
  pollfd events[] = {{.fd = life, .events = POLLIN, .revents = 0},
                     {.fd = output_, .events = POLLIN, .revents = 0}};
  while (poll(events, std::size(events), -1) > 0 && events[0].revents == 0) {
    char bytes[4096];
    if (read(output_, bytes, sizeof bytes) <= 0) {
      events[1].fd = -1;
    }
  }
  close(life);
  End end;
  int status = 0;
  rusage usage{};
  if (wait4(process_, &status, 0, &usage) == process_) {
    end.status = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    end.processor = Duration(usage.ru_utime) + Duration(usage.ru_stime);
  }
  process_ = -1;
  return end;
}

}  // namespace quayline::bench
