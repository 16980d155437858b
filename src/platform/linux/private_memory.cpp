// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "platform/linux/private_memory.h"

#include <algorithm>
#include <sys/resource.h>

namespace quayline {

// A limit of one byte and not of zero: with zero the system still pipes the core to a program, such
// as a crash reporter, if it is configured to. PR_SET_DUMPABLE is no alternative: the browser could
// not set up the user namespace of its sandbox, and other programs do not inherit it.
void KeepMemoryPrivate() {
  constexpr rlim_t kMaxCore = 1;
  rlimit limit = {};
  getrlimit(RLIMIT_CORE, &limit);
  limit.rlim_max = std::min(limit.rlim_max, kMaxCore);
  limit.rlim_cur = limit.rlim_max;
  setrlimit(RLIMIT_CORE, &limit);
}

}  // namespace quayline
