// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

#include <chrono>

#include "async/task.h"

namespace quayline {

struct EchoReply {
  enum class Kind {
    kReached,    // the target itself has answered
    kHop,        // a computer on the way, at which the time to live ended
    kRefused,    // a computer on the way, which does not lead to the target
    kSilence,    // no answer within the time
    kForbidden,  // the system does not let this program send echo requests
  };

  Kind kind = Kind::kSilence;
  QString address;  // of who answered, dotted

  bool IsAnswer() const { return !address.isEmpty(); }
};

// Sends ICMP echo requests.
class Echoes {
 public:
  virtual ~Echoes() = default;

  // One request to `target` (dotted IPv4 text) that `ttl` routers pass on at most. Waits in the
  // background; destroying the task ends the wait.
  virtual Task<EchoReply> Send(QString target, int ttl, std::chrono::milliseconds limit) = 0;
};

}  // namespace quayline
