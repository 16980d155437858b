// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>
#include <map>
#include <sys/time.h>
#include <sys/types.h>
#include <vector>

namespace quayline::bench {

std::chrono::nanoseconds Duration(const timeval& time);

// `root` and everything that it and its children started and that still runs.
std::vector<pid_t> ProcessTree(pid_t root);

// The processor time of a process tree between two looks. A browser keeps its processes from job to
// job, so that nothing is lost with one that ends.
class ProcessorClock final {
 public:
  explicit ProcessorClock(pid_t root);

  // Since the last look.
  std::chrono::nanoseconds Lap();

 private:
  using Times = std::map<pid_t, std::chrono::nanoseconds>;
  static Times Read(pid_t root);

  pid_t root_;
  Times last_;
};

// From here on, processes whose parents are gone become children of this one.
void AdoptOrphans();

// The processes that were started by this one, or adopted.
std::vector<pid_t> Children();

// Waits for the end of all children but the `known` ones. Returns the processor time that they took
// in their lives.
std::chrono::nanoseconds ReapOrphans(const std::vector<pid_t>& known);

struct TreeMemory {
  long processes = 0;
  long rss_kib = 0;  // pages that processes share count in each
  long pss_kib = 0;  // and here once in all
};

TreeMemory MemoryOf(pid_t root);

}  // namespace quayline::bench
