// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

#include "bench/job/child_process.h"
#include "demo/demo_router.h"

namespace quayline::bench {

// The demo router in its own process, so that its work does not count as a contender's processor
// time.
class RouterProcess final {
 public:
  RouterProcess(const QString& program, int rows, int delay_ms, bool verbose);

  int Port() const { return port_; }
  pid_t Id() const { return process_.Id(); }

  demo::RouterState State() const;
  void Reset() const;

 private:
  ChildProcess process_;
  int port_ = 0;
};

}  // namespace quayline::bench
