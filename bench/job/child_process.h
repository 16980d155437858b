// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>
#include <optional>
#include <string>
#include <sys/types.h>
#include <vector>

namespace quayline::bench {

// A program that is talked to in lines over its standard input and output. Blocking, as a stop
// watch wants it; ended with the object.
class ChildProcess final {
 public:
  // `words` begins with the program. Its standard error is dropped unless `verbose`.
  ChildProcess(const std::vector<std::string>& words, bool verbose);
  ~ChildProcess();
  ChildProcess(const ChildProcess&) = delete;
  ChildProcess& operator=(const ChildProcess&) = delete;

  pid_t Id() const { return process_; }

  void WriteLine(const std::string& line);
  // Nothing when the program ends or keeps silent for `limit`.
  std::optional<std::string> ReadLine(std::chrono::seconds limit);

  struct End {
    int status = -1;                       // the exit status, or -1
    std::chrono::nanoseconds processor{};  // with all processes that it has waited for
  };
  // Closes its standard input, discards its remaining output and waits for its end.
  End WaitForEnd();

 private:
  pid_t process_ = -1;
  int input_ = -1;   // of the program; ours to write
  int output_ = -1;  // ours to read
  std::string unread_;
};

}  // namespace quayline::bench
