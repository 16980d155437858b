// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "bench/job/process_tree.h"

#include <algorithm>
#include <cstdlib>
#include <ctime>
#include <dirent.h>
#include <fstream>
#include <iterator>
#include <string>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

namespace quayline::bench {

namespace {

pid_t ParentOf(pid_t process) {
  std::ifstream file("/proc/" + std::to_string(process) + "/stat");
  std::string line;
  std::getline(file, line);
  // The name is in parentheses and may contain any character.
  const size_t name_end = line.rfind(')');
  if (name_end == std::string::npos || name_end + 4 > line.size()) {
    return 0;
  }
  return std::atoi(line.c_str() + name_end + 4);
}

std::multimap<pid_t, pid_t> ChildrenByParent() {
  std::multimap<pid_t, pid_t> children;
  DIR* folder = opendir("/proc");
  if (folder == nullptr) {
    return children;
  }
  while (const dirent* entry = readdir(folder)) {
    if (const pid_t process = std::atoi(entry->d_name); process > 0) {
      children.emplace(ParentOf(process), process);
    }
  }
  closedir(folder);
  return children;
}

}  // namespace

std::chrono::nanoseconds Duration(const timeval& time) {
  return std::chrono::seconds(time.tv_sec) + std::chrono::microseconds(time.tv_usec);
}

std::vector<pid_t> ProcessTree(pid_t root) {
  const std::multimap<pid_t, pid_t> children = ChildrenByParent();
  std::vector<pid_t> tree{root};
  for (size_t i = 0; i < tree.size(); ++i) {
    const auto [first, last] = children.equal_range(tree[i]);
    for (auto child = first; child != last; ++child) {
      tree.push_back(child->second);
    }
  }
  return tree;
}

ProcessorClock::ProcessorClock(pid_t root) : root_(root), last_(Read(root)) {}

std::chrono::nanoseconds ProcessorClock::Lap() {
  const Times now = Read(root_);
  std::chrono::nanoseconds lap{};
  for (const auto& [process, time] : now) {
    const auto before = last_.find(process);
    lap += before == last_.end() ? time : time - before->second;
  }
  last_ = now;
  return lap;
}

ProcessorClock::Times ProcessorClock::Read(pid_t root) {
  Times times;
  for (const pid_t process : ProcessTree(root)) {
    clockid_t clock{};
    timespec time{};
    if (clock_getcpuclockid(process, &clock) == 0 && clock_gettime(clock, &time) == 0) {
      times[process] = std::chrono::seconds(time.tv_sec) + std::chrono::nanoseconds(time.tv_nsec);
    }
  }
  return times;
}

void AdoptOrphans() { prctl(PR_SET_CHILD_SUBREAPER, 1, 0, 0, 0); }

std::vector<pid_t> Children() {
  std::vector<pid_t> processes;
  const std::multimap<pid_t, pid_t> children = ChildrenByParent();
  const auto [first, last] = children.equal_range(getpid());
  std::transform(first, last, std::back_inserter(processes),
                 [](const auto& child) { return child.second; });
  return processes;
}

std::chrono::nanoseconds ReapOrphans(const std::vector<pid_t>& known) {
  std::chrono::nanoseconds total{};
  for (;;) {
    const std::vector<pid_t> children = Children();
    const auto orphan = std::ranges::find_if(
        children, [&known](pid_t child) { return std::ranges::find(known, child) == known.end(); });
    rusage usage{};
    if (orphan == children.end() || wait4(*orphan, nullptr, 0, &usage) < 0) {
      return total;
    }
    total += Duration(usage.ru_utime) + Duration(usage.ru_stime);
  }
}

TreeMemory MemoryOf(pid_t root) {
  TreeMemory memory;
  for (const pid_t process : ProcessTree(root)) {
    std::ifstream file("/proc/" + std::to_string(process) + "/smaps_rollup");
    bool is_there = false;
    for (std::string line; std::getline(file, line);) {
      if (line.starts_with("Rss:")) {
        memory.rss_kib += std::atol(line.c_str() + 4);
        is_there = true;
      } else if (line.starts_with("Pss:")) {
        memory.pss_kib += std::atol(line.c_str() + 4);
      }
    }
    memory.processes += is_there ? 1 : 0;
  }
  return memory;
}

}  // namespace quayline::bench
